// install_steps_test.cpp: old and new beside each other, and what is left when a step cannot be
// done.
#include "steps/step_run.h"
#include "support/worlds/private_world.h"

#include <gtest/gtest.h>

#include <sys/mount.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

namespace fs = std::filesystem;

using namespace steps;

namespace {

// A folder whose name a shell would take apart.
const std::string folder = "/tmp/My 'own' \"plug-ins\" $(touch trap)\\n\n& *";
const std::string installed = folder + "/" + bundle;

// The archive of a version: a library of so many bytes, a manifest, presets.
void make_archive(const std::string& word, const std::string& size = "3000") {
    prepare("rm -rf /tmp/made && mkdir -p /tmp/made/tilt.lv2/presets && cd /tmp/made && "
            "yes " +
            word + " | head -c " + size +
            " > tilt.lv2/tilt.so && "
            "echo " +
            word +
            " > tilt.lv2/manifest.ttl && "
            "echo " +
            word +
            " > 'tilt.lv2/presets/a \"b\" c' && "
            "ln -s manifest.ttl tilt.lv2/link && "
            "tar -czf " +
            archive +
            " --owner=root --group=root --mode=go-w tilt.lv2 && "
            "rm -rf /tmp/made");
}

class InstallSteps : public testing::TestWithParam<std::vector<std::string>> {
protected:
    InstallSteps() {
        fs::create_directory(folder);
        make_archive("old");
        EXPECT_EQ(install(GetParam(), folder), 0);
        support::write_file(installed + "/presets/of mine", "mine");
        support::write_file(installed + "/my\nfolder/deep/file", "mine");
        fs::create_symlink("nowhere", installed + "/.dangling");
        before_ = tree_of(folder);
        make_archive("new");
    }

    static std::string after_upgrade() {
        EXPECT_EQ(install(GetParam(), folder), 0);
        return tree_of(folder);
    }

    void expect_untouched() const { EXPECT_EQ(tree_of(folder), before_); }

    std::string before_;

private:
    support::PrivateWorld world_;
};

INSTANTIATE_TEST_SUITE_P(In, InstallSteps, testing::ValuesIn(all_shells),
                         [](const auto& shell) { return shell.param.front(); });

TEST_P(InstallSteps, ReplaceTheOldVersionAndKeepWhatIsNotOurs) {
    EXPECT_EQ(install(GetParam(), folder), 0);
    EXPECT_EQ(support::output_of({"cat", installed + "/manifest.ttl"}), "new\n");
    EXPECT_EQ(support::output_of({"cat", installed + "/presets/a \"b\" c"}), "new\n");
    EXPECT_EQ(support::output_of({"cat", installed + "/presets/of mine"}), "mine");
    EXPECT_EQ(support::output_of({"cat", installed + "/my\nfolder/deep/file"}), "mine");
    EXPECT_EQ(fs::read_symlink(installed + "/.dangling"), "nowhere");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
    EXPECT_FALSE(fs::exists("trap"));
}

TEST_P(InstallSteps, PutNothingInPlaceBeforeItIsAllThere) {
    ASSERT_EQ(run_step(GetParam(), "put_beside", folder), 0);
    EXPECT_EQ(support::output_of({"cat", installed + "/manifest.ttl"}), "old\n");
    EXPECT_EQ(fs::status(folder + "/.tilt-new").permissions(), fs::perms::owner_all);
    EXPECT_EQ(run_step(GetParam(), "abandon", folder), 0);
    expect_untouched();
    EXPECT_EQ(run_step(GetParam(), "move_into_place", folder), not_whole);
    expect_untouched();
}

// From a disk without any room to one on which everything fits.
TEST_P(InstallSteps, OnADiskThatIsFullLeaveTheOldVersion) {
    const std::string expected = after_upgrade();
    int refused = 0;
    for (int blocks = 0;; ++blocks) {
        ASSERT_LT(blocks, 100);
        ASSERT_EQ(mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=1m"), 0);
        make_archive("old");
        ASSERT_EQ(install(GetParam(), folder), 0);
        support::write_file(installed + "/presets/of mine", "mine");
        support::write_file(installed + "/my\nfolder/deep/file", "mine");
        fs::create_symlink("nowhere", installed + "/.dangling");
        EXPECT_EQ(tree_of(folder), before_);
        const auto used = fs::space(folder).capacity - fs::space(folder).free;
        const std::string size = "size=" + std::to_string(used + 4096UL * unsigned(blocks));
        ASSERT_EQ(mount("tmpfs", folder.c_str(), "tmpfs", MS_REMOUNT, size.c_str()), 0);
        make_archive("new");
        const int status = install(GetParam(), folder);
        const std::string tree = tree_of(folder);
        ASSERT_EQ(umount(folder.c_str()), 0);
        if (status == 0) {
            EXPECT_EQ(tree, expected);
            break;
        }
        EXPECT_EQ(status, no_room);
        EXPECT_EQ(tree, before_);
        ++refused;
    }
    EXPECT_GE(refused, 3);
}

// The same with too few names: the disk has room, but for no more files.
TEST_P(InstallSteps, OnADiskThatTakesNoMoreFilesLeaveTheOldVersion) {
    const std::string expected = after_upgrade();
    int refused = 0;
    for (int names = 8;; ++names) {
        ASSERT_LT(names, 100);
        const std::string size = "size=1m,nr_inodes=" + std::to_string(names);
        ASSERT_EQ(mount("tmpfs", folder.c_str(), "tmpfs", 0, size.c_str()), 0);
        make_archive("old");
        if (install(GetParam(), folder) == 0) {
            make_archive("new");
            const std::string old = tree_of(folder);
            const int status = install(GetParam(), folder);
            if (status != 0) {
                EXPECT_EQ(status, no_room);
                EXPECT_EQ(tree_of(folder), old);
                ++refused;
            } else {
                ASSERT_EQ(umount(folder.c_str()), 0);
                break;
            }
        }
        ASSERT_EQ(umount(folder.c_str()), 0);
    }
    EXPECT_GE(refused, 3);
}

TEST_P(InstallSteps, InAReadOnlyFolderLeaveTheOldVersion) {
    ASSERT_EQ(mount(folder.c_str(), folder.c_str(), nullptr, MS_BIND, nullptr), 0);
    ASSERT_EQ(mount(nullptr, folder.c_str(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr),
              0);
    EXPECT_EQ(run_step(GetParam(), "put_beside", folder), read_only);
    expect_untouched();
    ASSERT_EQ(umount(folder.c_str()), 0);
    ASSERT_EQ(run_step(GetParam(), "put_beside", folder), 0);
    ASSERT_EQ(mount(folder.c_str(), folder.c_str(), nullptr, MS_BIND, nullptr), 0);
    ASSERT_EQ(mount(nullptr, folder.c_str(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr),
              0);
    EXPECT_EQ(run_step(GetParam(), "move_into_place", folder), read_only);
    ASSERT_EQ(umount(folder.c_str()), 0);
    EXPECT_EQ(run_step(GetParam(), "abandon", folder), 0);
    expect_untouched();
}

// Of a folder that something is mounted on nothing can be moved away.
TEST_P(InstallSteps, ThatCannotMoveTheOldVersionAwayLeaveIt) {
    ASSERT_EQ(mount(installed.c_str(), installed.c_str(), nullptr, MS_BIND, nullptr), 0);
    EXPECT_EQ(install(GetParam(), folder), read_only);
    ASSERT_EQ(umount(installed.c_str()), 0);
    expect_untouched();
}

TEST_P(InstallSteps, LeaveWhatIsInTheWay) {
    fs::remove(installed + "/tilt.so");
    support::write_file(installed + "/tilt.so/full", "a folder of somebody's");
    before_ = tree_of(folder);
    EXPECT_EQ(install(GetParam(), folder), in_the_way);
    expect_untouched();
}

TEST_P(InstallSteps, WithoutAFolderOrWithAFileInItsPlaceSaySo) {
    EXPECT_EQ(install(GetParam(), "/tmp/nowhere"), no_folder);
    support::write_file("/tmp/file", "a file");
    EXPECT_EQ(install(GetParam(), "/tmp/file"), in_the_way);
    EXPECT_FALSE(fs::exists("/tmp/nowhere"));
}

TEST_P(InstallSteps, OfADamagedArchiveLeaveTheOldVersion) {
    fs::resize_file(archive, fs::file_size(archive) - 40);
    EXPECT_EQ(install(GetParam(), folder), not_whole);
    expect_untouched();
    fs::remove(archive);
    EXPECT_EQ(install(GetParam(), folder), not_whole);
    expect_untouched();
}

// A tar that tears a file, as a failing disk would, and says nothing.
TEST_P(InstallSteps, CompareWhatHasArrived) {
    const std::string real = support::output_of({"sh", "-c", "command -v tar"});
    support::install_program("/usr/local/bin/real-tar", real.substr(0, real.size() - 1));
    support::install_script("/usr/local/bin/tar",
                            "#!/bin/sh\nreal-tar \"$@\" || exit\n"
                            "[ $2 != -xf ] || echo torn > tilt.lv2/manifest.ttl\n");
    EXPECT_EQ(install(GetParam(), folder), not_whole);
    expect_untouched();
}

// Who is not root owns what arrives, whatever the archive says; all else is compared.
TEST_P(InstallSteps, OfOnePersonCompareAllButTheOwner) {
    const std::string own = "/tmp/own";
    fs::create_directory(own);
    ASSERT_EQ(chown(own.c_str(), 65534, 65534), 0);
    prepare(std::string("chmod 755 /tmp && chmod 644 ") + archive);
    const auto put_beside = [&] {
        support::ChildProcess child({.command = step_command(GetParam(), "put_beside", own),
                                     .uid = 65534,
                                     .gid = 65534,
                                     .working_directory = "/"});
        const auto end = child.wait_for_end();
        return end && end->exit_status ? *end->exit_status : -1;
    };
    EXPECT_EQ(put_beside(), 0);
    const std::string real = support::output_of({"sh", "-c", "command -v tar"});
    support::install_program("/usr/local/bin/real-tar", real.substr(0, real.size() - 1));
    for (const char* harm : {"echo torn > tilt.lv2/manifest.ttl", "rm tilt.lv2/link",
                             "chmod 600 tilt.lv2/tilt.so", "rm -r tilt.lv2/presets"}) {
        support::install_script("/usr/local/bin/tar",
                                "#!/bin/sh\nreal-tar \"$@\" || exit\n[ $2 != -xf ] || " +
                                    std::string(harm) + "\n");
        EXPECT_EQ(put_beside(), not_whole) << harm;
        EXPECT_TRUE(fs::is_empty(own)) << harm;
    }
}

// The terminal is hung up on while tar waits for the archive.
TEST_P(InstallSteps, ThatAreCutOffTidyUp) {
    fs::remove(archive);
    prepare(std::string("mkfifo ") + archive);
    support::ChildProcess child(
        {.command = step_command(GetParam(), "put_beside", folder), .terminal = true});
    ASSERT_TRUE(support::wait_until([] { return fs::exists(folder + "/.tilt-new"); }));
    ASSERT_EQ(kill(-child.process_id(), SIGHUP), 0);
    const auto end = child.wait_for_end();
    ASSERT_TRUE(end && end->exit_status);
    EXPECT_TRUE(*end->exit_status == interrupted || *end->exit_status == not_whole);
    expect_untouched();
}

// What a loss of power leaves at the worst moment.
TEST_P(InstallSteps, PutBackWhatWasCutOffBetweenOldAndNew) {
    ASSERT_EQ(run_step(GetParam(), "put_beside", folder), 0);
    fs::create_directory(folder + "/.tilt-old");
    fs::rename(installed, folder + "/.tilt-old/" + bundle);
    fs::remove(archive);
    EXPECT_EQ(install(GetParam(), folder), not_whole);
    expect_untouched();
}

TEST_P(InstallSteps, WithoutLeaveToRunProgramsSaySo) {
    support::hide_program("/usr/bin/env");
    EXPECT_EQ(install(GetParam(), folder), not_allowed);
    expect_untouched();
}

} // namespace
