// Foreign, late and malformed events: nothing crashes or hangs, and other windows go on.

#include "display/core/engine_desk.h"

#include "gui/ORX/core/window_properties.h"
#include "gui/ORX/core/window_table.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <random>

namespace {

struct HostileEvents : testing::Test {
    CallLog log;
    CallLog witness_log;
    EngineDesk desk;
    WindowId id = desk.make_window(&log);
    WindowId witness = desk.make_window(&witness_log);
    events::Sender send{desk.view, desk.x_window(id)};

    void settle() { desk.settle(witness, &witness_log); }
};

TEST_F(HostileEvents, MessagesOfOtherFormatsAreOnlyMessages) {
    send.message(8, 0x01020304);
    send.message(16, 0x01020304);
    settle();
    EXPECT_EQ(log.count("message"), 2);
    EXPECT_NE(window_x_window(desk.engine, id), 0U);
}

TEST_F(HostileEvents, EventsThatNameNoWindowReachNobody) {
    // A free slot keeps its on_close and holds no window: an event for window 0 must not find it.
    CallLog& former_log = desk.new_log();
    const WindowId former = desk.make_window(&former_log);
    window_destroy(desk.engine, former);
    for (int type = 2; type < 36; ++type) {
        char event[32] = {static_cast<char>(type), 32};
        xcb_send_event(desk.view.connection(), 0, send.window, 0, event);
    }
    settle();
    EXPECT_EQ(former_log.lines(), std::vector<std::string>());
    EXPECT_EQ(log.lines(), std::vector<std::string>());
}

TEST_F(HostileEvents, EventsForADestroyedWindowAreDropped) {
    // They are in the queue when the window goes, and name a window that is in no slot.
    const auto window = send.window;
    window_destroy(desk.engine, id);
    for (int type = 2; type < 34; ++type) {
        for (const int offset : {4, 12}) {
            char event[32] = {static_cast<char>(type)};
            std::memcpy(event + offset, &window, sizeof window);
            xcb_send_event(desk.view.connection(), 0, desk.x_window(witness), 0, event);
        }
    }
    settle();
    EXPECT_EQ(log.lines(), std::vector<std::string>());
    EXPECT_EQ(witness_log.count("message"), 1);
}

TEST_F(HostileEvents, ASelectionForAForeignWindowIsDropped) {
    char event[32] = {XCB_SELECTION_NOTIFY};
    const std::uint32_t root = desk.view.root();
    std::memcpy(event + 8, &root, sizeof root);
    xcb_send_event(desk.view.connection(), 0, send.window, 0, event);
    settle();
    EXPECT_EQ(log.count("selection"), 0);
}

TEST_F(HostileEvents, TheEndOfAChildIsNotTheEndOfTheWindow) {
    xcb_destroy_notify_event_t event{};
    event.response_type = XCB_DESTROY_NOTIFY;
    event.event = send.window;
    event.window = send.window + 999;
    char bytes[32] = {};
    std::memcpy(bytes, &event, sizeof event);
    xcb_send_event(desk.view.connection(), 0, send.window, 0, bytes);
    xcb_flush(desk.view.connection());
    settle();
    EXPECT_EQ(window_x_window(desk.engine, id), send.window);
}

TEST_F(HostileEvents, AWindowEndedByAnotherClientGivesItsSlotBack) {
    window_select_input(desk.engine, id);
    xcb_destroy_window(desk.view.connection(), send.window);
    xcb_flush(desk.view.connection());
    EXPECT_TRUE(support::wait_until([&] { return window_x_window(desk.engine, id) == 0; }));
    EXPECT_TRUE(log.wait_for("close 0 0 " + std::to_string(id)));
    settle();
    EXPECT_EQ(desk.make_window(&log), id);
}

TEST_F(HostileEvents, AClosedWindowThatHasGoneStillTellsItsOwner) {
    // The close request is in the queue already when another client ends the window.
    desk.end_loop();
    id = desk.make_window(&log);
    witness = desk.make_window(&witness_log);
    const auto window = desk.x_window(id);
    events::Sender{desk.view, window}.close();
    xcb_destroy_window(desk.view.connection(), window);
    std::free(xcb_get_input_focus_reply(desk.view.connection(),
                                        xcb_get_input_focus(desk.view.connection()), nullptr));
    desk.start_loop();
    EXPECT_TRUE(log.wait_for("close 0 0 " + std::to_string(id)));
    settle();
    EXPECT_EQ(window_x_window(desk.engine, id), 0U);
}

TEST_F(HostileEvents, RandomBytesInEveryEventTypeAreSurvived) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> any_byte(0, 255);
    for (int round = 0; round < 3'000; ++round) {
        char event[32];
        for (char& byte : event) {
            byte = static_cast<char>(any_byte(random));
        }
        event[0] = static_cast<char>(2 + any_byte(random) % 33);
        std::memcpy(event + 4 * (1 + any_byte(random) % 3), &send.window, sizeof send.window);
        xcb_send_event(desk.view.connection(), 0, desk.x_window(witness), 0, event);
    }
    xcb_flush(desk.view.connection());
    settle();
    EXPECT_NE(window_x_window(desk.engine, witness), 0U);
}

} // namespace
