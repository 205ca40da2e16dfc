// payload_test.cpp: a cancel stops the unpacking at once.
#include "installer/payload.h"

#include "gui/ORX/widgets/progress_bar.h"
#include "installer/embedded_payload.h"
#include "installer/installer_state.h"
#include "support/wait_until.h"
#include "support/worlds/private_world.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

namespace {

constexpr const char* archive_path = "/tmp/zeph-installer-data.tar.gz";
constexpr std::size_t step = 8192; // bytes from one move of the bar to the next

class UnpackPayload : public testing::Test {
protected:
    UnpackPayload() {
        progress_bar_init(&bar_, nullptr, nullptr);
        installer.bar = &bar_;
    }
    ~UnpackPayload() override {
        installer.bar = nullptr;
        installer.cancel_requested = 0;
    }

    static bool bar_is_beyond(float fraction) {
        const std::lock_guard<std::mutex> lock(installer.screen_lock);
        return installer.bar->fraction > fraction;
    }

    // What is in the archive's file after a cancel that came once the bar had moved a little.
    static std::string unpacked_until_cancelled() {
        installer.cancel_requested = 0;
        progress_bar_set_fraction(installer.bar, 0.0F);
        std::thread canceller([] {
            EXPECT_TRUE(support::wait_until([] { return bar_is_beyond(0.1F); }));
            installer.cancel_requested = 1;
        });
        EXPECT_EQ(unpack_payload(), 1);
        canceller.join();
        return written();
    }

    static std::string written() {
        std::ifstream file(archive_path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    support::PrivateWorld world_;
    ProgressBar bar_{};
};

TEST_F(UnpackPayload, ACancelStopsItAtTheNextByte) {
    // The writer pauses after the first byte of each step, and the cancel falls into a pause; on a
    // busy machine it may come late and fall between two, then it is tried again.
    std::string bytes;
    EXPECT_TRUE(support::wait_until([&] {
        bytes = unpacked_until_cancelled();
        return bytes.size() % step == 1;
    }));
    EXPECT_GT(bytes.size(), step);
    ASSERT_LT(bytes.size(), static_cast<std::size_t>(zeph_payload_icon - zeph_payload_archive));
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), zeph_payload_archive,
                           [](char a, unsigned char b) { return a == static_cast<char>(b); }));
}

TEST_F(UnpackPayload, ACancelBeforeItLeavesTheArchiveEmpty) {
    installer.cancel_requested = 1;
    EXPECT_EQ(unpack_payload(), 1);
    EXPECT_TRUE(std::ifstream(archive_path).is_open());
    EXPECT_EQ(written(), "");
}

} // namespace
