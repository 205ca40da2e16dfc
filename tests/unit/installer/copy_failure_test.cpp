// copy_failure_test.cpp: what a failure is called, that it fits the panel, and room on a disk.
#include "installer/copy_failure.h"

#include "installer/disk_room.h"
#include "installer/install_steps.h"
#include "privilege/auth_method.h"
#include "support/worlds/private_world.h"

#include <gtest/gtest.h>

#include <sys/mount.h>

#include <cstring>
#include <fstream>
#include <string>

namespace {

constexpr std::size_t longest_panel_line = 62; // bytes

std::string text_of(CommandOutcome outcome, std::int32_t exit_status = 0,
                    std::int32_t auth_method = auth_method_sudo) {
    const char* text = copy_failure_text({1, {outcome, exit_status}}, auth_method);
    EXPECT_LE(text != nullptr ? std::strlen(text) : 0, longest_panel_line);
    return text != nullptr ? text : "";
}

TEST(CopyFailure, IsSaidInThePersonsWords) {
    EXPECT_EQ(text_of(CommandOutcome::failed, step_no_room), "There is no room left on the disk");
    EXPECT_EQ(text_of(CommandOutcome::failed, step_read_only), "The folder is read-only");
    EXPECT_EQ(text_of(CommandOutcome::failed, step_in_the_way),
              "Something else of the same name is in the way");
    EXPECT_EQ(text_of(CommandOutcome::failed, step_not_whole), "The files did not arrive whole");
    EXPECT_EQ(text_of(CommandOutcome::failed, step_no_folder), "The folder is not there any more");
    EXPECT_EQ(text_of(CommandOutcome::failed, step_interrupted), "The copying was interrupted");
    EXPECT_EQ(text_of(CommandOutcome::succeeded, 137), "The copying was interrupted");
    EXPECT_EQ(text_of(CommandOutcome::no_terminal), "No terminal is left for asking the password");
}

TEST(CopyFailure, ThatIsARefusalNamesWhoRefuses) {
    for (const auto& [method, name] :
         {std::pair{auth_method_sudo, "sudo"}, std::pair{auth_method_su, "su"}}) {
        const std::string text = std::string(name) + " does not allow it";
        EXPECT_EQ(text_of(CommandOutcome::refused, 0, method), text);
        EXPECT_EQ(text_of(CommandOutcome::failed, 1, method), text);
        EXPECT_EQ(text_of(CommandOutcome::failed, step_not_allowed, method), text);
    }
}

TEST(CopyFailure, OfOnePersonNamesNeitherSudoNorSu) {
    EXPECT_EQ(text_of(CommandOutcome::failed, 1, auth_method_own), "It is not allowed");
    EXPECT_EQ(text_of(CommandOutcome::no_terminal, 0, auth_method_own),
              "No terminal is left for the commands");
    EXPECT_LE(std::strlen(no_home_text), longest_panel_line);
}

TEST(CopyFailure, ThatIsNoneOrACancelHasNoWords) {
    EXPECT_EQ(copy_failure_text({0, {CommandOutcome::succeeded}}, auth_method_sudo), nullptr);
    EXPECT_EQ(text_of(CommandOutcome::succeeded), "");
    EXPECT_EQ(text_of(CommandOutcome::cancelled), "");
}

TEST(DiskRoom, IsToldToTheBlock) {
    const support::PrivateWorld world;
    ASSERT_EQ(mount("tmpfs", "/tmp", "tmpfs", 0, "size=40k"), 0);
    EXPECT_TRUE(has_room("/tmp", 40960, Writer::person));
    EXPECT_FALSE(has_room("/tmp", 40961, Writer::root));
    std::ofstream("/tmp/file") << "some";
    EXPECT_TRUE(has_room("/tmp", 36864, Writer::root));
    EXPECT_FALSE(has_room("/tmp", 36865, Writer::person));
    EXPECT_TRUE(has_room("/tmp/nowhere", 1 << 30, Writer::root));
    EXPECT_TRUE(has_room("/proc", 1 << 30, Writer::root)); // which has no size
}

TEST(DiskRoom, IsAddedUpForFoldersOnOneDisk) {
    const support::PrivateWorld world;
    ASSERT_EQ(mount("tmpfs", "/tmp", "tmpfs", 0, "size=40k"), 0);
    RoomWanted wanted[] = {{"/tmp/to/be/made", 20480}, {"/proc", 1 << 30}, {"/tmp", 20480}};
    EXPECT_TRUE(has_room_for_all(wanted, 3, Writer::root));
    wanted[0].bytes += 1;
    EXPECT_FALSE(has_room_for_all(wanted, 3, Writer::root));
    EXPECT_TRUE(has_room_for_all(wanted, 2, Writer::root));
}

} // namespace
