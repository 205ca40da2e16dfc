// scroll_bar_test.cpp: thumb geometry, drags, hits and pixels.

#include "gui/ORX/widgets/scroll_bar.h"
#include "unit/widgets/canvas.h"

#include <gtest/gtest.h>

namespace {

class ScrollBarTest : public testing::Test {
protected:
    ScrollBarTest() {
        scroll_bar_init(&bar, nullptr);
        place(616, 80, 8, 272);
        scroll_bar_set_border_colour(&bar, 64, 64, 64, 255);
        scroll_bar_set_thumb_colour(&bar, 144, 144, 144, 200);
        scroll_bar_set_active_thumb_colour(&bar, 160, 32, 160, 255);
        scroll_bar_set_background_colour(&bar, 56, 56, 56);
    }
    ~ScrollBarTest() override { scroll_bar_destroy(&bar); }

    void place(int x, int y, int w, int h) {
        scroll_bar_set_x(&bar, x);
        scroll_bar_set_y(&bar, y);
        scroll_bar_set_w(&bar, w);
        scroll_bar_set_h(&bar, h);
    }
    static void expect_frame(Canvas& canvas, int x, int y, int w, int h) {
        const Pixel colour{64, 64, 64};
        canvas.column(x, y, y + h, colour);
        canvas.row(x, x + w - 1, y, colour);
        canvas.column(x + w, y + 1, y + h - 1, colour);
        canvas.row(x, x + w - 1, y + h, colour);
    }

    ScrollBar bar{};
};

TEST_F(ScrollBarTest, StartsWithAThumbOfTheWholeTrack) {
    EXPECT_EQ(bar.percent, 100.0F);
    EXPECT_EQ(bar.scale, 1.0F);
    EXPECT_EQ(scroll_bar_track_top(&bar), 81);
    EXPECT_EQ(scroll_bar_thumb_length(&bar), 270);
    EXPECT_EQ(scroll_bar_lowest_thumb_top(&bar), 81);
}

TEST_F(ScrollBarTest, ThumbLengthIsAPercentageOfTheTrack) {
    scroll_bar_set_percent(&bar, 16.98F);
    EXPECT_EQ(scroll_bar_thumb_length(&bar), 45);
    EXPECT_EQ(scroll_bar_lowest_thumb_top(&bar), 80 + 272 - 1 - 45);
    scroll_bar_set_percent(&bar, 0.4F);
    EXPECT_EQ(scroll_bar_thumb_length(&bar), 16);
}

TEST_F(ScrollBarTest, ATrackShorterThanTheThumbLeavesItStandingOut) {
    place(616, 80, 8, 12);
    EXPECT_EQ(scroll_bar_thumb_length(&bar), 16);
    EXPECT_EQ(scroll_bar_lowest_thumb_top(&bar), 75); // above the track's top, 81
    scroll_bar_set_position(&bar, 0.0F);
    scroll_bar_clamp(&bar);
    EXPECT_EQ(bar.thumb_top, 75);
    EXPECT_EQ(scroll_bar_get_position(&bar), 0.0F);
}

TEST_F(ScrollBarTest, PositionPlacesTheThumbAndIsReadBack) {
    scroll_bar_set_percent(&bar, 25.0F); // 67 rows, way of 203
    scroll_bar_set_position(&bar, 0.0F);
    EXPECT_EQ(bar.thumb_top, 81);
    EXPECT_EQ(scroll_bar_get_position(&bar), 0.0F);
    scroll_bar_set_position(&bar, 0.5F);
    EXPECT_EQ(bar.thumb_top, 81 + 102); // 101.5 rounded
    EXPECT_EQ(bar.thumb_top_exact, 183.0F);
    EXPECT_FLOAT_EQ(scroll_bar_get_position(&bar), 102.0F / 203.0F);
    scroll_bar_set_position(&bar, 1.0F);
    EXPECT_EQ(bar.thumb_top, 284);
    EXPECT_EQ(scroll_bar_get_position(&bar), 1.0F);
    EXPECT_EQ(bar.fraction, 1.0F);
}

TEST_F(ScrollBarTest, AnotherLengthKeepsTheFraction) {
    scroll_bar_set_percent(&bar, 50.0F); // 135 rows, way of 135
    scroll_bar_set_position(&bar, 0.2F); // 27
    scroll_bar_set_percent(&bar, 10.0F); // 27 rows, way of 243
    EXPECT_EQ(bar.thumb_top, 81 + 49);   // 48.6 rounded
    bar.thumb_top = 10;
    scroll_bar_set_percent(&bar, 50.0F);
    EXPECT_EQ(bar.thumb_top, 81);
    bar.thumb_top = 1000;
    scroll_bar_set_percent(&bar, 10.0F);
    EXPECT_EQ(bar.thumb_top, 81 + 243);
}

TEST_F(ScrollBarTest, DragsInDevicePixelsAndKeepsWhatIsLeftOver) {
    scroll_bar_set_percent(&bar, 10.0F);
    scroll_bar_set_position(&bar, 0.0F);
    scroll_bar_set_scale(&bar, 2.0F);
    scroll_bar_drag(&bar, -1); // down by half a design pixel
    EXPECT_EQ(bar.thumb_top, 81);
    scroll_bar_drag(&bar, -1);
    EXPECT_EQ(bar.thumb_top, 82);
    scroll_bar_drag(&bar, 2);
    EXPECT_EQ(bar.thumb_top, 81);
}

TEST_F(ScrollBarTest, DragsBeyondTheTrackAndComesBackOnlyWhenThePointerDoes) {
    scroll_bar_set_percent(&bar, 10.0F);
    scroll_bar_set_position(&bar, 0.0F);
    scroll_bar_set_dragging(&bar, true);
    scroll_bar_drag(&bar, 500);
    EXPECT_EQ(bar.thumb_top, 81 - 500);
    EXPECT_EQ(scroll_bar_get_position(&bar), 0.0F);
    scroll_bar_drag(&bar, -400);
    EXPECT_EQ(scroll_bar_get_position(&bar), 0.0F);
    scroll_bar_drag(&bar, -1000);
    EXPECT_EQ(scroll_bar_get_position(&bar), 1.0F);
    scroll_bar_end_drag(&bar);
    EXPECT_FALSE(scroll_bar_get_dragging(&bar));
    EXPECT_EQ(bar.thumb_top, 81 + 243);
    EXPECT_EQ(bar.thumb_top_exact, 324.0F);
}

TEST_F(ScrollBarTest, IsHitAboveOnAndBelowTheThumbEdgesIncluded) {
    scroll_bar_set_percent(&bar, 10.0F); // 27 rows
    scroll_bar_set_position(&bar, 0.5F); // 81 + 122 = 203
    ASSERT_EQ(bar.thumb_top, 203);
    EXPECT_TRUE(scroll_bar_hit_above_thumb(&bar, 616, 81));
    EXPECT_TRUE(scroll_bar_hit_above_thumb(&bar, 624, 203));
    EXPECT_FALSE(scroll_bar_hit_above_thumb(&bar, 616, 80));
    EXPECT_FALSE(scroll_bar_hit_above_thumb(&bar, 616, 204));
    EXPECT_TRUE(scroll_bar_hit_thumb(&bar, 620, 203));
    EXPECT_TRUE(scroll_bar_hit_thumb(&bar, 620, 230));
    EXPECT_FALSE(scroll_bar_hit_thumb(&bar, 620, 202));
    EXPECT_FALSE(scroll_bar_hit_thumb(&bar, 620, 231));
    EXPECT_TRUE(scroll_bar_hit_below_thumb(&bar, 620, 230));
    EXPECT_TRUE(scroll_bar_hit_below_thumb(&bar, 620, 351));
    EXPECT_FALSE(scroll_bar_hit_below_thumb(&bar, 620, 229));
    EXPECT_FALSE(scroll_bar_hit_below_thumb(&bar, 620, 352));
    for (const int x : {615, 625}) {
        EXPECT_FALSE(scroll_bar_hit_thumb(&bar, x, 210));
        EXPECT_FALSE(scroll_bar_hit_above_thumb(&bar, x, 100));
        EXPECT_FALSE(scroll_bar_hit_below_thumb(&bar, x, 300));
    }
    EXPECT_TRUE(scroll_bar_hit(&bar, 616, 352));
    EXPECT_FALSE(scroll_bar_hit(&bar, 616, 353));
}

TEST_F(ScrollBarTest, HitsAreScaledAndPutAStrayThumbBack) {
    scroll_bar_set_percent(&bar, 10.0F);
    scroll_bar_set_position(&bar, 0.0F);
    scroll_bar_set_scale(&bar, 1.5F);
    scroll_bar_drag(&bar, 300);
    EXPECT_TRUE(scroll_bar_hit_thumb(&bar, 924, 121)); // trunc(81 * 1.5)
    EXPECT_EQ(bar.thumb_top, 81);
    EXPECT_TRUE(scroll_bar_hit_thumb(&bar, 936, 162)); // trunc(108 * 1.5 + 0.5)
    EXPECT_FALSE(scroll_bar_hit_thumb(&bar, 936, 163));
    EXPECT_TRUE(scroll_bar_hit_below_thumb(&bar, 930, 162));
    EXPECT_TRUE(scroll_bar_hit_below_thumb(&bar, 930, 527)); // trunc(351 * 1.5 + 0.5)
    EXPECT_FALSE(scroll_bar_hit_below_thumb(&bar, 930, 528));
    EXPECT_TRUE(scroll_bar_hit_above_thumb(&bar, 930, 122));
}

TEST_F(ScrollBarTest, AClickBesideAStrayThumbIsJudgedByWhereItBelongs) {
    scroll_bar_set_percent(&bar, 10.0F);
    scroll_bar_set_position(&bar, 0.0F);
    scroll_bar_drag(&bar, -1000); // below the track
    EXPECT_TRUE(scroll_bar_hit_above_thumb(&bar, 620, 300));
    EXPECT_FALSE(scroll_bar_hit_above_thumb(&bar, 620, 350)) << "on the thumb";
    scroll_bar_drag(&bar, 1000); // above it
    EXPECT_FALSE(scroll_bar_hit_below_thumb(&bar, 620, 90)) << "on the thumb";
    EXPECT_TRUE(scroll_bar_hit_below_thumb(&bar, 620, 300));
}

TEST_F(ScrollBarTest, DrawsItsFrameWithCornersAndItsThumbInside) {
    place(6, 8, 8, 60);
    scroll_bar_set_percent(&bar, 50.0F); // 29 rows
    scroll_bar_set_position(&bar, 0.0F);
    Canvas actual{24, 80};
    Canvas expected{24, 80};
    scroll_bar_paint_background(&bar, actual.image());
    scroll_bar_paint(&bar, actual.image());
    expected.fill(6, 8, 8, 60, {56, 56, 56});
    expect_frame(expected, 6, 8, 8, 60);
    for (int k = 0; k <= 27; ++k) {
        expected.row(8, 12, 9 + 1 + k, {144, 144, 144}, 200);
    }
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(ScrollBarTest, DrawsADraggedThumbActiveAndWithinTheTrack) {
    place(6, 8, 8, 60);
    scroll_bar_set_percent(&bar, 50.0F);
    scroll_bar_set_dragging(&bar, true);
    scroll_bar_drag(&bar, -500);
    Canvas actual{24, 80};
    Canvas expected{24, 80};
    scroll_bar_paint(&bar, actual.image());
    expect_frame(expected, 6, 8, 8, 60);
    for (int k = 0; k <= 27; ++k) {
        expected.row(8, 12, 38 + 1 + k, {160, 32, 160});
    }
    EXPECT_EQ(difference(actual, expected), "");
    EXPECT_GT(bar.thumb_top, 500) << "drawing must not move the thumb";
}

TEST_F(ScrollBarTest, DrawsTheWholeThumbOnATrackThatIsShorter) {
    place(6, 20, 8, 12);
    scroll_bar_set_position(&bar, 0.0F);
    Canvas actual{24, 60};
    Canvas expected{24, 60};
    scroll_bar_paint(&bar, actual.image());
    expect_frame(expected, 6, 20, 8, 12);
    for (int k = 0; k <= 14; ++k) {
        expected.row(8, 12, 15 + 1 + k, {144, 144, 144}, 200); // from above the bar to its bottom
    }
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(ScrollBarTest, WithoutWidthOrHeightThereAreOnlyBorderLines) {
    for (const auto& [w, h] : {std::pair{0, 60}, std::pair{8, 0}, std::pair{0, 0}}) {
        place(6, 8, w, h);
        Canvas actual{24, 80};
        Canvas expected{24, 80};
        scroll_bar_paint_background(&bar, actual.image());
        scroll_bar_paint(&bar, actual.image());
        expect_frame(expected, 6, 8, w, h);
        EXPECT_EQ(difference(actual, expected), "") << w << " x " << h;
    }
}

// Lines run from the lesser end to the greater: the thumb of a narrow bar reaches out of it.
TEST_F(ScrollBarTest, OneToFourPixelsWideItHasAThumb) {
    for (const int w : {1, 2, 3, 4}) {
        place(6, 8, w, 60);
        scroll_bar_set_position(&bar, 0.0F);
        Canvas actual{24, 80};
        Canvas expected{24, 80};
        scroll_bar_paint(&bar, actual.image());
        expect_frame(expected, 6, 8, w, 60);
        for (int k = 0; k <= 56; ++k) {
            expected.row(8, 6 + w - 2, 9 + 1 + k, {144, 144, 144}, 200);
        }
        EXPECT_EQ(difference(actual, expected), "") << w;
    }
}

TEST_F(ScrollBarTest, OnePixelHighItsRightSideIsTwo) {
    place(6, 20, 8, 1);
    Canvas actual{24, 60};
    Canvas expected{24, 60};
    scroll_bar_paint(&bar, actual.image());
    expect_frame(expected, 6, 20, 8, 1);
    for (int k = 0; k <= 14; ++k) {
        expected.row(8, 12, 4 + 1 + k, {144, 144, 144}, 200); // the least thumb, above the track
    }
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(ScrollBarTest, ArrowsTakeTheEndsOfTheTrack) {
    place(6, 8, 16, 100);
    scroll_bar_set_arrows(&bar, true);
    EXPECT_EQ(scroll_bar_track_top(&bar), 24);
    EXPECT_EQ(scroll_bar_thumb_length(&bar), 68);
    EXPECT_EQ(scroll_bar_lowest_thumb_top(&bar), 24);
    EXPECT_TRUE(scroll_bar_hit_up_arrow(&bar, 6, 8));
    EXPECT_TRUE(scroll_bar_hit_up_arrow(&bar, 22, 24));
    EXPECT_FALSE(scroll_bar_hit_up_arrow(&bar, 22, 25));
    EXPECT_TRUE(scroll_bar_hit_down_arrow(&bar, 6, 92));
    EXPECT_TRUE(scroll_bar_hit_down_arrow(&bar, 22, 108));
    EXPECT_FALSE(scroll_bar_hit_down_arrow(&bar, 22, 91));
    scroll_bar_set_arrows(&bar, false);
    EXPECT_FALSE(scroll_bar_hit_up_arrow(&bar, 6, 8));
    EXPECT_FALSE(scroll_bar_hit_down_arrow(&bar, 6, 92));
}

TEST_F(ScrollBarTest, DrawsArrowsAsTrianglesOfEightRows) {
    place(6, 8, 16, 100);
    scroll_bar_set_arrows(&bar, true);
    scroll_bar_set_percent(&bar, 50.0F); // 34 rows
    scroll_bar_set_position(&bar, 0.0F);
    Canvas actual{40, 120};
    Canvas expected{40, 120};
    scroll_bar_paint(&bar, actual.image());
    const Pixel colour{144, 144, 144};
    expect_frame(expected, 6, 8, 16, 100);
    expected.row(6, 22, 24, colour, 200);
    expected.row(6, 22, 92, colour, 200);
    for (int k = 0; k < 8; ++k) {
        expected.row(14 - k, 14 + k, 8 + 8 - 4 + k, colour, 200);
        expected.row(14 - k, 14 + k, 92 + 8 + 4 - k, colour, 200);
    }
    for (int k = 0; k <= 32; ++k) {
        expected.row(8, 20, 24 + 1 + k, colour, 200);
    }
    EXPECT_EQ(difference(actual, expected), "");
}

TEST_F(ScrollBarTest, NarrowArrowsAndALargeThumbStayOnTheImage) {
    place(0, 0, 4, 10);
    scroll_bar_set_arrows(&bar, true);
    Canvas actual{5, 11};
    scroll_bar_paint_background(&bar, actual.image());
    scroll_bar_paint(&bar, actual.image());
    scroll_bar_set_position(&bar, 1.0F);
    scroll_bar_paint(&bar, actual.image()); // the sanitizer watches
    EXPECT_EQ(scroll_bar_thumb_length(&bar), 16);
}

} // namespace
