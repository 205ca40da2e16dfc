// A /tmp that somebody has prepared: what is at the installer's names is never written to.

#include "end_to_end/expectations.h"
#include "end_to_end/installed_file.h"
#include "end_to_end/stages.h"
#include "faults/surroundings.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

namespace faults {
namespace {

namespace files = std::filesystem;

using namespace end_to_end;

constexpr const char* victim_text = "a letter that is not to be lost\n";
constexpr const char* new_file = "/tmp/made-through-a-link";

// What stands at the name when the installer comes to it. The links belong to the person, so that
// no rule of the system about other people's links helps.
enum class Obstacle {
    link_to_own_file,
    link_to_roots_file,
    neighbours_link_to_own_file,
    dangling_link,
    hard_link_of_own_file,
    hard_link_of_roots_file,
    own_pipe,
    own_folder,
    neighbours_file,
};

const char* obstacle_name(Obstacle obstacle) {
    switch (obstacle) {
    case Obstacle::link_to_own_file:
        return "LinkToOwnFile";
    case Obstacle::link_to_roots_file:
        return "LinkToRootsFile";
    case Obstacle::neighbours_link_to_own_file:
        return "NeighboursLinkToOwnFile";
    case Obstacle::dangling_link:
        return "DanglingLink";
    case Obstacle::hard_link_of_own_file:
        return "HardLinkOfOwnFile";
    case Obstacle::hard_link_of_roots_file:
        return "HardLinkOfRootsFile";
    case Obstacle::own_pipe:
        return "OwnPipe";
    case Obstacle::own_folder:
        return "OwnFolder";
    case Obstacle::neighbours_file:
        return "NeighboursFile";
    }
    return "";
}

constexpr Obstacle all_obstacles[] = {
    Obstacle::link_to_own_file,
    Obstacle::link_to_roots_file,
    Obstacle::neighbours_link_to_own_file,
    Obstacle::dangling_link,
    Obstacle::hard_link_of_own_file,
    Obstacle::hard_link_of_roots_file,
    Obstacle::own_pipe,
    Obstacle::own_folder,
    Obstacle::neighbours_file,
};

struct Prepared {
    std::string victim; // the file that would be overwritten; empty when there is none
    struct stat victim_before {};
    bool may_be_removed = true; // the name in /tmp is the person's own
};

// root's files lie in /tmp, where a hard link can be made, and are closed to the person.
Prepared prepare(const Scenario& scenario, Obstacle obstacle, const std::string& path) {
    const support::Account& person = scenario.account();
    const support::Account neighbour = support::add_account("neighbour", "No-matter-1");
    const std::string own = "/tmp/letter";
    const std::string roots = "/tmp/root-letter";
    support::write_file(own, victim_text, 0644);
    support::give_to(person, own);
    // Writable by all: only the installer's own care keeps it from being overwritten.
    support::write_file(roots, victim_text, 0666);
    Prepared prepared;
    switch (obstacle) {
    case Obstacle::link_to_own_file:
    case Obstacle::neighbours_link_to_own_file:
        prepared.victim = own;
        files::create_symlink(own, path);
        break;
    case Obstacle::link_to_roots_file:
        prepared.victim = roots;
        files::create_symlink(roots, path);
        break;
    case Obstacle::dangling_link:
        files::create_symlink(new_file, path);
        break;
    case Obstacle::hard_link_of_own_file:
        prepared.victim = own;
        files::create_hard_link(own, path);
        break;
    case Obstacle::hard_link_of_roots_file:
        prepared.victim = roots;
        files::create_hard_link(roots, path);
        break;
    case Obstacle::own_pipe:
        EXPECT_EQ(mkfifo(path.c_str(), 0644), 0);
        break;
    case Obstacle::own_folder:
        files::create_directory(path);
        break;
    case Obstacle::neighbours_file:
        prepared.victim = path;
        support::write_file(path, victim_text, 0666);
        break;
    }
    prepared.may_be_removed = obstacle != Obstacle::own_folder;
    if (obstacle == Obstacle::neighbours_link_to_own_file ||
        obstacle == Obstacle::neighbours_file) {
        support::give_to(neighbour, path);
        prepared.may_be_removed = false;
    } else if (obstacle == Obstacle::hard_link_of_roots_file) {
        prepared.may_be_removed = false;
    } else {
        support::give_to(person, path);
    }
    if (!prepared.victim.empty()) {
        EXPECT_EQ(stat(prepared.victim.c_str(), &prepared.victim_before), 0);
    }
    return prepared;
}

void expect_untouched(const Prepared& prepared) {
    EXPECT_FALSE(files::exists(new_file));
    if (prepared.victim.empty()) {
        return;
    }
    struct stat now {};
    ASSERT_EQ(stat(prepared.victim.c_str(), &now), 0);
    EXPECT_EQ(text_of(prepared.victim), victim_text);
    EXPECT_EQ(now.st_ino, prepared.victim_before.st_ino);
    EXPECT_EQ(now.st_mode, prepared.victim_before.st_mode);
    EXPECT_EQ(now.st_uid, prepared.victim_before.st_uid);
    EXPECT_EQ(now.st_mtim.tv_sec, prepared.victim_before.st_mtim.tv_sec);
    EXPECT_EQ(now.st_mtim.tv_nsec, prepared.victim_before.st_mtim.tv_nsec);
}

class ArchiveName : public testing::TestWithParam<Obstacle> {};

INSTANTIATE_TEST_SUITE_P(TakenBy, ArchiveName, testing::ValuesIn(all_obstacles),
                         [](const auto& obstacle) { return obstacle_name(obstacle.param); });

TEST_P(ArchiveName, IsNotWrittenToAndTheRunSaysSo) {
    Scenario scenario;
    const Prepared prepared = prepare(scenario, GetParam(), archive_path);
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.reach_last_screen();
    const support::Picture picture = scenario.picture_of(scenario.main_window());
    EXPECT_TRUE(line_reads(picture, 2, "** FATAL ERROR **"));
    EXPECT_TRUE(line_reads(picture, 3, "Unable to extract installer data"));
    expect_untouched(prepared);
    scenario.press_ok();
    EXPECT_EQ(scenario.finish().exit_status, 0);
    expect_untouched(prepared);
    EXPECT_FALSE(files::exists(lock_path));
    EXPECT_EQ(files::exists(files::symlink_status(archive_path)), !prepared.may_be_removed);
    EXPECT_EQ(plugin_in(scenario.account().home), std::nullopt);
    EXPECT_EQ(scenario.console(), console_text("sudo", {info("Password OK"),
                                                        info("Unpacking Files - 001027C4 Bytes")}));
}

TEST(ArchiveFile, OfAKilledRunIsReplacedAndIsPrivateToThePerson) {
    Scenario scenario;
    // Longer than the archive, so that a remainder would show.
    support::write_file(archive_path, std::string(3'000'000, 'x'), 0666);
    support::give_to(scenario.account(), archive_path);
    // A second name in the test's hand: the leftover's own bytes must go, not be written over.
    const int leftover = open(archive_path, O_RDONLY | O_CLOEXEC);
    ASSERT_GE(leftover, 0);
    reach(scenario, Stage::browser);
    struct stat archive {};
    ASSERT_EQ(lstat(archive_path, &archive), 0);
    EXPECT_EQ(archive.st_mode & 07777, 0600U);
    EXPECT_EQ(archive.st_uid, scenario.account().uid);
    EXPECT_EQ(archive.st_size, 1058756);
    char first = 0;
    EXPECT_EQ(pread(leftover, &first, 1, 0), 1);
    EXPECT_EQ(first, 'x') << "the leftover was written over instead of replaced";
    close(leftover);
    scenario.accept_folder();
    scenario.reach_last_screen();
    scenario.press_ok();
    EXPECT_TRUE(ended_clean(scenario.finish()));
    EXPECT_EQ(plugin_in(scenario.account().home), plugin_of_archive());
}

TEST(ArchiveFile, IsPrivateWhateverTheUmask) {
    Scenario scenario;
    start_through_shell(scenario, "umask 000");
    reach(scenario, Stage::unpacking);
    struct stat archive {};
    ASSERT_EQ(lstat(archive_path, &archive), 0);
    EXPECT_EQ(archive.st_mode & 07777, 0600U);
    scenario.installer().send_signal(SIGTERM);
    EXPECT_TRUE(ended_clean(scenario.finish()));
}

class LockName : public testing::TestWithParam<Obstacle> {};

INSTANTIATE_TEST_SUITE_P(TakenBy, LockName, testing::ValuesIn(all_obstacles),
                         [](const auto& obstacle) { return obstacle_name(obstacle.param); });

TEST_P(LockName, IsNotWrittenTo) {
    Scenario scenario;
    const Prepared prepared = prepare(scenario, GetParam(), lock_path);
    scenario.reach_main_window();
    if (GetParam() == Obstacle::dangling_link) {
        // Nothing is behind the name, so no other instance is known: the run goes on unlocked.
        scenario.wait_for("the password screen", [&] {
            return scenario.lines_shown(scenario.picture_of(scenario.main_window())) == "0 2 3";
        });
        scenario.give_password(user_password);
        scenario.reach_unpacking();
        expect_untouched(prepared);
        scenario.installer().send_signal(SIGTERM);
        EXPECT_EQ(scenario.finish().exit_status, 0);
        expect_untouched(prepared);
        EXPECT_FALSE(files::exists(archive_path));
        return;
    }
    scenario.reach_last_screen();
    EXPECT_EQ(scenario.lines_shown(scenario.picture_of(scenario.main_window())),
              "0 2 3 4 5 7 8 9 10");
    scenario.press_ok();
    EXPECT_EQ(scenario.finish().exit_status, 0);
    expect_untouched(prepared);
    EXPECT_TRUE(files::exists(files::symlink_status(lock_path))) << "another instance's lock stays";
}

} // namespace
} // namespace faults
