// The engine-wide tick and the per-window ticks.

#include "display/core/engine_desk.h"

#include "gui/ORX/core/window_table.h"

namespace {

std::atomic<int> engine_ticks{0};
std::atomic<bool> keep_engine_tick{true};

bool engine_tick() {
    engine_ticks += 1;
    return keep_engine_tick;
}

struct Timers : testing::Test {
    CallLog log;
    EngineDesk desk;
    UiEngine* engine = desk.engine;
    WindowId id = desk.make_window(&log);

    Timers() {
        engine_ticks = 0;
        keep_engine_tick = true;
        engine_set_tick_callback(engine, engine_tick);
    }
};

TEST_F(Timers, AreOffAtFirst) {
    EXPECT_TRUE(support::holds_for([&] { return engine_ticks == 0 && log.count("tick") == 0; },
                                   std::chrono::milliseconds(150)));
}

TEST_F(Timers, EachRunsByItsOwnInterval) {
    engine_set_tick_interval(engine, 2);
    EXPECT_TRUE(support::wait_until([] { return engine_ticks > 3; }));
    EXPECT_EQ(log.count("tick"), 0);
    engine_set_tick_interval(engine, 0);
    engine_set_window_tick_interval(engine, 2);
    EXPECT_TRUE(log.wait_for_count("tick", 3));
    EXPECT_EQ(engine_tick_interval(engine), 0);
    EXPECT_EQ(engine_window_tick_interval(engine), 2);
}

TEST_F(Timers, ASecondOrMoreNeverFires) {
    engine_set_tick_interval(engine, 1'000);
    engine_set_window_tick_interval(engine, 1'000);
    EXPECT_TRUE(support::holds_for([&] { return engine_ticks == 0 && log.count("tick") == 0; },
                                   std::chrono::milliseconds(1'200)));
}

TEST_F(Timers, AWindowTickThatReturnsFalseComesOnce) {
    CallLog& other = desk.new_log();
    desk.make_window(&other);
    log.keep_ticking = false;
    engine_set_window_tick_interval(engine, 1);
    ASSERT_TRUE(other.wait_for_count("tick", 5));
    EXPECT_EQ(log.count("tick"), 1);
    EXPECT_EQ(engine->windows[id].on_tick, nullptr);
}

TEST_F(Timers, AnEngineTickThatReturnsFalseComesOnce) {
    keep_engine_tick = false;
    engine_set_tick_interval(engine, 1);
    engine_set_window_tick_interval(engine, 1);
    ASSERT_TRUE(log.wait_for_count("tick", 5));
    EXPECT_EQ(engine_ticks, 1);
    EXPECT_EQ(engine->tick_callback, nullptr);
    engine_set_tick_pointer(engine, &log);
    EXPECT_EQ(engine->tick_pointer, &log);
}

TEST_F(Timers, AWindowEndedInATickMakesNoOtherMissIt) {
    std::vector<CallLog*> logs;
    std::vector<WindowId> ids;
    for (int i = 0; i < 6; ++i) {
        logs.push_back(&desk.new_log());
        ids.push_back(desk.make_window(logs.back()));
    }
    logs[1]->actions["tick"] = [&] {
        window_destroy(engine, ids[0]);
        window_destroy(engine, ids[1]);
        window_destroy(engine, ids[3]);
    };
    int first_round = -1;
    logs[5]->actions["tick"] = [&] {
        if (first_round < 0) {
            first_round = logs[2]->count("tick") * 10 + logs[4]->count("tick");
        }
    };
    engine_set_window_tick_interval(engine, 1);
    const bool ticked = logs[5]->wait_for_count("tick", 3);
    desk.end_loop(); // the actions look at what is gone after the test
    ASSERT_TRUE(ticked);
    EXPECT_EQ(first_round, 11);
    EXPECT_EQ(logs[1]->count("tick"), 1);
    EXPECT_EQ(logs[3]->count("tick"), 0);
}

TEST_F(Timers, AHeirOfTheSlotKeepsItsTickWhenTheOldOneEndsItself) {
    CallLog& heir = desk.new_log();
    log.keep_ticking = false;
    log.actions["tick"] = [&] {
        window_destroy(engine, id);
        EXPECT_EQ(desk.make_window(&heir), id);
    };
    engine_set_window_tick_interval(engine, 1);
    EXPECT_TRUE(heir.wait_for_count("tick", 3));
    EXPECT_EQ(log.count("tick"), 1);
}

} // namespace
