// screens_test.cpp: every text of every screen fits the panel.
#include "installer/screens.h"

#include "gui/ORX/text/text_measure.h"
#include "installer/window_picture.h"
#include "privilege/auth_method.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

constexpr std::size_t longest_panel_line = 62; // bytes
constexpr std::int32_t panel_lines = 12;

const ScreenText* const all_screens[] = {
    &sudo_password_screen,    &su_password_screen,        &no_auth_method_screen,
    &another_instance_screen, &incorrect_password_screen, &installing_screen,
    &unpack_failed_screen,    &copy_failed_screen,        &cancelled_screen,
    &complete_screen,
};

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
    EXPECT_EQ(&authentication_screen(auth_method_none), &no_auth_method_screen);
}

} // namespace
