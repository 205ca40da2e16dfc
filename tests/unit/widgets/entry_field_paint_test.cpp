// entry_field_paint_test.cpp: stars, text, placeholder, caret and border of the one-line fields.

#include "gui/ORX/text/text_draw.h"
#include "gui/ORX/text/text_measure.h"
#include "gui/ORX/widgets/password_field.h"
#include "gui/ORX/widgets/text_field.h"
#include "unit/widgets/canvas.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr Pixel border{90, 91, 92};
constexpr Pixel caret{250, 240, 230};

class PasswordFieldPaint : public testing::Test {
protected:
    PasswordFieldPaint() {
        password_field_init(&field, nullptr, font.text());
        password_field_set_x(&field, 25);
        password_field_set_y(&field, 10);
        password_field_set_w(&field, 150);
        password_field_set_h(&field, 16);
        password_field_set_border_colour(&field, 90, 91, 92);
        password_field_set_caret_colour(&field, 250, 240, 230);
        password_field_set_background_colour(&field, 1, 2, 3);
        password_field_set_focused_text_colour(&field, 255, 255, 255);
        password_field_set_unfocused_text_colour(&field, 127, 127, 127);
        password_field_set_focused(&field, true);
    }
    ~PasswordFieldPaint() override { password_field_destroy(&field); }

    int star() { return text_width(font.text(), "*"); }
    void stars(int count, int from, int grey) {
        draw_text_clipped(font.text(), expected.image(),
                          std::string(static_cast<std::size_t>(count), '*').c_str(), from, 23, 10,
                          26, 25, 175, grey, grey, grey, 1024);
    }
    void caret_and_border(int x) {
        expected.column(x, 13, 23, caret);
        expected.column(x + 1, 13, 23, caret);
        expected.border(25, 10, 150, 16, border);
    }

    Font font;
    PasswordField field{};
    Canvas actual{200, 40};
    Canvas expected{200, 40};
};

TEST_F(PasswordFieldPaint, EmptyShowsItsPlaceholderAndTheCaretAtTheLeft) {
    password_field_paint(&field, actual.image());
    draw_text(font.text(), expected.image(), " Enter Password", 28, 23, 104, 104, 104, 1024);
    caret_and_border(28);
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(PasswordFieldPaint, ShowsAStarForEachCharacter) {
    password_field_set_text(&field, "a\xC3\xA4\xE2\x82\xAC");
    password_field_paint(&field, actual.image());
    stars(3, 28, 255);
    caret_and_border(28 + 3 * star());
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(PasswordFieldPaint, TellsFocusByTheColourOfTheStarsAlone) {
    password_field_set_text(&field, "ab");
    password_field_set_focused(&field, false);
    password_field_paint(&field, actual.image());
    stars(2, 28, 127);
    caret_and_border(28 + 2 * star());
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(PasswordFieldPaint, TheCaretStopsAtTheRightAndOldStarsLeaveOnTheLeft) {
    for (const int count : {28, 29, 30, 31, 60, 1000}) {
        password_field_set_text(&field, std::string(static_cast<std::size_t>(count), 'p').c_str());
        Canvas image{200, 40};
        password_field_paint(&field, image.image());
        expected.fill(0, 0, 200, 40, {10, 20, 30});
        const int behind = 25 + count * star() + 3;
        const int caret_x = behind < 25 + 150 - 1 ? behind : 25 + 148;
        stars(count, caret_x - count * star(), 255);
        caret_and_border(caret_x);
        EXPECT_EQ(difference(image, expected), "") << count;
    }
}

TEST_F(PasswordFieldPaint, HiddenPaintsNothing) {
    password_field_set_hidden(&field, true);
    password_field_paint_background(&field, actual.image());
    password_field_paint(&field, actual.image());
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(PasswordFieldPaint, BackgroundIsAnOpaqueFillOfTheInside) {
    password_field_paint_background(&field, actual.image());
    expected.fill(26, 11, 149, 15, {1, 2, 3});
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(PasswordFieldPaint, AFieldWithoutSizeInTheCornerStaysOnTheImage) {
    password_field_set_x(&field, 0);
    password_field_set_y(&field, 0);
    password_field_set_w(&field, 0);
    password_field_set_h(&field, 0);
    password_field_paint_background(&field, actual.image());
    password_field_paint(&field, actual.image()); // the sanitizer watches
    EXPECT_EQ(actual.at(199, 39), (Pixel{10, 20, 30}));
}

TEST_F(PasswordFieldPaint, WithoutWidthTheCaretStandsLeftOfTheBorderLines) {
    password_field_set_w(&field, 0);
    for (const char* content : {"", "p"}) {
        password_field_set_text(&field, content);
        Canvas image{200, 40};
        password_field_paint_background(&field, image.image());
        password_field_paint(&field, image.image());
        Canvas should{200, 40};
        if (*content == '\0') {
            draw_text(font.text(), should.image(), " Enter Password", 23, 23, 104, 104, 104, 1024);
        }
        should.column(23, 13, 23, caret);
        should.column(24, 13, 23, caret);
        should.border(25, 10, 0, 16, border);
        EXPECT_EQ(difference(image, should), "") << content;
    }
}

TEST_F(PasswordFieldPaint, WithoutHeightTheCaretCrossesTheBorderLines) {
    password_field_set_y(&field, 20);
    password_field_set_h(&field, 0);
    for (const char* content : {"", "pp"}) {
        password_field_set_text(&field, content);
        Canvas image{200, 40};
        password_field_paint_background(&field, image.image());
        password_field_paint(&field, image.image());
        Canvas should{200, 40};
        int caret_x = 28;
        if (*content == '\0') {
            draw_text(font.text(), should.image(), " Enter Password", 28, 25, 104, 104, 104, 1024);
        } else {
            caret_x += 2 * star();
            draw_text_clipped(font.text(), should.image(), "**", 28, 25, 20, 20, 25, 175, 255, 255,
                              255, 1024);
        }
        should.column(caret_x, 15, 25, caret);
        should.column(caret_x + 1, 15, 25, caret);
        should.border(25, 20, 150, 0, border);
        EXPECT_EQ(difference(image, should), "") << content;
    }
}

TEST_F(PasswordFieldPaint, IsHitFromEdgeToEdge) {
    password_field_set_scale(&field, 2.0F);
    EXPECT_TRUE(password_field_hit(&field, 50, 20));
    EXPECT_TRUE(password_field_hit(&field, 350, 52));
    EXPECT_FALSE(password_field_hit(&field, 351, 52));
    EXPECT_FALSE(password_field_hit(&field, 49, 20));
}

class TextFieldPaint : public testing::Test {
protected:
    TextFieldPaint() {
        text_field_init(&field, nullptr, font.text());
        text_field_set_x(&field, 25);
        text_field_set_y(&field, 10);
        text_field_set_w(&field, 150);
        text_field_set_h(&field, 16);
        text_field_set_caret_colour(&field, 250, 240, 230);
        text_field_set_background_colour(&field, 1, 2, 3);
        text_field_set_focused_text_colour(&field, 200, 201, 202);
        text_field_set_unfocused_text_colour(&field, 100, 101, 102);
    }
    ~TextFieldPaint() override { text_field_destroy(&field); }

    void text_and_caret(const char* text, int caret_x, Pixel colour) {
        draw_text_clipped(font.text(), expected.image(), text,
                          caret_x - text_width(font.text(), text), 23, 10, 26, 25, 175, colour.r,
                          colour.g, colour.b, 1024);
        expected.column(caret_x, 13, 23, caret);
        expected.column(caret_x + 1, 13, 23, caret);
    }

    Font font;
    TextField field{};
    Canvas actual{200, 40};
    Canvas expected{200, 40};
};

TEST_F(TextFieldPaint, EmptyShowsItsCaretAloneWithoutPlaceholderAndBorder) {
    text_field_paint(&field, actual.image());
    text_and_caret("", 28, {});
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(TextFieldPaint, ShowsItsTextPlainly) {
    text_field_set_text(&field, "plain \xC3\xA4");
    text_field_paint(&field, actual.image());
    text_and_caret("plain \xC3\xA4", 28 + text_width(font.text(), "plain \xC3\xA4"),
                   {100, 101, 102});
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(TextFieldPaint, ShowsTheEndOfALongText) {
    const std::string text = std::string(60, 'W') + " end";
    text_field_set_text(&field, text.c_str());
    text_field_set_focused(&field, true);
    text_field_paint(&field, actual.image());
    text_and_caret(text.c_str(), 173, {200, 201, 202});
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(TextFieldPaint, HasABackgroundAndScaledEdges) {
    text_field_paint_background(&field, actual.image());
    expected.fill(26, 11, 149, 15, {1, 2, 3});
    EXPECT_EQ(difference(actual, expected), "");
    text_field_set_scale(&field, 1.5F);
    EXPECT_TRUE(text_field_hit(&field, 37, 15));
    EXPECT_TRUE(text_field_hit(&field, 263, 39));
    EXPECT_FALSE(text_field_hit(&field, 264, 39));
}

} // namespace
