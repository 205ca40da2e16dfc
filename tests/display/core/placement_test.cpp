// Where windows go and where they stand.

#include "display/core/engine_desk.h"

#include "gui/ORX/core/window_placement.h"
#include "gui/ORX/core/window_table.h"
#include "support/person.h"

#include <xcb/xcb.h>

#include <cstdlib>

namespace {

using support::WindowManagerKind;

struct Placement : testing::Test {
    EngineDesk desk{{.server = {.width = 1000, .height = 700}, .run = false}};
    support::Person person{desk.server.display_name()};
    std::int32_t x = 0;
    std::int32_t y = 0;

    bool place(int width, int height, float scale) {
        return place_near_pointer(desk.engine, &x, &y, width, height, scale);
    }
};

TEST_F(Placement, TheCentreIsHalfTheScreen) {
    screen_centre(desk.engine, &x, &y);
    EXPECT_EQ(x, 500);
    EXPECT_EQ(y, 350);
}

TEST_F(Placement, AWindowIsCentredUnderThePointerSixteenPixelsBelowItsTop) {
    person.move_pointer(500, 300);
    ASSERT_TRUE(place(401, 300, 1.0F));
    EXPECT_EQ(x, 300);
    EXPECT_EQ(y, 284);
}

TEST_F(Placement, TheScaleEnlargesWindowAndBand) {
    person.move_pointer(500, 300);
    ASSERT_TRUE(place(200, 100, 1.5F));
    EXPECT_EQ(x, 350);
    EXPECT_EQ(y, 276);
}

TEST_F(Placement, ItIsKeptInsideTheLeftAndTopEdge) {
    person.move_pointer(10, 10);
    ASSERT_TRUE(place(400, 300, 1.0F));
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
}

TEST_F(Placement, ItIsKeptInsideTheRightAndBottomEdge) {
    person.move_pointer(990, 690);
    ASSERT_TRUE(place(400, 300, 1.0F));
    EXPECT_EQ(x, 600);
    EXPECT_EQ(y, 400);
}

TEST_F(Placement, AWindowLargerThanTheScreenStartsAtItsCorner) {
    person.move_pointer(500, 10);
    ASSERT_TRUE(place(2000, 1500, 1.0F));
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
}

TEST_F(Placement, APositionOfTheCallersStays) {
    person.move_pointer(500, 300);
    x = 0;
    y = 7;
    ASSERT_TRUE(place(400, 300, 1.0F));
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 7);
}

TEST(PlacementOnTwoScreens, APointerOnTheOtherScreenCannotBeAskedFor) {
    EngineDesk desk{{.server = {.screens = 2}, .run = false}};
    const support::DisplayView second(desk.server.display_name(), 1);
    xcb_warp_pointer(second.connection(), 0, second.root(), 0, 0, 0, 0, 100, 100);
    std::free(xcb_get_input_focus_reply(second.connection(),
                                        xcb_get_input_focus(second.connection()), nullptr));
    std::int32_t x = 5;
    std::int32_t y = 6;
    EXPECT_FALSE(place_near_pointer(desk.engine, &x, &y, 10, 10, 1.0F));
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
}

struct FramePosition : testing::TestWithParam<WindowManagerKind> {};

TEST_P(FramePosition, IsThatOfTheOutermostFrame) {
    CallLog log;
    EngineDesk desk{{.window_manager = GetParam()}};
    const WindowId id = desk.show_window(&log, 100, 120);
    std::int32_t x = 0;
    std::int32_t y = 0;
    window_root_position(desk.engine, id, &x, &y);
    const support::Place inside = desk.view.place_on_root(desk.x_window(id));
    if (GetParam() == WindowManagerKind::none) {
        EXPECT_EQ(x, 100);
        EXPECT_EQ(y, 120);
    } else {
        EXPECT_LE(x, inside.x);
        EXPECT_LT(y, inside.y);
        EXPECT_GT(y, inside.y - 100);
    }
    window_root_position(desk.engine, 200, &x, &y);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
}

INSTANTIATE_TEST_SUITE_P(Worlds, FramePosition,
                         testing::Values(WindowManagerKind::none, WindowManagerKind::twm,
                                         WindowManagerKind::openbox),
                         [](const auto& world) { return window_manager_name(world.param); });

struct DeepFrames : testing::Test {
    CallLog log;
    EngineDesk desk{{.run = false}};

    // The last of count windows, each inside the one before, all 5 pixels in.
    WindowId nest(int count) {
        WindowId outer = desk.make_window(&log, 5, 5);
        for (int i = 1; i < count; ++i) {
            const WindowId inner = desk.make_window(&log, 5, 5);
            EXPECT_EQ(window_reparent(desk.engine, inner, desk.x_window(outer)), 0);
            outer = inner;
        }
        return outer;
    }
};

TEST_F(DeepFrames, TenLevelsAreClimbedAndElevenAreNot) {
    std::int32_t x = 0;
    std::int32_t y = 0;
    window_root_position(desk.engine, nest(10), &x, &y);
    EXPECT_EQ(x, 5);
    EXPECT_EQ(y, 5);
    window_root_position(desk.engine, nest(11), &x, &y);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
}

} // namespace
