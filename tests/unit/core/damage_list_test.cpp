// damage_list_test.cpp: dirty rectangles never overlap, and none is lost.
#include <gtest/gtest.h>

#include "gui/ORX/core/damage_list.h"

#include <algorithm>
#include <random>
#include <vector>

bool operator==(const DamageRect& a, const DamageRect& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

void PrintTo(const DamageRect& rect, std::ostream* stream) {
    *stream << "(" << rect.left << ", " << rect.top << ", " << rect.right << ", " << rect.bottom
            << ")";
}

namespace {

struct DamageListTest : testing::Test {
    DamageList list;
    ~DamageListTest() override { damage_free(&list); }

    std::vector<DamageRect> rects() const { return {list.rects, list.rects + damage_count(&list)}; }
};

using Rects = std::vector<DamageRect>;

TEST_F(DamageListTest, IsEmptyWithoutStorage) {
    EXPECT_EQ(damage_count(&list), 0);
    EXPECT_EQ(list.rects, nullptr);
}

TEST_F(DamageListTest, OrdersTheEdgesOfARectangle) {
    damage_add(&list, 30, 40, 10, 20);
    EXPECT_EQ(rects(), (Rects{{10, 20, 30, 40}}));
}

TEST_F(DamageListTest, KeepsOneOfTwoEqualRectangles) {
    damage_add(&list, 0, 0, 10, 10);
    damage_add(&list, 0, 0, 10, 10);
    EXPECT_EQ(rects(), (Rects{{0, 0, 10, 10}}));
}

TEST_F(DamageListTest, KeepsOutARectangleInsideAnother) {
    damage_add(&list, 0, 0, 10, 10);
    damage_add(&list, 2, 2, 8, 8);
    EXPECT_EQ(rects(), (Rects{{0, 0, 10, 10}}));
}

TEST_F(DamageListTest, ReplacesThoseThatANewOneCovers) {
    damage_add(&list, 2, 2, 4, 4);
    damage_add(&list, 6, 6, 8, 8);
    damage_add(&list, 20, 20, 30, 30);
    damage_add(&list, 0, 0, 10, 10);
    EXPECT_EQ(rects(), (Rects{{20, 20, 30, 30}, {0, 0, 10, 10}}));
}

TEST_F(DamageListTest, LeavesNeighboursThatOnlyTouch) {
    damage_add(&list, 0, 0, 10, 10);
    damage_add(&list, 10, 0, 20, 10);
    damage_add(&list, 0, 10, 10, 20);
    EXPECT_EQ(rects(), (Rects{{0, 0, 10, 10}, {10, 0, 20, 10}, {0, 10, 10, 20}}));
}

TEST_F(DamageListTest, CutsTheOverlappedOneIntoItsPartsOutside) {
    damage_add(&list, 0, 0, 100, 100);
    damage_add(&list, 50, 50, 150, 150);
    EXPECT_EQ(rects(), (Rects{{0, 0, 100, 50}, {0, 50, 50, 100}, {50, 50, 150, 150}}));
}

TEST_F(DamageListTest, CutsBandsAboveAndBelowBeforePiecesBeside) {
    damage_add(&list, 0, 0, 30, 30);
    damage_add(&list, 30, 10, 40, 20);
    damage_add(&list, 10, 10, 35, 20);
    EXPECT_EQ(
        rects(),
        (Rects{
            {0, 0, 30, 10}, {0, 20, 30, 30}, {0, 10, 10, 20}, {35, 10, 40, 20}, {10, 10, 35, 20}}));
}

TEST_F(DamageListTest, PassesOverAnEmptyRectangleOfTheList) {
    damage_add(&list, 5, 5, 5, 9);
    damage_add(&list, 0, 0, 10, 10);
    EXPECT_EQ(rects(), (Rects{{5, 5, 5, 9}, {0, 0, 10, 10}}));
}

TEST_F(DamageListTest, PopsTheLastOneFirst) {
    damage_add(&list, 0, 0, 1, 1);
    damage_add(&list, 5, 5, 6, 6);
    EXPECT_EQ(damage_pop(&list), (DamageRect{5, 5, 6, 6}));
    EXPECT_EQ(damage_pop(&list), (DamageRect{0, 0, 1, 1}));
    EXPECT_EQ(damage_count(&list), 0);
}

TEST_F(DamageListTest, RemovingMovesLaterOnesDown) {
    for (std::int32_t i = 0; i < 4; ++i) {
        damage_add(&list, i * 10, 0, i * 10 + 1, 1);
    }
    damage_remove(&list, 1);
    EXPECT_EQ(rects(), (Rects{{0, 0, 1, 1}, {20, 0, 21, 1}, {30, 0, 31, 1}}));
}

TEST_F(DamageListTest, HasRoomForEightAndThenDoubles) {
    for (std::int32_t i = 0; i < 8; ++i) {
        damage_add(&list, i * 10, 0, i * 10 + 1, 1);
        EXPECT_EQ(list.capacity, 8);
    }
    damage_add(&list, 900, 0, 901, 1);
    EXPECT_EQ(list.capacity, 16);
    EXPECT_EQ(damage_count(&list), 9);
    EXPECT_EQ(list.rects[8], (DamageRect{900, 0, 901, 1}));
}

TEST_F(DamageListTest, ClearingKeepsTheStorageAndFreeingDoesNot) {
    damage_add(&list, 0, 0, 1, 1);
    damage_clear(&list);
    EXPECT_EQ(damage_count(&list), 0);
    EXPECT_EQ(list.capacity, 8);
    damage_free(&list);
    EXPECT_EQ(list.capacity, 0);
    EXPECT_EQ(list.rects, nullptr);
}

TEST_F(DamageListTest, KeepsAsManyApartAsItsBoundAllows) {
    for (std::int32_t i = 0; i < damage_rects_most; ++i) {
        damage_add(&list, 2 * i, 0, 2 * i + 1, 1);
    }
    EXPECT_EQ(damage_count(&list), damage_rects_most);
    EXPECT_EQ(list.rects[damage_rects_most - 1], (DamageRect{510, 0, 511, 1}));
    damage_add(&list, 7, 900, 8, 901);
    EXPECT_EQ(rects(), (Rects{{0, 0, 511, 901}}));
}

TEST_F(DamageListTest, BeyondItsBoundCrossingLinesBecomeOneRectangle) {
    for (std::int32_t i = 0; i < 2'000; ++i) {
        damage_add(&list, 2 * i, 0, 2 * i + 1, 4'000);
        ASSERT_LE(damage_count(&list), damage_rects_most);
        damage_add(&list, 0, 2 * i, 4'000, 2 * i + 1);
        ASSERT_LE(damage_count(&list), damage_rects_most);
    }
    damage_add(&list, 0, 0, 4'000, 4'000);
    EXPECT_EQ(rects(), (Rects{{0, 0, 4'000, 4'000}}));
}

TEST_F(DamageListTest, AfterItsBoundItIsAsExactAsBefore) {
    for (std::int32_t i = 0; i <= damage_rects_most; ++i) {
        damage_add(&list, 2 * i, 0, 2 * i + 1, 1);
    }
    damage_clear(&list);
    damage_add(&list, 0, 0, 100, 100);
    damage_add(&list, 50, 50, 150, 150);
    EXPECT_EQ(rects(), (Rects{{0, 0, 100, 50}, {0, 50, 50, 100}, {50, 50, 150, 150}}));
}

// A bitmap with a count of how often each pixel would be painted.
struct Bitmap {
    static constexpr int side = 64;
    std::vector<int> pixels = std::vector<int>(side * side, 0);

    void add(const DamageRect& rect) {
        for (int y = rect.top; y < rect.bottom; ++y) {
            for (int x = rect.left; x < rect.right; ++x) {
                pixels[static_cast<std::size_t>(y * side + x)] += 1;
            }
        }
    }
};

TEST_F(DamageListTest, CoversExactlyTheUnionOfRandomRectanglesOnce) {
    const unsigned seed = std::random_device{}();
    RecordProperty("seed", std::to_string(seed));
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> edge(0, Bitmap::side);
    std::uniform_int_distribution<int> how_many(1, 40);
    for (int round = 0; round < 2'000; ++round) {
        Bitmap wanted;
        const int count = how_many(random);
        for (int i = 0; i < count; ++i) {
            const int x0 = edge(random);
            const int x1 = edge(random);
            const int y0 = edge(random);
            const int y1 = edge(random);
            wanted.add({std::min(x0, x1), std::min(y0, y1), std::max(x0, x1), std::max(y0, y1)});
            damage_add(&list, x0, y0, x1, y1);
        }
        Bitmap painted;
        while (damage_count(&list) > 0) {
            painted.add(damage_pop(&list));
        }
        for (std::size_t i = 0; i < wanted.pixels.size(); ++i) {
            ASSERT_EQ(painted.pixels[i], wanted.pixels[i] > 0 ? 1 : 0) << "pixel " << i;
        }
    }
}

} // namespace
