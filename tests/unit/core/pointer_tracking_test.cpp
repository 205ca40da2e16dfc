// pointer_tracking_test.cpp: the senses of both deltas, and what they store.
#include <gtest/gtest.h> // before Xlib, whose macros it cannot bear

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/pointer_tracking.h"

#include <memory>

namespace {

using EnginePointer = std::unique_ptr<UiEngine, decltype(&engine_destroy)>;

struct PointerTracking : testing::Test {
    EnginePointer engine{engine_new(), engine_destroy};
};

TEST_F(PointerTracking, RightwardIsPositiveAndDownwardNegative) {
    pointer_set_origin(engine.get(), 10.0, 20.0);
    EXPECT_FLOAT_EQ(pointer_delta_x(engine.get(), 12.5), 2.5F);
    EXPECT_FLOAT_EQ(pointer_delta_y(engine.get(), 23.0), -3.0F);
}

TEST_F(PointerTracking, EachDeltaStartsFromTheLastArgument) {
    pointer_set_origin(engine.get(), 0.0, 0.0);
    EXPECT_EQ(pointer_delta_x_int(engine.get(), 7), 7);
    EXPECT_EQ(pointer_delta_x_int(engine.get(), 4), -3);
    EXPECT_EQ(pointer_delta_y_int(engine.get(), 7), -7);
    EXPECT_EQ(pointer_delta_y_int(engine.get(), 4), 3);
    double x = 0.0;
    double y = 0.0;
    pointer_get_origin(engine.get(), &x, &y);
    EXPECT_DOUBLE_EQ(x, 4.0);
    EXPECT_DOUBLE_EQ(y, 4.0);
}

TEST_F(PointerTracking, WholeNumberDeltasTruncateTowardZero) {
    pointer_set_origin(engine.get(), 0.75, 0.75);
    EXPECT_EQ(pointer_delta_x_int(engine.get(), 3), 2);
    EXPECT_EQ(pointer_delta_y_int(engine.get(), 3), -2);
}

} // namespace
