// progress_bar_test.cpp: both modes in both styles, pixel by pixel.

#include "gui/ORX/text/text_draw.h"
#include "gui/ORX/text/text_measure.h"
#include "gui/ORX/widgets/progress_bar.h"
#include "unit/widgets/canvas.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>

namespace {

constexpr Pixel violet{255, 47, 255};
constexpr Pixel grey{56, 56, 56};
constexpr std::uint32_t columns_style = 0; // any that is not horizontal

class ProgressBarTest : public testing::Test {
protected:
    ProgressBarTest() {
        progress_bar_init(&bar, nullptr, font.text());
        progress_bar_set_x(&bar, 25);
        progress_bar_set_y(&bar, 40);
        progress_bar_set_h(&bar, 16);
        progress_bar_set_width(&bar, 550);
        progress_bar_set_bar_colour(&bar, 255, 47, 255);
        progress_bar_set_background_colour(&bar, 1, 2, 3);
        progress_bar_set_border_colour(&bar, 56, 56, 56);
    }
    ~ProgressBarTest() override { progress_bar_destroy(&bar); }

    // Rows of style 1 from one column to another.
    static void expect_rows(Canvas& canvas, int left, int right, int y = 40, int h = 16) {
        const int half = h / 2;
        for (int j = 3; j <= half - 1; ++j) {
            canvas.row(left, right, y + j, violet, ((j * 256 / half) * 95 >> 8) + 96);
        }
        for (int j = 3; j <= half; ++j) {
            canvas.row(left, right, y + h - j, violet, ((j * 256 / half) * 95 >> 8) + 96);
        }
    }
    static void expect_border(Canvas& canvas) { canvas.border(25, 40, 550, 16, grey); }

    Font font;
    ProgressBar bar{};
    Canvas actual{600, 80};
    Canvas expected{600, 80};
};

TEST_F(ProgressBarTest, StartsGreyEmptyAndAtScaleOne) {
    ProgressBar fresh;
    progress_bar_init(&fresh, nullptr, font.text());
    EXPECT_EQ(fresh.bar.r, 127);
    EXPECT_EQ(fresh.background.r, 0);
    EXPECT_EQ(fresh.caption_colour.b, 255);
    EXPECT_EQ(fresh.border.g, 127);
    EXPECT_EQ(fresh.block_position, 0);
    EXPECT_EQ(fresh.block_step, 4);
    EXPECT_EQ(progress_bar_get_mode(&fresh), progress_mode_fraction);
    EXPECT_EQ(fresh.style, progress_style_horizontal);
    EXPECT_EQ(fresh.fraction, 0.0F);
    EXPECT_EQ(fresh.scale, 1.0F);
    EXPECT_STREQ(fresh.caption, "");
}

TEST_F(ProgressBarTest, ShadesTheFractionInRowsBrightestInTheMiddle) {
    progress_bar_set_fraction(&bar, 0.5F);
    progress_bar_paint(&bar, actual.image());
    expect_rows(expected, 27, 27 + 273);
    expect_border(expected);
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(ProgressBarTest, FillsToTheBorderWhenDone) {
    progress_bar_set_fraction(&bar, 1.0F);
    progress_bar_paint(&bar, actual.image());
    expect_rows(expected, 27, 27 + 546);
    expect_border(expected);
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(ProgressBarTest, AFractionOfNothingDrawsOneColumn) {
    progress_bar_paint(&bar, actual.image());
    expect_rows(expected, 27, 27);
    expect_border(expected);
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(ProgressBarTest, AFractionAboveOneDrawsPastTheBorder) {
    progress_bar_set_fraction(&bar, 1.02F);
    progress_bar_paint(&bar, actual.image());
    expect_rows(expected, 27, 27 + static_cast<int>(546 * 1.02F));
    expect_border(expected);
    EXPECT_EQ(difference(actual, expected), "");
    EXPECT_NE(actual.at(580, 48), (Pixel{10, 20, 30}));
}

TEST_F(ProgressBarTest, AFractionFarAboveOneStaysOnTheImage) {
    for (const float fraction : {2.0F, 1e30F, std::numeric_limits<float>::infinity()}) {
        for (const std::uint32_t style : {0U, 1U}) {
            Canvas image{600, 80};
            progress_bar_set_style(&bar, style);
            progress_bar_set_fraction(&bar, fraction);
            progress_bar_paint(&bar, image.image());
            EXPECT_NE(image.at(599, 48), (Pixel{10, 20, 30})) << fraction;
            EXPECT_EQ(image.at(0, 48), (Pixel{10, 20, 30})) << fraction;
            EXPECT_EQ(image.at(10, 49), (Pixel{10, 20, 30})) << fraction;
        }
    }
}

TEST_F(ProgressBarTest, AFractionBelowNothingOrNoNumberDrawsNoBar) {
    for (const float fraction : {-0.001F, -1.0F, -1e30F}) {
        Canvas image{600, 80};
        progress_bar_set_fraction(&bar, fraction);
        progress_bar_paint(&bar, image.image());
        Canvas should{600, 80};
        expect_border(should);
        EXPECT_EQ(difference(image, should), "") << fraction;
    }
    progress_bar_set_fraction(&bar, std::numeric_limits<float>::quiet_NaN());
    progress_bar_paint(&bar, actual.image()); // must not run off the image
    EXPECT_EQ(actual.at(100, 48), (Pixel{10, 20, 30}));
}

TEST_F(ProgressBarTest, TheOtherStyleBrightensToTheRight) {
    progress_bar_set_style(&bar, 0);
    progress_bar_set_fraction(&bar, 0.5F);
    progress_bar_paint(&bar, actual.image());
    for (int i = 0; i < 275; ++i) {
        expected.column(25 + i, 43, 53, violet, ((i * 256 / 550) * 127 >> 8) + 64);
    }
    expect_border(expected);
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(ProgressBarTest, TheOtherStyleDrawsNothingForLessThanAColumn) {
    progress_bar_set_style(&bar, 0);
    progress_bar_set_fraction(&bar, 0.001F);
    progress_bar_paint(&bar, actual.image());
    expect_border(expected);
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(ProgressBarTest, TheBlockIsSixteenColumnsOrSeventeenShaded) {
    progress_bar_set_mode(&bar, progress_mode_bouncing);
    progress_bar_paint(&bar, actual.image());
    expect_rows(expected, 25 + 267, 25 + 267 + 16);
    expect_border(expected);
    EXPECT_EQ(difference(actual, expected), "");

    Canvas image{600, 80};
    Canvas should{600, 80};
    progress_bar_set_style(&bar, 2);
    progress_bar_paint(&bar, image.image()); // one step on
    for (int k = 0; k < 16; ++k) {
        should.column(25 + 271 + k, 43, 53, violet);
    }
    expect_border(should);
    EXPECT_EQ(difference(image, should), "");
}

TEST_F(ProgressBarTest, TheBlockBouncesWithinTheMiddleHalf) {
    progress_bar_set_mode(&bar, progress_mode_bouncing);
    EXPECT_EQ(bar.block_position, 267);
    int lowest = 1000;
    int highest = 0;
    int turns = 0;
    for (int paint = 0; paint < 1000; ++paint) {
        const int before = bar.block_position;
        const int step = bar.block_step;
        progress_bar_paint(&bar, actual.image());
        lowest = std::min(lowest, bar.block_position);
        highest = std::max(highest, bar.block_position);
        turns += bar.block_step != step ? 1 : 0;
        ASSERT_LE(std::abs(bar.block_position - before), 4);
    }
    EXPECT_EQ(lowest, 137);
    EXPECT_EQ(highest, 396);
    EXPECT_NEAR(turns, 1000 * 4 / 259, 1);
}

TEST_F(ProgressBarTest, ABarTooNarrowForTheBlockStillMovesWithinIt) {
    progress_bar_set_width(&bar, 20);
    progress_bar_set_mode(&bar, progress_mode_bouncing);
    for (int paint = 0; paint < 100; ++paint) {
        progress_bar_paint(&bar, actual.image());
        ASSERT_EQ(bar.block_position, 5);
    }
}

TEST_F(ProgressBarTest, HiddenPaintsNothingAndStandsStill) {
    progress_bar_set_hidden(&bar, true);
    progress_bar_set_mode(&bar, progress_mode_bouncing);
    progress_bar_paint_background(&bar, actual.image());
    progress_bar_paint(&bar, actual.image());
    EXPECT_EQ(difference(actual, expected), "");
    EXPECT_EQ(bar.block_position, 267);
}

TEST_F(ProgressBarTest, BackgroundIsAnOpaqueFillOfTheInside) {
    progress_bar_paint_background(&bar, actual.image());
    expected.fill(26, 41, 549, 15, {1, 2, 3});
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(ProgressBarTest, ShowsItsCaptionOverTheBar) {
    progress_bar_set_caption(&bar, "Unpacking Files");
    progress_bar_set_caption_colour(&bar, 250, 240, 230);
    progress_bar_set_fraction(&bar, 0.75F);
    progress_bar_paint(&bar, actual.image());
    expect_rows(expected, 27, 27 + 409);
    const int width = text_width(font.text(), "Unpacking Files");
    draw_text(font.text(), expected.image(), "Unpacking Files", 25 + (550 - width) / 2 + 3,
              40 + 8 + 5, 250, 240, 230, 1024);
    expect_border(expected);
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(ProgressBarTest, KeepsALongCaptionInsideTheBar) {
    const std::string caption(300, 'W');
    progress_bar_set_caption(&bar, caption.c_str());
    progress_bar_set_fraction(&bar, -1.0F);
    progress_bar_paint(&bar, actual.image());
    for (int y = 0; y < 80; ++y) {
        for (int x = 0; x < 600; ++x) {
            const bool inside = x >= 25 && x <= 575 && y >= 40 && y <= 56;
            ASSERT_TRUE(inside || actual.at(x, y) == (Pixel{10, 20, 30})) << x << ", " << y;
        }
    }
}

TEST_F(ProgressBarTest, KeepsACaptionOfAnyLengthTerminated) {
    const std::string caption(5000, 'c');
    progress_bar_set_caption(&bar, caption.c_str());
    EXPECT_EQ(strnlen(bar.caption, 1024), 1023U);
    progress_bar_set_caption(&bar, nullptr);
    EXPECT_STREQ(bar.caption, "");
}

TEST_F(ProgressBarTest, DefaultColoursAreGreyOnBlackUnderWhite) {
    ProgressBar fresh{};
    progress_bar_init(&fresh, nullptr, font.text());
    progress_bar_set_width(&fresh, 40);
    progress_bar_set_h(&fresh, 16);
    progress_bar_set_style(&fresh, columns_style);
    progress_bar_set_fraction(&fresh, 1.0F);
    fresh.x = 25;
    fresh.y = 40;
    progress_bar_paint_background(&fresh, actual.image());
    progress_bar_paint(&fresh, actual.image());
    expected.fill(26, 41, 39, 15, {0, 0, 0});
    for (int i = 0; i < 40; ++i) {
        expected.column(25 + i, 43, 53, {127, 127, 127}, ((i * 256 / 40) * 127 >> 8) + 64);
    }
    expected.border(25, 40, 40, 16, {127, 127, 127});
    EXPECT_EQ(difference(actual, expected), "");
    EXPECT_EQ(fresh.bar.r, 127); // a blend of less than 255 does not tell it from its neighbours
}

// Lines run from the lesser end to the greater: where one ends before it begins, it reaches out.
TEST_F(ProgressBarTest, ANarrowBarIsFilledAsItsStepsSay) {
    for (const int w : {1, 2, 3, 4, 5}) {
        for (const float fraction : {0.0F, 0.5F, 1.0F}) {
            progress_bar_set_width(&bar, w);
            progress_bar_set_h(&bar, 23);
            progress_bar_set_fraction(&bar, fraction);
            Canvas image{600, 80};
            progress_bar_paint(&bar, image.image());
            Canvas should{600, 80};
            expect_rows(should, 27, 27 + static_cast<int>(static_cast<float>(w - 4) * fraction), 40,
                        23);
            should.border(25, 40, w, 23, grey);
            EXPECT_EQ(difference(image, should), "") << w << ", " << fraction;
        }
    }
}

TEST_F(ProgressBarTest, ColumnsOfALowBarReachOutOfIt) {
    for (const int h : {1, 2, 5}) {
        progress_bar_set_h(&bar, h);
        progress_bar_set_width(&bar, 3);
        progress_bar_set_style(&bar, columns_style);
        progress_bar_set_fraction(&bar, 1.0F);
        Canvas image{600, 80};
        progress_bar_paint(&bar, image.image());
        Canvas should{600, 80};
        for (int i = 0; i < 3; ++i) {
            should.column(25 + i, 43, 40 + h - 3, violet, ((i * 256 / 3) * 127 >> 8) + 64);
        }
        should.border(25, 40, 3, h, grey);
        EXPECT_EQ(difference(image, should), "") << h;
    }
}

TEST_F(ProgressBarTest, ABlockThatBeginsLeftOfTheImageShowsWhatIsOnIt) {
    for (const std::uint32_t style : {columns_style, progress_style_horizontal}) {
        progress_bar_set_x(&bar, 0);
        progress_bar_set_width(&bar, 5);
        progress_bar_set_mode(&bar, progress_mode_bouncing);
        progress_bar_set_style(&bar, style);
        ASSERT_EQ(bar.block_position, -6);
        Canvas image{600, 80};
        progress_bar_paint(&bar, image.image());
        Canvas should{600, 80};
        if (style == progress_style_horizontal) {
            expect_rows(should, 0, 10);
        } else {
            for (int x = 0; x <= 9; ++x) {
                should.column(x, 43, 53, violet);
            }
        }
        should.border(0, 40, 5, 16, grey);
        EXPECT_EQ(difference(image, should), "") << style;
    }
}

TEST_F(ProgressBarTest, AFlatBarDrawsNoRows) {
    for (const int h : {0, 1, 5}) {
        progress_bar_set_h(&bar, h);
        progress_bar_set_fraction(&bar, 0.5F);
        Canvas image{600, 80};
        progress_bar_paint(&bar, image.image());
        Canvas should{600, 80};
        should.border(25, 40, 550, h, grey);
        EXPECT_EQ(difference(image, should), "") << h;
    }
}

TEST_F(ProgressBarTest, WithoutWidthThereAreOnlyBorderLines) {
    progress_bar_set_width(&bar, 0);
    for (const std::uint32_t style : {0U, 1U}) {
        for (const float fraction : {0.5F, 1.0F}) {
            Canvas image{600, 80};
            progress_bar_set_style(&bar, style);
            progress_bar_set_fraction(&bar, fraction);
            progress_bar_paint_background(&bar, image.image());
            progress_bar_paint(&bar, image.image());
            Canvas should{600, 80};
            should.border(25, 40, 0, 16, grey);
            EXPECT_EQ(difference(image, should), "") << style << ", " << fraction;
        }
    }
}

TEST_F(ProgressBarTest, WithoutHeightThereAreOnlyBorderLines) {
    progress_bar_set_h(&bar, 0);
    for (const std::uint32_t mode : {progress_mode_fraction, progress_mode_bouncing}) {
        for (const std::uint32_t style : {columns_style, progress_style_horizontal}) {
            Canvas image{600, 80};
            progress_bar_set_mode(&bar, mode);
            progress_bar_set_style(&bar, style);
            progress_bar_set_fraction(&bar, 1.0F);
            progress_bar_paint_background(&bar, image.image());
            progress_bar_paint(&bar, image.image());
            Canvas should{600, 80};
            should.border(25, 40, 550, 0, grey);
            EXPECT_EQ(difference(image, should), "") << mode << ", " << style;
        }
    }
}

TEST_F(ProgressBarTest, IsHitFromEdgeToEdge) {
    progress_bar_set_scale(&bar, 1.5F);
    EXPECT_TRUE(progress_bar_hit(&bar, 37, 60));
    EXPECT_TRUE(progress_bar_hit(&bar, 863, 84));
    EXPECT_FALSE(progress_bar_hit(&bar, 36, 60));
    EXPECT_FALSE(progress_bar_hit(&bar, 863, 85));
}

} // namespace
