// The measured scale with its console lines, the density of each axis, and the watch cursor.

#include "display/core/engine_desk.h"

#include "gui/ORX/core/window_properties.h"
#include "gui/ORX/core/window_table.h"
#include "gui/ORX/imaging/busy_cursor.h"
#include "gui/ORX/imaging/ui_scale.h"
#include "support/person.h"
#include "support/plain_cursors.h"

#include <X11/cursorfont.h>
#include <X11/extensions/Xfixes.h>

#include <cstdlib>
#include <vector>

namespace {

struct Measured {
    float scale = 0.0F;
    std::string console;
};

Measured measure(UiEngine* engine) {
    testing::internal::CaptureStdout();
    Measured measured;
    measured.scale = orx_ui_scale(engine);
    measured.console = testing::internal::GetCapturedStdout();
    return measured;
}

struct UiScale : testing::Test {
    void TearDown() override { unsetenv("ORXDPI"); }

    static Measured measure_with(const char* dpi) {
        setenv("ORXDPI", dpi, 1);
        const EngineDesk desk{{.open = false, .run = false}};
        return measure(desk.engine);
    }
};

TEST_F(UiScale, FollowsTheVariable) {
    const Measured measured = measure_with("144");
    EXPECT_FLOAT_EQ(measured.scale, 1.5F);
    EXPECT_EQ(measured.console, "ORX-UI: UI dpi 144\nORX-UI: UI scale 150.0 %\n");
}

TEST_F(UiScale, TakesTextForZero) {
    const Measured measured = measure_with("abc");
    EXPECT_FLOAT_EQ(measured.scale, 1.0F);
    EXPECT_EQ(measured.console, "ORX-UI: UI dpi 0\nORX-UI: UI scale 100.0 %\n");
}

TEST_F(UiScale, BoundsLargeAndNegativeValuesAndPrintsThemUnchanged) {
    EXPECT_EQ(measure_with("1000").console, "ORX-UI: UI dpi 1000\nORX-UI: UI scale 200.0 %\n");
    EXPECT_EQ(measure_with("-7").console, "ORX-UI: UI dpi -7\nORX-UI: UI scale 100.0 %\n");
    EXPECT_EQ(measure_with("4294967392").console, "ORX-UI: UI dpi 96\nORX-UI: UI scale 100.0 %\n");
}

TEST_F(UiScale, PrintsOneDecimalOfAnEighth) {
    EXPECT_EQ(measure_with("143").console, "ORX-UI: UI dpi 143\nORX-UI: UI scale 137.5 %\n");
}

TEST_F(UiScale, IsMeasuredOnceAndThenKept) {
    setenv("ORXDPI", "144", 1);
    const EngineDesk desk{{.open = false, .run = false}};
    measure(desk.engine);
    setenv("ORXDPI", "96", 1);
    const Measured again = measure(desk.engine);
    EXPECT_FLOAT_EQ(again.scale, 1.5F);
    EXPECT_EQ(again.console, "");
}

TEST_F(UiScale, IsOneWithoutADisplayWhateverTheVariableSays) {
    const EngineDesk desk{{.open = false, .run = false}};
    setenv("DISPLAY", ":not-a-display", 1);
    setenv("ORXDPI", "192", 1);
    const Measured measured = measure(desk.engine);
    EXPECT_FLOAT_EQ(measured.scale, 1.0F);
    EXPECT_EQ(measured.console, "");
}

struct DenseScreen {
    int dpi;
    const char* console;
};

struct UiScaleOfScreen : testing::TestWithParam<DenseScreen> {};

TEST_P(UiScaleOfScreen, IsThatOfItsDiagonal) {
    unsetenv("ORXDPI");
    const EngineDesk desk{{.server = {.width = 1920,
                                      .height = 1080,
                                      .extra_arguments = {"-dpi", std::to_string(GetParam().dpi)}},
                           .open = false,
                           .run = false}};
    EXPECT_EQ(measure(desk.engine).console, GetParam().console);
}

INSTANTIATE_TEST_SUITE_P(
    Screens, UiScaleOfScreen,
    testing::Values(DenseScreen{192, "ORX-UI: UI dpi 191\nORX-UI: UI scale 187.5 %\n"},
                    // So dense that the screen says it measures 0 mm.
                    DenseScreen{1'000'000,
                                "ORX-UI: UI dpi -2147483648\nORX-UI: UI scale 100.0 %\n"}),
    [](const auto& screen) { return std::to_string(screen.param.dpi); });

TEST(ScreenDpi, TellsBothAxesAndTheNumberOfScreens) {
    const EngineDesk desk{
        {.server = {.width = 1000, .height = 500, .screens = 2, .extra_arguments = {"-dpi", "100"}},
         .run = false}};
    std::int32_t vertical = 0;
    std::int32_t horizontal = 0;
    EXPECT_EQ(orx_screen_dpi(desk.engine, &vertical, &horizontal), 2);
    EXPECT_EQ(vertical, 100);
    EXPECT_EQ(horizontal, 100);
}

TEST(ScreenDpi, LeavesItsOutputsWithoutADisplay) {
    const EngineDesk desk{{.open = false, .run = false}};
    std::int32_t vertical = 5;
    std::int32_t horizontal = 6;
    EXPECT_EQ(orx_screen_dpi(desk.engine, &vertical, &horizontal), 0);
    EXPECT_EQ(vertical, 5);
    EXPECT_EQ(horizontal, 6);
}

// What is seen of the cursor.
struct CursorLook {
    int hot_x = 0;
    int hot_y = 0;
    int width = 0;
    std::vector<unsigned long> pixels;
    friend bool operator==(const CursorLook&, const CursorLook&) = default;
};

struct BusyCursor : testing::Test {
    support::PlainCursors plain_cursors;
    CallLog log;
    EngineDesk desk;
    WindowId id = desk.show_window(&log);
    support::Person person{desk.server.display_name()};
    Display* eyes = XOpenDisplay(desk.server.display_name().c_str());

    void SetUp() override {
        int event_base = 0;
        int error_base = 0;
        ASSERT_TRUE(XFixesQueryExtension(eyes, &event_base, &error_base));
        person.move_pointer(100, 100);
    }
    ~BusyCursor() override { XCloseDisplay(eyes); }

    CursorLook cursor() const {
        XFixesCursorImage* image = XFixesGetCursorImage(eyes);
        const CursorLook look{image->xhot,
                              image->yhot,
                              image->width,
                              {image->pixels, image->pixels + image->width * image->height}};
        XFree(image);
        return look;
    }
    // The cursor font's watch, as it looks over a window of another client.
    CursorLook watch() {
        const Window window =
            XCreateSimpleWindow(eyes, DefaultRootWindow(eyes), 400, 300, 50, 50, 0, 0, 0);
        XDefineCursor(eyes, window, XCreateFontCursor(eyes, XC_watch));
        XMapWindow(eyes, window);
        XSync(eyes, False);
        person.move_pointer(425, 325);
        const CursorLook look = cursor();
        XDestroyWindow(eyes, window);
        person.move_pointer(100, 100);
        return look;
    }
};

TEST_F(BusyCursor, IsTheWatchOverTheWindowAndIsTakenAway) {
    const CursorLook watch_look = watch();
    const CursorLook usual = cursor();
    ASSERT_NE(usual.pixels, watch_look.pixels);
    orx_window_set_busy_cursor(desk.engine, id, true);
    EXPECT_TRUE(support::wait_until([&] { return cursor() == watch_look; }));
    const Cursor made = desk.engine->busy_cursor;
    EXPECT_NE(made, 0U);
    orx_window_set_busy_cursor(desk.engine, id, false);
    EXPECT_TRUE(support::wait_until([&] { return cursor() == usual; }));
    orx_window_set_busy_cursor(desk.engine, id, true);
    EXPECT_EQ(desk.engine->busy_cursor, made);
}

TEST_F(BusyCursor, IsNotMadeForAFreeSlotOrAClosedDisplay) {
    orx_window_set_busy_cursor(desk.engine, 200, true);
    EXPECT_EQ(desk.engine->busy_cursor, 0U);
    engine_close_display(desk.engine);
    orx_window_set_busy_cursor(desk.engine, id, true);
    EXPECT_EQ(desk.engine->busy_cursor, 0U);
}

} // namespace
