// Scrolling, asking for repaints, pixmaps and icons on a real server.
#include "display/imaging/shown_images.h"

#include "gui/ORX/core/window_properties.h"
#include "gui/ORX/core/window_table.h"
#include "gui/ORX/imaging/window_pixels.h"

#include <xcb/xcb.h>

#include <sys/resource.h>

#include <climits>
#include <cstdlib>
#include <thread>

namespace {

struct WindowPixels : testing::Test {
    EngineDesk desk;
    CallLog& log = desk.new_log();
    WindowId id = desk.show_window(&log);
    ImageSurface* surface = make_surface(desk.engine, 200, 100);

    void show_picture() { orx_image_put(desk.engine, id, surface, 0, 0, 0, 0, 200, 100); }
    void destroy_behind_the_engine(WindowId window) const {
        xcb_connection_t* other = desk.view.connection();
        xcb_destroy_window(other, desk.x_window(window));
        std::free(xcb_get_input_focus_reply(other, xcb_get_input_focus(other), nullptr));
    }
    ~WindowPixels() override { orx_image_free(desk.engine, surface); }
};

TEST_F(WindowPixels, ScrollMovesTheBandDown) {
    show_picture();
    orx_window_scroll(desk.engine, id, 10, 20, 50, 40, 7);
    EXPECT_TRUE(shows(desk, id, {0, 0, 200, 100}, 0, [](int x, int y) {
        const bool moved = x >= 10 && x < 60 && y >= 27 && y < 60;
        return colour_at(x, moved ? y - 7 : y);
    }));
}

TEST_F(WindowPixels, ScrollMovesTheBandUp) {
    show_picture();
    orx_window_scroll(desk.engine, id, 10, 20, 50, 40, -7);
    EXPECT_TRUE(shows(desk, id, {0, 0, 200, 100}, 0, [](int x, int y) {
        const bool moved = x >= 10 && x < 60 && y >= 20 && y < 53;
        return colour_at(x, moved ? y + 7 : y);
    }));
}

TEST_F(WindowPixels, ScrollByOnePixelMovesTheBandToo) {
    for (const int dy : {1, -1}) {
        show_picture();
        orx_window_scroll(desk.engine, id, 10, 20, 50, 40, dy);
        EXPECT_TRUE(shows(desk, id, {10, 22, 50, 36}, 0, [dy](int x, int y) {
            return colour_at(x, y - dy);
        })) << dy;
    }
}

TEST_F(WindowPixels, ScrollByMoreThanTheBandOrByNothingMovesNothing) {
    show_picture();
    for (const int dy : {0, 40, 41, 1000, INT_MAX, -40, -41, INT_MIN}) {
        orx_window_scroll(desk.engine, id, 10, 20, 50, 40, dy);
    }
    orx_window_scroll(desk.engine, id, 10, 20, 50, -40, 5);
    orx_window_scroll(desk.engine, id, 10, 20, -50, 40, 5);
    orx_window_scroll(desk.engine, id, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MIN);
    orx_window_scroll(desk.engine, 200, 10, 20, 50, 40, 5);
    orx_window_scroll(desk.engine, no_window, 10, 20, 50, 40, 5);
    EXPECT_TRUE(shows(desk, id, {0, 0, 200, 100}, 0, colour_at));
}

TEST_F(WindowPixels, WhatAnotherWindowCoveredIsRepaintedAfterAScroll) {
    CallLog& cover_log = desk.new_log();
    (void)desk.show_window(&cover_log, 90, 80, 30, 20); // over (40, 20) of the first window
    desk.settle(id, &log);
    log.clear();
    orx_window_scroll(desk.engine, id, 0, 0, 200, 100, 25);
    EXPECT_TRUE(log.wait_for("paint 40 45 30 20 " + std::to_string(id))) << log.text();
}

TEST_F(WindowPixels, ARequestIsPaintedOnTheEventThread) {
    log.clear();
    std::thread asker([&] { orx_window_request_redraw(desk.engine, id, 3, 4, 50, 60); });
    asker.join();
    EXPECT_TRUE(log.wait_for("paint 3 4 50 60 " + std::to_string(id)));
}

TEST_F(WindowPixels, RequestsFromOutsideTheWindowAreCut) {
    log.clear();
    orx_window_request_redraw(desk.engine, id, -10, -20, 30, 50);
    EXPECT_TRUE(log.wait_for("paint 0 0 20 30 " + std::to_string(id))) << log.text();
    log.clear();
    orx_window_request_redraw(desk.engine, id, 5, 5, 0, 9);
    orx_window_request_redraw(desk.engine, id, 5, 5, 9, -9);
    orx_window_request_redraw(desk.engine, id, INT_MIN, INT_MIN, INT_MAX, INT_MAX);
    orx_window_request_redraw(desk.engine, 200, 5, 5, 9, 9);
    desk.settle(id, &log);
    EXPECT_EQ(log.count("paint"), 0) << log.text();
}

TEST_F(WindowPixels, APixmapKeepsWhatWasPutAndIsShown) {
    const unsigned long pixmap = orx_pixmap_new(desk.engine, id, 200, 100);
    ASSERT_NE(pixmap, 0U);
    orx_pixmap_put(desk.engine, pixmap, surface, 0, 0, 0, 0, 200, 100);
    orx_pixmap_put(desk.engine, pixmap, surface, 50, 50, 0, 0, 10, 10);
    orx_pixmap_show(desk.engine, pixmap, id, 0, 0, 200, 100, 0, 0);
    EXPECT_TRUE(shows(desk, id, {0, 0, 200, 100}, 0, [](int x, int y) {
        return x < 10 && y < 10 ? colour_at(x + 50, y + 50) : colour_at(x, y);
    }));
    orx_pixmap_show(desk.engine, pixmap, id, 30, 40, 20, 10, 100, 60);
    EXPECT_TRUE(shows(desk, id, {100, 60, 20, 10}, 0,
                      [](int x, int y) { return colour_at(x - 70, y - 20); }));
    orx_pixmap_free(desk.engine, pixmap);
    // Freed: shows nothing, and ends nothing.
    orx_pixmap_show(desk.engine, pixmap, id, 0, 0, 200, 100, 0, 0);
    orx_pixmap_put(desk.engine, pixmap, surface, 0, 0, 0, 0, 9, 9);
    orx_pixmap_free(desk.engine, pixmap);
    orx_pixmap_free(desk.engine, 0);
    EXPECT_TRUE(shows(desk, id, {100, 60, 20, 10}, 0,
                      [](int x, int y) { return colour_at(x - 70, y - 20); }));
}

TEST_F(WindowPixels, APixmapThatTheServerRefusesIsNone) {
    const rlimit one_gigabyte{1U << 30U, 1U << 30U};
    ASSERT_EQ(prlimit(desk.server.process_id(), RLIMIT_AS, &one_gigabyte, nullptr), 0);
    EXPECT_EQ(orx_pixmap_new(desk.engine, id, 32767, 32767), 0U); // four
    EXPECT_NE(orx_pixmap_new(desk.engine, id, 100, 100), 0U);
    for (const auto& [width, height] : {std::pair{0, 5}, std::pair{5, -1}, std::pair{40000, 5},
                                        std::pair{INT_MAX, INT_MAX}, std::pair{65537, 65537}}) {
        EXPECT_EQ(orx_pixmap_new(desk.engine, id, width, height), 0U);
    }
    EXPECT_EQ(orx_pixmap_new(desk.engine, 200, 5, 5), 0U);
    EXPECT_EQ(orx_pixmap_new(desk.engine, no_window, 5, 5), 0U);
}

TEST_F(WindowPixels, AWindowThatTheServerLostEndsNothing) {
    desk.end_loop(); // nobody notices that the window has gone
    CallLog& lost_log = desk.new_log();
    const WindowId lost = desk.make_window(&lost_log);
    destroy_behind_the_engine(lost);
    orx_window_scroll(desk.engine, lost, 0, 0, 100, 100, 5);
    orx_window_request_redraw(desk.engine, lost, 0, 0, 100, 100);
    EXPECT_EQ(orx_pixmap_new(desk.engine, lost, 5, 5), 0U);
    orx_pixmap_show(desk.engine, 12345, lost, 0, 0, 5, 5, 0, 0);
    orx_window_set_icon(desk.engine, make_blob(4, 4, {1, 2, 3}, 255).data(), lost);
    EXPECT_NE(engine_display(desk.engine), nullptr);
}

TEST_F(WindowPixels, NothingHappensWithoutADisplay) {
    const unsigned long pixmap = orx_pixmap_new(desk.engine, id, 5, 5);
    orx_image_free(desk.engine, surface);
    surface = nullptr;
    desk.end_loop();
    engine_close_display(desk.engine);
    orx_window_scroll(desk.engine, id, 0, 0, 9, 9, 3);
    orx_window_request_redraw(desk.engine, id, 0, 0, 9, 9);
    orx_pixmap_show(desk.engine, pixmap, id, 0, 0, 5, 5, 0, 0);
    orx_pixmap_free(desk.engine, pixmap);
    EXPECT_EQ(orx_pixmap_new(desk.engine, id, 5, 5), 0U);
    orx_window_set_icon(desk.engine, make_blob(4, 4, {1, 2, 3}, 255).data(), id);
}

struct IconTest : WindowPixels {
    // Flags, and the icon pixmap: the first and the fourth number of WM_HINTS.
    [[nodiscard]] std::vector<std::uint32_t> hints() const {
        return desk.view.numbers_property(desk.x_window(id), "WM_HINTS");
    }
    // Shows the icon pixmap on the window itself, to look at it.
    void show_icon() const { orx_pixmap_show(desk.engine, hints().at(3), id, 0, 0, 64, 64, 0, 0); }
};

TEST_F(IconTest, IsAPixmapThatTheHintsName) {
    const support::Colour orange{255, 176, 0};
    orx_window_set_icon(desk.engine, make_blob(64, 64, orange, 255).data(), id);
    ASSERT_EQ(hints().size(), 9U);
    EXPECT_EQ(hints()[0], 20U);
    EXPECT_EQ(hints()[5], 0U); // position
    EXPECT_EQ(hints()[6], 0U);
    EXPECT_EQ(hints()[3], desk.engine->windows[id].pixmap);
    show_icon();
    // Flattened over black, which leaves its residue.
    EXPECT_TRUE(shows(desk, id, {0, 0, 64, 64}, 0, [](int, int) {
        return support::Colour{254, 175, 0};
    }));
}

TEST_F(IconTest, ThatIsTransparentEverywhereIsBlack) {
    show_picture();
    orx_window_set_icon(desk.engine, make_blob(64, 64, {255, 176, 40}, 0).data(), id);
    show_icon();
    EXPECT_TRUE(shows(desk, id, {0, 0, 64, 64}, 0, [](int, int) {
        return support::Colour{0, 0, 0};
    }));
}

TEST_F(IconTest, AnotherOneTakesThePlaceOfTheFirst) {
    orx_window_set_icon(desk.engine, make_blob(64, 64, {9, 9, 9}, 255).data(), id);
    const std::uint32_t first = hints().at(3);
    orx_window_set_icon(desk.engine, make_blob(64, 64, {90, 80, 70}, 128).data(), id);
    EXPECT_NE(hints().at(3), first);
    show_icon();
    EXPECT_TRUE(shows(desk, id, {0, 0, 64, 64}, 0, [](int, int) {
        return support::Colour{45, 40, 35};
    }));
    xcb_connection_t* other = desk.view.connection();
    xcb_get_geometry_reply_t* gone =
        xcb_get_geometry_reply(other, xcb_get_geometry(other, first), nullptr);
    EXPECT_EQ(gone, nullptr) << "the first icon's pixmap is still there";
    std::free(gone);
}

TEST_F(IconTest, IsKeptWithItsTransparencyForTodaysDesktops) {
    const auto words = [&] {
        return desk.view.numbers_property(desk.x_window(id), "_NET_WM_ICON");
    };
    orx_window_set_icon(desk.engine, make_blob(2, 1, {0xF1, 0x22, 0x03}, 0x84).data(), id);
    EXPECT_EQ(words(), (std::vector<std::uint32_t>{2, 1, 0x84F12203, 0x84F12203}));
    orx_window_set_icon(desk.engine, make_blob(64, 64, {1, 2, 3}, 0).data(), id);
    EXPECT_EQ(words().size(), 2U + 64 * 64);
    EXPECT_EQ(words().back(), 0x00010203U);
    EXPECT_EQ(desk.view.property(desk.x_window(id), "_NET_WM_ICON")->type, "CARDINAL");
}

// The server takes no request of more than 256 KB from a program that asks for no larger ones.
TEST_F(IconTest, ThatIsTooLargeForOneRequestIsAPixmapOnly) {
    orx_window_set_icon(desk.engine, make_blob(256, 256, {1, 2, 3}, 255).data(), id);
    EXPECT_EQ(hints().size(), 9U);
    EXPECT_FALSE(desk.view.property(desk.x_window(id), "_NET_WM_ICON"));
    EXPECT_NE(engine_display(desk.engine), nullptr);
}

TEST_F(IconTest, WithoutTheMagicOrOfAbsurdSizeSetsNone) {
    std::vector<unsigned char> blob = make_blob(4, 4, {1, 2, 3}, 255);
    blob[3] = 'Q';
    testing::internal::CaptureStdout();
    orx_window_set_icon(desk.engine, blob.data(), id);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "orx_pixbuf_new_from_inline - pixbuf is not a pixbuf test failed\n");
    for (const std::uint8_t high : {std::uint8_t{0xFF}, std::uint8_t{0x7F}}) {
        std::vector<unsigned char> absurd = make_blob(1, 1, {1, 2, 3}, 255);
        absurd[16] = absurd[20] = high; // a width and height of billions
        orx_window_set_icon(desk.engine, absurd.data(), id);
    }
    std::vector<unsigned char> empty = make_blob(0, 0, {1, 2, 3}, 255);
    orx_window_set_icon(desk.engine, empty.data(), id);
    orx_window_set_icon(desk.engine, make_blob(4, 4, {1, 2, 3}, 255).data(), 200);
    EXPECT_TRUE(hints().empty());
    EXPECT_FALSE(desk.view.property(desk.x_window(id), "_NET_WM_ICON"));
    EXPECT_EQ(desk.engine->windows[id].pixmap, 0U);
}

} // namespace
