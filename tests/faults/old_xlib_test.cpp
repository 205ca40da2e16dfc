// Where libX11 is older than 1.7 a lost display ends the process from within Xlib: what would be
// left is tidied up before.

#include "end_to_end/expectations.h"
#include "end_to_end/installed_file.h"
#include "end_to_end/stages.h"
#include "faults/memory_scan.h"
#include "faults/old_xlib.h"
#include "faults/surroundings.h"

#include <csignal>
#include <filesystem>

namespace faults {
namespace {

using namespace end_to_end;

constexpr const char* library_folder = "/usr/lib/old-xlib";
constexpr const char* stopper = "/usr/lib/old-xlib/stop_at_exit.so";

struct OldXlibScenario : Scenario {
    explicit OldXlibScenario(const std::vector<std::string>& more = {})
        : Scenario(options_with(more)) {
        install_old_xlib(library_folder);
        support::write_file(stopper, text_of(ZEPH_STOP_AT_EXIT), 0755);
    }

    static ScenarioOptions options_with(const std::vector<std::string>& more) {
        ScenarioOptions options;
        options.environment.push_back(std::string("LD_LIBRARY_PATH=") + library_folder);
        options.environment.insert(options.environment.end(), more.begin(), more.end());
        return options;
    }
};

// Lets sudo take its time over commands that hold the word; /tmp/at-work says when it does.
void slow_sudo_down(const std::string& word) {
    support::install_program("/usr/bin/sudo.real", "/usr/bin/sudo", 04755);
    support::install_script("/usr/bin/sudo", "#!/bin/bash\n"
                                             "case \"$*\" in *" +
                                                 word +
                                                 "*) touch /tmp/at-work; sleep 2;; esac\n"
                                                 "exec /usr/bin/sudo.real \"$@\"\n");
}

void wait_for_sudo_at_work(Scenario& scenario) {
    scenario.wait_for("sudo", [] { return std::filesystem::exists("/tmp/at-work"); });
}

void expect_tidy_end(Scenario& scenario) {
    EXPECT_TRUE(ended_clean(scenario.finish()));
    const std::string console = scenario.console();
    const std::string lost =
        std::string("** ERROR ** ") + title + ": Lost connection to X server\n";
    EXPECT_NE(console.find(lost), std::string::npos) << console;
    EXPECT_EQ(console.find(lost), console.rfind(lost)) << console;
    EXPECT_TRUE(console.ends_with("\n" + info("Exiting") + "\n")) << console;
    EXPECT_EQ(processes_left(scenario.account()), std::vector<std::string>{});
}

TEST(OldXlib, ServesAWholeInstallation) {
    OldXlibScenario scenario;
    reach(scenario, Stage::complete);
    expect_installed(scenario);
}

class OldXlibLost : public testing::TestWithParam<Stage> {};

INSTANTIATE_TEST_SUITE_P(At, OldXlibLost,
                         testing::Values(Stage::password, Stage::unpacking, Stage::browser,
                                         Stage::copying, Stage::removing, Stage::complete),
                         [](const auto& stage) { return stage_name(stage.param); });

TEST_P(OldXlibLost, ServerEndsTheRunAndLeavesNothing) {
    OldXlibScenario scenario;
    reach(scenario, GetParam());
    scenario.lose_screen();
    expect_tidy_end(scenario);
    EXPECT_EQ(plugin_in(default_folder), std::nullopt) << "nobody has chosen this folder";
    if (GetParam() <= Stage::browser) {
        EXPECT_EQ(plugin_in(scenario.account().home), std::nullopt);
    } else if (GetParam() >= Stage::removing) {
        EXPECT_EQ(plugin_in(scenario.account().home), plugin_of_archive());
    }
}

TEST(OldXlibLostAt, TheSplash) {
    OldXlibScenario scenario;
    scenario.reach_splash();
    scenario.lose_screen();
    expect_tidy_end(scenario);
}

TEST(OldXlibLostAt, TheExtractionWhichIsLetFinish) {
    OldXlibScenario scenario;
    slow_sudo_down("tar");
    reach(scenario, Stage::copying);
    wait_for_sudo_at_work(scenario);
    scenario.lose_screen();
    expect_tidy_end(scenario);
    EXPECT_EQ(plugin_in(scenario.account().home), plugin_of_archive());
}

// The program is stopped in the middle of exit, before anything of it is taken down.
class OldXlibPassword : public testing::Test {
protected:
    void expect_wiped_at_exit() {
        const pid_t process = scenario_.installer().process_id();
        EXPECT_FALSE(copies_in_memory(process, user_password).empty()) << "it was there before";
        scenario_.lose_screen();
        scenario_.wait_for("the exit", [&] { return state_of(process) == 'T'; });
        EXPECT_EQ(copies_in_memory(process, user_password), std::vector<std::string>{});
        EXPECT_FALSE(std::filesystem::exists(lock_path));
        EXPECT_FALSE(std::filesystem::exists(archive_path));
        scenario_.installer().send_signal(SIGCONT);
        expect_tidy_end(scenario_);
    }

    OldXlibScenario scenario_{{std::string("LD_PRELOAD=") + stopper}};
};

TEST_F(OldXlibPassword, ThatIsTypedIsWiped) {
    reach(scenario_, Stage::password);
    scenario_.focus_main_window();
    scenario_.person().type(user_password);
    scenario_.wait_for("the typed text", [&] {
        return !copies_in_memory(scenario_.installer().process_id(), user_password).empty();
    });
    expect_wiped_at_exit();
}

TEST_F(OldXlibPassword, ThatIsBeingCheckedIsWiped) {
    slow_sudo_down("-S");
    reach(scenario_, Stage::password);
    scenario_.give_password(user_password);
    wait_for_sudo_at_work(scenario_);
    expect_wiped_at_exit();
}

TEST_F(OldXlibPassword, ThatWasAcceptedIsWiped) {
    reach(scenario_, Stage::unpacking);
    expect_wiped_at_exit();
}

} // namespace
} // namespace faults
