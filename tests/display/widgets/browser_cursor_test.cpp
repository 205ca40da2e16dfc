// browser_cursor_test.cpp: the cursor while the browser reads a folder.

#include <gtest/gtest.h> // first: Xlib's macros would break it

#include "display/widgets/browser_desk.h"
#include "display/widgets/browser_picture.h"
#include "support/plain_cursors.h"
#include "support/wait_until.h"

#include <dirent.h>
#include <dlfcn.h>

#include <cstdlib>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <X11/extensions/Xfixes.h>

namespace {

std::mutex watcher_mutex;
// Called before a folder is opened or closed anywhere in this program.
std::function<void()> folder_watcher;

void tell_watcher() {
    const std::lock_guard<std::mutex> lock(watcher_mutex);
    if (folder_watcher) {
        folder_watcher();
    }
}

void set_watcher(std::function<void()> watcher) {
    const std::lock_guard<std::mutex> lock(watcher_mutex);
    folder_watcher = std::move(watcher);
}

} // namespace

// In front of the C library's own, so that a look at the cursor cannot come too late.
extern "C" DIR* opendir(const char* name) {
    using Function = DIR* (*)(const char*);
    static const auto open_folder = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "opendir"));
    tell_watcher();
    return open_folder(name);
}

extern "C" int closedir(DIR* folder) {
    using Function = int (*)(DIR*);
    static const auto close_folder = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "closedir"));
    tell_watcher();
    return close_folder(folder);
}

namespace {

using Serials = std::vector<unsigned long>;

// Sees every change of the cursor under the pointer, however short, on a connection of its own.
class CursorEyes {
public:
    explicit CursorEyes(const std::string& display_name)
        : display_(XOpenDisplay(display_name.c_str())) {
        int error_base = 0;
        EXPECT_TRUE(XFixesQueryExtension(display_, &event_base_, &error_base));
        XFixesSelectCursorInput(display_, DefaultRootWindow(display_),
                                XFixesDisplayCursorNotifyMask);
        XSync(display_, False);
    }
    ~CursorEyes() { XCloseDisplay(display_); }
    CursorEyes(const CursorEyes&) = delete;
    CursorEyes& operator=(const CursorEyes&) = delete;

    // The serial number of the cursor that is shown now.
    [[nodiscard]] unsigned long shown() const {
        XFixesCursorImage* image = XFixesGetCursorImage(display_);
        const unsigned long serial = image->cursor_serial;
        XFree(image);
        return serial;
    }
    // Those that came up since the last call.
    Serials changes() {
        Serials serials;
        XSync(display_, False);
        while (XPending(display_) > 0) {
            XEvent event;
            XNextEvent(display_, &event);
            if (event.type == event_base_ + XFixesCursorNotify) {
                serials.push_back(
                    reinterpret_cast<XFixesCursorNotifyEvent*>(&event)->cursor_serial);
            }
        }
        return serials;
    }

private:
    Display* display_;
    int event_base_ = 0;
};

class BrowserCursor : public testing::Test {
protected:
    BrowserCursor() {
        folder.add_folder("inner");
        desk.person.move_pointer(700, 480); // where the window will be
        usual = eyes.shown();
        (void)eyes.changes();
    }
    ~BrowserCursor() override { set_watcher({}); }

    // Waits until a busy cursor has come and gone, once and no more.
    void expect_busy_once() {
        Serials seen;
        EXPECT_TRUE(support::wait_until([&] {
            const Serials more = eyes.changes();
            seen.insert(seen.end(), more.begin(), more.end());
            return seen.size() >= 2;
        }));
        ASSERT_EQ(seen.size(), 2U) << testing::PrintToString(seen);
        EXPECT_NE(seen[0], usual);
        EXPECT_EQ(seen[1], usual);
        EXPECT_EQ(eyes.shown(), usual);
    }

    support::PlainCursors plain_cursors;
    TestFolder folder;
    BrowserDesk desk{folder.path()};
    CursorEyes eyes{desk.server.display_name()};
    unsigned long usual = 0;
};

TEST_F(BrowserCursor, IsBusyWhenAFolderIsShownAndThenTheUsualOne) {
    desk.open();
    expect_folder(desk, folder.path());
    expect_busy_once();
    desk.click_row(2);
    expect_folder(desk, folder.path_of("inner"));
    expect_busy_once();
}

TEST_F(BrowserCursor, IsBusyFromBeforeAFolderIsOpenedUntilAfterItIsClosed) {
    desk.open();
    expect_folder(desk, folder.path());
    const CursorEyes reader_eyes(desk.server.display_name());
    std::mutex mutex;
    Serials seen;
    set_watcher([&] {
        const std::lock_guard<std::mutex> lock(mutex);
        seen.push_back(reader_eyes.shown());
    });
    desk.click_row(2);
    EXPECT_TRUE(support::wait_until([&] {
        const std::lock_guard<std::mutex> lock(mutex);
        return seen.size() >= 2;
    }));
    set_watcher({});
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_NE(seen[0], usual);
    EXPECT_EQ(seen[1], seen[0]);
    EXPECT_TRUE(support::wait_until([&] { return eyes.shown() == usual; }));
}

} // namespace
