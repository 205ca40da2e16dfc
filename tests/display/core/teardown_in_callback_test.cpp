// Callbacks of every kind that end their own window, another one, or clear callbacks.

#include "display/core/engine_desk.h"

#include "gui/ORX/core/event_loop.h"
#include "gui/ORX/core/window_table.h"

namespace {

const std::vector<std::string> every_kind = {
    "configure", "paint",  "press", "release", "motion", "reparent",  "message",
    "create",    "double", "close", "key",     "keyup",  "selection", "tick"};

struct TeardownIn : testing::TestWithParam<std::string> {
    CallLog log;
    CallLog other_log;
    CallLog witness_log;
    EngineDesk desk;
    UiEngine* engine = desk.engine;
    WindowId other = desk.make_window(&other_log);
    WindowId id = desk.make_window(&log);
    WindowId witness = desk.make_window(&witness_log);
    std::uint32_t window = desk.x_window(id);
    std::atomic<int> acted{0};

    // Acts once, inside the callback.
    template <typename Action> void act_in_callback(Action action) {
        log.actions[GetParam()] = [this, action] {
            if (acted.fetch_add(1) == 0) {
                action();
            }
        };
        trigger();
        ASSERT_TRUE(support::wait_until([this] { return acted > 0; }));
        desk.settle(witness, &witness_log);
    }

    void trigger() {
        const events::Sender send{desk.view, window};
        const std::string& kind = GetParam();
        if (kind == "configure") {
            send.configure(30, 20);
        } else if (kind == "paint") {
            send.expose(0, 0, 10, 10);
            send.expose(20, 20, 10, 10);
        } else if (kind == "press") {
            send.press(1, 1, 3);
        } else if (kind == "release") {
            send.release(1, 1, 3);
        } else if (kind == "motion") {
            send.motion(1, 1);
        } else if (kind == "reparent") {
            send.reparent(1, 1);
        } else if (kind == "message") {
            send.message(32, 1);
        } else if (kind == "create") {
            send.create(1, 1);
        } else if (kind == "double") {
            send.press(1, 1, 1);
            send.press(1, 1, 1);
        } else if (kind == "close") {
            send.close();
        } else if (kind == "key") {
            send.key(true, 38);
        } else if (kind == "keyup") {
            send.key(false, 38);
        } else if (kind == "selection") {
            send.selection();
        } else {
            engine_set_window_tick_interval(engine, 1);
        }
    }

    void expect_witness_lives() {
        const events::Sender send{desk.view, desk.x_window(witness)};
        send.press(9, 9, 2);
        send.expose(1, 1, 2, 2);
        EXPECT_TRUE(witness_log.wait_for_count("press 9 9 2", 1));
        EXPECT_TRUE(witness_log.wait_for_count("paint 1 1 2 2", 1));
    }
};

TEST_P(TeardownIn, ItsOwnWindowMayEnd) {
    act_in_callback([this] { window_destroy(engine, id); });
    EXPECT_EQ(window_x_window(engine, id), 0U);
    EXPECT_FALSE(desk.view.exists(window));
    expect_witness_lives();
}

TEST_P(TeardownIn, ItsOwnWindowMayEndAndAnotherTakeItsSlot) {
    CallLog& heir_log = desk.new_log();
    act_in_callback([&] {
        window_destroy(engine, id);
        EXPECT_EQ(desk.make_window(&heir_log), id);
    });
    EXPECT_NE(window_x_window(engine, id), 0U);
    EXPECT_TRUE(desk.view.exists(desk.x_window(id)));
    EXPECT_EQ(heir_log.count("paint"), 0);
    events::Sender{desk.view, desk.x_window(id)}.press(4, 4, 2);
    EXPECT_TRUE(heir_log.wait_for_count("press 4 4 2", 1));
    expect_witness_lives();
}

TEST_P(TeardownIn, ItsOwnWindowMayBeForgotten) {
    act_in_callback([this] { window_forget(engine, id); });
    EXPECT_EQ(window_x_window(engine, id), 0U);
    expect_witness_lives();
}

TEST_P(TeardownIn, AnotherWindowMayEnd) {
    const auto other_window = desk.x_window(other);
    act_in_callback([this] { window_destroy(engine, other); });
    EXPECT_FALSE(desk.view.exists(other_window));
    EXPECT_EQ(window_x_window(engine, other), 0U);
    expect_witness_lives();
}

TEST_P(TeardownIn, AllWindowsMayEnd) {
    acted = 0;
    log.actions[GetParam()] = [this] {
        if (acted.fetch_add(1) == 0) {
            window_destroy_all(engine);
            acted = 100;
        }
    };
    trigger();
    ASSERT_TRUE(support::wait_until([this] { return acted >= 100; }));
    EXPECT_TRUE(support::wait_until([this] { return window_table_empty(engine); }));
    CallLog& next_log = desk.new_log();
    const WindowId next = desk.make_window(&next_log);
    events::Sender{desk.view, desk.x_window(next)}.press(4, 4, 2);
    EXPECT_TRUE(next_log.wait_for_count("press 4 4 2", 1));
}

TEST_P(TeardownIn, ItsCallbacksMayBeCleared) {
    act_in_callback([this] {
        window_clear_callbacks(engine, id);
        window_clear_callbacks_unlocked(engine, other);
    });
    const int calls = acted;
    if (GetParam() != "close") {
        EXPECT_NE(window_x_window(engine, id), 0U);
        trigger();
        desk.settle(witness, &witness_log);
    }
    EXPECT_EQ(acted, calls);
    expect_witness_lives();
}

TEST_P(TeardownIn, TheLoopMayBeStopped) {
    log.actions[GetParam()] = [this] { event_loop_stop(engine); };
    trigger();
    EXPECT_TRUE(support::wait_until([this] { return window_table_empty(engine); }));
    desk.end_loop();
}

INSTANTIATE_TEST_SUITE_P(EveryKind, TeardownIn, testing::ValuesIn(every_kind),
                         [](const auto& kind) { return kind.param; });

} // namespace
