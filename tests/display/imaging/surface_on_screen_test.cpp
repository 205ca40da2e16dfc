// Surfaces on screens of every depth: what is drawn is what the server shows.
#include "display/imaging/shown_images.h"

#include "gui/ORX/core/event_loop.h"
#include "gui/ORX/core/window_table.h"
#include "gui/ORX/imaging/scaler.h"
#include "gui/ORX/imaging/surface_effects.h"
#include "gui/ORX/imaging/surface_pixels.h"
#include "gui/ORX/imaging/window_pixels.h"

#include <X11/Xutil.h>
#include <xcb/xcb.h>

#include <climits>
#include <cstring>
#include <thread>

// Once a connection is broken Xlib unlocks the display's own mutex twice; nobody uses it again.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
    return "mutex:libX11.so\n";
}

namespace {

struct SurfaceOnScreen : testing::TestWithParam<int> {
    EngineDesk desk{{.server = {.depth = GetParam()}}};
    CallLog& log = desk.new_log();
    WindowId id = desk.show_window(&log);
};

TEST_P(SurfaceOnScreen, ShowsAPictureOneToOneAndScaled) {
    ImageSurface* surface = make_surface(desk.engine, 60, 40);
    ASSERT_NE(surface, nullptr);
    EXPECT_NE(surface_writer(surface).route, SurfaceRoute::image_function);
    orx_image_put(desk.engine, id, surface, 0, 0, 10, 20, 60, 40);
    EXPECT_TRUE(shows(desk, id, {10, 20, 60, 40}, 8,
                      [](int x, int y) { return colour_at(x - 10, y - 20); }));

    Pixbuf* picture = make_picture(desk.engine, 60, 40);
    orx_image_free(desk.engine, surface);
    surface = orx_image_new(desk.engine, 120, 80);
    orx_image_scale_from_pixbuf(desk.engine, picture, surface, 0, 0, 120, 80, 0, 0, 2.0F);
    orx_image_put(desk.engine, id, surface, 0, 0, 0, 0, 120, 80);
    // Even pixels of twice the size are the picture's own.
    const support::Picture shown = support::take_picture(desk.view, desk.x_window(id));
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 60; ++x) {
            ASSERT_TRUE(support::near_colour(shown.at(2 * x, 2 * y), colour_at(x, y), 8));
        }
    }
    orx_pixbuf_free(desk.engine, picture);
    orx_image_free(desk.engine, surface);
}

INSTANTIATE_TEST_SUITE_P(Depths, SurfaceOnScreen, testing::Values(15, 16, 24, 30),
                         testing::PrintToStringParamName());

TEST(SurfaceOnAPaletteScreen, IsBlackAndHarmless) {
    EngineDesk desk{{.server = {.depth = 8}}};
    CallLog& log = desk.new_log();
    const WindowId id = desk.show_window(&log);
    ImageSurface* surface = make_surface(desk.engine, 20, 10);
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(surface_writer(surface).route, SurfaceRoute::image_function);
    for (int i = 0; i < surface->bytes_per_line * surface->height; ++i) {
        EXPECT_EQ(surface->data[i], 0);
    }
    orx_image_put(desk.engine, id, surface, 0, 0, 0, 0, 20, 10);
    orx_image_free(desk.engine, surface);
}

struct SurfaceTest : testing::Test {
    EngineDesk desk;
    CallLog& log = desk.new_log();
    WindowId id = desk.show_window(&log);
};

TEST_F(SurfaceTest, IsBornZeroFilled) {
    ImageSurface* surface = orx_image_new(desk.engine, 33, 7);
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(surface->width, 33);
    EXPECT_EQ(surface->height, 7);
    EXPECT_EQ(surface->bitmap_pad, 32);
    EXPECT_EQ(surface->format, ZPixmap);
    for (int i = 0; i < surface->bytes_per_line * 7; ++i) {
        EXPECT_EQ(surface->data[i], 0);
    }
    orx_image_free(desk.engine, surface);
}

TEST_F(SurfaceTest, OfAbsurdSizesIsNull) {
    for (const auto& [width, height] :
         {std::pair{0, 5}, std::pair{5, 0}, std::pair{-1, 5}, std::pair{INT_MIN, INT_MIN},
          std::pair{INT_MAX, INT_MAX}, std::pair{1, INT_MAX}, std::pair{65535, 65535}}) {
        EXPECT_EQ(orx_image_new(desk.engine, width, height), nullptr);
    }
}

TEST_F(SurfaceTest, IsNullWhenTheDisplayHasGone) {
    ImageSurface* surface = orx_image_new(desk.engine, 5, 5);
    ASSERT_NE(surface, nullptr);
    desk.end_loop();
    engine_close_display(desk.engine);
    EXPECT_EQ(orx_image_new(desk.engine, 5, 5), nullptr);
    orx_image_put(desk.engine, id, surface, 0, 0, 0, 0, 5, 5);
    orx_image_free(desk.engine, surface); // nothing happens without a display
    EXPECT_EQ(surface->width, 5);
    XDestroyImage(surface);
}

TEST_F(SurfaceTest, IsNullWhenTheConnectionIsLostAndFreedAllTheSame) {
    ImageSurface* surface = orx_image_new(desk.engine, 5, 5);
    ASSERT_NE(surface, nullptr);
    desk.server.stop();
    ASSERT_TRUE(support::wait_until([this] { return engine_connection_lost(desk.engine); }));
    EXPECT_EQ(orx_image_new(desk.engine, 5, 5), nullptr);
    orx_image_put(desk.engine, id, surface, 0, 0, 0, 0, 5, 5);
    orx_window_scroll(desk.engine, id, 0, 0, 5, 5, 1);
    orx_window_request_redraw(desk.engine, id, 0, 0, 5, 5);
    orx_window_set_icon(desk.engine, make_blob(4, 4, {1, 2, 3}, 255).data(), id);
    orx_image_free(desk.engine, surface); // the leak checker watches
}

TEST_F(SurfaceTest, PutsAPartAndCutsWhatIsOutside) {
    ImageSurface* surface = make_surface(desk.engine, 40, 30);
    ImageSurface* black = orx_image_new(desk.engine, 200, 100);
    orx_image_put(desk.engine, id, black, 0, 0, 0, 0, 200, 100);
    orx_image_put(desk.engine, id, surface, 5, 6, 20, 10, 7, 8);
    EXPECT_TRUE(shows(desk, id, {0, 0, 200, 100}, 0, [](int x, int y) {
        const bool inside = x >= 20 && x < 27 && y >= 10 && y < 18;
        return inside ? colour_at(x - 15, y - 4) : support::Colour{0, 0, 0};
    }));
    // Left of and above the window, and beyond the surface.
    orx_image_put(desk.engine, id, surface, 0, 0, -30, -25, 40, 30);
    EXPECT_TRUE(
        shows(desk, id, {0, 0, 10, 5}, 0, [](int x, int y) { return colour_at(x + 30, y + 25); }));
    orx_image_put(desk.engine, id, surface, -5, -5, 95, 45, 1000, INT_MAX);
    EXPECT_TRUE(shows(desk, id, {100, 50, 40, 30}, 0,
                      [](int x, int y) { return colour_at(x - 100, y - 50); }));
    // Positions that the protocol would wrap round into the window.
    orx_image_put(desk.engine, id, black, 0, 0, 0, 0, 200, 100);
    orx_image_put(desk.engine, id, surface, 0, 0, 65536 + 3, 65536 + 3, 40, 30);
    orx_image_put(desk.engine, id, surface, 65536, 0, 3, 3, 40, 30);
    orx_image_put(desk.engine, id, surface, INT_MAX, INT_MIN, INT_MIN, INT_MAX, INT_MAX, INT_MAX);
    EXPECT_TRUE(shows(desk, id, {0, 0, 200, 100}, 0, [](int, int) {
        return support::Colour{0, 0, 0};
    }));
    orx_image_free(desk.engine, black);
    orx_image_free(desk.engine, surface);
}

TEST_F(SurfaceTest, AFreeSlotTakesNothing) {
    ImageSurface* surface = make_surface(desk.engine, 5, 5);
    const support::Picture before = support::take_picture(desk.view, desk.x_window(id));
    testing::internal::CaptureStdout();
    orx_image_put(desk.engine, 200, surface, 0, 0, 0, 0, 5, 5);
    orx_image_put(desk.engine, no_window, surface, 0, 0, 0, 0, 5, 5);
    orx_image_put(desk.engine, window_capacity, surface, 0, 0, 0, 0, 5, 5);
    orx_image_put(desk.engine, id, nullptr, 0, 0, 0, 0, 5, 5);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), ""); // where an X error would be told
    EXPECT_EQ(
        support::count_differences(before, support::take_picture(desk.view, desk.x_window(id))), 0);
    orx_image_free(desk.engine, surface);
}

TEST_F(SurfaceTest, AWindowThatTheServerLostEndsNothing) {
    desk.end_loop(); // nobody notices that the window has gone
    CallLog& lost_log = desk.new_log();
    const WindowId lost = desk.make_window(&lost_log);
    xcb_connection_t* other = desk.view.connection();
    xcb_destroy_window(other, desk.x_window(lost));
    std::free(xcb_get_input_focus_reply(other, xcb_get_input_focus(other), nullptr));
    ImageSurface* surface = make_surface(desk.engine, 5, 5);
    orx_image_put(desk.engine, lost, surface, 0, 0, 0, 0, 5, 5);
    orx_image_show_dimmed(desk.engine, lost, surface);
    orx_image_free(desk.engine, surface);
    EXPECT_NE(engine_display(desk.engine), nullptr);
}

TEST_F(SurfaceTest, TwoThreadsDrawAtOnce) {
    ImageSurface* surface = orx_image_new(desk.engine, 200, 100);
    Pixbuf* picture = make_picture(desk.engine, 200, 100);
    Pixbuf* other_picture = make_picture(desk.engine, 200, 100);
    const auto draw = [&](Pixbuf* source) {
        for (int i = 0; i < 50; ++i) {
            orx_image_scale_from_pixbuf(desk.engine, source, surface, 0, 0, 200, 100, 0, 0, 1.0F);
            orx_image_put(desk.engine, id, surface, 0, 0, 0, 0, 200, 100);
        }
    };
    std::thread painter([&] { draw(other_picture); });
    draw(picture);
    painter.join();
    EXPECT_TRUE(shows(desk, id, {0, 0, 200, 100}, 0, colour_at));
    orx_pixbuf_free(desk.engine, picture);
    orx_pixbuf_free(desk.engine, other_picture);
    orx_image_free(desk.engine, surface);
}

struct EffectTest : SurfaceTest {
    ImageSurface* surface = make_surface(desk.engine, 60, 40);
    std::vector<char> before{surface->data,
                             surface->data + surface->bytes_per_line * surface->height};

    void expect_restored() const {
        EXPECT_EQ(std::memcmp(before.data(), surface->data, before.size()), 0);
    }
    ~EffectTest() override { orx_image_free(desk.engine, surface); }
};

TEST_F(EffectTest, GreyHasDarkerBandsAndTheSurfaceIsAsBefore) {
    for (const float scale : {1.0F, 2.0F, 1.5F}) {
        orx_image_show_greyed(desk.engine, id, surface, scale);
        EXPECT_TRUE(shows(desk, id, {0, 0, 60, 40}, 0, [scale](int x, int y) {
            const support::Colour c = colour_at(x, y);
            int grey = c.red / 4 + c.green / 2 + c.blue / 8;
            const int step = static_cast<int>(256 / scale);
            if ((y * step / 256) % 2 == 1) {
                grey -= grey / 8;
            }
            return support::Colour{grey, grey, grey};
        }));
        expect_restored();
    }
    const support::Picture shown = support::take_picture(desk.view, desk.x_window(id));
    for (const float scale : {0.0F, -1.0F, 1e-30F}) {
        orx_image_show_greyed(desk.engine, id, surface, scale);
    }
    orx_image_show_greyed(desk.engine, id, nullptr, 1.0F);
    orx_image_show_greyed(desk.engine, 200, surface, 1.0F);
    EXPECT_EQ(
        support::count_differences(shown, support::take_picture(desk.view, desk.x_window(id))), 0);
    expect_restored();
}

TEST_F(EffectTest, DimHalvesEveryChannelAndTheSurfaceIsAsBefore) {
    orx_image_show_dimmed(desk.engine, id, surface);
    EXPECT_TRUE(shows(desk, id, {0, 0, 60, 40}, 0, [](int x, int y) {
        const support::Colour c = colour_at(x, y);
        return support::Colour{c.red / 2, c.green / 2, c.blue / 2};
    }));
    expect_restored();
}

TEST_F(EffectTest, APatternedBandRunsAlongTheEdges) {
    ImageSurface* edged = orx_image_new_with_edge(desk.engine, 50, 30, 4, 200, 100, 60);
    ASSERT_NE(edged, nullptr);
    orx_image_put(desk.engine, id, edged, 0, 0, 0, 0, 50, 30);
    EXPECT_TRUE(shows(desk, id, {0, 0, 50, 30}, 0, [](int x, int y) {
        if (x >= 4 && x < 46 && y >= 4 && y < 26) {
            return support::Colour{0, 0, 0};
        }
        return (x + y) / 4 % 2 == 0 ? support::Colour{200, 100, 60} : support::Colour{100, 50, 30};
    }));
    orx_image_free(desk.engine, edged);
    EXPECT_EQ(orx_image_new_with_edge(desk.engine, 0, 30, 4, 1, 2, 3), nullptr);
    for (const int band : {0, -4, INT_MIN, INT_MAX}) {
        ImageSurface* odd = orx_image_new_with_edge(desk.engine, 5, 5, band, 9, 9, 9);
        ASSERT_NE(odd, nullptr);
        EXPECT_EQ(XGetPixel(odd, 2, 2), band > 0 ? 0x090909U : 0U);
        orx_image_free(desk.engine, odd);
    }
}

} // namespace
