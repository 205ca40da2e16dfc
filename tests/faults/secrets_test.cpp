// The password: after the last screen no copy of it is left anywhere, and on the way nobody sees
// it.

#include "end_to_end/expectations.h"
#include "end_to_end/stages.h"
#include "faults/memory_scan.h"
#include "faults/surroundings.h"

#include <csignal>
#include <filesystem>
#include <random>

namespace faults {
namespace {

using namespace end_to_end;

// Letters and digits, each at most once, so that every eight in a row are found nowhere else; made
// here, so that not even the test program's own file holds them.
std::string made_up(unsigned seed) {
    std::string text = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    std::mt19937 random(seed);
    for (std::size_t i = text.size() - 1; i > 0; --i) {
        std::swap(text[i], text[random() % (i + 1)]);
    }
    return text.substr(0, 40);
}

const std::string secret = made_up(71);
const std::string wrong_secret = made_up(72);

// Polls for a screen while looking at every process's arguments and environment.
void watch_until(Scenario& scenario, const std::string& what, const std::function<bool()>& there) {
    scenario.wait_for(what, [&] {
        EXPECT_EQ(processes_that_show(secret), std::vector<std::string>{});
        return there();
    });
}

void expect_nowhere_outside(Scenario& scenario, const std::string& text) {
    EXPECT_EQ(processes_that_show(text), std::vector<std::string>{});
    for (const char* folder : {"/tmp", "/run", "/var/log", "/var/tmp"}) {
        EXPECT_EQ(files_that_hold(folder, text), std::vector<std::string>{});
    }
    EXPECT_EQ(files_that_hold(scenario.account().home, text), std::vector<std::string>{});
    EXPECT_FALSE(shows_piece_of(scenario.console(), text));
    EXPECT_FALSE(shows_piece_of(scenario.installer().error_output(), text));
}

class Password : public testing::TestWithParam<Rights> {
protected:
    // The person knows the secret: the own password with sudo, root's with su.
    ScenarioOptions options() const {
        ScenarioOptions options{.rights = GetParam()};
        if (GetParam() == Rights::sudo) {
            options.password = secret;
        }
        return options;
    }

    void SetUp() override { scenario_ = std::make_unique<Scenario>(options()); }

    void reach_password_screen() {
        if (GetParam() != Rights::sudo) {
            support::set_root_password(secret);
        }
        scenario_->reach_password_screen();
    }

    std::vector<std::string> copies(const std::string& text) {
        return copies_in_memory(scenario_->installer().process_id(), text);
    }

    std::unique_ptr<Scenario> scenario_;
};

INSTANTIATE_TEST_SUITE_P(Methods, Password, testing::Values(Rights::sudo, Rights::only_su),
                         [](const auto& rights) {
                             return rights.param == Rights::sudo ? "Sudo" : "Su";
                         });

TEST_P(Password, LeavesNoCopyAfterAnInstallation) {
    reach_password_screen();
    scenario_->focus_main_window();
    scenario_->person().type(secret);
    // The scan sees what is there: the field holds the text until it is given.
    scenario_->wait_for("the typed text", [&] { return !copies(secret).empty(); });
    scenario_->person().press_return();
    watch_until(*scenario_, "the end of the check",
                [&] { return scenario_->console().find("Password OK") != std::string::npos; });
    scenario_->reach_folder_browser();
    scenario_->accept_folder();
    watch_until(*scenario_, "the last screen", [&] {
        return scenario_->button_shown(scenario_->picture_of(scenario_->main_window()));
    });
    EXPECT_EQ(copies(secret), std::vector<std::string>{});
    scenario_->press_ok();
    EXPECT_TRUE(ended_clean(scenario_->finish()));
    expect_nowhere_outside(*scenario_, secret);
}

TEST_P(Password, ThatWasWrongIsForgottenAtOnce) {
    reach_password_screen();
    scenario_->give_password(wrong_secret);
    scenario_->reach_wrong_password_screen();
    EXPECT_EQ(copies(wrong_secret), std::vector<std::string>{});
    expect_nowhere_outside(*scenario_, wrong_secret);
    scenario_->give_password(secret);
    scenario_->reach_unpacking();
    EXPECT_EQ(copies(wrong_secret), std::vector<std::string>{});
    scenario_->installer().send_signal(SIGTERM);
    EXPECT_TRUE(ended_clean(scenario_->finish()));
    expect_nowhere_outside(*scenario_, wrong_secret);
}

TEST_P(Password, IsInNoMemoryWhenTheFolderWasCancelled) {
    reach_password_screen();
    scenario_->give_password(secret);
    scenario_->reach_folder_browser();
    scenario_->cancel_folder();
    EXPECT_TRUE(scenario_->view().wait_until_gone(scenario_->browser_window()));
    scenario_->reach_last_screen();
    EXPECT_EQ(copies(secret), std::vector<std::string>{});
    scenario_->press_ok();
    EXPECT_TRUE(ended_clean(scenario_->finish()));
}

TEST_P(Password, IsKeptOutOfTheSwapSpace) {
    reach_password_screen();
    scenario_->focus_main_window();
    scenario_->person().type(secret);
    const pid_t process = scenario_->installer().process_id();
    scenario_->wait_for("the typed text", [&] { return !copies(secret).empty(); });
    EXPECT_EQ(swappable_copies(process, secret), std::vector<std::string>{});
    scenario_->person().press_return();
    scenario_->reach_folder_browser();
    EXPECT_FALSE(copies(secret).empty());
    EXPECT_EQ(swappable_copies(process, secret), std::vector<std::string>{});
}

// Where the system lets the person lock nothing, the installation goes on all the same.
TEST_P(Password, NeedsNoLockedMemory) {
    start_through_shell(*scenario_, "ulimit -l 0");
    reach_password_screen();
    install_from_password_screen(*scenario_, secret);
    EXPECT_EQ(copies(secret), std::vector<std::string>{});
    scenario_->press_ok();
    EXPECT_TRUE(ended_clean(scenario_->finish()));
}

// A crash with the password in memory, where the person's shell lets programs write core files.
TEST_P(Password, IsInNoCoreFile) {
    start_through_shell(*scenario_, "ulimit -c unlimited");
    reach_password_screen();
    scenario_->give_password(secret);
    scenario_->reach_unpacking();
    scenario_->installer().send_signal(SIGSEGV);
    EXPECT_EQ(scenario_->finish().signal, SIGSEGV);
    expect_nowhere_outside(*scenario_, secret);
    for (const auto& entry : std::filesystem::directory_iterator(scenario_->account().home)) {
        EXPECT_EQ(entry.path().filename().string().find("core"), std::string::npos);
    }
}

} // namespace
} // namespace faults
