// Many complete runs in a row, by outcome, each held against the first of its kind.
//
//   hundred_runs --gtest_filter='*Installed' --gtest_repeat=25
//
// Too long for the tests; hundred_runs.sh starts all of it.

#include "end_to_end/expectations.h"
#include "end_to_end/installed_file.h"
#include "faults/surroundings.h"

#include <algorithm>
#include <filesystem>

namespace faults {
namespace {

using namespace end_to_end;

// What a run left to see.
struct Outcome {
    std::string console;
    std::optional<int> exit_status;
    std::vector<std::string> files_in_tmp;
    std::vector<std::string> processes;
    std::vector<std::string> files_at_home;
    bool installed = false;
    friend bool operator==(const Outcome&, const Outcome&) = default;
};

// The machine outside of the worlds: nothing of a run may be seen here.
struct Machine {
    std::string accounts = text_of("/etc/passwd");
    std::string mounts = text_of("/proc/self/mounts");
    std::vector<std::string> installer_files = installer_files_in_tmp();
    std::ptrdiff_t open_files = std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                                              std::filesystem::directory_iterator());
    std::size_t children = children_of(getpid()).size();
    friend bool operator==(const Machine&, const Machine&) = default;
};

std::vector<std::string> names_in(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

Outcome outcome_of(Scenario& scenario) {
    const support::ChildEnd end = scenario.finish();
    return {.console = scenario.console(),
            .exit_status = end.exit_status,
            .files_in_tmp = installer_files_in_tmp(),
            .processes = processes_left(scenario.account()),
            .files_at_home = names_in(scenario.account().home),
            .installed = plugin_in(scenario.account().home) == plugin_of_archive()};
}

class HundredRuns : public testing::Test {
protected:
    // Plays one run and holds it against the first of its kind.
    static void play(std::optional<Outcome>& first, void (*act)(Scenario&)) {
        const Machine before;
        Outcome outcome;
        {
            Scenario scenario;
            act(scenario);
            outcome = outcome_of(scenario);
        }
        EXPECT_TRUE(Machine() == before) << "something of the run stayed on the machine";
        EXPECT_EQ(outcome.exit_status, 0);
        EXPECT_EQ(outcome.files_in_tmp, std::vector<std::string>{});
        EXPECT_EQ(outcome.processes, std::vector<std::string>{});
        if (!first) {
            first = outcome;
        }
        EXPECT_EQ(outcome.console, first->console);
        EXPECT_TRUE(outcome == *first);
    }
};

TEST_F(HundredRuns, Installed) {
    static std::optional<Outcome> first;
    play(first, [](Scenario& scenario) {
        scenario.reach_password_screen();
        install_from_password_screen(scenario, user_password);
        scenario.press_ok();
    });
    EXPECT_TRUE(first->installed);
}

TEST_F(HundredRuns, Cancelled) {
    static std::optional<Outcome> first;
    play(first, [](Scenario& scenario) {
        scenario.reach_password_screen();
        scenario.give_password(user_password);
        scenario.reach_folder_browser();
        scenario.cancel_folder();
        scenario.reach_last_screen();
        scenario.press_ok();
    });
    EXPECT_FALSE(first->installed);
}

TEST_F(HundredRuns, WrongPassword) {
    static std::optional<Outcome> first;
    play(first, [](Scenario& scenario) {
        scenario.reach_password_screen();
        scenario.give_password("not it");
        scenario.reach_wrong_password_screen();
        scenario.view().ask_to_close(scenario.main_window());
    });
    EXPECT_FALSE(first->installed);
}

TEST_F(HundredRuns, KilledDisplay) {
    static std::optional<Outcome> first;
    play(first, [](Scenario& scenario) {
        scenario.reach_password_screen();
        scenario.give_password(user_password);
        scenario.reach_folder_browser();
        scenario.lose_screen();
    });
    EXPECT_FALSE(first->installed);
}

} // namespace
} // namespace faults
