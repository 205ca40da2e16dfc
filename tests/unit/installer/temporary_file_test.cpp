// temporary_file_test.cpp: nothing that stands at the name of a temporary file is ever written to.
#include "installer/temporary_file.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

namespace fs = std::filesystem;

class TemporaryFile : public testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/zeph-temporary-file-test-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        folder_ = pattern;
        path_ = folder_ / "data";
        precious_ = folder_ / "precious";
        std::ofstream(precious_) << "precious";
    }

    void TearDown() override { fs::remove_all(folder_); }

    // Tries to write to the name; true when a file could be made.
    bool write_there() const {
        std::FILE* file = temporary_file_create(path_.c_str());
        if (file == nullptr) {
            return false;
        }
        std::fputs("payload", file);
        return temporary_file_close(file);
    }

    static std::string content(const fs::path& path) {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    fs::path folder_;
    fs::path path_;
    fs::path precious_;
};

TEST_F(TemporaryFile, IsMadeForTheUserAlone) {
    umask(0);
    ASSERT_TRUE(write_there());
    struct stat status {};
    ASSERT_EQ(stat(path_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    EXPECT_EQ(content(path_), "payload");
}

TEST_F(TemporaryFile, ReplacesALeftoverOfItsOwn) {
    std::ofstream(path_) << "a longer leftover of a killed run";
    ASSERT_TRUE(write_there());
    EXPECT_EQ(content(path_), "payload");
}

TEST_F(TemporaryFile, NeverFollowsASymbolicLink) {
    fs::create_symlink(precious_, path_);
    EXPECT_FALSE(write_there());
    EXPECT_EQ(content(precious_), "precious");
}

TEST_F(TemporaryFile, NeverMakesWhatADanglingLinkNames) {
    fs::create_symlink(folder_ / "not-there", path_);
    EXPECT_FALSE(write_there());
    EXPECT_FALSE(fs::exists(folder_ / "not-there"));
}

TEST_F(TemporaryFile, NeverWritesToAHardLink) {
    fs::create_hard_link(precious_, path_);
    EXPECT_FALSE(write_there());
    EXPECT_EQ(content(precious_), "precious");
}

TEST_F(TemporaryFile, NeverWaitsForAPipe) {
    ASSERT_EQ(mkfifo(path_.c_str(), 0666), 0);
    EXPECT_FALSE(write_there());
}

TEST_F(TemporaryFile, IsNotMadeWhereAFolderStands) {
    fs::create_directory(path_);
    EXPECT_FALSE(write_there());
    EXPECT_TRUE(fs::is_directory(path_));
}

TEST_F(TemporaryFile, NeverReplacesAnotherUsersFile) {
    if (getuid() != 0) {
        GTEST_SKIP() << "only root can give a file to another user";
    }
    std::ofstream(path_) << "theirs";
    ASSERT_EQ(chown(path_.c_str(), 12345, 12345), 0);
    EXPECT_FALSE(write_there());
    EXPECT_EQ(content(path_), "theirs");
}

TEST(TemporaryFileClose, ReportsAFullDisk) {
    std::FILE* file = std::fopen("/dev/full", "wb");
    ASSERT_NE(file, nullptr);
    std::fputs("payload", file);
    EXPECT_FALSE(temporary_file_close(file));
}

} // namespace
