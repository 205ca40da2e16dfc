// Opening and closing the display and the input method.

#include "display/core/engine_desk.h"

#include "gui/ORX/core/event_loop.h"
#include "gui/ORX/core/window_properties.h"
#include "gui/ORX/core/window_table.h"

#include <xcb/xcb.h>

#include <cstdlib>

namespace {

struct DisplaySession : testing::Test {
    EngineDesk desk{{.open = false, .run = false}};

    bool opened() { return engine_open_display(desk.engine); }
};

TEST_F(DisplaySession, OpeningTwiceKeepsTheOneConnection) {
    ASSERT_TRUE(opened());
    const Display* display = engine_display(desk.engine);
    EXPECT_TRUE(opened());
    EXPECT_EQ(engine_display(desk.engine), display);
}

TEST_F(DisplaySession, OpeningRecordsTheFirstScreen) {
    ASSERT_TRUE(opened());
    EXPECT_EQ(desk.engine->depth, 24);
    EXPECT_EQ(desk.engine->visual, DefaultVisual(engine_display(desk.engine), 0));
}

TEST_F(DisplaySession, ClosingSaysWhatItClosesAndMayBeOpenedAgain) {
    ASSERT_TRUE(opened());
    testing::internal::CaptureStdout();
    engine_close_display(desk.engine);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "ORX-UI Engine: Closing Input Method (XIM)\nORX-UI Engine: XClose\n");
    EXPECT_EQ(engine_display(desk.engine), nullptr);
    EXPECT_EQ(desk.engine->input_method, nullptr);
    EXPECT_TRUE(opened());
}

TEST_F(DisplaySession, AnInputMethodThatCannotBeOpenedIsSaidAndDoneWithout) {
    setenv("XMODIFIERS", "@im=nonexistent", 1);
    UiEngine* engine = engine_new();
    unsetenv("XMODIFIERS");
    testing::internal::CaptureStdout();
    EXPECT_TRUE(engine_open_display(engine));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "** ORX-UI Engine: Could not open Input Method (XIM)\n");
    const WindowId id = window_create_simple(engine, 0, 0, 10, 10, nullptr, 1.0F);
    EXPECT_NE(id, no_window);
    EXPECT_EQ(engine->windows[id].input_context, nullptr);
    testing::internal::CaptureStdout();
    engine_destroy(engine);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "ORX-UI Engine: XClose\n");
}

TEST_F(DisplaySession, WithoutAnInputMethodKeyPressesReachNobodyAndReleasesDo) {
    setenv("XMODIFIERS", "@im=nonexistent", 1);
    EngineDesk other;
    unsetenv("XMODIFIERS");
    CallLog& log = other.new_log();
    const WindowId id = other.make_window(&log);
    const events::Sender send{other.view, other.x_window(id)};
    send.key(true, 38);
    send.key(false, 38);
    other.settle(id, &log);
    EXPECT_EQ(log.count("key ["), 0);
    EXPECT_EQ(log.count("keyup - 97"), 1);
}

TEST_F(DisplaySession, ClosingWaitsForTheLoopWhichTakesItsWindowsWithIt) {
    ASSERT_TRUE(opened());
    desk.start_loop();
    CallLog& log = desk.new_log();
    const WindowId id = desk.show_window(&log);
    const auto window = desk.x_window(id);
    engine_close_display(desk.engine);
    EXPECT_TRUE(window_table_empty(desk.engine));
    EXPECT_FALSE(desk.view.exists(window));
    EXPECT_FALSE(desk.engine->stop_requested);
}

TEST_F(DisplaySession, TheLoopEndsItsWindowsAndLeavesTheDisplayOpen) {
    ASSERT_TRUE(opened());
    desk.start_loop();
    CallLog& log = desk.new_log();
    const auto window = desk.x_window(desk.show_window(&log));
    desk.end_loop();
    EXPECT_FALSE(desk.view.exists(window));
    EXPECT_TRUE(window_table_empty(desk.engine));
    EXPECT_EQ(desk.engine->live_order[0], no_window);
    EXPECT_NE(engine_display(desk.engine), nullptr);
}

TEST_F(DisplaySession, AWindowThatHasGoneDoesNotKeepTheEndingLoopFromTheOthers) {
    ASSERT_TRUE(opened());
    CallLog& log = desk.new_log();
    const auto gone = desk.x_window(desk.make_window(&log));
    const auto other = desk.x_window(desk.make_window(&log));
    xcb_connection_t* connection = desk.view.connection();
    xcb_destroy_window(connection, gone);
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    event_loop_stop(desk.engine); // it ends before it would learn that the window has gone
    testing::internal::CaptureStdout();
    event_loop_run(desk.engine);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "ORX-UI Engine: XErrorHandler trapped non-fatal X11 problem :(\n");
    EXPECT_FALSE(desk.view.exists(other));
    EXPECT_TRUE(window_table_empty(desk.engine));
    EXPECT_EQ(desk.engine->live_order[0], no_window);
    EXPECT_NE(engine_display(desk.engine), nullptr);
    EXPECT_FALSE(desk.engine->stop_requested);
}

TEST_F(DisplaySession, WindowsLeftWithoutALoopEndWithTheDisplay) {
    ASSERT_TRUE(opened());
    CallLog& log = desk.new_log();
    const auto window = desk.x_window(desk.make_window(&log));
    engine_close_display(desk.engine);
    EXPECT_TRUE(support::wait_until([&] { return !desk.view.exists(window); }));
    EXPECT_TRUE(window_table_empty(desk.engine));
}

TEST_F(DisplaySession, ErrorsAreTrappedBetweenTheBracketsAndTheHandlerIsPutBack) {
    ASSERT_TRUE(opened());
    XErrorHandler before = XSetErrorHandler(nullptr);
    XSetErrorHandler(before);
    testing::internal::CaptureStdout();
    trap_x_errors(desk.engine);
    XMapWindow(engine_display(desk.engine), 0x7FFFFFF);
    XSync(engine_display(desk.engine), False);
    EXPECT_EQ(untrap_x_errors(desk.engine), BadWindow);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "ORX-UI Engine: XErrorHandler trapped non-fatal X11 problem :(\n");
    XErrorHandler after = XSetErrorHandler(nullptr);
    XSetErrorHandler(after);
    EXPECT_EQ(after, before);
    trap_x_errors(desk.engine);
    EXPECT_EQ(untrap_x_errors(desk.engine), 0);
}

} // namespace
