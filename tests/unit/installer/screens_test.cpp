// screens_test.cpp: what every screen says, and that it fits the panel.
#include "installer/screens.h"

#include "gui/ORX/text/text_measure.h"
#include "installer/window_picture.h"
#include "privilege/auth_method.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

constexpr std::size_t longest_panel_line = 62; // bytes
constexpr std::int32_t panel_lines = 12;

const ScreenText* const all_screens[] = {
    &sudo_password_screen,    &su_password_screen,        &no_auth_method_screen,
    &another_instance_screen, &incorrect_password_screen, &installing_screen,
    &unpack_failed_screen,    &copy_failed_screen,        &cancelled_screen,
    &complete_screen,         &recipient_screen,
};

// A screen's lines as "INDEX TEXT", those of the left block with "|" before the text, and "dimmed"
// at the end of a dimmed one.
std::string reading_of(const ScreenText& screen) {
    std::string reading;
    for (std::size_t i = 0; i < screen.line_count; ++i) {
        const ScreenLine& line = screen.lines[i];
        reading += std::to_string(line.index) + " ";
        reading += line.mode == LineMode::left_block ? "|" : "";
        reading += std::string(line.text) + "\n";
    }
    return reading + (screen.dimmed ? "dimmed\n" : "");
}

TEST(Screens, ThePasswordScreensNameThePasswordThatIsAskedFor) {
    EXPECT_EQ(reading_of(sudo_password_screen), "2 To authenticate the installation\n"
                                                "3 please enter your user password\n");
    EXPECT_EQ(reading_of(su_password_screen), "2 To authenticate the installation\n"
                                              "3 please enter the admin / root password\n");
    EXPECT_EQ(reading_of(incorrect_password_screen), "2 ** ERROR **\n"
                                                     "3 Incorrect Password\n"
                                                     "5 Please Try Again\n"
                                                     "dimmed\n");
}

TEST(Screens, TheErrorScreensSayWhatStandsInTheWay) {
    EXPECT_EQ(reading_of(no_auth_method_screen),
              "2 ** ERROR **\n"
              "3 Unable to find a working authentication method\n"
              "4 on this system.  A working sudo configuration\n"
              "5 or a root / admin user account is required\n"
              "7 The installation could not complete\n");
    EXPECT_EQ(reading_of(another_instance_screen), "2 ** ERROR **\n"
                                                   "3 |Another instance of the installer is\n"
                                                   "4 |already running or an orphan lock file\n"
                                                   "5 |has been left in /tmp.\n"
                                                   "7 |If no other instances of the installer\n"
                                                   "8 |are running, remove the\n"
                                                   "9 |zeph-installer-lock file\n"
                                                   "10 |from /tmp and restart the installer.\n"
                                                   "dimmed\n");
}

TEST(Screens, TheInstallationIsToldOfFromItsStartToItsEnd) {
    EXPECT_EQ(reading_of(installing_screen), "2 Installing...\n");
    EXPECT_EQ(reading_of(unpack_failed_screen), "2 ** FATAL ERROR **\n"
                                                "3 Unable to extract installer data\n");
    EXPECT_EQ(reading_of(copy_failed_screen), "2 ** FATAL ERROR **\n"
                                              "3 Failed to copy files\n");
    EXPECT_EQ(reading_of(cancelled_screen), "2 ** USER CANCELLED INSTALLATION **\n"
                                            "3 Exiting...\n");
    EXPECT_EQ(reading_of(complete_screen), "2 Installation Complete\n");
}

// Their numbers are what the message panel takes for them.
TEST(Screens, LinesAreCentredUnlessTheyAreSaidToBeABlock) {
    EXPECT_EQ(static_cast<std::uint32_t>(LineMode::centred), 0U);
    EXPECT_EQ(static_cast<std::uint32_t>(LineMode::left_block), 1U);
}

TEST(Screens, EveryLineFitsItsBufferAndThePanel) {
    TextRenderer* text = text_renderer_new(nullptr);
    ASSERT_NE(text, nullptr);
    for (const ScreenText* screen : all_screens) {
        for (std::size_t i = 0; i < screen->line_count; ++i) {
            const ScreenLine& line = screen->lines[i];
            SCOPED_TRACE(line.text);
            EXPECT_LE(std::strlen(line.text), longest_panel_line);
            EXPECT_LE(text_width(text, line.text), design_width);
            EXPECT_GE(line.index, 1); // line 0 is the subtitle's
            EXPECT_LT(line.index, panel_lines);
        }
    }
    text_renderer_destroy(text);
}

TEST(Screens, NoTwoLinesOfAScreenShareARow) {
    for (const ScreenText* screen : all_screens) {
        for (std::size_t i = 1; i < screen->line_count; ++i) {
            EXPECT_GT(screen->lines[i].index, screen->lines[i - 1].index) << screen->lines[i].text;
        }
    }
}

TEST(Screens, TheAuthenticationScreenFollowsTheMethod) {
    EXPECT_EQ(&authentication_screen(auth_method_sudo), &sudo_password_screen);
    EXPECT_EQ(&authentication_screen(auth_method_su), &su_password_screen);
    EXPECT_EQ(&authentication_screen(auth_method_own), &installing_screen);
    EXPECT_EQ(&authentication_screen(auth_method_none), &no_auth_method_screen);
}

} // namespace
