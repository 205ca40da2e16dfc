// items_test.cpp: several things from one archive, each into a folder of its own, all of them or
// none.
#include "steps/step_run.h"
#include "support/worlds/private_world.h"

#include <gtest/gtest.h>

#include <sys/mount.h>

#include <filesystem>

namespace fs = std::filesystem;

using namespace steps;

namespace {

const std::string place = "/tmp/place";
const std::string folder = place + "/lv2";
const std::string clap_folder = place + "/it's \"clap\" & more";
const std::string made = place + "/share";
const std::string preset_folder = made + "/tilt/presets\n";
const std::string prefix = place + "/prefix";
const std::string uninstaller = prefix + "/bin/uninstall-tilt";

// The archive of a version: a bundle, a CLAP, presets and, beside the bundle, a manual.
void make_archive(const std::string& word) {
    prepare("rm -rf /tmp/made && mkdir -p /tmp/made/tilt.lv2 /tmp/made/presets && cd /tmp/made && "
            "for file in tilt.lv2/tilt.so tilt.clap presets/one manual.html; do "
            "yes " +
            word + " | head -c 5000 > $file; done && tar -czf " + archive +
            " --owner=root --group=root --mode=go-w tilt.lv2 tilt.clap presets manual.html && "
            "rm -rf /tmp/made");
}

Keeping everything() {
    return {
        .prefix = prefix,
        .others = {"new-folder", made, "new-folder", made + "/tilt", "new-folder", preset_folder},
        .items = {clap_folder, "tilt.clap", preset_folder, "presets", folder, "manual.html"}};
}

class Items : public testing::TestWithParam<std::vector<std::string>> {
protected:
    Items() {
        for (const std::string& path : {folder, clap_folder, prefix}) {
            fs::create_directories(path);
        }
        make_archive("old");
        bare_ = tree_of(place);
    }

    void install_everything() { ASSERT_EQ(install(GetParam(), folder, everything()), 0); }

    static std::string first_line(const std::string& path) {
        return support::output_of({"head", "-n", "1", path});
    }

    static void expect_version(const std::string& word) {
        for (const std::string& path : {folder + "/tilt.lv2/tilt.so", clap_folder + "/tilt.clap",
                                        preset_folder + "/presets/one", folder + "/manual.html"}) {
            EXPECT_EQ(first_line(path), word + "\n") << path;
        }
    }

    std::string bare_;

private:
    support::PrivateWorld world_;
};

INSTANTIATE_TEST_SUITE_P(In, Items, testing::ValuesIn(all_shells),
                         [](const auto& shell) { return shell.param.front(); });

TEST_P(Items, GoToTheirFoldersAndLeaveWithThem) {
    install_everything();
    expect_version("old");
    EXPECT_EQ(fs::status(preset_folder).permissions(), fs::perms(0755));
    support::write_file(preset_folder + "/presets/of mine", "mine");
    make_archive("new");
    install_everything();
    expect_version("new");
    fs::remove(preset_folder + "/presets/of mine");
    EXPECT_EQ(support::output_of({"sh", uninstaller}), "uninstall-tilt: removed\n");
    EXPECT_EQ(tree_of(place), bare_);
}

TEST_P(Items, ThatALaterVersionHasNotAreTakenAway) {
    install_everything();
    Keeping fewer = everything();
    fewer.others.clear();
    fewer.items = {folder, "manual.html"};
    make_archive("new");
    ASSERT_EQ(install(GetParam(), folder, fewer), 0);
    EXPECT_EQ(first_line(folder + "/manual.html"), "new\n");
    EXPECT_TRUE(fs::is_empty(clap_folder));
    EXPECT_FALSE(fs::exists(made));
    EXPECT_EQ(support::output_of({"sh", uninstaller}), "uninstall-tilt: removed\n");
    EXPECT_EQ(tree_of(place), bare_);
}

TEST_P(Items, ThatAreAbandonedLeaveNoFolder) {
    ASSERT_EQ(run_step(GetParam(), "put_beside", folder, everything()), 0);
    EXPECT_TRUE(fs::exists(preset_folder + "/.tilt-new/presets/one"));
    EXPECT_EQ(run_step(GetParam(), "abandon", folder, everything()), 0);
    EXPECT_EQ(tree_of(place), bare_);
}

// Each with a list, on which the folders stand, and without one.
TEST_P(Items, WithoutAFolderOrWithAFileInItsPlaceLeaveEverythingAsItWas) {
    for (const std::string& list : {prefix, std::string()}) {
        Keeping wrong = everything();
        wrong.prefix = list;
        wrong.items[0] = place + "/nowhere";
        EXPECT_EQ(install(GetParam(), folder, wrong), no_folder);
        EXPECT_EQ(tree_of(place), bare_);
        support::write_file(place + "/share", "a file");
        EXPECT_EQ(install(GetParam(), folder, everything()), in_the_way);
        fs::remove(place + "/share");
        EXPECT_EQ(tree_of(place), bare_);
        support::write_file(place + "/nowhere", "a file");
        EXPECT_EQ(install(GetParam(), folder, wrong), in_the_way);
        fs::remove(place + "/nowhere");
        EXPECT_EQ(tree_of(place), bare_);
    }
}

// The last one cannot be moved: those before it are moved back.
TEST_P(Items, OfWhichOneCannotBeMovedStayAllAsTheyWere) {
    install_everything();
    const std::string before = tree_of(place);
    make_archive("new");
    const std::string mounted = preset_folder + "/presets";
    ASSERT_EQ(mount(mounted.c_str(), mounted.c_str(), nullptr, MS_BIND, nullptr), 0);
    EXPECT_EQ(install(GetParam(), folder, everything()), read_only);
    ASSERT_EQ(umount(mounted.c_str()), 0);
    EXPECT_EQ(tree_of(place), before);
}

// There is room for the bundle, and at first not for an item.
TEST_P(Items, OnADiskThatIsFullLeaveEverythingAsItWas) {
    install_everything();
    const std::string old = tree_of(place);
    make_archive("new");
    int refused = 0;
    for (int blocks = 0;; ++blocks) {
        ASSERT_LT(blocks, 100);
        ASSERT_EQ(mount("tmpfs", clap_folder.c_str(), "tmpfs", 0, "size=1m,mode=755"), 0);
        support::write_file(clap_folder + "/tilt.clap",
                            support::output_of({"sh", "-c", "yes old | head -c 5000"}));
        const std::string before = tree_of(place);
        const std::string size = "size=" + std::to_string(8192 + 4096 * blocks);
        ASSERT_EQ(mount("tmpfs", clap_folder.c_str(), "tmpfs", MS_REMOUNT, size.c_str()), 0);
        const int status = install(GetParam(), folder, everything());
        if (status == 0) {
            expect_version("new");
            ASSERT_EQ(umount(clap_folder.c_str()), 0);
            break;
        }
        EXPECT_EQ(status, no_room);
        EXPECT_EQ(tree_of(place), before);
        ASSERT_EQ(umount(clap_folder.c_str()), 0);
        EXPECT_EQ(tree_of(place), old);
        ++refused;
    }
    EXPECT_GE(refused, 1);
}

} // namespace
