// The tests' own tools at work: a window seen, pictured, typed into and closed in every world.

#include "support/person.h"
#include "support/picture.h"
#include "support/window_manager.h"
#include "support/x_server.h"

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace support {
namespace {

// A plain window of one colour that takes keys.
xcb_window_t show_window(const DisplayView& view, std::uint32_t pixel, const std::string& title) {
    xcb_connection_t* connection = view.connection();
    const xcb_window_t window = xcb_generate_id(connection);
    const std::uint32_t values[] = {pixel, XCB_EVENT_MASK_KEY_PRESS};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, view.root(), 40, 30, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME,
                        XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(title.size()),
                        title.c_str());
    xcb_map_window(connection, window);
    xcb_flush(connection);
    return window;
}

class InEveryWorld : public testing::TestWithParam<WindowManagerKind> {};

INSTANTIATE_TEST_SUITE_P(Worlds, InEveryWorld,
                         testing::Values(WindowManagerKind::none, WindowManagerKind::twm,
                                         WindowManagerKind::openbox),
                         [](const auto& kind) { return window_manager_name(kind.param); });

TEST_P(InEveryWorld, AWindowIsFoundByTitleAndItsPixelsAreRead) {
    const XServer server;
    const WindowManager manager(GetParam(), server.display_name());
    const DisplayView view(server.display_name());
    const xcb_window_t window = show_window(view, 0x12ab7f, "probe of the tests");

    EXPECT_EQ(view.wait_for_title("probe of the tests"), window);
    EXPECT_EQ(view.managed(window), GetParam() != WindowManagerKind::none);
    const Picture picture = take_picture(view, window);
    ASSERT_EQ(picture.width, 200);
    EXPECT_EQ(count_colour(picture, {0, 0, 200, 100}, {0x12, 0xab, 0x7f}), 200 * 100);
}

TEST_P(InEveryWorld, TypedKeysReachTheWindowUnderThePointer) {
    const XServer server;
    const WindowManager manager(GetParam(), server.display_name());
    const DisplayView view(server.display_name());
    const xcb_window_t window = show_window(view, 0, "probe of the tests");
    const Place place = view.place_on_root(view.wait_for_title("probe of the tests"));
    Person person(server.display_name());
    person.click_at(place.x + 20, place.y + 20);
    int keys = 0;
    const auto three_keys = [&] {
        while (xcb_generic_event_t* event = xcb_poll_for_event(view.connection())) {
            keys += (event->response_type & 0x7f) == XCB_KEY_PRESS ? 1 : 0;
            std::free(event);
        }
        // Shift and a, b, and the spare key that was given the letter omega.
        return keys == 4;
    };
    ASSERT_TRUE(wait_until(
        [&] { return GetParam() != WindowManagerKind::openbox || view.input_focus() == window; }));
    person.type("Ab\xcf\x89");
    EXPECT_TRUE(wait_until(three_keys)) << keys;
}

class AtEveryDepth : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Depths, AtEveryDepth, testing::Values(8, 15, 16, 24, 30));

TEST_P(AtEveryDepth, PicturesHoldTheWhiteOfTheScreenAsWhite) {
    const XServer server({.width = 640, .height = 480, .depth = GetParam()});
    const DisplayView view(server.display_name());
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(view.connection())).data;
    show_window(view, screen->white_pixel, "white");
    const xcb_window_t window = view.wait_for_title("white");
    const Picture picture = take_picture(view, window);
    EXPECT_EQ(count_colour(picture, {0, 0, 200, 100}, {255, 255, 255}), 200 * 100);
    EXPECT_EQ(take_picture(view, view.root()).at(0, 0), (Colour{0, 0, 0}));
}

TEST(Pictures, ComeBackFromAFileAsTheyWere) {
    const Picture picture{2, 1, {1, 2, 3, 250, 128, 0}};
    const std::string path = testing::TempDir() + "/picture-" + std::to_string(getpid()) + ".png";
    save_png(picture, path);
    const Picture loaded = load_png(path);
    std::remove(path.c_str());
    EXPECT_EQ(count_differences(picture, loaded), 0);
    EXPECT_EQ(loaded.at(1, 0), (Colour{250, 128, 0}));
}

TEST(ChildPrograms, TellTheirOutputTheirErrorsAndHowTheyEnded) {
    ChildProcess child({.command = {"sh", "-c", "echo out; echo err >&2; exit 7"}});
    const auto end = child.wait_for_end();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->exit_status, 7);
    EXPECT_EQ(child.output(), "out\n");
    EXPECT_EQ(child.error_output(), "err\n");
}

TEST(ChildPrograms, CanBeTypedToOnATerminal) {
    ChildProcess child(
        {.command = {"sh", "-c", "read word; echo \"got $word\""}, .terminal = true});
    child.type_on_terminal("rope\n");
    EXPECT_TRUE(child.wait_for_output("got rope"));
    EXPECT_TRUE(child.wait_for_end());
}

TEST(ChildPrograms, ThatDoNotExistEndWithStatus127) {
    ChildProcess child({.command = {"/no/such/program"}});
    const auto end = child.wait_for_end();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->exit_status, 127);
}

} // namespace
} // namespace support
