// browser_cursor_test.cpp: the cursor while the browser reads a folder.

#include <gtest/gtest.h> // first: Xlib's macros would break it

#include "display/widgets/browser_desk.h"
#include "display/widgets/browser_picture.h"
#include "support/wait_until.h"

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <vector>

#include <X11/extensions/Xfixes.h>

namespace {

// True when something is to be read there in time.
bool readable(int descriptor) {
    pollfd waiting{descriptor, POLLIN, 0};
    return poll(&waiting, 1, static_cast<int>(support::default_patience.count())) == 1;
}

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
    std::vector<unsigned long> changes() {
        std::vector<unsigned long> serials;
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
    // Waits for the next change, without a delay of its own.
    [[nodiscard]] bool wait_for_change() const {
        return XPending(display_) > 0 || readable(ConnectionNumber(display_));
    }

private:
    Display* display_;
    int event_base_ = 0;
};

// Hears of every opening and closing of a folder.
class FolderEars {
public:
    explicit FolderEars(const std::string& folder) : descriptor_(inotify_init1(IN_NONBLOCK)) {
        EXPECT_GE(inotify_add_watch(descriptor_, folder.c_str(), IN_OPEN | IN_CLOSE_NOWRITE), 0);
    }
    ~FolderEars() { close(descriptor_); }
    FolderEars(const FolderEars&) = delete;
    FolderEars& operator=(const FolderEars&) = delete;

    // What has happened since the last call: IN_OPEN, IN_CLOSE_NOWRITE, both, or 0.
    [[nodiscard]] std::uint32_t heard() const {
        std::uint32_t mask = 0;
        alignas(inotify_event) char bytes[4096];
        ssize_t size = 0;
        while ((size = read(descriptor_, bytes, sizeof bytes)) > 0) {
            for (const char* at = bytes; at < bytes + size;) {
                const auto* event = reinterpret_cast<const inotify_event*>(at);
                mask |= event->mask & (IN_OPEN | IN_CLOSE_NOWRITE);
                at += sizeof *event + event->len;
            }
        }
        return mask;
    }
    [[nodiscard]] bool wait_for_close() const {
        while ((heard() & IN_CLOSE_NOWRITE) == 0) {
            if (!readable(descriptor_)) {
                return false;
            }
        }
        return true;
    }

private:
    int descriptor_;
};

// Waits until a busy cursor has come and gone, once and no more.
void expect_busy_once(CursorEyes& eyes, unsigned long usual) {
    std::vector<unsigned long> seen;
    EXPECT_TRUE(support::wait_until([&] {
        for (const unsigned long serial : eyes.changes()) {
            seen.push_back(serial);
        }
        return seen.size() >= 2;
    }));
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_NE(seen[0], usual);
    EXPECT_EQ(seen[1], usual);
    EXPECT_EQ(eyes.shown(), usual);
}

TEST(BrowserCursor, IsBusyWhenAFolderIsShownAndThenTheUsualOne) {
    const TestFolder folder;
    folder.add_folder("inner");
    BrowserDesk desk(folder.path());
    CursorEyes eyes(desk.server.display_name());
    desk.person.move_pointer(700, 480); // where the window will be
    const unsigned long usual = eyes.shown();
    (void)eyes.changes();
    desk.open();
    expect_folder(desk, folder.path());
    expect_busy_once(eyes, usual);
    desk.click_row(2);
    expect_folder(desk, folder.path_of("inner"));
    expect_busy_once(eyes, usual);
}

TEST(BrowserCursor, IsBusyFromBeforeTheFolderIsOpenedUntilAfterItIsClosed) {
    const TestFolder folder;
    folder.add_files(4000, "file");
    BrowserDesk desk(folder.path());
    desk.open();
    expect_folder(desk, folder.path());
    CursorEyes eyes(desk.server.display_name());
    const FolderEars ears(folder.path());
    const unsigned long usual = eyes.shown();
    bool before_opening = false;
    bool after_closing = false;
    // Again and again: this thread may come too late to look.
    EXPECT_TRUE(support::wait_until([&] {
        (void)eyes.changes();
        (void)ears.heard();
        desk.click_row(0); // "." is read anew
        before_opening |= eyes.wait_for_change() && ears.heard() == 0;
        after_closing |= ears.wait_for_close() && eyes.shown() != usual;
        return support::wait_until([&] { return eyes.shown() == usual; }) && before_opening &&
               after_closing;
    }));
    EXPECT_TRUE(before_opening);
    EXPECT_TRUE(after_closing);
}

} // namespace
