// Limits on descriptors, processes, memory and the size of any file at all. Not in a sanitizer's
// build, which needs more of each.

#include "end_to_end/expectations.h"
#include "end_to_end/installed_file.h"
#include "faults/surroundings.h"
#include "support/wait_until.h"

#include <cstdio>

namespace faults {
namespace {

using namespace end_to_end;

TEST(FileSizeLimit, OfNothingIsReportedAndNothingStays) {
    Scenario scenario;
    start_through_shell(scenario, "ulimit -f 0");
    // The console is a file too here, and takes nothing.
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.reach_last_screen();
    EXPECT_TRUE(line_reads(scenario.picture_of(scenario.main_window()), 3,
                           "Unable to extract installer data"));
    scenario.press_ok();
    EXPECT_TRUE(ended_clean(scenario.finish()));
}

// The shell becomes the installer, which is then the one process that the person may have.
TEST(NoGuiThread, IsSaidAndTheRunEndsWith255) {
    Scenario scenario;
    support::write_file(lock_path, "a killed run's");
    support::give_to(scenario.account(), lock_path);
    start_through_shell(scenario, "ulimit -u 1");
    scenario.start();
    EXPECT_EQ(scenario.finish().exit_status, 255);
    const std::string error = std::string("** ERROR ** ") + title + ": ";
    EXPECT_EQ(scenario.console(), std::string("\n- ") + title + " -\n\n" + error +
                                      "failed to fork pty for sudo\n" +
                                      info("Using 'su' for authentication") + error +
                                      "Unable to create GUI thread :(\n");
    EXPECT_EQ(installer_files_in_tmp(), std::vector<std::string>{});
    EXPECT_EQ(processes_left(scenario.account()), std::vector<std::string>{});
}

struct Limit {
    const char* name;
    const char* command;
};

// Whatever the limit lets through: the run ends by itself or at a screen that can be left, with
// status 0 or the one for a thread that cannot be made, and leaves nothing.
class SmallLimit : public testing::TestWithParam<Limit> {};

constexpr Limit limits[] = {
    {"Descriptors4", "ulimit -n 4"},  {"Descriptors5", "ulimit -n 5"},
    {"Descriptors6", "ulimit -n 6"},  {"Descriptors8", "ulimit -n 8"},
    {"Processes1", "ulimit -u 1"},    {"Processes2", "ulimit -u 2"},
    {"Memory16M", "ulimit -v 16384"}, {"Memory24M", "ulimit -v 24576"},
    {"Memory40M", "ulimit -v 40960"}, {"Stack128K", "ulimit -s 128"},
};

INSTANTIATE_TEST_SUITE_P(Of, SmallLimit, testing::ValuesIn(limits),
                         [](const auto& limit) { return limit.param.name; });

bool says_farewell(const std::string& console) {
    return console.ends_with(info("Exiting") + "\n") ||
           console.find("Unable to create GUI thread :(\n") != std::string::npos;
}

TEST_P(SmallLimit, LeadsToAClearEnd) {
    Scenario scenario;
    start_through_shell(scenario, GetParam().command);
    scenario.start();
    support::ChildProcess& installer = scenario.installer();
    // Screens that wait for the person are left as the person would, by closing the window.
    const bool ended = support::wait_until(
        [&] {
            if (const auto window = scenario.view().find_class("zeph-installer")) {
                scenario.view().ask_to_close(*window);
            }
            return !installer.running();
        },
        std::chrono::milliseconds{60'000}, [&] { return scenario.report(); });
    ASSERT_TRUE(ended);
    const support::ChildEnd end = scenario.finish();
    const std::string console = scenario.console();
    RecordProperty("console", console);
    std::printf("%s%s", console.c_str(), installer.error_output().c_str());
    ASSERT_TRUE(end.exit_status) << "ended by signal " << end.signal.value_or(0) << "\n" << console;
    EXPECT_TRUE(*end.exit_status == 0 || *end.exit_status == 255) << *end.exit_status;
    EXPECT_TRUE(says_farewell(console)) << console;
    EXPECT_EQ(installer_files_in_tmp(), std::vector<std::string>{});
    EXPECT_EQ(processes_left(scenario.account()), std::vector<std::string>{});
}

} // namespace
} // namespace faults
