// Small, huge and odd screens: the whole installation on each.

#include "end_to_end/expectations.h"
#include "end_to_end/installed_file.h"
#include "faults/surroundings.h"

namespace faults {
namespace {

using namespace end_to_end;

struct Screen {
    const char* name;
    support::XServerOptions options;
    std::vector<std::string> environment;
    std::string dpi_line = {}; // empty when it is of no interest
    support::WindowManagerKind manager = support::WindowManagerKind::openbox;
};

const Screen screens[] = {
    {"Huge8192x8192", {.width = 8192, .height = 8192}, {"LC_ALL=C", "ORXDPI=96"}},
    {"Two", {.width = 1400, .height = 1000, .screens = 2}, {"LC_ALL=C", "ORXDPI=96"}},
    // So dense that its size in millimetres rounds to nothing.
    {"OfNoMillimetres",
     {.width = 1400, .height = 1000, .extra_arguments = {"-dpi", "9999999"}},
     {"LC_ALL=C"},
     "ORX-UI: UI dpi -2147483648\nORX-UI: UI scale 100.0 %\n",
     support::WindowManagerKind::none},
};

class OddScreen : public testing::TestWithParam<Screen> {};

INSTANTIATE_TEST_SUITE_P(Is, OddScreen, testing::ValuesIn(screens),
                         [](const auto& screen) { return screen.param.name; });

TEST_P(OddScreen, ServesAnInstallation) {
    Scenario scenario({.manager = GetParam().manager,
                       .environment = GetParam().environment,
                       .screen = GetParam().options});
    scenario.reach_password_screen();
    install_from_password_screen(scenario, user_password);
    expect_installed(scenario);
    EXPECT_NE(scenario.console().find(GetParam().dpi_line), std::string::npos)
        << scenario.console();
}

// The browser is wider than the screen with its frame: what it needs is still in reach.
TEST(SmallScreen, ServesAnInstallation) {
    Scenario scenario({.screen = {.width = 640, .height = 480}});
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    const support::XWindow browser = scenario.view().wait_for_title(browser_title);
    const support::Place place = scenario.view().place_on_root(browser);
    const support::Place list_and_buttons{place.x + 16, place.y + 82, 100, 310};
    EXPECT_GE(list_and_buttons.x, 0);
    EXPECT_LE(list_and_buttons.y + list_and_buttons.height, 480);
    scenario.wait_for("the listing", [&] {
        return count_colour(take_picture(scenario.view(), scenario.view().root()),
                            {place.x + 34, place.y + 86, 40, 30}, {255, 255, 255}, 120) > 0;
    });
    scenario.click(browser, 16 + 32, 368 + 8);
    EXPECT_TRUE(scenario.view().wait_until_gone(browser));
    scenario.reach_last_screen();
    scenario.press_ok();
    EXPECT_TRUE(ended_clean(scenario.finish()));
    EXPECT_EQ(plugin_in(scenario.account().home), plugin_of_archive());
}

TEST(SecondScreen, IsWhereItsInstallerShows) {
    Scenario scenario({.screen = {.width = 1000, .height = 800, .screens = 2}});
    const std::string second = scenario.display_name() + ".1";
    const support::DisplayView view(second, 1);
    start_through_shell(scenario, "export DISPLAY=" + second);
    scenario.start();
    const support::XWindow splash = view.wait_for_class("zeph-inst-splash");
    EXPECT_EQ(view.place_on_root(splash), (support::Place{200, 200, 600, 400}));
    EXPECT_EQ(scenario.view().find_class("zeph-inst-splash"), std::nullopt);
    const support::XWindow window = view.wait_for_class("zeph-installer");
    EXPECT_EQ(scenario.view().find_class("zeph-installer"), std::nullopt);
    view.ask_to_close(window);
    EXPECT_TRUE(ended_clean(scenario.finish()));
}

} // namespace
} // namespace faults
