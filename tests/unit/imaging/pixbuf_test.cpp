// RGBA images: making them, and the drawing primitives against the plain blend rule.
#include <gtest/gtest.h> // before the X headers, whose macros break it

#include "gui/ORX/imaging/pixbuf.h"
#include "unit/imaging/kernel_sets.h"
#include "unit/imaging/reference.h"
#include "unit/imaging/test_images.h"

#include <array>
#include <climits>

namespace {

using images::GuardedPixbuf;
using images::number;
using Pixel = std::array<int, 4>;

Pixel pixel(const Pixbuf* pixbuf, std::uint32_t x, std::uint32_t y) {
    const std::uint8_t* p = pixbuf->pixels + y * pixbuf->rowstride + x * 4;
    return {p[0], p[1], p[2], p[3]};
}

TEST(Pixbuf, IsBornOpaqueBlack) {
    Pixbuf* pixbuf = orx_pixbuf_new(nullptr, 7, 5);
    ASSERT_NE(pixbuf, nullptr);
    EXPECT_EQ(pixbuf->width, 7U);
    EXPECT_EQ(pixbuf->height, 5U);
    EXPECT_EQ(pixbuf->rowstride, 28U);
    EXPECT_EQ(pixbuf->n_channels, 4U);
    for (std::uint32_t i = 0; i < 35; ++i) {
        EXPECT_EQ(pixel(pixbuf, i % 7, i / 7), (Pixel{0, 0, 0, 255}));
    }
    orx_pixbuf_free(nullptr, pixbuf);
    orx_pixbuf_free(nullptr, nullptr);
}

TEST(Pixbuf, SizesBelowOneGiveARecordThatDrawsNothing) {
    for (const auto& [width, height] : {std::pair{0, 5}, std::pair{5, 0}, std::pair{-1, -1},
                                        std::pair{INT_MIN, INT_MAX}, std::pair{INT_MAX, 0}}) {
        Pixbuf* pixbuf = orx_pixbuf_new(nullptr, width, height);
        if (pixbuf == nullptr) {
            continue; // no memory for such a margin
        }
        orx_pixbuf_fill(nullptr, pixbuf, 1, 2, 3, 4);
        orx_pixbuf_fill_rect(nullptr, pixbuf, 0, 0, 5, 5, 1, 2, 3);
        orx_pixbuf_hline(nullptr, pixbuf, 0, 0, 9, 0, 1, 2, 3, 255);
        orx_pixbuf_vline(nullptr, pixbuf, 0, 0, 0, 9, 1, 2, 3, 255);
        orx_pixbuf_set_pixel(nullptr, pixbuf, 0, 0, 1, 2, 3, 4);
        EXPECT_EQ(std::uint64_t{pixbuf->width} * pixbuf->height, 0U);
        orx_pixbuf_free(nullptr, pixbuf);
    }
}

TEST(Pixbuf, AbsurdSizesGiveNull) {
    EXPECT_EQ(orx_pixbuf_new(nullptr, INT_MAX, INT_MAX), nullptr);
    EXPECT_EQ(orx_pixbuf_new(nullptr, 1, INT_MAX), nullptr);
    EXPECT_EQ(orx_pixbuf_new(nullptr, 0x40000001, 1), nullptr);
    EXPECT_EQ(orx_pixbuf_new(nullptr, 1 << 20, 1 << 20), nullptr);
}

TEST(Pixbuf, FillMakesTheBufferWhenThereIsNone) {
    auto* pixbuf = new Pixbuf{3, 2, 12, 4, nullptr};
    orx_pixbuf_fill(nullptr, pixbuf, 1, 2, 3, 4);
    ASSERT_NE(pixbuf->pixels, nullptr);
    EXPECT_EQ(pixel(pixbuf, 0, 0), (Pixel{1, 2, 3, 4}));
    EXPECT_EQ(pixel(pixbuf, 2, 1), (Pixel{1, 2, 3, 4}));
    orx_pixbuf_clear(nullptr, pixbuf);
    EXPECT_EQ(pixel(pixbuf, 2, 1), (Pixel{0, 0, 0, 255}));
    orx_pixbuf_free(nullptr, pixbuf);
}

TEST(Pixbuf, CopyTakesPixelsAsTheyAre) {
    images::Random random = images::make_random();
    GuardedPixbuf source(9, 8);
    GuardedPixbuf destination(12, 10);
    source.randomise(random);
    destination.randomise(random);
    const auto before = destination.bytes();
    orx_pixbuf_copy_area(nullptr, &source.pixbuf, &destination.pixbuf, 2, 1, 5, 3, 4, 6);
    for (std::uint32_t y = 0; y < 10; ++y) {
        for (std::uint32_t x = 0; x < 12; ++x) {
            const bool inside = x >= 5 && x < 9 && y >= 3 && y < 9;
            const std::uint8_t* old = before.data() + (y * 12 + x) * 4;
            EXPECT_EQ(pixel(&destination.pixbuf, x, y),
                      inside ? pixel(&source.pixbuf, x - 3, y - 2)
                             : (Pixel{old[0], old[1], old[2], old[3]}));
        }
    }
}

TEST(PixbufBlend, EveryChannelAndAlphaInEveryInstructionSet) {
    // A row of 256 grounds for each colour and alpha.
    for (int alpha = 0; alpha < 256; ++alpha) {
        for (int c = 0; c < 256; c += 15) {
            std::vector<std::uint8_t> source;
            std::vector<std::uint8_t> ground;
            std::vector<std::uint8_t> wanted;
            for (int d = 0; d < 256; ++d) {
                const int colours[3] = {c, 255 - c, c};
                const int grounds[3] = {d, d, 255 - d};
                for (std::size_t i = 0; i < 3; ++i) {
                    source.push_back(static_cast<std::uint8_t>(colours[i]));
                    ground.push_back(static_cast<std::uint8_t>(grounds[i]));
                    wanted.push_back(reference::blend(grounds[i], colours[i], alpha));
                }
                source.push_back(static_cast<std::uint8_t>(alpha));
                ground.push_back(static_cast<std::uint8_t>(d ^ 0x5A));
                wanted.push_back(static_cast<std::uint8_t>(d ^ 0x5A));
            }
            for (const RowKernels* kernels : kernel_sets()) {
                std::vector<std::uint8_t> blended = ground;
                kernels->blend_row(source.data(), blended.data(), 256);
                ASSERT_EQ(blended, wanted)
                    << kernels->name << " colour " << c << " alpha " << alpha;
            }
        }
    }
}

TEST(PixbufBlend, RandomRowsOfAnyLengthInEveryInstructionSet) {
    images::Random random = images::make_random();
    for (int round = 0; round < 500; ++round) {
        const auto count = static_cast<std::uint32_t>(number(random, 0, 70));
        GuardedPixbuf source(count, 1, number(random, 0, 1) == 1);
        GuardedPixbuf ground(count, 1, number(random, 0, 1) == 1);
        source.randomise(random);
        ground.randomise(random);
        // Stretches of opaque and of transparent pixels, as pictures have them.
        for (std::uint32_t i = 0; i < count; ++i) {
            const int stretch = (static_cast<int>(i) / 11 + round) % 3;
            if (stretch != 2) {
                source.pixbuf.pixels[i * 4 + 3] = stretch == 0 ? 0 : 255;
            }
        }
        const auto before = ground.bytes();
        for (const RowKernels* kernels : kernel_sets()) {
            std::copy(before.begin(), before.end(), ground.pixbuf.pixels);
            kernels->blend_row(source.pixbuf.pixels, ground.pixbuf.pixels, count);
            for (std::size_t i = 0; i < count * 4; ++i) {
                const int alpha = source.pixbuf.pixels[i / 4 * 4 + 3];
                const std::uint8_t wanted =
                    i % 4 == 3 ? before[i]
                               : reference::blend(before[i], source.pixbuf.pixels[i], alpha);
                ASSERT_EQ(ground.pixbuf.pixels[i], wanted) << kernels->name << " byte " << i;
            }
        }
    }
}

TEST(PixbufBlend, Alpha255LeavesAResidue) {
    Pixbuf* pixbuf = orx_pixbuf_new(nullptr, 2, 1);
    orx_pixbuf_blend_pixel(nullptr, pixbuf, 0, 0, 255, 0, 128, 255);
    EXPECT_EQ(pixel(pixbuf, 0, 0), (Pixel{254, 0, 127, 255}));
    EXPECT_EQ(pixel(pixbuf, 1, 0), (Pixel{0, 0, 0, 255}));
    orx_pixbuf_set_pixel(nullptr, pixbuf, 1, 0, 9, 8, 7, 6);
    orx_pixbuf_blend_pixel(nullptr, pixbuf, 1, 0, 0, 255, 7, 128);
    EXPECT_EQ(pixel(pixbuf, 1, 0), (Pixel{4, 131, 7, 6}));
    orx_pixbuf_free(nullptr, pixbuf);
}

TEST(PixbufBlend, CompositeTouchesItsRectangleAlone) {
    images::Random random = images::make_random();
    GuardedPixbuf source(20, 9);
    GuardedPixbuf ground(33, 14);
    source.randomise(random);
    ground.randomise(random);
    const auto before = ground.bytes();
    orx_pixbuf_composite(nullptr, &source.pixbuf, &ground.pixbuf, 1, 2, 10, 4, 19, 7);
    for (std::uint32_t y = 0; y < 14; ++y) {
        for (std::uint32_t x = 0; x < 33; ++x) {
            const std::uint8_t* old = before.data() + (y * 33 + x) * 4;
            Pixel wanted{old[0], old[1], old[2], old[3]};
            if (x >= 10 && x < 29 && y >= 4 && y < 11) {
                const Pixel s = pixel(&source.pixbuf, x - 9, y - 2);
                for (std::size_t c = 0; c < 3; ++c) {
                    wanted[c] = reference::blend(wanted[c], s[c], s[3]);
                }
            }
            ASSERT_EQ(pixel(&ground.pixbuf, x, y), wanted) << x << "," << y;
        }
    }
}

TEST(PixbufLines, HaveBothEndsInEitherOrder) {
    for (const bool swapped : {false, true}) {
        Pixbuf* pixbuf = orx_pixbuf_new(nullptr, 10, 10);
        orx_pixbuf_hline(nullptr, pixbuf, swapped ? 7 : 2, 3, swapped ? 2 : 7, 99, 200, 100, 50,
                         128);
        orx_pixbuf_vline(nullptr, pixbuf, 9, swapped ? 8 : 4, -99, swapped ? 4 : 8, 10, 20, 30,
                         255);
        for (std::uint32_t y = 0; y < 10; ++y) {
            for (std::uint32_t x = 0; x < 10; ++x) {
                Pixel wanted{0, 0, 0, 255};
                if (y == 3 && x >= 2 && x <= 7) {
                    wanted = {100, 50, 25, 255};
                } else if (x == 9 && y >= 4 && y <= 8) {
                    wanted = {9, 19, 29, 255};
                }
                EXPECT_EQ(pixel(pixbuf, x, y), wanted) << x << "," << y;
            }
        }
        orx_pixbuf_free(nullptr, pixbuf);
    }
}

TEST(PixbufLines, FillIsOpaque) {
    Pixbuf* pixbuf = orx_pixbuf_new(nullptr, 6, 6);
    orx_pixbuf_fill(nullptr, pixbuf, 0, 0, 0, 7);
    orx_pixbuf_fill_rect(nullptr, pixbuf, 1, 2, 3, 2, 11, 12, 13);
    for (std::uint32_t y = 0; y < 6; ++y) {
        for (std::uint32_t x = 0; x < 6; ++x) {
            const bool inside = x >= 1 && x < 4 && y >= 2 && y < 4;
            EXPECT_EQ(pixel(pixbuf, x, y), inside ? (Pixel{11, 12, 13, 255}) : (Pixel{0, 0, 0, 7}));
        }
    }
    const Pixel before = pixel(pixbuf, 0, 0);
    orx_pixbuf_fill_rect(nullptr, pixbuf, 0, 0, 6, 0, 1, 1, 1);
    orx_pixbuf_fill_rect(nullptr, pixbuf, 0, 0, 6, -3, 1, 1, 1);
    orx_pixbuf_fill_rect(nullptr, pixbuf, 0, 0, -6, 3, 1, 1, 1);
    orx_pixbuf_fill_rect(nullptr, nullptr, 0, 0, 6, 6, 1, 1, 1);
    EXPECT_EQ(pixel(pixbuf, 0, 0), before);
    orx_pixbuf_free(nullptr, pixbuf);
}

// Nothing clips, and nothing leaves the image's memory: the guard pages are the judges.
TEST(PixbufLines, AbsurdRectanglesStayInTheImagesMemory) {
    const int extremes[] = {INT_MIN, -70000, -7, -1, 0, 3, 12, 70000, INT_MAX};
    images::Random random = images::make_random();
    for (int round = 0; round < 3000; ++round) {
        GuardedPixbuf a(7, 5, round % 2 == 0);
        GuardedPixbuf b(4, 9, round % 3 == 0);
        a.randomise(random);
        b.randomise(random);
        const auto any = [&random, &extremes] {
            return extremes[static_cast<std::size_t>(number(random, 0, 8))];
        };
        orx_pixbuf_composite(nullptr, &a.pixbuf, &b.pixbuf, any(), any(), any(), any(), any(),
                             any());
        orx_pixbuf_copy_area(nullptr, &a.pixbuf, &b.pixbuf, any(), any(), any(), any(), any(),
                             any());
        orx_pixbuf_fill_rect(nullptr, &a.pixbuf, any(), any(), any(), any(), any(), any(), any());
        orx_pixbuf_hline(nullptr, &a.pixbuf, any(), any(), any(), any(), any(), any(), any(),
                         any());
        orx_pixbuf_vline(nullptr, &a.pixbuf, any(), any(), any(), any(), any(), any(), any(),
                         any());
        orx_pixbuf_blend_pixel(nullptr, &a.pixbuf, any(), any(), any(), any(), any(), any());
        orx_pixbuf_set_pixel(nullptr, &a.pixbuf, any(), any(), any(), any(), any(), any());
    }
    // A rectangle larger than the image covers all of it.
    GuardedPixbuf image(7, 5);
    orx_pixbuf_fill_rect(nullptr, &image.pixbuf, -3, -3, 100, 100, 9, 9, 9);
    for (std::uint32_t i = 0; i < 35; ++i) {
        EXPECT_EQ(pixel(&image.pixbuf, i % 7, i / 7), (Pixel{9, 9, 9, 255}));
    }
}

} // namespace
