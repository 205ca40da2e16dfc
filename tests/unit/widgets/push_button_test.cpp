// push_button_test.cpp: a button's pixels, label and hits.

#include "gui/ORX/text/text_draw.h"
#include "gui/ORX/text/text_measure.h"
#include "gui/ORX/widgets/push_button.h"
#include "unit/widgets/canvas.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr Pixel grey{56, 56, 56};
constexpr Pixel violet{255, 47, 255};

class PushButtonTest : public testing::Test {
protected:
    PushButtonTest() {
        push_button_init(&button, nullptr, font.text());
        place(20, 30, 64, 20);
        push_button_set_background_colour(&button, 1, 2, 3);
        push_button_set_border_colour(&button, 90, 91, 92);
        push_button_set_fill_colour(&button, 56, 56, 56);
        push_button_set_highlighted_fill_colour(&button, 255, 47, 255);
        push_button_set_label_colour(&button, 200, 210, 220);
        push_button_set_highlighted_label_colour(&button, 255, 255, 255);
    }
    ~PushButtonTest() override { push_button_destroy(&button); }

    void place(int x, int y, int w, int h) {
        push_button_set_x(&button, x);
        push_button_set_y(&button, y);
        push_button_set_w(&button, w);
        push_button_set_h(&button, h);
    }
    static void expect_face(Canvas& canvas, int x, int y, int w, int h, Pixel fill) {
        canvas.border(x, y, w, h, {90, 91, 92});
        for (int column = x + 1; column < x + w; ++column) {
            canvas.column(column, y + 1, y + h - 1, fill);
        }
    }

    Font font;
    PushButton button{};
    Canvas actual{120, 80};
    Canvas expected{120, 80};
};

TEST_F(PushButtonTest, HasABorderWithoutCornersRoundABlendedFace) {
    push_button_paint(&button, actual.image());
    expect_face(expected, 20, 30, 64, 20, grey);
    EXPECT_EQ(difference(actual, expected), "");
    EXPECT_EQ(actual.at(20, 30), (Pixel{10, 20, 30}));
    EXPECT_EQ(actual.at(84, 50), (Pixel{10, 20, 30}));
}

TEST_F(PushButtonTest, ShowsItsLabelInTheMiddle) {
    push_button_set_label(&button, "CANCEL");
    push_button_paint(&button, actual.image());
    expect_face(expected, 20, 30, 64, 20, grey);
    const int width = text_width(font.text(), "CANCEL");
    const int height = text_height(font.text(), "CANCEL");
    draw_text(font.text(), expected.image(), "CANCEL", 20 + 32 - width / 2, 30 + 10 + height / 2,
              200, 210, 220, 175);
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(PushButtonTest, HighlightedHasColoursOfItsOwn) {
    push_button_set_label(&button, "OK");
    push_button_set_highlighted(&button, true);
    push_button_paint(&button, actual.image());
    expect_face(expected, 20, 30, 64, 20, violet);
    const int width = text_width(font.text(), "OK");
    const int height = text_height(font.text(), "OK");
    draw_text(font.text(), expected.image(), "OK", 20 + 32 - width / 2, 30 + 10 + height / 2, 255,
              255, 255, 255);
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(PushButtonTest, PressedAloneLooksLikeAtRest) {
    push_button_set_pressed(&button, true);
    push_button_paint(&button, actual.image());
    expect_face(expected, 20, 30, 64, 20, grey);
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(PushButtonTest, BackgroundIsAnOpaqueFillOfTheInside) {
    push_button_paint_background(&button, actual.image());
    expected.fill(21, 31, 63, 19, {1, 2, 3});
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(PushButtonTest, HiddenPaintsNothingButIsStillHit) {
    push_button_set_hidden(&button, true);
    push_button_paint_background(&button, actual.image());
    push_button_paint(&button, actual.image());
    EXPECT_EQ(difference(actual, expected), "");
    EXPECT_TRUE(push_button_hit(&button, 30, 40));
}

TEST_F(PushButtonTest, WithoutWidthOrHeightThereAreOnlyBorderLines) {
    for (const auto& [w, h] : {std::pair{0, 20}, std::pair{64, 0}, std::pair{0, 0}}) {
        Canvas image{120, 80};
        Canvas lines{120, 80};
        place(20, 30, w, h);
        push_button_paint_background(&button, image.image());
        push_button_paint(&button, image.image());
        lines.border(20, 30, w, h, {90, 91, 92});
        EXPECT_EQ(difference(image, lines), "") << w << " x " << h;
    }
}

// Lines run from the lesser end to the greater: a face of one row reaches into the lower border.
TEST_F(PushButtonTest, OneToThreePixelsWideOrHighItHasAFace) {
    for (const auto& [w, h] : {std::pair{1, 1}, std::pair{64, 1}, std::pair{1, 20}, std::pair{2, 2},
                               std::pair{64, 2}, std::pair{3, 3}}) {
        Canvas image{120, 80};
        Canvas face{120, 80};
        place(20, 30, w, h);
        push_button_paint(&button, image.image());
        expect_face(face, 20, 30, w, h, grey);
        EXPECT_EQ(difference(image, face), "") << w << " x " << h;
    }
}

TEST_F(PushButtonTest, AnEmptyButtonInTheCornerStaysOnTheImage) {
    place(0, 0, 0, 0);
    push_button_paint_background(&button, actual.image());
    push_button_paint(&button, actual.image());
    EXPECT_EQ(actual.at(2, 2), (Pixel{10, 20, 30}));
}

TEST_F(PushButtonTest, ALabelOfAsManyGlyphsAsTheLimitEndsInDots) {
    place(10, 10, 40, 20);
    Canvas wide{2000, 60};
    Canvas should{2000, 60};
    const std::string label(175, 'i');
    const int width = text_width(font.text(), label.c_str());
    place(900, 10, 40, 20);
    push_button_set_label(&button, label.c_str());
    push_button_paint(&button, wide.image());
    expect_face(should, 900, 10, 40, 20, grey);
    const int x = 900 + 20 - width / 2;
    const int baseline = 10 + 10 + text_height(font.text(), label.c_str()) / 2;
    draw_text(font.text(), should.image(), label.c_str(), x, baseline, 200, 210, 220, 1000);
    draw_text(font.text(), should.image(), "...", x + width, baseline, 200, 210, 220, 1000);
    EXPECT_EQ(difference(wide, should), "");

    Canvas highlighted{2000, 60};
    Canvas plain{2000, 60};
    push_button_set_highlighted(&button, true); // its limit is 255
    push_button_paint(&button, highlighted.image());
    expect_face(plain, 900, 10, 40, 20, violet);
    draw_text(font.text(), plain.image(), label.c_str(), x, baseline, 255, 255, 255, 1000);
    EXPECT_EQ(difference(highlighted, plain), "");
}

TEST_F(PushButtonTest, OfALabelLongerThanTheLimitNoMoreIsDrawn) {
    Canvas wide{2000, 60};
    Canvas should{2000, 60};
    const std::string drawn(175, 'i');
    const std::string label = drawn + 'W';
    place(900, 10, 40, 20);
    push_button_set_label(&button, label.c_str());
    push_button_paint(&button, wide.image());
    expect_face(should, 900, 10, 40, 20, grey);
    const int x = 900 + 20 - text_width(font.text(), label.c_str()) / 2;
    const int baseline = 10 + 10 + text_height(font.text(), label.c_str()) / 2;
    draw_text(font.text(), should.image(), drawn.c_str(), x, baseline, 200, 210, 220, 1000);
    draw_text(font.text(), should.image(), "...", x + text_width(font.text(), drawn.c_str()),
              baseline, 200, 210, 220, 1000);
    EXPECT_EQ(difference(wide, should), "");
}

TEST_F(PushButtonTest, ALabelTooLongForTheImageDoesNotComeOutOnTheOtherSide) {
    const std::string label(40, 'W');
    push_button_set_label(&button, label.c_str());
    push_button_paint(&button, actual.image());
    Canvas wide{1000, 80};
    expect_face(wide, 420, 30, 64, 20, grey);
    draw_text(font.text(), wide.image(), label.c_str(),
              420 + 32 - text_width(font.text(), label.c_str()) / 2,
              30 + 10 + text_height(font.text(), label.c_str()) / 2, 200, 210, 220, 175);
    for (int y = 0; y < 80; ++y) {
        for (int x = 0; x < 120; ++x) {
            ASSERT_EQ(actual.at(x, y), wide.at(400 + x, y)) << x << ", " << y;
        }
    }
}

TEST_F(PushButtonTest, KeepsItsOwnCopyOfTheLabel) {
    std::string label = "first";
    push_button_set_label(&button, label.c_str());
    label = "other";
    EXPECT_STREQ(button.label, "first");
    push_button_set_label(&button, button.label);
    EXPECT_STREQ(button.label, "first");
    push_button_set_label(&button, nullptr);
    EXPECT_EQ(button.label, nullptr);
    push_button_paint(&button, actual.image());
    expect_face(expected, 20, 30, 64, 20, grey);
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(PushButtonTest, IsHitFromEdgeToEdge) {
    place(268, 356, 64, 20);
    EXPECT_TRUE(push_button_hit(&button, 268, 356));
    EXPECT_TRUE(push_button_hit(&button, 332, 376));
    EXPECT_FALSE(push_button_hit(&button, 267, 366));
    EXPECT_FALSE(push_button_hit(&button, 333, 366));
    push_button_set_scale(&button, 2.0F);
    EXPECT_TRUE(push_button_hit(&button, 536, 712));
    EXPECT_TRUE(push_button_hit(&button, 664, 752));
    EXPECT_FALSE(push_button_hit(&button, 665, 752));
}

TEST_F(PushButtonTest, StateBytesAreKept) {
    EXPECT_FALSE(push_button_get_dirty(&button) || push_button_get_pressed(&button) ||
                 push_button_get_highlighted(&button) || push_button_get_hidden(&button));
    push_button_set_dirty(&button, true);
    push_button_set_pressed(&button, true);
    push_button_set_highlighted(&button, true);
    push_button_set_hidden(&button, true);
    EXPECT_TRUE(push_button_get_dirty(&button) && push_button_get_pressed(&button) &&
                push_button_get_highlighted(&button) && push_button_get_hidden(&button));
    push_button_set_pressed(&button, false);
    push_button_set_dirty(&button, false);
    EXPECT_FALSE(push_button_get_pressed(&button));
    EXPECT_FALSE(push_button_get_dirty(&button));
    EXPECT_TRUE(push_button_get_highlighted(&button));
}

} // namespace
