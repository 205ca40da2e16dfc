// removal_test.cpp: a version installed over an earlier one, used by a host, and removed again.
#include "make_installer/lantern_set.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace fs = std::filesystem;

using end_to_end::Rights;
using end_to_end::Scenario;
using lantern_set::folder;
using support::output_of;

namespace {

constexpr const char* bundle = "/usr/local/lib/lv2/lantern-tilt.lv2";
constexpr const char* uninstaller = "/usr/local/bin/uninstall-lantern-set";
constexpr const char* list = "/usr/local/share/uninstall-lantern-set/installed";

class Removal : public testing::TestWithParam<Rights> {
protected:
    Removal() : scenario_(lantern_set::options(GetParam())) {
        fs::remove_all(folder);
        before_ = tree();
    }

    // What stands in the folders that are written to.
    static std::string tree() {
        return output_of(
            {"sh", "-c", "cd /usr/local && find . -maxdepth 4 -printf '%y %m %U %p %l\\n' | sort"});
    }

    // A line of the list for a file of an earlier version.
    static std::string listed(const std::string& path, const std::string& content) {
        support::write_file(path, content);
        return "file " + std::to_string(content.size()) + " " +
               output_of({"sha256sum", path}).substr(0, 64) + " " + path + "\n";
    }

    void install() {
        lantern_set::choose_offered_folder(scenario_, GetParam());
        scenario_.reach_last_screen();
        EXPECT_NE(scenario_.console().find("Installation Complete"), std::string::npos)
            << scenario_.console();
        scenario_.press_ok();
        EXPECT_EQ(scenario_.finish().exit_status, 0);
    }

    void expect_bare_machine() const { EXPECT_EQ(tree(), before_); }

    Scenario scenario_;

private:
    std::string before_;
};

INSTANTIATE_TEST_SUITE_P(With, Removal, testing::Values(Rights::sudo, Rights::only_su),
                         [](const auto& rights) {
                             return rights.param == Rights::sudo ? "sudo" : "su";
                         });

} // namespace

TEST_P(Removal, LeavesTheMachineAsItWasBefore) {
    install();
    EXPECT_EQ(
        output_of({"diff", "-r", ZEPH_SOURCE "/products/lantern-tilt/lantern-tilt.lv2", bundle}),
        "");
    EXPECT_EQ(output_of({"env", std::string("LV2_PATH=") + folder, "lv2ls"}), "urn:lantern:tilt\n");
    EXPECT_EQ(fs::status(uninstaller).permissions(), fs::perms(0755));
    EXPECT_EQ(output_of({uninstaller}), "uninstall-lantern-set: removed\n");
    expect_bare_machine();
}

TEST_P(Removal, ComesWithALaterVersionForWhatThatDoesNotHave) {
    const std::string elsewhere = scenario_.account().home + "/lv2";
    fs::create_directory(elsewhere);
    const std::string mine = std::string(bundle) + "/changed.ttl";
    const std::string lines =
        listed(std::string(bundle) + "/dropped.ttl", "old") + listed(mine, "old") +
        listed(elsewhere + "/lantern-tilt.lv2/lantern-tilt.so", "old") + "folder 0 0 " + elsewhere +
        "/lantern-tilt.lv2\nfolder 0 0 " + folder + "\nend\n";
    support::write_file(mine, "changed");
    support::write_file(list, lines);
    install();
    EXPECT_FALSE(fs::exists(std::string(bundle) + "/dropped.ttl"));
    EXPECT_TRUE(fs::exists(mine));
    EXPECT_TRUE(fs::is_empty(elsewhere));
    EXPECT_TRUE(fs::exists(std::string(bundle) + "/lantern-tilt.so"));
    EXPECT_EQ(output_of({uninstaller, "--force"}), "uninstall-lantern-set: removed\n");
    expect_bare_machine();
}
