// message_panel_test.cpp: the main window's picture and lines.

#include "gui/ORX/text/text_draw.h"
#include "gui/ORX/text/text_measure.h"
#include "gui/ORX/widgets/message_panel.h"
#include "unit/widgets/canvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

class MessagePanelTest : public testing::Test {
protected:
    MessagePanelTest() {
        message_panel_init(&panel, nullptr, font.text());
        message_panel_set_width(&panel, 600);
        message_panel_set_height(&panel, 400);
    }
    ~MessagePanelTest() override { message_panel_destroy(&panel); }

    void draw_line(Canvas& canvas, int line, const char* text, int x) {
        draw_text(font.text(), canvas.image(), text, x, 24 + 16 * line, 255, 255, 255, 63);
    }
    int width_of(const char* text) { return text_width(font.text(), text); }

    Font font;
    MessagePanel panel{};
    Canvas actual{600, 400};
    Canvas expected{600, 400, {0, 0, 0}};
};

TEST_F(MessagePanelTest, IsBlackWithoutPictureAndLines) {
    message_panel_paint(&panel, actual.image());
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(MessagePanelTest, ShowsItsPictureCentredAtTheTop) {
    Canvas picture{600, 336, {1, 2, 3}};
    message_panel_set_header_image(&panel, picture.image());
    message_panel_paint(&panel, actual.image());
    expected.fill(0, 0, 600, 336, {1, 2, 3});
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(MessagePanelTest, RoundsTheHalfOfAnOddMarginToTheLeft) {
    Canvas small{595, 4, {1, 2, 3}};
    message_panel_set_header_image(&panel, small.image());
    message_panel_paint(&panel, actual.image());
    expected.fill(2, 0, 595, 4, {1, 2, 3});
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(MessagePanelTest, CutsAPictureThatIsWiderThanTheImage) {
    Canvas wide{605, 4, {1, 2, 3}}; // margin -2.5, rounded to -3
    wide.fill(3, 0, 1, 4, {9, 9, 9});
    message_panel_set_header_image(&panel, wide.image());
    message_panel_paint(&panel, actual.image());
    expected.fill(0, 0, 600, 4, {1, 2, 3});
    expected.fill(0, 0, 1, 4, {9, 9, 9});
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(MessagePanelTest, CentresLinesUnlessTheyAreGivenAnotherMode) {
    message_panel_set_line(&panel, 0, "Installer");
    message_panel_set_line_with_mode(&panel, 11, "last line", message_line_centred);
    message_panel_paint(&panel, actual.image());
    draw_line(expected, 0, "Installer", (600 - width_of("Installer")) / 2);
    draw_line(expected, 11, "last line", (600 - width_of("last line")) / 2);
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(MessagePanelTest, LeftBlockLinesShareTheMarginOfTheWidest) {
    message_panel_set_line_with_mode(&panel, 3, "short", message_line_left_block);
    message_panel_set_line_with_mode(&panel, 4, "the widest of the three", message_line_left_block);
    message_panel_set_line_with_mode(&panel, 7, "a middle one", message_line_left_block);
    message_panel_paint(&panel, actual.image());
    const int margin = (600 - width_of("the widest of the three")) / 2;
    draw_line(expected, 3, "short", margin);
    draw_line(expected, 4, "the widest of the three", margin);
    draw_line(expected, 7, "a middle one", margin);
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(MessagePanelTest, LinesOfAnyOtherModeAreNotDrawn) {
    message_panel_set_line_with_mode(&panel, 1, "unseen", 2);
    message_panel_paint(&panel, actual.image());
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(MessagePanelTest, SettingTheTextAloneKeepsTheMode) {
    message_panel_set_line_with_mode(&panel, 1, "a", message_line_left_block);
    message_panel_set_line(&panel, 1, "b");
    EXPECT_EQ(panel.modes[1], message_line_left_block);
    EXPECT_STREQ(panel.lines[1], "b");
}

TEST_F(MessagePanelTest, CutsLinesAtSixtyTwoBytesEvenInsideACharacter) {
    const std::string line = std::string(61, 'a') + "\xC3\xA4" + "tail";
    message_panel_set_line(&panel, 5, line.c_str());
    EXPECT_EQ(std::string(panel.lines[5]), std::string(61, 'a') + "\xC3");
    message_panel_paint(&panel, actual.image());
    draw_line(expected, 5, panel.lines[5], (600 - width_of(panel.lines[5])) / 2);
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(MessagePanelTest, ALineWiderThanTheImageDoesNotComeOutOnTheOtherSide) {
    const std::string wide(62, 'W');
    ASSERT_GT(width_of(wide.c_str()), 400);
    message_panel_set_width(&panel, 400);
    Canvas narrow{400, 400};
    message_panel_set_line(&panel, 0, wide.c_str());
    message_panel_paint(&panel, narrow.image());
    // The line starts left of the image and ends right of it; a copy in a wide image tells what
    // must be seen of it.
    Canvas wide_image{1600, 400, {0, 0, 0}};
    const int start = (400 - width_of(wide.c_str())) / 2;
    draw_text(font.text(), wide_image.image(), wide.c_str(), 600 + start, 24, 255, 255, 255, 63);
    for (int y = 0; y < 400; ++y) {
        for (int x = 0; x < 400; ++x) {
            ASSERT_EQ(narrow.at(x, y), wide_image.at(600 + x, y)) << x << ", " << y;
        }
    }
}

TEST_F(MessagePanelTest, DimmedDarkensEverythingPaintedSoFarButNotItsLines) {
    Canvas tall{600, 500, {101, 55, 8}}; // the panel covers 400 rows of it
    message_panel_set_dimmed(&panel, true);
    Canvas picture{600, 336, {201, 3, 255}};
    message_panel_set_header_image(&panel, picture.image());
    message_panel_set_line(&panel, 2, "** ERROR **");
    message_panel_paint(&panel, tall.image());
    Canvas should{600, 500, {50, 27, 4}};
    should.fill(0, 0, 600, 400, {0, 0, 0});
    should.fill(0, 0, 600, 336, {100, 1, 127});
    draw_line(should, 2, "** ERROR **", (600 - width_of("** ERROR **")) / 2);
    EXPECT_EQ(difference(tall, should), "");
}

TEST_F(MessagePanelTest, LinesArePlacedFromTheImageAndNotFromThePanel) {
    message_panel_set_x(&panel, 10);
    message_panel_set_y(&panel, 50);
    message_panel_set_width(&panel, 300);
    message_panel_set_height(&panel, 100);
    message_panel_set_line(&panel, 0, "above");
    message_panel_paint(&panel, actual.image());
    Canvas should{600, 400};
    should.fill(10, 50, 300, 100, {0, 0, 0});
    draw_line(should, 0, "above", (300 - width_of("above")) / 2);
    EXPECT_EQ(difference(actual, should), "");
}

TEST_F(MessagePanelTest, ClearingEmptiesAndCentresAllLines) {
    for (int line = 0; line < 12; ++line) {
        message_panel_set_line_with_mode(&panel, line, "text", message_line_left_block);
    }
    message_panel_clear_lines(&panel);
    for (int line = 0; line < 12; ++line) {
        EXPECT_STREQ(panel.lines[line], "");
        EXPECT_EQ(panel.modes[line], message_line_centred);
    }
}

TEST_F(MessagePanelTest, IgnoresLinesThatAreNotThere) {
    message_panel_set_line_with_mode(&panel, 12, "x", 5);
    message_panel_set_line(&panel, -1, "x");
    message_panel_set_line(&panel, 0, "y");
    message_panel_set_line(&panel, 0, nullptr);
    message_panel_paint(&panel, actual.image());
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(MessagePanelTest, StartsAsAnEmptyRectangleAtScaleOne) {
    MessagePanel fresh;
    message_panel_init(&fresh, nullptr, font.text());
    EXPECT_EQ(fresh.scale, 1.0F);
    EXPECT_FALSE(message_panel_get_dirty(&fresh));
    EXPECT_FALSE(message_panel_get_dimmed(&fresh));
    EXPECT_TRUE(message_panel_hit(&fresh, 0, 0));
    EXPECT_FALSE(message_panel_hit(&fresh, 1, 0));
}

TEST_F(MessagePanelTest, HitsAreScaled) {
    message_panel_set_scale(&panel, 1.5F);
    EXPECT_TRUE(message_panel_hit(&panel, 900, 600));
    EXPECT_FALSE(message_panel_hit(&panel, 901, 600));
}

} // namespace
