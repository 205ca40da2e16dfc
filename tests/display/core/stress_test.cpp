// Two threads in each other's way: one makes, changes and ends windows, the other paints and ticks.
// Meant for the thread and the address sanitizer; without them it looks for crashes and hangs.

#include "display/core/engine_desk.h"

#include "gui/ORX/core/window_properties.h"
#include "gui/ORX/core/window_table.h"
#include "support/wait_until.h"

#include <random>

namespace {

std::atomic<int> paints{0};
std::atomic<int> ticks{0};

void count_paint(std::int32_t, std::int32_t, std::int32_t, std::int32_t, WindowId, void*) {
    paints += 1;
}

bool count_tick(void*) {
    ticks += 1;
    return true;
}

bool count_engine_tick() {
    ticks += 1;
    return true;
}

void ignore_configure(std::int32_t, std::int32_t, WindowId, void*) {}

// What the main thread of a program does to its windows, in any order.
class Flow {
public:
    Flow(UiEngine* engine, unsigned seed) : engine_(engine), random_(seed) {}

    void round() {
        const WindowId id = made_.empty() ? no_window : made_[random_() % made_.size()];
        switch (random_() % 8) {
        case 0:
        case 1:
            make();
            break;
        case 2:
            end(id);
            break;
        case 3:
            if (id != no_window) {
                const auto side = static_cast<std::int32_t>(10 + random_() % 100);
                window_resize(engine_, id, side, side);
            }
            break;
        case 4:
            if (id != no_window) {
                window_clear_callbacks(engine_, id);
            }
            break;
        case 5:
            if (id != no_window) {
                window_set_on_paint(engine_, id, count_paint);
                window_set_on_tick(engine_, id, count_tick);
            }
            break;
        case 6:
            if (id != no_window) {
                window_set_title(engine_, id, "stress");
                static_cast<void>(window_width(engine_, id));
                static_cast<void>(window_x_window(engine_, id));
            }
            break;
        default:
            if (id != no_window) {
                window_clear_callbacks_unlocked(engine_, id);
            }
            break;
        }
    }

private:
    void make() {
        if (made_.size() >= 20) {
            end(made_.front());
        }
        const WindowId id = window_create_plain(engine_, 0, 0, 40, 30, nullptr, 1.0F);
        ASSERT_NE(id, no_window);
        window_set_on_paint(engine_, id, count_paint);
        window_set_on_tick(engine_, id, count_tick);
        window_set_on_configure(engine_, id, ignore_configure);
        window_select_input(engine_, id);
        window_map(engine_, id);
        made_.push_back(id);
    }
    void end(WindowId id) {
        if (id != no_window) {
            EXPECT_EQ(window_destroy(engine_, id), 0);
            std::erase(made_, id);
        }
    }

    UiEngine* engine_;
    std::mt19937 random_;
    std::vector<WindowId> made_;
};

TEST(Stress, WindowsComeAndGoUnderTheEventThread) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    EngineDesk desk;
    engine_set_window_tick_interval(desk.engine, 1);
    engine_set_tick_interval(desk.engine, 1);
    engine_set_tick_callback(desk.engine, count_engine_tick);
    Flow flow(desk.engine, seed);
    for (int i = 0; i < 4'000; ++i) {
        flow.round();
    }
    // Where the machine is busy, the event thread may not have had a turn yet.
    EXPECT_TRUE(support::wait_until([&] {
        flow.round();
        return paints > 0 && ticks > 0;
    })) << "no window was painted, or none heard of the time";
    desk.end_loop();
    EXPECT_TRUE(window_table_empty(desk.engine));
}

TEST(Stress, OpeningAndClosingUnderTheLoopOverAndOver) {
    EngineDesk desk;
    for (int i = 0; i < 20; ++i) {
        EXPECT_NE(desk.show_window(&desk.new_log()), no_window);
        engine_close_display(desk.engine);
        desk.join_loop();
        ASSERT_TRUE(engine_open_display(desk.engine));
        desk.start_loop();
    }
}

} // namespace
