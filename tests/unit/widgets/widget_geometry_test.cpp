// widget_geometry_test.cpp: device rectangles and hits.

#include "gui/ORX/widgets/widget_geometry.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

void expect_rect(const DeviceRect& rect, int left, int top, int right, int bottom) {
    EXPECT_EQ(rect.left, left);
    EXPECT_EQ(rect.top, top);
    EXPECT_EQ(rect.right, right);
    EXPECT_EQ(rect.bottom, bottom);
}

TEST(DeviceRect, IsTheDesignRectangleAtScaleOne) {
    expect_rect(device_rect(268, 356, 64, 20, 1.0F), 268, 356, 332, 376);
}

TEST(DeviceRect, TruncatesLeftAndTopAndRoundsRightAndBottom) {
    expect_rect(device_rect(3, 5, 8, 16, 1.125F), 3, 5, 12, 24);
    expect_rect(device_rect(17, 49, 608, 15, 1.5F), 25, 73, 938, 96);
    expect_rect(device_rect(-3, -5, 2, 2, 1.5F), -4, -7, -1, -4);
}

TEST(DeviceRect, HitIncludesAllFourEdges) {
    const DeviceRect rect = device_rect(268, 356, 64, 20, 1.0F);
    EXPECT_TRUE(device_rect_hit(rect, 268, 356));
    EXPECT_TRUE(device_rect_hit(rect, 332, 376));
    EXPECT_FALSE(device_rect_hit(rect, 267, 360));
    EXPECT_FALSE(device_rect_hit(rect, 333, 360));
    EXPECT_FALSE(device_rect_hit(rect, 300, 355));
    EXPECT_FALSE(device_rect_hit(rect, 300, 377));
}

TEST(Truncation, TakesWhatNoIntegerHoldsToTheNearestThatDoes) {
    EXPECT_EQ(truncate_to_int(-1.9F), -1);
    EXPECT_EQ(truncate_to_int(3e9F), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(truncate_to_int(-3e9F), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(truncate_to_int(std::numeric_limits<float>::infinity()),
              std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(truncate_to_int(std::numeric_limits<float>::quiet_NaN()), 0);
}

} // namespace
