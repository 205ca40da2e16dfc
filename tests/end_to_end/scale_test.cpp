// The screens at other densities: the same places, larger.

#include "end_to_end/expectations.h"

#include <cstdio>

namespace end_to_end {
namespace {

using support::Place;

// In dots per inch.
class AtDensity : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Densities, AtDensity, testing::Values(96, 144, 192));

Place centred(int width, int height) {
    return {1400 / 2 - width / 2, 1000 / 2 - height / 2, width, height};
}

TEST_P(AtDensity, EveryScreenIsScaledAndTakesClicks) {
    const std::string dpi = std::to_string(GetParam());
    const double scale = GetParam() / 96.0;
    Scenario scenario({.manager = support::WindowManagerKind::none,
                       .environment = {"LC_ALL=C", "ORXDPI=" + dpi},
                       .scale = scale});
    const int width = scenario.device(600);
    const int height = scenario.device(400);
    scenario.reach_splash();
    EXPECT_EQ(scenario.view().place_on_root(scenario.splash_window()), centred(width, height));
    scenario.reach_main_window_from_splash();
    EXPECT_EQ(scenario.view().place_on_root(scenario.main_window()), centred(width, height));
    scenario.reach_password_screen_from_main_window();
    scenario.give_password(user_password);
    scenario.reach_folder_browser();
    EXPECT_EQ(scenario.view().place_on_root(scenario.browser_window()),
              centred(scenario.device(640), scenario.device(432)));
    scenario.enter_folder_row(1);
    scenario.cancel_folder();
    scenario.reach_last_screen();
    EXPECT_EQ(scenario.lines_shown(scenario.picture_of(scenario.main_window())), "0 2 3");
    scenario.press_ok();
    EXPECT_TRUE(ended_clean(scenario.finish()));
    char lines[64];
    std::snprintf(lines, sizeof lines, "ORX-UI: UI dpi %s\nORX-UI: UI scale %.1f %%\n", dpi.c_str(),
                  scale * 100);
    EXPECT_NE(scenario.console().find(lines), std::string::npos);
}

} // namespace
} // namespace end_to_end
