// choice_test.cpp: the person says for whom it is installed.
#include "end_to_end/scenario.h"

#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <memory>
#include <utility>

namespace fs = std::filesystem;

using end_to_end::Rights;
using end_to_end::Scenario;
using end_to_end::ScenarioOptions;
using support::output_of;

namespace {

constexpr const char* bundle_for_everybody = "/usr/local/lib/lv2/lantern-tilt.lv2";

// Within the buttons, in design pixels.
constexpr int for_me = 200;
constexpr int for_everybody = 400;
constexpr int button_row = 366;

class Choice : public testing::Test {
protected:
    void set_up(const ScenarioOptions& options) {
        ScenarioOptions all = options;
        all.browser_title = "- Select your LV2 plug-in folder -";
        all.keep_visible = {ZEPH_SOURCE};
        scenario_ = std::make_unique<Scenario>(all);
        fs::remove_all("/usr/local/lib/lv2");
        scenario_->reach_main_window();
        scenario_->wait_for("the choice", [this] { return asks(); });
    }

    [[nodiscard]] support::Picture picture() const {
        return scenario_->picture_of(scenario_->main_window());
    }

    // The texts, and both buttons.
    [[nodiscard]] bool asks() const {
        const support::Picture screen = picture();
        return scenario_->lines_shown(screen) == "0 2 4 5" && is_grey(screen, 160, 358) &&
               is_grey(screen, 440, 358);
    }

    [[nodiscard]] bool is_grey(const support::Picture& screen, double x, double y) const {
        return support::near_colour(screen.at(scenario_->device(x), scenario_->device(y)),
                                    {56, 56, 56}, 2);
    }

    // Whether the border of the button that begins there is the one with the keyboard.
    [[nodiscard]] bool has_keyboard(int left) const {
        const support::Place edge{scenario_->device(left - 1), scenario_->device(360),
                                  scenario_->device(3), scenario_->device(8)};
        return support::count_colour(picture(), edge, {255, 47, 255}, 40) > 0;
    }

    void click(int x) { scenario_->click(scenario_->main_window(), x, button_row); }

    // Focused by a click beside everything.
    void press(unsigned long key) {
        scenario_->focus_main_window();
        scenario_->person().press_key(key);
    }

    void install_from_browser() {
        scenario_->reach_folder_browser();
        scenario_->accept_folder();
        scenario_->reach_last_screen();
        EXPECT_NE(scenario_->console().find("Installation Complete"), std::string::npos)
            << scenario_->console();
        scenario_->press_ok();
        EXPECT_EQ(scenario_->finish().exit_status, 0);
    }

    [[nodiscard]] bool installed_at_home() const {
        return fs::exists(scenario_->account().home + "/.lv2/lantern-tilt.lv2/manifest.ttl");
    }

    std::unique_ptr<Scenario> scenario_;
};

} // namespace

TEST_F(Choice, ForMeNeedsNoPassword) {
    set_up({.rights = Rights::none});
    click(for_me);
    install_from_browser();
    EXPECT_TRUE(installed_at_home());
    EXPECT_FALSE(fs::exists("/usr/local/lib/lv2"));
    EXPECT_EQ(scenario_->console().find("Password"), std::string::npos);
}

TEST_F(Choice, ForEverybodyAsksForThePassword) {
    for (const Rights rights : {Rights::sudo, Rights::only_su}) {
        set_up({.rights = rights});
        click(for_everybody);
        scenario_->reach_password_screen_from_main_window();
        scenario_->give_password("wrong");
        scenario_->reach_wrong_password_screen();
        scenario_->give_password(rights == Rights::sudo ? end_to_end::user_password
                                                        : end_to_end::root_password);
        install_from_browser();
        EXPECT_TRUE(fs::exists(bundle_for_everybody));
        EXPECT_FALSE(fs::exists(scenario_->account().home + "/.lv2"));
        scenario_.reset();
    }
}

TEST_F(Choice, ForEverybodyWithoutSudoAndSuSaysSoAndEnds) {
    set_up({.rights = Rights::none});
    click(for_everybody);
    scenario_->wait_for("the error",
                        [this] { return scenario_->lines_shown(picture()) == "0 2 3 4 5 7"; });
    press(XK_a);
    press(XK_Return);
    EXPECT_FALSE(scenario_->field_shown(picture()));
    EXPECT_EQ(scenario_->finish().exit_status, 0);
}

TEST_F(Choice, IsMadeByTheKeyboard) {
    set_up({.rights = Rights::sudo});
    EXPECT_TRUE(has_keyboard(150));
    EXPECT_FALSE(has_keyboard(310));
    press(XK_a); // means nothing here
    press(XK_Tab);
    scenario_->wait_for("the other button's border", [this] { return has_keyboard(310); });
    EXPECT_FALSE(has_keyboard(150));
    press(XK_Tab);
    scenario_->wait_for("the first button's border", [this] { return has_keyboard(150); });
    press(XK_Right);
    scenario_->wait_for("the other button's border", [this] { return has_keyboard(310); });
    press(XK_Left);
    scenario_->wait_for("the first button's border", [this] { return has_keyboard(150); });
    press(XK_Right);
    press(XK_Return);
    scenario_->reach_password_screen_from_main_window();
    scenario_->give_password(end_to_end::user_password);
    install_from_browser();
    EXPECT_TRUE(fs::exists(bundle_for_everybody));
}

TEST_F(Choice, ByReturnAloneIsForMe) {
    set_up({.rights = Rights::sudo});
    press(XK_Return);
    install_from_browser();
    EXPECT_TRUE(installed_at_home());
}

TEST_F(Choice, IsNotMadeByAClickThatIsLetGoElsewhere) {
    set_up({.rights = Rights::sudo});
    scenario_->press(scenario_->main_window(), for_everybody, button_row);
    scenario_->wait_for("the button's border", [this] { return has_keyboard(310); });
    EXPECT_FALSE(is_grey(picture(), 320, 358)); // held down
    const support::Place place = scenario_->view().place_on_root(scenario_->main_window());
    scenario_->person().move_pointer(place.x + 300, place.y + 345);
    scenario_->person().release_button();
    scenario_->wait_for("the button to be let go", [this] { return is_grey(picture(), 320, 358); });
    EXPECT_TRUE(asks());
    click(for_me);
    scenario_->reach_folder_browser();
    scenario_->cancel_folder();
    scenario_->reach_last_screen();
    scenario_->press_ok();
    EXPECT_EQ(scenario_->finish().exit_status, 0);
}

TEST_F(Choice, IsCancelledByASignalAndByClosing) {
    for (const bool close : {false, true}) {
        set_up({.rights = Rights::sudo});
        if (close) {
            scenario_->view().ask_to_close(scenario_->main_window());
        } else {
            scenario_->installer().send_signal(SIGTERM);
        }
        EXPECT_EQ(scenario_->finish().exit_status, 0);
        EXPECT_EQ(scenario_->console().find("Unpacking"), std::string::npos);
        EXPECT_FALSE(fs::exists(end_to_end::lock_path));
        scenario_.reset();
    }
}

// Looked at by hand.
TEST_F(Choice, LooksAlikeAtEveryScale) {
    for (const auto& [scale, dpi] : {std::pair{1.0, "96"}, {1.5, "144"}, {2.0, "192"}}) {
        set_up({.environment = {"LC_ALL=C", std::string("ORXDPI=") + dpi}, .scale = scale});
        EXPECT_TRUE(has_keyboard(150));
        support::save_png(picture(), ZEPH_PICTURES "/choice-" + std::string(dpi) + ".png");
        scenario_->installer().send_signal(SIGTERM);
        EXPECT_EQ(scenario_->finish().exit_status, 0);
        scenario_.reset();
    }
}
