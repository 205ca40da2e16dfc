// What a window manager, a taskbar or a person is told about the three windows.

#include "end_to_end/expectations.h"

#include <algorithm>

namespace end_to_end {
namespace {

using support::Colour;
using support::DisplayView;
using support::Picture;
using support::Place;
using support::SizeHints;
using support::WindowManagerKind;
using support::XWindow;
using Names = std::vector<std::string>;

constexpr std::uint32_t position_flag = 4;
constexpr std::uint32_t size_flags = 8 | 16 | 32; // size, minimum, maximum

class Windows : public testing::TestWithParam<WindowManagerKind> {};

INSTANTIATE_TEST_SUITE_P(InEveryWorld, Windows,
                         testing::Values(WindowManagerKind::none, WindowManagerKind::twm,
                                         WindowManagerKind::openbox),
                         [](const auto& kind) { return window_manager_name(kind.param); });

void expect_fixed_size(const DisplayView& view, XWindow window, int width, int height) {
    const std::optional<SizeHints> hints = view.size_hints(window);
    ASSERT_TRUE(hints);
    EXPECT_EQ(hints->flags & size_flags, size_flags);
    EXPECT_EQ(hints->min_width, width);
    EXPECT_EQ(hints->max_width, width);
    EXPECT_EQ(hints->min_height, height);
    EXPECT_EQ(hints->max_height, height);
    const Place place = view.place_on_root(window);
    EXPECT_EQ(place.width, width);
    EXPECT_EQ(place.height, height);
}

// That the window asks to stand in the middle of the screen of 1400 x 1000.
void expect_asks_for_the_middle(const DisplayView& view, XWindow window, int width, int height) {
    const std::optional<SizeHints> hints = view.size_hints(window);
    ASSERT_TRUE(hints);
    EXPECT_EQ(hints->flags & position_flag, position_flag);
    EXPECT_EQ(hints->x, (1400 - width) / 2);
    EXPECT_EQ(hints->y, (1000 - height) / 2);
}

// That the window's icon is that picture, where it is not transparent.
void expect_icon(const DisplayView& view, XWindow window, const std::string& file) {
    const std::vector<std::uint32_t> hints = view.numbers_property(window, "WM_HINTS");
    ASSERT_GE(hints.size(), 7U);
    constexpr std::uint32_t icon_pixmap_and_position = 20;
    EXPECT_EQ(hints[0], icon_pixmap_and_position);
    EXPECT_EQ(hints[5], 0U);
    EXPECT_EQ(hints[6], 0U);
    const Picture icon = take_picture(view, hints[3], {0, 0, 64, 64});
    const Picture artwork =
        support::load_png(std::string(ZEPH_SOURCE) + "/resources/artwork/" + file);
    ASSERT_EQ(icon.width, 64);
    // What today's desktops show, transparency and all: width, height, and the pixels.
    const std::vector<std::uint32_t> words = view.numbers_property(window, "_NET_WM_ICON");
    ASSERT_EQ(words.size(), 2U + 64 * 64);
    EXPECT_EQ(words[0], 64U);
    EXPECT_EQ(words[1], 64U);
    const Colour middle = artwork.at(32, 32);
    EXPECT_EQ(words[2 + 32 * 64 + 32], 0xFF000000U | static_cast<unsigned>(middle.red) << 16 |
                                           static_cast<unsigned>(middle.green) << 8 |
                                           static_cast<unsigned>(middle.blue));
    // Opaque pixels lose up to one step of brightness when they are blended.
    constexpr int blending = 2;
    EXPECT_TRUE(near_colour(icon.at(32, 32), artwork.at(32, 32), blending));
    EXPECT_LT(count_differences(icon, artwork, blending), 64 * 64 / 4);
}

void expect_asks_before_closing(const DisplayView& view, XWindow window) {
    EXPECT_EQ(view.atoms_property(window, "WM_PROTOCOLS"), Names{"WM_DELETE_WINDOW"});
}

TEST_P(Windows, TellWhatTheyAre) {
    const bool no_manager = GetParam() == WindowManagerKind::none;
    Scenario scenario({.manager = GetParam()});
    const DisplayView& view = scenario.view();

    scenario.reach_splash();
    const XWindow splash = scenario.splash_window();
    EXPECT_EQ(view.text_property(splash, "WM_CLASS"),
              std::string("zeph-inst-splash\0zeph-inst-splash\0", 34));
    EXPECT_EQ(view.atoms_property(splash, "_NET_WM_WINDOW_TYPE"),
              Names{"_NET_WM_WINDOW_TYPE_SPLASH"});
    const Names splash_state = view.atoms_property(splash, "_NET_WM_STATE");
    EXPECT_EQ(std::count(splash_state.begin(), splash_state.end(), "_NET_WM_STATE_ABOVE"), 1);
    expect_fixed_size(view, splash, 600, 400);
    expect_asks_for_the_middle(view, splash, 600, 400);
    expect_asks_before_closing(view, splash);
    EXPECT_EQ(count_differences(
                  scenario.picture_of(splash),
                  support::load_png(std::string(ZEPH_SOURCE) + "/resources/artwork/splash.png")),
              0);

    scenario.reach_main_window_from_splash();
    const XWindow window = scenario.main_window();
    EXPECT_TRUE(view.wait_until_gone(splash));
    EXPECT_EQ(view.title(window), title);
    EXPECT_EQ(view.text_property(window, "_NET_WM_NAME"), title);
    EXPECT_EQ(view.property(window, "_NET_WM_NAME")->type, "UTF8_STRING");
    EXPECT_EQ(view.property(window, "WM_NAME")->type, "STRING");
    EXPECT_EQ(view.text_property(window, "WM_CLASS"),
              std::string("zeph-installer\0zeph-installer\0", 30));
    expect_fixed_size(view, window, 600, 400);
    expect_asks_for_the_middle(view, window, 600, 400);
    expect_icon(view, window, "window_icon.png");
    expect_asks_before_closing(view, window);
    EXPECT_EQ(view.managed(window), !no_manager);

    scenario.reach_password_screen_from_main_window();
    scenario.give_password(user_password);
    scenario.reach_folder_browser();
    const XWindow browser = scenario.browser_window();
    EXPECT_EQ(view.text_property(browser, "_NET_WM_NAME"), browser_title);
    EXPECT_EQ(view.text_property(browser, "WM_CLASS"),
              std::string("zeph-installer\0zeph-installer\0", 30));
    EXPECT_EQ(view.numbers_property(browser, "WM_TRANSIENT_FOR"),
              std::vector<std::uint32_t>{window});
    EXPECT_EQ(view.atoms_property(browser, "_NET_WM_WINDOW_TYPE"),
              Names{"_NET_WM_WINDOW_TYPE_UTILITY"});
    const Names browser_state = view.atoms_property(browser, "_NET_WM_STATE");
    EXPECT_EQ(std::count(browser_state.begin(), browser_state.end(), "_NET_WM_STATE_ABOVE"), 1);
    expect_fixed_size(view, browser, 640, 432);
    expect_asks_for_the_middle(view, browser, 640, 432);
    expect_icon(view, browser, "folder_icon.png");
    expect_asks_before_closing(view, browser);
}

} // namespace
} // namespace end_to_end
