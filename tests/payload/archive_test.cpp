// archive_test.cpp: what gzip and tar say of the archive that the installer carries.
#include "scratch_folder.h"
#include "support/child_process.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

using support::output_of;

TEST(PayloadArchive, HasTheFixedLength) {
    EXPECT_EQ(std::filesystem::file_size(payload_archive), 1058756U);
}

TEST(PayloadArchive, IsSoundAndUncompressesToTheFixedLength) {
    EXPECT_EQ(output_of({"gzip", "--test", payload_archive}), "");
    EXPECT_EQ(output_of({"sh", "-c", "gzip -dc \"$0\" | wc -c", payload_archive}), "5416960\n");
}

TEST(PayloadArchive, HoldsThePluginAloneOwnedByRoot) {
    EXPECT_EQ(
        output_of({"tar", "--list", "--verbose", "--utc", "--full-time", "-zf", payload_archive}),
        "-rw-rw-rw- root/root   5406136 2024-01-01 00:00:00 QB20.so\n");
    EXPECT_EQ(output_of({"tar", "--list", "--verbose", "--numeric-owner", "-zf", payload_archive})
                  .substr(0, 14),
              "-rw-rw-rw- 0/0");
}

TEST(PayloadArchive, UnpacksWithoutAWord) {
    const ScratchFolder folder;
    support::ChildProcess tar({.command = {"tar", "-xpf", payload_archive, "-C", folder.path()}});
    const auto end = tar.wait_for_end();
    ASSERT_TRUE(end.has_value());
    EXPECT_EQ(end->exit_status, 0);
    EXPECT_EQ(tar.output() + tar.error_output(), "");
    struct stat status {};
    ASSERT_EQ(stat(folder.file("QB20.so").c_str(), &status), 0);
    EXPECT_EQ(status.st_size, 5406136);
    EXPECT_EQ(status.st_mode & 07777U, 0666U);
}

TEST(PayloadArchive, NeedsOnlyTheOldestCLibrary) {
    const ScratchFolder folder;
    const std::string symbols = output_of({"objdump", "-T", unpack_plugin(folder)});
    EXPECT_NE(symbols.find("GLIBC_2.2.5"), std::string::npos);
    for (std::size_t at = symbols.find("GLIBC_"); at != std::string::npos;
         at = symbols.find("GLIBC_", at + 1)) {
        EXPECT_EQ(symbols.substr(at, 12), "GLIBC_2.2.5)");
    }
    EXPECT_EQ(symbols.find("CXX"), std::string::npos);
}
