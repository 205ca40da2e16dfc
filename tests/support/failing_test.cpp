// failing_test.cpp: tests that fail, for the test of what is said then. No test of anything.

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

class PaintedLogo : public testing::TestWithParam<const char*> {};

TEST_P(PaintedLogo, IsAPictureOfThePNGOnAnXServer) {
    EXPECT_EQ(1, 2);
    EXPECT_EQ(3, 4);
}
INSTANTIATE_TEST_SUITE_P(With, PaintedLogo, testing::Values("sudo"),
                         [](const auto& kind) { return std::string(kind.param); });

TEST(AFolder, WithBlanksMayThrow) {
    throw std::runtime_error("unexpected");
}

TEST(AFolder, ThatIsFine) {}

} // namespace
