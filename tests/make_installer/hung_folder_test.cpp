// hung_folder_test.cpp: the folder's file system stops answering while it is installed into.
// Whoever has had enough gets away at once, and the password with them.
#include "attacks/hung_mount.h"
#include "end_to_end/scenario.h"
#include "faults/memory_scan.h"
#include "faults/surroundings.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

namespace fs = std::filesystem;

using end_to_end::Scenario;

namespace {

constexpr const char* folder = "/usr/local/lib/lv2";
constexpr const char* stopper = "/run/stop_at_exit.so";

} // namespace

TEST(HungFolderToInstallInto, IsLeftByASignalWithThePasswordWiped) {
    Scenario scenario(
        {.browser_title = "- Select your LV2 plug-in folder -", .keep_visible = {ZEPH_SOURCE}});
    support::write_file(stopper, faults::text_of(ZEPH_STOP_AT_EXIT), 0755);
    faults::start_through_shell(scenario, "", std::string("env LD_PRELOAD=") + stopper);
    fs::create_directories(folder);
    scenario.reach_password_screen();
    scenario.give_password(end_to_end::user_password);
    scenario.reach_folder_browser();
    const HungMount mount(folder);
    scenario.accept_folder();
    scenario.reach_copying();
    const pid_t process = scenario.installer().process_id();
    EXPECT_TRUE(support::holds_for([&] { return faults::children_of(process).empty(); },
                                   std::chrono::milliseconds{500}));
    EXPECT_FALSE(faults::copies_in_memory(process, end_to_end::user_password).empty());

    scenario.installer().send_signal(SIGTERM);
    // Then it is stopped, but for the thread that waits for the file system.
    EXPECT_TRUE(scenario.installer().wait_for_output("Installer: Exiting\n\n", faults::at_once));
    EXPECT_EQ(faults::copies_in_memory(process, end_to_end::user_password),
              std::vector<std::string>{});
    scenario.installer().send_signal(SIGCONT);
    EXPECT_EQ(scenario.finish().exit_status, 0);
    for (const fs::directory_entry& entry : fs::directory_iterator("/tmp")) {
        EXPECT_EQ(entry.path().string().find("zeph-installer"), std::string::npos) << entry.path();
    }
}
