// browser_hostile_test.cpp: closed folders, huge folders, short memory and two threads.

#include "display/widgets/browser_desk.h"
#include "display/widgets/browser_picture.h"
#include "gui/ORX/core/window_table.h"
#include "support/wait_until.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace {

// While it lives the program is an ordinary user, whom closed folders keep out.
class OrdinaryUser {
public:
    OrdinaryUser() : was_root_(geteuid() == 0) {
        if (was_root_) {
            EXPECT_EQ(seteuid(65534), 0);
        }
    }
    ~OrdinaryUser() {
        if (was_root_) {
            EXPECT_EQ(seteuid(0), 0);
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    bool was_root_;
};

// Memory of this program in kilobytes, as the kernel counts it.
long resident_kilobytes() {
    long pages = 0;
    long ignored = 0;
    FILE* file = std::fopen("/proc/self/statm", "re");
    EXPECT_EQ(std::fscanf(file, "%ld %ld", &ignored, &pages), 2);
    std::fclose(file);
    return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

// Whether the server still has it.
bool is_there(const BrowserDesk& desk, unsigned long pixmap) {
    xcb_connection_t* other = desk.view.connection();
    xcb_get_geometry_reply_t* reply = xcb_get_geometry_reply(
        other, xcb_get_geometry(other, static_cast<xcb_drawable_t>(pixmap)), nullptr);
    std::free(reply);
    return reply != nullptr;
}

TEST(BrowserPicture, OfTheListIsDrawnOnceAndGivenBackWithTheBrowser) {
    const TestFolder folder;
    BrowserDesk desk(folder.path());
    desk.open();
    EXPECT_TRUE(desk.dialog->list_band_drawn[0]) << "rows are drawn again with each step";
    const unsigned long picture = desk.dialog->list_pixmap;
    EXPECT_TRUE(is_there(desk, picture));
    folder_dialog_close(desk.dialog.get());
    EXPECT_FALSE(is_there(desk, picture)) << "the server keeps the picture of each folder seen";
}

TEST(BrowserClosedFolder, ThatCannotBeEnteredIsNotShown) {
    const TestFolder folder;
    folder.add_folder("closed");
    ASSERT_EQ(chmod(folder.path().c_str(), 0755), 0);
    ASSERT_EQ(chmod(folder.path_of("closed").c_str(), 0), 0);
    BrowserDesk desk(folder.path());
    desk.open();
    const OrdinaryUser ordinary;
    desk.click_row(2);
    expect_look(desk,
                {.path = folder.path(), .rows = {{".", true}, {"..", true}, {"closed", true}}});
    EXPECT_EQ(WorkingDirectory::now(), folder.path());
}

TEST(BrowserClosedFolder, ThatCannotBeReadShowsNothingOfTheFolderBefore) {
    for (const float scale : {1.0F, 1.5F}) {
        const TestFolder folder;
        folder.add_folder("unreadable");
        folder.add_files(100, "file");
        ASSERT_EQ(chmod(folder.path().c_str(), 0755), 0);
        ASSERT_EQ(chmod(folder.path_of("unreadable").c_str(), 0111), 0);
        BrowserDesk desk(folder.path(), {.scale = scale});
        desk.open();
        const OrdinaryUser ordinary;
        desk.click_row(2);
        const ExpectedBrowser empty{
            .path = folder.path_of("unreadable"), .rows = {}, .list = false};
        expect_look(desk, empty);
        desk.point_at(320, 200);
        desk.person.turn_wheel_down(3);
        desk.person.turn_wheel_up(1);
        desk.click(18 + 34, 82 + 24);
        expect_look(desk, empty);
        EXPECT_EQ(desk.scroll_offset(), 0);
        desk.click(40, 376);
        ASSERT_TRUE(desk.wait_for_accept());
        EXPECT_EQ(desk.accepted_path(), folder.path_of("unreadable"));
    }
}

TEST(BrowserHugeFolder, OfHundredThousandEntriesOpensAndKeepsMemorySmall) {
    const TestFolder folder;
    folder.add_folder("huge");
    for (int i = 0; i < 100; ++i) {
        folder.add_files(1000, "huge/" + std::to_string(i) + "-");
    }
    BrowserDesk desk(folder.path(), {.scale = 2.0F});
    desk.open();
    expect_folder(desk, folder.path());
    const long before = resident_kilobytes();
    desk.click_row(2);
    ASSERT_TRUE(support::wait_until([&] {
        const std::lock_guard<std::mutex> lock(desk.dialog->mutex);
        return desk.dialog->visible_count == 4096 && desk.dialog->list_device_height == 32767;
    }));
    // To the end and back by the thumb.
    desk.point_at(620, 88);
    desk.person.press_button();
    for (int y = 88; y < 350; y += 8) {
        desk.point_at(620, y);
    }
    desk.point_at(620, 420);
    ASSERT_TRUE(support::wait_until([&] { return desk.scroll_offset() == 32767 - (700 - 164); }));
    desk.person.release_button();
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) && !defined(__clang__)
    EXPECT_LE(resident_kilobytes() - before, 48 * 1024);
#else
    (void)before;
#endif
    desk.click(40, 376);
    ASSERT_TRUE(desk.wait_for_accept());
    EXPECT_EQ(desk.accepted_path(), folder.path_of("huge"));
}

TEST(BrowserHugeFolder, IsShownAsFarAsTheServersMemoryGoes) {
    const TestFolder folder;
    folder.add_folder("large");
    for (int i = 0; i < 4; ++i) {
        folder.add_files(1000, "large/" + std::to_string(i) + "-");
    }
    BrowserDesk desk(folder.path(), {.scale = 2.0F});
    desk.open();
    expect_folder(desk, folder.path());

    long pages = 0;
    FILE* file =
        std::fopen(("/proc/" + std::to_string(desk.server.process_id()) + "/statm").c_str(), "re");
    ASSERT_NE(file, nullptr);
    ASSERT_EQ(std::fscanf(file, "%ld", &pages), 1);
    std::fclose(file);
    const auto limit = static_cast<rlim_t>(pages * sysconf(_SC_PAGESIZE)) + (60UL << 20);
    const rlimit address_space{limit, limit};
    ASSERT_EQ(prlimit(desk.server.process_id(), RLIMIT_AS, &address_space, nullptr), 0);

    desk.click_row(2);
    ASSERT_TRUE(support::wait_until([&] {
        const std::lock_guard<std::mutex> lock(desk.dialog->mutex);
        return desk.dialog->visible_count == 4002;
    }));
    const support::Picture should = expected_picture(
        desk.text, 2.0F, browser_title,
        {.path = folder.path_of("large"), .rows = rows_of(folder.path_of("large"))});
    const support::Place list{36, 164, 1000, 536};
    EXPECT_TRUE(support::wait_until([&] {
        return support::count_differences(support::crop(desk.picture(), list),
                                          support::crop(should, list)) == 0;
    }));
    {
        const std::lock_guard<std::mutex> lock(desk.dialog->mutex);
        EXPECT_LT(desk.dialog->list_device_height, 32767);
        EXPECT_GE(desk.dialog->list_device_height, 536);
    }
    desk.point_at(320, 200);
    desk.person.turn_wheel_down(2);
    EXPECT_TRUE(support::wait_until([&] { return desk.scroll_offset() == 32; }));
}

TEST(BrowserThreads, OpeningAndClosingWhileThePersonClicks) {
    const TestFolder folder;
    folder.add_folder("a");
    folder.add_folder("a/b");
    folder.add_files(300, "file");
    BrowserDesk desk(folder.path());
    std::atomic<bool> stop{false};
    std::thread person([&] {
        // Anywhere over the dialog, as fast as it goes.
        for (unsigned i = 0; !stop; ++i) {
            const int x = 700 - 320 + static_cast<int>(i * 37 % 640);
            const int y = 480 - 216 + static_cast<int>(i * 53 % 432);
            desk.person.click_at(x, y, i % 7 == 0 ? support::wheel_down_button : 1);
        }
    });
    for (int round = 0; round < 15; ++round) {
        folder_dialog_open(desk.dialog.get());
        (void)folder_dialog_is_open(desk.dialog.get());
        if (round % 3 == 0) {
            folder_dialog_close(desk.dialog.get());
        } else {
            (void)support::wait_until([&] { return !folder_dialog_is_open(desk.dialog.get()); },
                                      std::chrono::milliseconds(300));
        }
    }
    stop = true;
    person.join();
    folder_dialog_close(desk.dialog.get());
    EXPECT_FALSE(folder_dialog_is_open(desk.dialog.get()));
}

TEST(BrowserThreads, TheLoopMayEndWhileItIsOpen) {
    const TestFolder folder;
    BrowserDesk desk(folder.path());
    desk.open();
    desk.end_loop();
    EXPECT_TRUE(desk.view.wait_until_gone(desk.window()));
}

TEST(BrowserWithoutWindow, AnswersWithACancelSoThatNobodyWaits) {
    const TestFolder folder;
    BrowserDesk desk(folder.path());
    std::vector<WindowId> windows;
    for (int i = 0; i < window_capacity; ++i) {
        windows.push_back(window_create_plain(desk.engine, 0, 0, 1, 1, nullptr, 1.0F));
    }
    folder_dialog_open(desk.dialog.get());
    EXPECT_EQ(desk.cancelled_count(), 1);
    EXPECT_FALSE(folder_dialog_is_open(desk.dialog.get()));
    for (const WindowId id : windows) {
        window_destroy(desk.engine, id);
    }
    desk.open();
    expect_look(desk, {.path = folder.path(), .rows = {{".", true}, {"..", true}}});
}

} // namespace
