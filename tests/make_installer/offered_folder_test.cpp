// offered_folder_test.cpp: the folder that is offered is the one where hosts look, and is made.
#include "end_to_end/scenario.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>

namespace fs = std::filesystem;

using end_to_end::Rights;
using end_to_end::Scenario;

namespace {

constexpr const char* offered = "/usr/local/lib/lv2";

end_to_end::ScenarioOptions options_of(Rights rights) {
    return {.rights = rights,
            .browser_title = "- Select your LV2 plug-in folder -",
            .keep_visible = {ZEPH_SOURCE}};
}

void install(Scenario& scenario, Rights rights) {
    scenario.reach_password_screen();
    scenario.give_password(rights == Rights::sudo ? end_to_end::user_password
                                                  : end_to_end::root_password);
    scenario.reach_folder_browser();
    scenario.accept_folder();
    scenario.reach_last_screen();
    scenario.press_ok();
    EXPECT_EQ(scenario.finish().exit_status, 0);
}

bool tells_of(Scenario& scenario, const std::string& text) {
    return scenario.console().find(text) != std::string::npos;
}

} // namespace

TEST(OfferedFolder, IsMadeWhereItIsMissingAndInstalledInto) {
    for (const Rights rights : {Rights::sudo, Rights::only_su}) {
        Scenario scenario(options_of(rights));
        fs::remove_all("/usr/local/lib/lv2");
        install(scenario, rights);
        EXPECT_TRUE(tells_of(scenario, std::string("Installing to - ") + offered + "\n"))
            << scenario.console();
        EXPECT_TRUE(tells_of(scenario, "Installation Complete")) << scenario.console();
        EXPECT_TRUE(fs::exists(std::string(offered) + "/lantern-tilt.lv2/manifest.ttl"));
        struct stat status {};
        ASSERT_EQ(stat(offered, &status), 0);
        EXPECT_EQ(status.st_uid, 0U);
        EXPECT_EQ(status.st_mode & 07777U, 0755U);
    }
}

TEST(OfferedFolder, ThatIsThereStaysAsItIs) {
    Scenario scenario(options_of(Rights::sudo));
    fs::create_directories(offered);
    ASSERT_EQ(chmod(offered, 0775), 0);
    install(scenario, Rights::sudo);
    EXPECT_TRUE(tells_of(scenario, std::string("Installing to - ") + offered + "\n"));
    struct stat status {};
    ASSERT_EQ(stat(offered, &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0775U);
}

TEST(OfferedFolder, ThatCannotBeMadeIsSaidAndTheBrowserBeginsAtHome) {
    Scenario scenario(options_of(Rights::sudo));
    fs::remove_all(offered);
    support::write_file(offered, "a file is in its place");
    install(scenario, Rights::sudo);
    EXPECT_TRUE(tells_of(scenario, std::string("Unable to open folder - ") + offered + "\n"));
    EXPECT_TRUE(tells_of(scenario, "Installing to - " + scenario.account().home + "\n"));
    EXPECT_TRUE(fs::exists(scenario.account().home + "/lantern-tilt.lv2/manifest.ttl"));
}
