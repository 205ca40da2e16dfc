// The engine on screens of every depth.

#include "display/core/engine_desk.h"

#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/window_properties.h"
#include "gui/ORX/core/window_table.h"
#include "support/picture.h"

namespace {

struct ScreenDepth : testing::TestWithParam<int> {
    CallLog log;
    EngineDesk desk{{.server = {.depth = GetParam()}}};
};

TEST_P(ScreenDepth, WindowsAreShownInTheirColourAndPainted) {
    EXPECT_EQ(desk.engine->depth, GetParam());
    const WindowId id = window_create_colored(desk.engine, 10, 10, 40, 30, 248, 124, 0, &log, 1.0F);
    ASSERT_NE(id, no_window);
    record_calls(desk.engine, id);
    window_select_input(desk.engine, id);
    window_map(desk.engine, id);
    EXPECT_TRUE(log.wait_for("paint 0 0 40 30 " + std::to_string(id)));
    const support::Picture picture = support::take_picture(desk.view, desk.x_window(id));
    ASSERT_EQ(picture.width, 40);
    // A palette screen frees the colour right after use, and whoever asks next may change it.
    if (GetParam() != 8) {
        EXPECT_TRUE(support::near_colour(picture.at(20, 15), {248, 124, 0}, 8));
    }
}

TEST_P(ScreenDepth, AllKindsOfWindowsAreMadeAndEnded) {
    for (const WindowId id : {window_create_simple(desk.engine, 0, 0, 9, 9, &log, 1.0F),
                              window_create_splash(desk.engine, 0, 0, 9, 9, &log, 1.0F),
                              window_create_plain(desk.engine, 0, 0, 9, 9, &log, 1.0F)}) {
        ASSERT_NE(id, no_window);
        window_map(desk.engine, id);
        EXPECT_EQ(window_destroy(desk.engine, id), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Depths, ScreenDepth, testing::Values(8, 15, 16, 24, 30),
                         testing::PrintToStringParamName());

} // namespace
