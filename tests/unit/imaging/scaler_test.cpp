// The scaler: its weights, and its pixels against the plain reference, for every instruction set,
// every scale, every pixel format and every odd rectangle.
#include <gtest/gtest.h> // before the X headers, whose macros break it

#include "gui/ORX/core/engine.h"
#include "gui/ORX/imaging/row_kernels.h"
#include "gui/ORX/imaging/scaler.h"
#include "gui/ORX/imaging/scaler_rows.h"
#include "gui/ORX/imaging/scaler_weights.h"
#include "gui/ORX/imaging/surface_pixels.h"
#include "unit/imaging/kernel_sets.h"
#include "unit/imaging/reference.h"
#include "unit/imaging/test_images.h"

#include <malloc.h>

#include <array>
#include <climits>
#include <cmath>
#include <limits>

namespace {

bool no_aligned_memory = false;

} // namespace

// In place of the C library's.
void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return no_aligned_memory ? nullptr : memalign(alignment, size);
}

namespace {

using images::Format;
using images::GuardedPixbuf;
using images::number;
using images::Surface;

constexpr std::array<float, 9> ui_scales = {1.0F,   1.125F, 1.25F,  1.375F, 1.5F,
                                            1.625F, 1.75F,  1.875F, 2.0F};
const Format depth24 = {"24", 24, 32, 0xFF0000, 0xFF00, 0xFF};

class ScalerTest : public testing::Test {
protected:
    ScalerTest() : engine_(engine_new()), random_(images::make_random()) {}
    ~ScalerTest() override { engine_destroy(engine_); }
    ScalerTest(const ScalerTest&) = delete;
    ScalerTest& operator=(const ScalerTest&) = delete;

    // Draws with the engine on a grey surface.
    [[nodiscard]] std::vector<std::uint8_t> drawn(const Pixbuf& source, Surface& surface, int x,
                                                  int y, int width, int height, int image_x,
                                                  int image_y, float scale) const {
        surface.fill(0x55);
        orx_image_scale_from_pixbuf(engine_, &source, &surface.image, x, y, width, height, image_x,
                                    image_y, scale);
        return surface.bytes();
    }

    [[nodiscard]] static std::vector<std::uint8_t> expected(const Pixbuf& source, Surface& surface,
                                                            int x, int y, int width, int height,
                                                            int image_x, int image_y, float scale) {
        surface.fill(0x55);
        reference::scale_into(source, surface.image, {x, y, width, height}, image_x, image_y,
                              scale);
        return surface.bytes();
    }

    UiEngine* engine_;
    images::Random random_;
};

TEST(ScalerWeights, TellingRowsAndEverySum) {
    EXPECT_EQ(scaler_weights[0], (TapRow{0, 256, 0, 0}));
    EXPECT_EQ(scaler_weights[1], (TapRow{-1, 257, 0, 0}));
    EXPECT_EQ(scaler_weights[2], (TapRow{-1, 256, 1, 0}));
    EXPECT_EQ(scaler_weights[64], (TapRow{-18, 222, 58, -6}));
    EXPECT_EQ(scaler_weights[128], (TapRow{-16, 144, 144, -16}));
    EXPECT_EQ(scaler_weights[192], (TapRow{-6, 58, 222, -18}));
    EXPECT_EQ(scaler_weights[255], (TapRow{0, 0, 257, -1}));
    for (int phase = 0; phase < 256; ++phase) {
        const TapRow& row = scaler_weights[static_cast<std::size_t>(phase)];
        EXPECT_EQ(row, reference::weights(phase)) << "phase " << phase;
        EXPECT_EQ(row[0] + row[1] + row[2] + row[3], 256) << "phase " << phase;
    }
}

TEST_F(ScalerTest, EveryScaleEqualsTheReference) {
    GuardedPixbuf source(61, 43);
    source.randomise(random_);
    for (const float scale : ui_scales) {
        Surface surface(depth24, false, 130, 90);
        const auto wanted = expected(source.pixbuf, surface, 0, 0, 130, 90, 0, 0, scale);
        surface_install_functions(&surface.image);
        EXPECT_EQ(drawn(source.pixbuf, surface, 0, 0, 130, 90, 0, 0, scale), wanted)
            << "scale " << scale;
    }
}

TEST_F(ScalerTest, RandomRectanglesEqualTheReferenceInEveryFormat) {
    for (int round = 0; round < 400; ++round) {
        const auto& all = images::formats();
        const Format& format = all[static_cast<std::size_t>(round) % all.size()];
        const bool msb = number(random_, 0, 1) == 1;
        const bool own = number(random_, 0, 2) != 0;
        GuardedPixbuf source(static_cast<std::uint32_t>(number(random_, 1, 40)),
                             static_cast<std::uint32_t>(number(random_, 1, 30)),
                             number(random_, 0, 1) == 1);
        source.randomise(random_);
        const int x = number(random_, -20, 70);
        const int y = number(random_, -20, 60);
        const int width = number(random_, -2, 90);
        const int height = number(random_, -2, 70);
        const int image_x = number(random_, -70, 70);
        const int image_y = number(random_, -50, 50);
        const float scale = number(random_, 0, 3) == 0
                                ? static_cast<float>(number(random_, 1, 400)) / 100.0F
                                : ui_scales[static_cast<std::size_t>(number(random_, 0, 8))];
        Surface surface(format, msb, number(random_, 1, 64), number(random_, 1, 48),
                        number(random_, 0, 1) == 1);
        const auto wanted =
            expected(source.pixbuf, surface, x, y, width, height, image_x, image_y, scale);
        if (own) {
            surface_install_functions(&surface.image);
        }
        ASSERT_EQ(drawn(source.pixbuf, surface, x, y, width, height, image_x, image_y, scale),
                  wanted)
            << format.name << (msb ? " msb" : " lsb") << (own ? " own" : " Xlib") << " source "
            << source.pixbuf.width << "x" << source.pixbuf.height << " surface "
            << surface.image.width << "x" << surface.image.height << " rectangle " << x << "," << y
            << " " << width << "x" << height << " image at " << image_x << "," << image_y
            << " scale " << scale;
    }
}

struct Collected {
    std::int64_t width;
    std::vector<std::uint8_t> pixels;
};

void collect(void* data, std::int64_t x, std::int64_t y, const std::uint8_t* pixels,
             std::size_t count) {
    auto* collected = static_cast<Collected*>(data);
    std::copy_n(pixels, count * 4,
                collected->pixels.begin() +
                    static_cast<std::ptrdiff_t>(y * collected->width + x) * 4);
}

TEST_F(ScalerTest, EveryInstructionSetGivesTheSameBytesWithMemoryOrWithout) {
    for (int round = 0; round < 300; ++round) {
        GuardedPixbuf source(static_cast<std::uint32_t>(number(random_, 1, 90)),
                             static_cast<std::uint32_t>(number(random_, 2, 40)),
                             number(random_, 0, 1) == 1);
        source.randomise(random_);
        const float scale = static_cast<float>(number(random_, 30, 300)) / 100.0F;
        const ScaleRequest request{number(random_, 0, 30),
                                   number(random_, 0, 30),
                                   number(random_, 1, 100),
                                   number(random_, 1, 80),
                                   number(random_, -40, 30),
                                   number(random_, -40, 30),
                                   scale};
        Collected wanted{120, std::vector<std::uint8_t>(120 * 90 * 4)};
        reference::scale(source.pixbuf, {request.x, request.y, request.width, request.height},
                         request.image_x, request.image_y, scale, 120, 90,
                         [&wanted](std::int64_t x, std::int64_t y, reference::Rgb colour) {
                             if (x < 120 && y < 90) {
                                 const std::uint8_t rgba[4] = {colour.r, colour.g, colour.b, 255};
                                 collect(&wanted, x, y, rgba, 1);
                             }
                         });
        for (const RowKernels* kernels : kernel_sets()) {
            for (const bool without_memory : {false, true}) {
                Collected got{120, std::vector<std::uint8_t>(120 * 90 * 4)};
                no_aligned_memory = without_memory;
                scale_rows(*kernels, &source.pixbuf, request, 120, 90, collect, &got);
                no_aligned_memory = false;
                ASSERT_EQ(got.pixels, wanted.pixels) << kernels->name << " scale " << scale;
            }
        }
    }
}

TEST_F(ScalerTest, ScaleOneCopiesTheSourceExactly) {
    GuardedPixbuf source(23, 17);
    source.randomise(random_);
    Surface surface(depth24, false, 23, 17);
    surface_install_functions(&surface.image);
    (void)drawn(source.pixbuf, surface, 0, 0, 23, 17, 0, 0, 1.0F);
    for (int y = 0; y < 17; ++y) {
        for (int x = 0; x < 23; ++x) {
            const std::uint8_t* p = source.pixbuf.pixels + (y * 23 + x) * 4;
            ASSERT_EQ(XGetPixel(&surface.image, x, y),
                      static_cast<unsigned long>(p[0] << 16 | p[1] << 8 | p[2]));
        }
    }
}

TEST_F(ScalerTest, ScaleTwoPutsTheMiddleBetweenPixelsWithPhase128) {
    GuardedPixbuf source(4, 2);
    const std::uint8_t reds[4] = {10, 100, 200, 30};
    for (int i = 0; i < 8; ++i) {
        source.pixbuf.pixels[i * 4] = reds[i % 4];
    }
    Surface surface(depth24, false, 8, 4);
    (void)drawn(source.pixbuf, surface, 0, 0, 8, 4, 0, 0, 2.0F);
    const int middle = (-16 * 10 + 144 * 100 + 144 * 200 - 16 * 30) >> 8;
    EXPECT_EQ(XGetPixel(&surface.image, 2, 0) >> 16, 100U);
    EXPECT_EQ(XGetPixel(&surface.image, 3, 0) >> 16, static_cast<unsigned long>(middle));
}

TEST_F(ScalerTest, ABlackToWhiteEdgeIsClampedOnBothSides) {
    GuardedPixbuf source(8, 8);
    for (int i = 0; i < 64; ++i) {
        const std::uint8_t value = i % 8 < 4 ? 0 : 255;
        std::fill_n(source.pixbuf.pixels + i * 4, 4, value);
    }
    Surface surface(depth24, false, 16, 16);
    surface_install_functions(&surface.image);
    (void)drawn(source.pixbuf, surface, 0, 0, 16, 16, 0, 0, 2.0F);
    EXPECT_EQ(XGetPixel(&surface.image, 5, 4), 0U);          // would be -16 of 256 of white
    EXPECT_EQ(XGetPixel(&surface.image, 9, 4), 0xFFFFFFU);   // would be 272 of 256 of white
    EXPECT_EQ(XGetPixel(&surface.image, 7, 4) & 0xFF, 127U); // half way
}

TEST_F(ScalerTest, SourceAlphaPlaysNoPart) {
    GuardedPixbuf source(9, 9);
    source.randomise(random_);
    Surface surface(depth24, false, 18, 18);
    surface_install_functions(&surface.image);
    const auto before = drawn(source.pixbuf, surface, 0, 0, 18, 18, 0, 0, 2.0F);
    for (int i = 0; i < 81; ++i) {
        source.pixbuf.pixels[i * 4 + 3] = static_cast<std::uint8_t>(i);
    }
    EXPECT_EQ(drawn(source.pixbuf, surface, 0, 0, 18, 18, 0, 0, 2.0F), before);
}

TEST_F(ScalerTest, ARectangleLeftOfAndAboveIsClampedToTheCornerWithItsWholeSize) {
    GuardedPixbuf source(20, 20);
    source.randomise(random_);
    Surface surface(depth24, false, 20, 20);
    surface_install_functions(&surface.image);
    (void)drawn(source.pixbuf, surface, -5, -7, 10, 12, 0, 0, 1.0F);
    EXPECT_NE(XGetPixel(&surface.image, 9, 11), 0x55555555U & 0xFFFFFFU);
    EXPECT_EQ(XGetPixel(&surface.image, 10, 0), 0x555555U);
    EXPECT_EQ(XGetPixel(&surface.image, 0, 12), 0x555555U);
}

TEST_F(ScalerTest, OneSourceRowDrawsNothingAndOneSourceColumnDraws) {
    GuardedPixbuf row(16, 1);
    GuardedPixbuf column(1, 16);
    column.randomise(random_);
    Surface surface(depth24, false, 32, 32);
    const std::vector<std::uint8_t> untouched(32 * 32 * 4, 0x55);
    EXPECT_EQ(drawn(row.pixbuf, surface, 0, 0, 32, 32, 0, 0, 2.0F), untouched);
    const auto wanted = expected(column.pixbuf, surface, 0, 0, 32, 32, 0, 0, 2.0F);
    EXPECT_NE(wanted, untouched);
    EXPECT_EQ(drawn(column.pixbuf, surface, 0, 0, 32, 32, 0, 0, 2.0F), wanted);
}

TEST_F(ScalerTest, ARectangleIsCappedAt8192) {
    GuardedPixbuf source(4200, 3);
    source.randomise(random_);
    const Format format = {"16", 16, 16, 0xF800, 0x7E0, 0x1F};
    Surface wide(format, false, 8300, 5);
    auto wanted = expected(source.pixbuf, wide, 0, 0, 8300, 5, 0, 0, 2.0F);
    surface_install_functions(&wide.image);
    EXPECT_EQ(drawn(source.pixbuf, wide, 0, 0, 8300, 5, 0, 0, 2.0F), wanted);
    EXPECT_EQ(XGetPixel(&wide.image, 8192, 0), 0x5555U);

    GuardedPixbuf tall_source(3, 4200);
    tall_source.randomise(random_);
    Surface tall(format, false, 5, 8300);
    wanted = expected(tall_source.pixbuf, tall, 0, 0, 5, 8300, 0, 0, 2.0F);
    surface_install_functions(&tall.image);
    EXPECT_EQ(drawn(tall_source.pixbuf, tall, 0, 0, 5, 8300, 0, 0, 2.0F), wanted);
    EXPECT_EQ(XGetPixel(&tall.image, 0, 8192), 0x5555U);
}

TEST_F(ScalerTest, AnImageThatStartsInsideTheRectangleStopsAtTheSurfacesEdge) {
    GuardedPixbuf source(40, 40);
    source.randomise(random_);
    for (const bool msb : {false, true}) {
        Surface surface(depth24, msb, 30, 30);
        const auto wanted = expected(source.pixbuf, surface, 0, 0, 30, 30, 11, 13, 2.0F);
        surface_install_functions(&surface.image);
        EXPECT_EQ(drawn(source.pixbuf, surface, 0, 0, 30, 30, 11, 13, 2.0F), wanted);
    }
}

TEST_F(ScalerTest, NothingIsDrawnWhereThereIsNothingToDraw) {
    GuardedPixbuf source(10, 10);
    source.randomise(random_);
    Surface surface(depth24, false, 20, 20);
    const std::vector<std::uint8_t> untouched(20 * 20 * 4, 0x55);
    const struct {
        int x, y, width, height, image_x, image_y;
    } cases[] = {
        {0, 0, 0, 5, 0, 0},
        {0, 0, 5, 0, 0, 0},
        {0, 0, -5, 5, 0, 0},
        {20, 0, 5, 5, 0, 0},
        {0, 20, 5, 5, 0, 0},
        {0, 0, 5, 5, 20, 0},
        {0, 0, 5, 5, 0, 20},
        {15, 0, 5, 5, 0, 0},
        {0, 15, 5, 5, 0, 0},
        {0, 0, 5, 5, -100, 0},
        {0, 0, 5, 5, INT_MIN, 0},
        {0, 0, 5, 5, 0, INT_MIN},
        {INT_MAX, 0, 5, 5, 0, 0},
        {0, 0, INT_MIN, INT_MIN, 0, 0},
        {0, 0, 5, 5, INT_MAX, INT_MAX},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(
            drawn(source.pixbuf, surface, c.x, c.y, c.width, c.height, c.image_x, c.image_y, 1.0F),
            untouched);
    }
    orx_image_scale_from_pixbuf(engine_, nullptr, &surface.image, 0, 0, 20, 20, 0, 0, 1.0F);
    orx_image_scale_from_pixbuf(engine_, &source.pixbuf, nullptr, 0, 0, 20, 20, 0, 0, 1.0F);
    Pixbuf hollow{0, 5, 0, 4, source.pixbuf.pixels};
    EXPECT_EQ(drawn(hollow, surface, 0, 0, 20, 20, 0, 0, 1.0F), untouched);
}

TEST_F(ScalerTest, AbsurdScalesAreDefined) {
    GuardedPixbuf source(10, 10);
    source.randomise(random_);
    Surface surface(depth24, false, 20, 20);
    surface_install_functions(&surface.image);
    const std::vector<std::uint8_t> untouched(20 * 20 * 4, 0x55);
    const float infinite = std::numeric_limits<float>::infinity();
    for (const float scale :
         {0.0F, -0.0F, -1.0F, -infinite, std::nanf(""), 1e-9F, 1e-45F, 1.0F / 32768.0F}) {
        EXPECT_EQ(drawn(source.pixbuf, surface, 0, 0, 20, 20, 0, 0, scale), untouched)
            << "scale " << scale;
    }
    // Without end, or nearly so, all that is seen is the first pixel.
    for (const float scale : {infinite, 1e30F, 70000.0F}) {
        (void)drawn(source.pixbuf, surface, 0, 0, 20, 20, 0, 0, scale);
        const std::uint8_t* p = source.pixbuf.pixels;
        const auto first = static_cast<unsigned long>(p[0] << 16 | p[1] << 8 | p[2]);
        EXPECT_EQ(XGetPixel(&surface.image, 0, 0), first);
        EXPECT_EQ(XGetPixel(&surface.image, 19, 19), first);
    }
    // Far below 1 the whole image is a few pixels.
    const auto wanted = expected(source.pixbuf, surface, 0, 0, 20, 20, 0, 0, 0.2F);
    EXPECT_EQ(drawn(source.pixbuf, surface, 0, 0, 20, 20, 0, 0, 0.2F), wanted);
}

} // namespace
