// uninstall_test.cpp: the list of what was installed, the script that removes it, and the version
// that comes after.
#include "steps/step_run.h"
#include "support/worlds/private_world.h"
#include "support/worlds/small_disk.h"

#include <gtest/gtest.h>

#include <sys/mount.h>

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

using namespace steps;

namespace {

const std::string place = "/tmp/place";
const std::string folder = place + "/My 'own' \"plug-ins\" $(touch trap)\\n\n& * ";
const std::string elsewhere = place + "/else\nwhere\n";
const std::string prefix = place + "/pre fix";
const std::string uninstaller = prefix + "/bin/uninstall-tilt";
const std::string list = prefix + "/share/uninstall-tilt/installed";

// The archive of a version, with one file more of that name.
void make_archive(const std::string& word, const std::string& more) {
    prepare("rm -rf /tmp/made && mkdir -p /tmp/made/tilt.lv2/presets /tmp/made/tilt.lv2/empty && "
            "cd /tmp/made && echo " +
            word +
            " > tilt.lv2/tilt.so && "
            "echo same > tilt.lv2/manifest.ttl && "
            "echo " +
            word + " > 'tilt.lv2/presets/" + more +
            "' && "
            "echo " +
            word +
            " > 'tilt.lv2/presets/ a \"b\" \\n\n c ' && "
            "ln -s 'manifest.ttl' 'tilt.lv2/link of " +
            word +
            "' && "
            "tar -czf " +
            archive +
            " --owner=root --group=root --mode=go-w tilt.lv2 && "
            "rm -rf /tmp/made");
}

class Uninstaller : public testing::TestWithParam<std::vector<std::string>> {
protected:
    Uninstaller() {
        fs::create_directories(folder);
        fs::create_directories(elsewhere);
        fs::create_directories(place + "/shared");
        support::write_file("/tmp/icon", "an icon");
        make_archive("old", "dropped");
        bare_ = tree_of(place);
    }

    static Keeping keeping() {
        return {prefix, {"/tmp/icon", place + "/shared/icon.png", "folder", place + "/presets"}};
    }

    // With what other steps of the plan make.
    void install_version(const std::string& where = folder) {
        ASSERT_EQ(install(GetParam(), where, keeping()), 0);
        prepare("cp /tmp/icon " + place + "/shared/icon.png && mkdir -p " + place + "/presets");
    }

    // Runs the script as it was left; its exit status. What it says is in said_.
    int uninstall(const std::vector<std::string>& options = {}) {
        std::vector<std::string> command = GetParam();
        command.push_back(uninstaller);
        command.insert(command.end(), options.begin(), options.end());
        support::ChildProcess child({.command = command});
        const auto end = child.wait_for_end();
        said_ = child.output() + child.error_output();
        return end && end->exit_status ? *end->exit_status : -1;
    }

    // As it is in the sources.
    static std::string text_of_uninstaller() {
        return support::output_of({"cat", "resources/steps/uninstall.sh"});
    }

    bool says(const std::string& text) const { return said_.find(text) != std::string::npos; }

    std::string bare_;
    std::string said_;

private:
    support::PrivateWorld world_;
};

INSTANTIATE_TEST_SUITE_P(In, Uninstaller, testing::ValuesIn(all_shells),
                         [](const auto& shell) { return shell.param.front(); });

TEST_P(Uninstaller, LeavesTheMachineAsItWas) {
    install_version();
    EXPECT_NE(tree_of(place), bare_);
    EXPECT_EQ(uninstall(), 0);
    EXPECT_EQ(said_, "uninstall-tilt: removed\n");
    EXPECT_EQ(tree_of(place), bare_);
    EXPECT_FALSE(fs::exists("trap"));
}

// As a person runs it.
TEST_P(Uninstaller, IsAProgramThatFindsItsListByItsOwnPlace) {
    install_version();
    EXPECT_EQ(fs::status(uninstaller).permissions(), fs::perms(0755));
    fs::create_directories("/usr/local/share");
    ASSERT_EQ(mount(prefix.c_str(), "/usr/local", nullptr, MS_BIND, nullptr), 0);
    EXPECT_EQ(support::output_of({"sh", "-c", "cd / && uninstall-tilt"}),
              "uninstall-tilt: removed\n");
    ASSERT_EQ(umount("/usr/local"), 0);
    EXPECT_EQ(fs::exists(folder + "/" + bundle), false);
}

TEST_P(Uninstaller, NamesEachFileInTheListWithSizeAndSum) {
    install_version();
    const std::string text = support::output_of({"cat", list});
    const std::string sum = support::output_of({"sh", "-c", "echo same | sha256sum"}).substr(0, 64);
    EXPECT_NE(text.find("file 5 " + sum + " " + place + "/My 'own'"), std::string::npos) << text;
    EXPECT_NE(text.find("/presets/ a \"b\" \\\\n\\n c \n"), std::string::npos) << text;
}

TEST_P(Uninstaller, LeavesAloneWhatWasChangedAndForceRemovesIt) {
    install_version();
    const std::string installed = folder + "/" + bundle;
    support::write_file(installed + "/manifest.ttl", "changed");
    fs::remove(installed + "/link of old");
    fs::create_symlink("elsewhere", installed + "/link of old");
    support::write_file(installed + "/presets/of mine", "mine");
    EXPECT_EQ(uninstall(), 1);
    EXPECT_TRUE(says("left alone, as it was changed since: " + installed + "/manifest.ttl\n"))
        << said_;
    EXPECT_TRUE(says("left alone, as it was changed since: " + installed + "/link of old\n"));
    EXPECT_TRUE(says("stays, as there is more in it: " + installed + "/presets\n"));
    EXPECT_TRUE(says("what is left can be removed with --force\n"));
    EXPECT_FALSE(fs::exists(installed + "/tilt.so"));
    EXPECT_EQ(uninstall(), 1); // a second time no differently
    EXPECT_EQ(support::output_of({"cat", installed + "/manifest.ttl"}), "changed");
    EXPECT_EQ(uninstall({"--force"}), 0) << said_;
    EXPECT_FALSE(fs::exists(installed + "/manifest.ttl"));
    EXPECT_EQ(support::output_of({"cat", installed + "/presets/of mine"}), "mine");
    EXPECT_FALSE(fs::exists(uninstaller));
    fs::remove_all(installed);
    EXPECT_EQ(tree_of(place), bare_);
}

TEST_P(Uninstaller, RemovesNothingThroughALinkOrInPlaceOfAFile) {
    install_version();
    const std::string installed = folder + "/" + bundle;
    fs::rename(installed, place + "/precious");
    fs::create_symlink(place + "/precious", installed);
    EXPECT_EQ(uninstall({"--force"}), 1);
    EXPECT_TRUE(says("left alone, as it is in another folder now: " + installed + "/tilt.so\n"))
        << said_;
    EXPECT_TRUE(fs::exists(place + "/precious/tilt.so"));
    fs::remove(installed);
    fs::rename(place + "/precious", installed);
    fs::remove(installed + "/tilt.so");
    support::write_file(installed + "/tilt.so/full", "mine");
    EXPECT_EQ(uninstall({"--force"}), 1);
    EXPECT_TRUE(says("left alone, as it is a folder now: " + installed + "/tilt.so\n")) << said_;
    EXPECT_TRUE(fs::exists(installed + "/tilt.so/full"));
}

TEST_P(Uninstaller, OfAListThatWasEditedDoesWhatItUnderstands) {
    install_version();
    support::write_file("/tmp/precious", "precious");
    std::ofstream(list, std::ios::app) << "\nfile\nfile 8 0 /tmp/precious\nrm -rf /\n\x01\x02"
                                          "file x y ../../tmp/precious\nfile $(id) \\ /tmp/precious"
                                          "\nfolder 0 0 /tmp\nfile 1 1 /tmp/\\c\nlink";
    EXPECT_EQ(uninstall(), 1);
    EXPECT_TRUE(says("not understood, nothing done: rm -rf /\n")) << said_;
    EXPECT_TRUE(says("left alone, as it was changed since: /tmp/precious\n"));
    EXPECT_TRUE(fs::exists("/tmp/precious"));
    EXPECT_FALSE(fs::exists(folder + "/" + bundle));
    fs::remove(list);
    EXPECT_EQ(uninstall(), 0);
    EXPECT_TRUE(says("nothing is installed, as there is no ")) << said_;
    EXPECT_EQ(uninstall({"--all"}), 2);
    EXPECT_TRUE(says("usage: uninstall-tilt [--force]\n"));
}

TEST_P(Uninstaller, OfALaterVersionTakesAwayWhatItDoesNotHave) {
    install_version();
    const std::string presets = folder + "/" + bundle + "/presets";
    support::write_file(presets + "/of mine", "mine");
    make_archive("new", "added");
    install_version();
    EXPECT_FALSE(fs::exists(presets + "/dropped"));
    EXPECT_FALSE(fs::exists(fs::symlink_status(folder + "/" + bundle + "/link of old")));
    EXPECT_TRUE(fs::exists(presets + "/added"));
    EXPECT_TRUE(fs::exists(folder + "/" + bundle + "/manifest.ttl"));
    EXPECT_EQ(support::output_of({"cat", presets + "/of mine"}), "mine");
    fs::remove(presets + "/of mine");
    EXPECT_EQ(uninstall(), 0) << said_;
    EXPECT_EQ(tree_of(place), bare_);
}

TEST_P(Uninstaller, OfALaterVersionLeavesAloneWhatWasChanged) {
    install_version();
    const std::string presets = folder + "/" + bundle + "/presets";
    support::write_file(presets + "/dropped", "changed");
    make_archive("new", "added");
    install_version();
    EXPECT_EQ(support::output_of({"cat", presets + "/dropped"}), "changed");
    EXPECT_EQ(uninstall(), 1); // it is still on the list
    EXPECT_EQ(uninstall({"--force"}), 0) << said_;
    EXPECT_EQ(tree_of(place), bare_);
}

TEST_P(Uninstaller, OfAVersionThatGoesElsewhereTakesTheEarlierOneAway) {
    install_version(elsewhere);
    make_archive("new", "added");
    install_version();
    EXPECT_TRUE(fs::is_empty(elsewhere));
    EXPECT_TRUE(fs::exists(folder + "/" + bundle + "/manifest.ttl"));
    EXPECT_EQ(uninstall(), 0) << said_;
    EXPECT_EQ(tree_of(place), bare_);
}

// Wherever it ends, nothing of the earlier version, its list and its script has changed.
TEST_P(Uninstaller, OnADiskThatIsFullLeavesTheEarlierVersionAndItsList) {
    install_version();
    const std::string old = tree_of(place);
    make_archive("new", "added");
    EXPECT_EQ(install(GetParam(), folder, keeping()), 0);
    const std::string expected = tree_of(place);
    int refused = 0;
    for (int blocks = 0;; ++blocks) {
        ASSERT_LT(blocks, 100);
        ASSERT_EQ(mount("tmpfs", place.c_str(), "tmpfs", 0, "size=1m"), 0);
        for (const std::string& made : {folder, elsewhere, place + "/shared"}) {
            fs::create_directories(made);
        }
        make_archive("old", "dropped");
        install_version();
        EXPECT_EQ(tree_of(place), old);
        const auto used = fs::space(place).capacity - fs::space(place).free;
        const std::string size = "size=" + std::to_string(used + 4096UL * unsigned(blocks));
        ASSERT_EQ(mount("tmpfs", place.c_str(), "tmpfs", MS_REMOUNT, size.c_str()), 0);
        make_archive("new", "added");
        const int status = install(GetParam(), folder, keeping());
        const std::string tree = tree_of(place);
        ASSERT_EQ(umount(place.c_str()), 0);
        if (status == 0) {
            EXPECT_EQ(tree, expected);
            break;
        }
        EXPECT_EQ(status, no_room);
        EXPECT_EQ(tree, old);
        ++refused;
    }
    EXPECT_GE(refused, 3);
}

// A disk that takes a few more files, and not all that the list needs.
TEST_P(Uninstaller, ThatHasNoRoomForItsFoldersLeavesNone) {
    fs::create_directory(prefix);
    int refused = 0;
    for (int names = 2;; ++names) {
        ASSERT_LT(names, 100);
        const std::string size = "size=1m,nr_inodes=" + std::to_string(names);
        ASSERT_EQ(mount("tmpfs", prefix.c_str(), "tmpfs", 0, size.c_str()), 0);
        const std::string before = tree_of(place);
        const int status = install(GetParam(), folder, keeping());
        if (status != 0) {
            EXPECT_EQ(status, no_room);
            EXPECT_EQ(tree_of(place), before);
            ++refused;
        }
        ASSERT_EQ(umount(prefix.c_str()), 0);
        if (status == 0) {
            break;
        }
    }
    EXPECT_GE(refused, 4);
}

// Where the list and the script are on disks of their own, which may be full, too.
TEST_P(Uninstaller, OnADiskThatTakesNoMoreFilesLeavesTheEarlierVersionAndItsList) {
    const std::string dropped = folder + "/" + bundle + "/presets/dropped";
    for (const char* own : {"/bin", "/share"}) {
        fs::remove_all(folder + "/" + bundle);
        make_archive("old", "dropped");
        install_version();
        make_archive("new", "added");
        const std::string before = tree_of(place);
        int status = no_room;
        for (unsigned long count = 0; status == no_room && count < 20; ++count) {
            const support::SmallDisk disk(prefix + own);
            disk.leave_room_for_files(count);
            status = install(GetParam(), folder, keeping());
            if (status == no_room) {
                ASSERT_EQ(tree_of(place), before) << own << " with room for " << count;
                continue;
            }
            EXPECT_EQ(status, 0) << own << " with room for " << count;
            EXPECT_GT(count, 0U) << own;
            EXPECT_FALSE(fs::exists(dropped)) << own << " with room for " << count;
            EXPECT_EQ(support::output_of({"cat", uninstaller}), text_of_uninstaller());
            EXPECT_EQ(support::output_of({"find", prefix, "-name", "*new*"}), "");
        }
        EXPECT_EQ(status, 0) << own;
    }
}

TEST_P(Uninstaller, WithoutRoomForItselfIsNotLeftOut) {
    fs::create_directories(prefix + "/bin");
    const support::SmallDisk disk(prefix + "/bin");
    disk.leave_no_room();
    support::write_file(prefix + "/bin/last page", "x");
    const std::string before = tree_of(place);
    EXPECT_EQ(install(GetParam(), folder, keeping()), no_room);
    EXPECT_EQ(tree_of(place), before);
}

// Somebody may remove it to have room again.
TEST_P(Uninstaller, NeedsNoRoom) {
    install_version();
    const support::SmallDisk disk(prefix + "/share");
    disk.leave_room_for_files(0);
    support::write_file(folder + "/" + bundle + "/manifest.ttl", "changed");
    EXPECT_EQ(uninstall(), 1);
    EXPECT_TRUE(says("left alone, as it was changed since: ")) << said_;
    EXPECT_FALSE(fs::exists(folder + "/" + bundle + "/tilt.so"));
    EXPECT_EQ(uninstall({"--force"}), 0) << said_;
    EXPECT_FALSE(fs::exists(folder + "/" + bundle));
    EXPECT_FALSE(fs::exists(uninstaller));
}

TEST_P(Uninstaller, AFailedOrAbandonedInstallationLeavesNone) {
    ASSERT_EQ(run_step(GetParam(), "put_beside", folder, keeping()), 0);
    EXPECT_TRUE(fs::exists(list + ".new"));
    EXPECT_EQ(run_step(GetParam(), "abandon", folder, keeping()), 0);
    EXPECT_EQ(tree_of(place), bare_);
    fs::resize_file(archive, fs::file_size(archive) - 40);
    EXPECT_EQ(run_step(GetParam(), "put_beside", folder, keeping()), not_whole);
    EXPECT_EQ(tree_of(place), bare_);
}

TEST_P(Uninstaller, AsksForRoot) {
    install_version();
    prepare("chmod 755 /tmp '" + prefix + "' && chmod 755 " + place);
    support::ChildProcess child({.command = {"sh", uninstaller}, .uid = 65534, .gid = 65534});
    const auto end = child.wait_for_end();
    EXPECT_TRUE(end && end->exit_status == 1);
    EXPECT_EQ(child.error_output(), "uninstall-tilt: this is for root: sudo " + uninstaller + "\n");
    EXPECT_TRUE(fs::exists(list));
}

} // namespace
