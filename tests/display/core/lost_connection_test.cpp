// The X server goes while the program is in the middle of something.

#include "display/core/engine_desk.h"

#include "gui/ORX/core/clipboard.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/window_placement.h"
#include "gui/ORX/core/window_properties.h"
#include "gui/ORX/core/window_table.h"

// Once a connection is broken Xlib unlocks the display's own mutex twice; nobody uses it again.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
    return "mutex:libX11.so\n";
}

namespace {

struct LostConnection : testing::Test {
    CallLog log;
    EngineDesk desk;

    bool lost() const {
        return support::wait_until([this] { return engine_connection_lost(desk.engine); });
    }
};

TEST_F(LostConnection, IsNoticedByTheIdleLoopAndEverythingActsAsClosed) {
    const WindowId id = desk.show_window(&log);
    EXPECT_FALSE(engine_connection_lost(desk.engine));
    desk.server.stop();
    ASSERT_TRUE(lost());
    EXPECT_EQ(engine_display(desk.engine), nullptr);
    EXPECT_FALSE(engine_open_display(desk.engine));
    EXPECT_EQ(window_create_plain(desk.engine, 0, 0, 10, 10, nullptr, 1.0F), no_window);
    window_set_title(desk.engine, id, "nobody sees it");
    window_map(desk.engine, id);
    clipboard_request_paste(desk.engine, id);
    std::int32_t x = 1;
    std::int32_t y = 1;
    EXPECT_FALSE(place_near_pointer(desk.engine, &x, &y, 10, 10, 1.0F));
    EXPECT_EQ(window_destroy(desk.engine, id), 0);
}

TEST_F(LostConnection, TheLoopGoesOnTicking) {
    desk.show_window(&log);
    engine_set_window_tick_interval(desk.engine, 1);
    desk.server.stop();
    ASSERT_TRUE(lost());
    const int ticks = log.count("tick");
    EXPECT_TRUE(log.wait_for_count("tick", ticks + 5));
}

TEST_F(LostConnection, ClosingPrintsNothingAndAnotherDisplayMayBeOpened) {
    desk.show_window(&log);
    desk.server.stop();
    ASSERT_TRUE(lost());
    testing::internal::CaptureStdout();
    engine_close_display(desk.engine);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_TRUE(window_table_empty(desk.engine));
    EXPECT_FALSE(engine_connection_lost(desk.engine));
    const support::XServer next;
    setenv("DISPLAY", next.display_name().c_str(), 1);
    EXPECT_TRUE(engine_open_display(desk.engine));
    EXPECT_NE(window_create_plain(desk.engine, 0, 0, 10, 10, nullptr, 1.0F), no_window);
    engine_close_display(desk.engine);
}

// Each round the server ends at another moment of what the other thread does.
TEST(LostConnectionAnywhere, EndsNeitherThreadNorProcess) {
    for (int round = 0; round < 12; ++round) {
        CallLog log;
        EngineDesk desk;
        engine_set_window_tick_interval(desk.engine, 1);
        std::atomic<int> rounds_done{0};
        std::thread worker([&] {
            while (!engine_connection_lost(desk.engine)) {
                const WindowId id = desk.make_window(&log);
                if (id != no_window) {
                    window_select_input(desk.engine, id);
                    window_map(desk.engine, id);
                    window_set_title(desk.engine, id, "title");
                    std::int32_t x = 0;
                    std::int32_t y = 0;
                    window_root_position(desk.engine, id, &x, &y);
                    clipboard_request_paste(desk.engine, id);
                    window_destroy(desk.engine, id);
                }
                rounds_done += 1;
            }
        });
        while (rounds_done < 1 + round * 3) {
            std::this_thread::yield();
        }
        desk.server.stop();
        worker.join();
        EXPECT_TRUE(engine_connection_lost(desk.engine));
    }
}

} // namespace
