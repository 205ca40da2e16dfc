// Giving the password: wrong, empty, pasted, corrected.

#include "end_to_end/expectations.h"

#include "gui/ORX/text/text_measure.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>

namespace end_to_end {
namespace {

using support::Picture;
using support::Place;

// The field's inside, where stars and the placeholder are.
constexpr Place field_inside{228, 362, 144, 13};

// Where the placeholder's last letters are, and no star of a short password.
constexpr Place placeholder_end{292, 362, 30, 13};

bool shows_placeholder(const Picture& picture) {
    return count_colour(picture, placeholder_end, {56, 56, 56}, 4) <
           placeholder_end.width * placeholder_end.height;
}

int star_ink(const Picture& picture) {
    return count_colour(picture, field_inside, {255, 255, 255}, 100);
}

// Where the stars of a password of so many characters are; the caret, two pixels wide, comes next.
Place stars_place(std::size_t count) {
    TextRenderer* renderer = text_renderer_new(nullptr);
    const int width = text_width(renderer, std::string(count, '*').c_str());
    text_renderer_destroy(renderer);
    return {228, 362, width, 12};
}

int brightest(const Picture& picture, const Place& part) {
    const Picture seen = crop(picture, part);
    return seen.rgb.empty() ? 0 : *std::max_element(seen.rgb.begin(), seen.rgb.end());
}

// Of white and of grey stars and carets: strokes cross, and blending loses a little.
constexpr int white_at_least = 200;
constexpr int grey_at_most = 170;
constexpr int grey_at_least = 100;

// Lets sudo check a password only once there is a file of that name.
void hold_sudo_back_until(const std::string& file) {
    support::install_program("/usr/bin/sudo.real", "/usr/bin/sudo", 04755);
    support::install_script("/usr/bin/sudo", "#!/bin/bash\n"
                                             "case \"$*\" in *-S*)\n"
                                             "  while [ ! -e " +
                                                 file +
                                                 " ]; do sleep 0.05; done;;\n"
                                                 "esac\n"
                                                 "exec /usr/bin/sudo.real \"$@\"\n");
}

TEST(Password, MayBeWrongThreeTimes) {
    Scenario scenario;
    scenario.reach_password_screen();
    EXPECT_TRUE(shows_placeholder(scenario.picture_of(scenario.main_window())));
    Picture refused;
    for (const char* wrong : {"wrong", "WRONG", user_password + 1}) {
        scenario.give_password(wrong);
        // While it is checked the field still holds it.
        scenario.wait_for("stars", [&] {
            return !shows_placeholder(scenario.picture_of(scenario.main_window()));
        });
        scenario.reach_wrong_password_screen();
        scenario.wait_for("the emptied field", [&] {
            refused = scenario.picture_of(scenario.main_window());
            return shows_placeholder(refused);
        });
        EXPECT_TRUE(line_reads(refused, 2, "** ERROR **"));
        EXPECT_TRUE(line_reads(refused, 3, "Incorrect Password"));
        EXPECT_TRUE(line_reads(refused, 5, "Please Try Again"));
        EXPECT_TRUE(shows_background(refused, true));
    }
    scenario.give_password(user_password);
    scenario.reach_unpacking();
    EXPECT_TRUE(shows_background(scenario.picture_of(scenario.main_window()), false));
    scenario.installer().send_signal(SIGTERM);
    EXPECT_TRUE(ended_clean(scenario.finish()));
}

TEST(Password, EmptyIsTriedAndRefused) {
    Scenario scenario;
    scenario.reach_password_screen();
    scenario.give_password("");
    scenario.reach_wrong_password_screen();
    EXPECT_EQ(scenario.console().find("Password OK"), std::string::npos);
}

TEST(Password, IsPastedWithTheMiddleButtonInPlaceOfWhatWasTyped) {
    Scenario scenario;
    const std::string text_file = scenario.account().home + "/.clipboard";
    support::write_file(text_file, user_password, 0644);
    support::ChildProcess owner(
        {.command = {"sh", "-c", "exec xsel --nodetach --clipboard --input < " + text_file},
         .environment = std::vector<std::string>{"DISPLAY=" + scenario.display_name(), "HOME=/tmp",
                                                 "PATH=/usr/bin:/bin"}});
    scenario.reach_password_screen();
    scenario.focus_main_window();
    scenario.person().type("z");
    int typed = 0;
    scenario.wait_for("one star", [&] {
        const Picture picture = scenario.picture_of(scenario.main_window());
        typed = star_ink(picture);
        return !shows_placeholder(picture);
    });
    scenario.click(scenario.main_window(), 300, 368, support::middle_button);
    scenario.wait_for("eight stars", [&] {
        return star_ink(scenario.picture_of(scenario.main_window())) > 3 * typed;
    });
    scenario.person().press_return();
    scenario.reach_unpacking();
    EXPECT_NE(scenario.console().find("Password OK\n"), std::string::npos);
}

TEST(Password, IsCorrectedWithBackspace) {
    Scenario scenario;
    scenario.reach_password_screen();
    scenario.focus_main_window();
    scenario.person().type(std::string(user_password) + "xy");
    scenario.person().press_backspace();
    scenario.person().press_backspace();
    scenario.person().press_return();
    scenario.reach_unpacking();
}

TEST(Password, IsGreyAndCannotBeChangedWhileItIsChecked) {
    Scenario scenario;
    hold_sudo_back_until("/tmp/go-on");
    const std::string password = user_password;
    const Place stars = stars_place(password.size());
    const Place caret{stars.x + stars.width, stars.y, 2, stars.height};
    const auto field = [&] {
        return take_picture(scenario.view(), scenario.main_window(), field_inside);
    };
    const auto brightest_star = [&] {
        return brightest(scenario.picture_of(scenario.main_window()), stars);
    };
    const auto caret_stands = [&] {
        return brightest(scenario.picture_of(scenario.main_window()), caret) >= white_at_least;
    };
    scenario.reach_password_screen();
    scenario.focus_main_window();
    scenario.person().type(password);
    scenario.wait_for("all stars", caret_stands);
    EXPECT_GE(brightest_star(), white_at_least);

    scenario.person().press_return();
    scenario.wait_for("the grey stars", [&] { return brightest_star() <= grey_at_most; });
    const Picture held = field();
    EXPECT_GE(brightest_star(), grey_at_least);
    EXPECT_TRUE(caret_stands());
    scenario.person().press_backspace();
    scenario.person().type("xy");
    scenario.person().press_return();
    EXPECT_TRUE(support::holds_for([&] { return count_differences(field(), held) == 0; },
                                   std::chrono::milliseconds{700}));

    support::write_file("/tmp/go-on", "");
    scenario.reach_unpacking();
    EXPECT_NE(scenario.console().find("Password OK\n"), std::string::npos);
}

TEST(Password, IsReadyForAnotherOnceItWasRefused) {
    Scenario scenario;
    hold_sudo_back_until("/tmp/go-on");
    scenario.reach_password_screen();
    scenario.give_password("wrong");
    scenario.wait_for("the grey stars", [&] {
        const Picture picture = scenario.picture_of(scenario.main_window());
        return !shows_placeholder(picture) && brightest(picture, stars_place(5)) <= grey_at_most;
    });
    // What is typed too early neither waits in the field nor is tried.
    scenario.person().type("early");
    scenario.person().press_return();
    support::write_file("/tmp/go-on", "");
    scenario.reach_wrong_password_screen();
    scenario.wait_for("the emptied field", [&] {
        return shows_placeholder(scenario.picture_of(scenario.main_window()));
    });
    scenario.give_password(user_password);
    scenario.reach_unpacking();
}

TEST(Password, IsNeverOnTheConsoleNorInTheProcessList) {
    // One that is nobody else's on this machine.
    const std::string password = "Marlow-" + std::to_string(getpid());
    Scenario scenario({.password = password});
    scenario.reach_password_screen();
    scenario.give_password(password);
    scenario.reach_unpacking();
    EXPECT_EQ(scenario.console().find(password), std::string::npos);
    EXPECT_EQ(support::output_of({"ps", "axww", "-o", "args"}).find(password), std::string::npos);
}

} // namespace
} // namespace end_to_end
