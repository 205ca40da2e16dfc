// input_method_test.cpp: typing through an input method that is a program of its own, as people do
// who write with more signs than a keyboard has, and outliving that program.

#include "display/core/engine_desk.h"

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/input_method.h"
#include "gui/ORX/core/window_properties.h"
#include "gui/ORX/core/window_table.h"
#include "support/child_process.h"
#include "support/person.h"
#include "support/wait_until.h"

#include <unistd.h>
#include <xcb/xcb.h>

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace {

// A person's session with that input method. uim serves no locale without a language.
struct Environment {
    Environment() {
        setenv("LOCPATH", TEST_LOCALES, 1);
        setenv("LC_ALL", "en_US.UTF-8", 1);
        setenv("XMODIFIERS", "@im=uim", 1);
    }
    ~Environment() {
        unsetenv("XMODIFIERS");
        unsetenv("LC_ALL");
        unsetenv("LOCPATH");
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
};

// uim's bridge to the X input method protocol, which hands every key on as it is.
class InputMethodServer {
public:
    InputMethodServer(const support::DisplayView& view, const std::string& display_name)
        : view_(view) {
        std::filesystem::create_directories(home_);
        support::ChildOptions options;
        options.command = {"uim-xim", "--engine=direct"};
        options.environment = std::vector<std::string>{"DISPLAY=" + display_name, "HOME=" + home_,
                                                       std::string("LOCPATH=") + TEST_LOCALES,
                                                       "LC_ALL=en_US.UTF-8", "PATH=/usr/bin:/bin"};
        process_ = std::make_unique<support::ChildProcess>(options);
        EXPECT_TRUE(support::wait_until([&] { return announced(); })) << process_->error_output();
    }
    // Xlib, asked to let go of it between its end and the X server's word of that, waits for ever.
    ~InputMethodServer() {
        die();
        std::filesystem::remove_all(home_);
    }
    InputMethodServer(const InputMethodServer&) = delete;
    InputMethodServer& operator=(const InputMethodServer&) = delete;

    // Returns when it has ended and the X server has let go of its windows.
    void die() const {
        process_->send_signal(SIGKILL);
        EXPECT_TRUE(process_->wait_for_end());
        EXPECT_TRUE(support::wait_until([&] { return !owns_selection(); }));
    }

private:
    bool announced() const { return !view_.atoms_property(view_.root(), "XIM_SERVERS").empty(); }

    bool owns_selection() const {
        constexpr char name[] = "@server=uim";
        xcb_connection_t* server = view_.connection();
        auto* atom = xcb_intern_atom_reply(
            server, xcb_intern_atom(server, 0, sizeof name - 1, name), nullptr);
        auto* owner = xcb_get_selection_owner_reply(
            server, xcb_get_selection_owner(server, atom->atom), nullptr);
        const bool owned = owner->owner != 0;
        std::free(owner);
        std::free(atom);
        return owned;
    }

    const support::DisplayView& view_;
    std::string home_ = testing::TempDir() + "input-method-" + std::to_string(getpid());
    std::unique_ptr<support::ChildProcess> process_;
};

struct InputMethod : testing::Test {
    Environment environment;
    EngineDesk desk{{.open = false, .run = false}};
    InputMethodServer server{desk.view, desk.server.display_name()};
    support::Person person{desk.server.display_name()};
    CallLog& log = desk.new_log();
    WindowId id = no_window;

    void open() {
        ASSERT_TRUE(engine_open_display(desk.engine));
        desk.start_loop();
        id = desk.show_window(&log, 100, 120);
        person.click_at(110, 130);
        ASSERT_TRUE(log.wait_for_count("release", 1));
    }
    bool has_input_method() const {
        const XLockGuard guard(desk.engine);
        return desk.engine->input_method != nullptr;
    }
    // Again and again: a program that is starting or ending may drop what is typed.
    bool typed_letter_comes(char letter) {
        const std::string line = std::string("key [") + letter + "] " + std::to_string(letter) +
                                 " 0 " + std::to_string(id);
        return support::wait_until([&] {
            person.type(std::string(1, letter));
            return support::wait_until([&] { return log.has(line); },
                                       std::chrono::milliseconds(500));
        });
    }
};

TEST_F(InputMethod, HandsOnWhatIsTyped) {
    open();
    EXPECT_TRUE(has_input_method());
    EXPECT_TRUE(typed_letter_comes('a'));
    engine_use_keyboard_alone(desk.engine); // nothing to do
    EXPECT_TRUE(typed_letter_comes('b'));
    testing::internal::CaptureStdout();
    engine_close_display(desk.engine);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "ORX-UI Engine: Closing Input Method (XIM)\nORX-UI Engine: XClose\n");
}

TEST_F(InputMethod, ThatEndsLeavesTheKeyboard) {
    open();
    ASSERT_TRUE(typed_letter_comes('a'));
    server.die();
    ASSERT_TRUE(support::wait_until([&] { return !has_input_method(); }));
    engine_use_keyboard_alone(desk.engine);
    EXPECT_TRUE(typed_letter_comes('b'));
    const WindowId second = desk.show_window(&log, 400, 120);
    const XLockGuard guard(desk.engine);
    EXPECT_NE(desk.engine->windows[second].input_context, nullptr);
}

TEST_F(InputMethod, ThatHasEndedHoldsUpNoWindowAndNoClosing) {
    open();
    ASSERT_TRUE(typed_letter_comes('a'));
    desk.end_loop(); // so that nobody learns of the end by the way
    const WindowId before = desk.make_window(&log);
    server.die();
    const WindowId after = desk.make_window(&log);
    ASSERT_NE(after, no_window);
    EXPECT_EQ(desk.engine->windows[after].input_context, nullptr);
    EXPECT_EQ(desk.engine->windows[before].input_context, nullptr);
    window_destroy(desk.engine, before);
    testing::internal::CaptureStdout();
    engine_close_display(desk.engine);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "ORX-UI Engine: XClose\n");
}

TEST_F(InputMethod, ThatEndsBetweenTwoWindowsHoldsUpNoEnd) {
    open();
    desk.end_loop();
    const WindowId window = desk.make_window(&log);
    server.die();
    window_destroy(desk.engine, window);
    EXPECT_FALSE(has_input_method());
}

TEST_F(InputMethod, ThatEndsBeforeTheClosingHoldsItUpNoMore) {
    open();
    ASSERT_TRUE(typed_letter_comes('a'));
    desk.end_loop(); // and with it the window
    server.die();
    testing::internal::CaptureStdout();
    engine_close_display(desk.engine);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "ORX-UI Engine: XClose\n");
}

// Its end is looked for among the events that wait, where the end of a window waits as well.
TEST_F(InputMethod, WhoseEndIsLookedForLeavesTheEndOfAWindowToBeNoticed) {
    open();
    desk.end_loop();
    const WindowId ended = desk.make_window(&log);
    window_select_input(desk.engine, ended);
    xcb_destroy_window(desk.view.connection(), desk.x_window(ended));
    std::free(xcb_get_input_focus_reply(desk.view.connection(),
                                        xcb_get_input_focus(desk.view.connection()), nullptr));
    ASSERT_NE(desk.make_window(&log), no_window); // looks for it
    desk.start_loop();
    EXPECT_TRUE(support::wait_until([&] { return window_x_window(desk.engine, ended) == 0; }));
}

TEST_F(InputMethod, ThatIsNotThereLeavesTheKeyboard) {
    server.die();
    open();
    EXPECT_FALSE(has_input_method());
    engine_use_keyboard_alone(desk.engine);
    EXPECT_TRUE(typed_letter_comes('a'));
}

TEST_F(InputMethod, IsGivenUpForTheKeyboardOnce) {
    server.die();
    engine_use_keyboard_alone(desk.engine); // no display yet
    open();
    engine_use_keyboard_alone(desk.engine);
    EXPECT_TRUE(has_input_method());
    engine_close_display(desk.engine);
    ASSERT_TRUE(engine_open_display(desk.engine));
    EXPECT_TRUE(has_input_method());
}

} // namespace
