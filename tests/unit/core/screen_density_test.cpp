// screen_density_test.cpp: the steps and bounds of the UI scale.
#include <gtest/gtest.h>

#include "gui/ORX/imaging/screen_density.h"

namespace {

TEST(ScaleOfDensity, StepsDownToAnEighth) {
    EXPECT_FLOAT_EQ(scale_of_density(96), 1.0F);
    EXPECT_FLOAT_EQ(scale_of_density(107), 1.0F);
    EXPECT_FLOAT_EQ(scale_of_density(108), 1.125F);
    EXPECT_FLOAT_EQ(scale_of_density(120), 1.25F);
    EXPECT_FLOAT_EQ(scale_of_density(143), 1.375F);
    EXPECT_FLOAT_EQ(scale_of_density(150), 1.5F);
    EXPECT_FLOAT_EQ(scale_of_density(191), 1.875F);
    EXPECT_FLOAT_EQ(scale_of_density(192), 2.0F);
}

TEST(ScaleOfDensity, StaysBetweenOneAndTwo) {
    EXPECT_FLOAT_EQ(scale_of_density(72), 1.0F);
    EXPECT_FLOAT_EQ(scale_of_density(0), 1.0F);
    EXPECT_FLOAT_EQ(scale_of_density(INT32_MIN), 1.0F);
    EXPECT_FLOAT_EQ(scale_of_density(INT32_MAX), 2.0F);
}

TEST(DotsPerInch, TruncatesTowardZero) {
    EXPECT_EQ(dots_per_inch(1000.0F, 254.0F), 100);
    EXPECT_EQ(dots_per_inch(1009.0F, 254.0F), 100);
}

TEST(DotsPerInch, GivesTheMostNegativeNumberForAScreenWithoutSize) {
    EXPECT_EQ(dots_per_inch(1000.0F, 0.0F), INT32_MIN);
    EXPECT_EQ(dots_per_inch(0.0F, 0.0F), INT32_MIN);
}

TEST(Diagonal, IsThatOfARightTriangle) {
    EXPECT_FLOAT_EQ(diagonal(3, 4), 5.0F);
    EXPECT_FLOAT_EQ(diagonal(32'767, 0), 32'767.0F);
}

} // namespace
