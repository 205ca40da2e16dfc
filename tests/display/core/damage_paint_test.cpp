// From Expose and ConfigureNotify to on_paint.

#include "display/core/engine_desk.h"

#include "gui/ORX/core/window_table.h"

#include <algorithm>
#include <cstdio>
#include <random>

namespace {

using Lines = std::vector<std::string>;

struct DamagePaint : testing::Test {
    CallLog log;
    CallLog witness_log;
    EngineDesk desk{{.run = false}};
    WindowId id = desk.make_window(&log);
    WindowId witness = desk.make_window(&witness_log);
    events::Sender send{desk.view, desk.x_window(id)};

    // Everything sent before the loop starts falls into its first pass.
    void run_pass() {
        desk.start_loop();
        desk.settle(witness, &witness_log);
        desk.settle(witness, &witness_log);
    }

    std::string paint(int left, int top, int width, int height) const {
        char text[80];
        std::snprintf(text, sizeof text, "paint %d %d %d %d %d", left, top, width, height, id);
        return text;
    }
};

TEST_F(DamagePaint, EqualExposesArePaintedOnce) {
    send.expose(1, 2, 30, 40);
    send.expose(1, 2, 30, 40);
    run_pass();
    EXPECT_EQ(log.lines_of("paint"), (Lines{paint(1, 2, 30, 40)}));
}

TEST_F(DamagePaint, AnExposeInsideAnotherAddsNothing) {
    send.expose(0, 0, 100, 100);
    send.expose(10, 10, 20, 20);
    run_pass();
    EXPECT_EQ(log.lines_of("paint"), (Lines{paint(0, 0, 100, 100)}));
}

TEST_F(DamagePaint, ALargerExposeReplacesTheSmaller) {
    send.expose(10, 10, 20, 20);
    send.expose(0, 0, 100, 100);
    run_pass();
    EXPECT_EQ(log.lines_of("paint"), (Lines{paint(0, 0, 100, 100)}));
}

TEST_F(DamagePaint, OverlappingExposesArePaintedInReverseOrderOfAddition) {
    send.expose(0, 0, 100, 100);
    send.expose(50, 50, 100, 100);
    run_pass();
    EXPECT_EQ(log.lines_of("paint"),
              (Lines{paint(50, 50, 100, 100), paint(0, 50, 50, 50), paint(0, 0, 100, 50)}));
}

TEST_F(DamagePaint, AnExposeWithoutSizeIsNotPainted) {
    send.expose(10, 10, 0, 20);
    send.expose(10, 10, 20, 0);
    send.expose(0, 0, 0, 0);
    run_pass();
    EXPECT_EQ(log.count("paint"), 0);
}

TEST_F(DamagePaint, AnExposeOutsideTheWindowIsPaintedAsItCame) {
    send.expose(60'000, 60'000, 60'000, 60'000);
    run_pass();
    EXPECT_EQ(log.lines_of("paint"), (Lines{paint(60'000, 60'000, 60'000, 60'000)}));
}

TEST_F(DamagePaint, AConfigureIsToldRecordedAndPaintedWhole) {
    send.configure(600, 400);
    run_pass();
    EXPECT_EQ(log.lines_of("configure"), (Lines{"configure 400 600 " + std::to_string(id)}));
    EXPECT_EQ(log.lines_of("paint"), (Lines{paint(0, 0, 600, 400)}));
    EXPECT_EQ(window_width(desk.engine, id), 600U);
    EXPECT_EQ(window_height(desk.engine, id), 400U);
}

TEST_F(DamagePaint, AConfigureOfNothingIsNotPainted) {
    send.configure(0, 0);
    run_pass();
    EXPECT_TRUE(log.has("configure 0 0 " + std::to_string(id)));
    EXPECT_EQ(log.count("paint"), 0);
    EXPECT_EQ(window_width(desk.engine, id), 0U);
}

TEST_F(DamagePaint, AHugeConfigureIsPaintedWhole) {
    send.configure(32'767, 32'767);
    run_pass();
    EXPECT_EQ(log.lines_of("paint"), (Lines{paint(0, 0, 32'767, 32'767)}));
}

TEST_F(DamagePaint, DamageWithoutAPainterIsDropped) {
    window_set_on_paint(desk.engine, id, nullptr);
    send.expose(0, 0, 10, 10);
    run_pass();
    record_calls(desk.engine, id);
    send.expose(20, 20, 5, 5);
    EXPECT_TRUE(log.wait_for(paint(20, 20, 5, 5)));
    EXPECT_EQ(log.count("paint"), 1);
}

TEST_F(DamagePaint, AWindowDestroyedByItsPainterIsNoLongerPaintedAndTheOthersAre) {
    CallLog& third_log = desk.new_log();
    const WindowId third = desk.make_window(&third_log);
    send.expose(0, 0, 10, 10);
    send.expose(20, 0, 10, 10);
    events::Sender{desk.view, desk.x_window(witness)}.expose(1, 1, 2, 2);
    events::Sender{desk.view, desk.x_window(third)}.expose(1, 1, 2, 2);
    log.actions["paint"] = [this] { window_destroy(desk.engine, id); };
    run_pass();
    EXPECT_EQ(log.lines_of("paint"), (Lines{paint(20, 0, 10, 10)}));
    EXPECT_EQ(witness_log.count("paint"), 1);
    EXPECT_EQ(third_log.count("paint"), 1);
}

TEST_F(DamagePaint, ASlotUsedAgainInsideThePainterInheritsNoDamage) {
    CallLog& heir_log = desk.new_log();
    send.expose(0, 0, 10, 10);
    send.expose(20, 0, 10, 10);
    log.actions["paint"] = [&] {
        window_destroy(desk.engine, id);
        EXPECT_EQ(desk.make_window(&heir_log), id);
    };
    run_pass();
    EXPECT_EQ(log.count("paint"), 1);
    EXPECT_EQ(heir_log.count("paint"), 0);
}

TEST_F(DamagePaint, RandomExposesPaintEachDamagedPixelOnce) {
    constexpr int side = 200;
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> edge(0, side);
    std::vector<int> wanted(side * side, 0);
    std::vector<int> painted(side * side, 0);
    const auto fill = [](std::vector<int>* pixels, int x, int y, int width, int height) {
        for (int row = y; row < y + height; ++row) {
            for (int column = x; column < x + width; ++column) {
                (*pixels)[static_cast<std::size_t>(row * side + column)] += 1;
            }
        }
    };
    for (int i = 0; i < 60; ++i) {
        const auto [x0, x1] = std::minmax({edge(random), edge(random)});
        const auto [y0, y1] = std::minmax({edge(random), edge(random)});
        fill(&wanted, x0, y0, x1 - x0, y1 - y0);
        send.expose(x0, y0, x1 - x0, y1 - y0);
    }
    run_pass();
    for (const std::string& line : log.lines_of("paint")) {
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
        ASSERT_EQ(std::sscanf(line.c_str(), "paint %d %d %d %d", &x, &y, &width, &height), 4);
        fill(&painted, x, y, width, height);
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        ASSERT_EQ(painted[i], wanted[i] > 0 ? 1 : 0) << "pixel " << i;
    }
}

} // namespace
