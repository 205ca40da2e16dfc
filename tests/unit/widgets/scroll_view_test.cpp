// scroll_view_test.cpp: offsets, mapping and hits; what reaches the screen is tested on a display.

#include "gui/ORX/widgets/scroll_view.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>

namespace {

class ScrollViewTest : public testing::Test {
protected:
    ScrollViewTest() {
        scroll_view_init(&view, nullptr);
        scroll_view_set_rect(&view, 18, 82, 596, 268);
        scroll_view_set_content_size(&view, 596, 1602);
    }
    ~ScrollViewTest() override { scroll_view_destroy(&view); }

    ScrollView view{};
};

TEST_F(ScrollViewTest, AFractionSetsTheOffsetRounded) {
    scroll_view_set_fraction(&view, 0.5F);
    EXPECT_EQ(scroll_view_get_scroll_offset(&view), 667);
    EXPECT_EQ(view.shown_offset, 667);
    scroll_view_set_fraction(&view, 1.0F);
    EXPECT_EQ(view.scroll_offset, 1334);
    scroll_view_set_fraction(&view, 0.0F);
    EXPECT_EQ(view.scroll_offset, 0);
}

TEST_F(ScrollViewTest, PagesByItsHeightAndStopsAtBothEnds) {
    for (const int offset : {268, 536, 804, 1072, 1334, 1334}) {
        scroll_view_page_down(&view, no_window);
        EXPECT_EQ(view.scroll_offset, offset);
        EXPECT_EQ(view.shown_offset, offset);
        EXPECT_FLOAT_EQ(scroll_view_get_vertical_fraction(&view),
                        static_cast<float>(offset) / 1334.0F);
    }
    for (const int offset : {1066, 798, 530, 262, 0, 0}) {
        scroll_view_page_up(&view, no_window);
        EXPECT_EQ(view.scroll_offset, offset);
    }
    EXPECT_EQ(scroll_view_get_vertical_fraction(&view), 0.0F);
}

TEST_F(ScrollViewTest, LinesByTheStepAndStopsAtBothEnds) {
    scroll_view_line_down(&view, no_window, 16);
    EXPECT_EQ(view.scroll_offset, 16);
    scroll_view_line_up(&view, no_window, 10);
    EXPECT_EQ(view.scroll_offset, 6);
    scroll_view_line_up(&view, no_window, 10);
    EXPECT_EQ(view.scroll_offset, 0);
    scroll_view_set_fraction(&view, 1.0F);
    scroll_view_line_down(&view, no_window, 16);
    EXPECT_EQ(view.scroll_offset, 1334);
    EXPECT_EQ(scroll_view_get_vertical_fraction(&view), 1.0F);
}

TEST_F(ScrollViewTest, ContentNoLongerThanTheViewNeverScrolls) {
    for (const int height : {0, 1, 267, 268}) { // a list may be a rounded row shorter than its view
        scroll_view_set_content_height(&view, height);
        scroll_view_line_down(&view, no_window, 16);
        EXPECT_EQ(view.scroll_offset, 0) << height;
        scroll_view_page_down(&view, no_window);
        EXPECT_EQ(view.scroll_offset, 0) << height;
        scroll_view_set_fraction(&view, 1.0F);
        EXPECT_EQ(view.scroll_offset, 0) << height;
        scroll_view_scroll_to_fraction(&view, no_window, 1.0F);
        EXPECT_EQ(view.scroll_offset, 0) << height;
        EXPECT_EQ(scroll_view_get_vertical_fraction(&view), 0.0F);
    }
}

TEST_F(ScrollViewTest, NoOperationLeavesTheContent) {
    const auto seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int step = 0; step < 20000; ++step) {
        if (random() % 50 == 0) {
            scroll_view_set_content_height(&view, static_cast<int>(random() % 2000));
            scroll_view_set_fraction(&view, 0.0F);
        }
        switch (random() % 6) {
        case 0:
            scroll_view_line_up(&view, no_window, static_cast<int>(random() % 300));
            break;
        case 1:
            scroll_view_line_down(&view, no_window, static_cast<int>(random() % 300));
            break;
        case 2:
            scroll_view_page_up(&view, no_window);
            break;
        case 3:
            scroll_view_page_down(&view, no_window);
            break;
        case 4:
            scroll_view_scroll_to_fraction(&view, no_window,
                                           static_cast<float>(random() % 1400) / 1000.0F - 0.2F);
            break;
        default:
            scroll_view_set_fraction(&view, static_cast<float>(random() % 1400) / 1000.0F - 0.2F);
        }
        ASSERT_GE(view.scroll_offset, 0);
        ASSERT_LE(view.scroll_offset, scroll_view_range(&view));
        ASSERT_EQ(view.scroll_offset, view.shown_offset);
    }
}

TEST_F(ScrollViewTest, ScrollingToAFractionMovesWhatIsMapped) {
    scroll_view_scroll_to_fraction(&view, no_window, 0.25F);
    EXPECT_EQ(view.scroll_offset, 334); // 333.5 rounded
    scroll_view_set_source_x(&view, 7);
    EXPECT_EQ(scroll_view_map_x(&view, 18), 7);
    EXPECT_EQ(scroll_view_map_y(&view, 82), 334);
    EXPECT_EQ(scroll_view_map_y(&view, 100), 352);
}

TEST_F(ScrollViewTest, IsHitInDevicePixelsWhateverItsScale) {
    scroll_view_set_scale(&view, 2.0F);
    EXPECT_TRUE(scroll_view_hit(&view, 18, 82));
    EXPECT_TRUE(scroll_view_hit(&view, 614, 350));
    EXPECT_FALSE(scroll_view_hit(&view, 17, 100));
    EXPECT_FALSE(scroll_view_hit(&view, 615, 100));
    EXPECT_FALSE(scroll_view_hit(&view, 100, 81));
    EXPECT_FALSE(scroll_view_hit(&view, 100, 351));
}

} // namespace
