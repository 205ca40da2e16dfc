// Surfaces: channel shifts, the engine's own pixel functions against Xlib's, rows, and 1:1
// conversion, in every format and both byte orders.
#include <gtest/gtest.h> // before the X headers, whose macros break it

#include "gui/ORX/core/engine.h"
#include "gui/ORX/imaging/channel_shift.h"
#include "gui/ORX/imaging/image_surface.h"
#include "gui/ORX/imaging/surface_pixels.h"
#include "gui/ORX/imaging/wire_area.h"
#include "unit/imaging/kernel_sets.h"
#include "unit/imaging/reference.h"
#include "unit/imaging/test_images.h"

#include <climits>

namespace {

using images::Format;
using images::GuardedPixbuf;
using images::number;
using images::Surface;

TEST(ChannelShift, PutsTheTopBitsIntoTheField) {
    EXPECT_EQ(channel_shift(0xFF0000), 16U);
    EXPECT_EQ(channel_shift(0xF800), 8U);
    EXPECT_EQ(channel_shift(0x000F), 28U);
    EXPECT_EQ(channel_shift(0x3FF00000), 22U);
    EXPECT_EQ(channel_shift(0), 24U);
    for (int start = 0; start < 32; ++start) {
        for (int bits = 1; start + bits <= 32; ++bits) {
            const auto mask = static_cast<std::uint32_t>(((1ULL << bits) - 1) << start);
            EXPECT_EQ(channel_shift(mask),
                      static_cast<std::uint32_t>(reference::channel_shift(mask)));
            for (std::uint32_t value = 0; value < 256; value += 5) {
                const std::uint32_t placed = place_channel(value, mask, channel_shift(mask));
                EXPECT_EQ(placed, reference::place(value, mask));
                EXPECT_EQ(read_channel(placed, mask, channel_shift(mask)),
                          reference::read(placed, mask));
            }
        }
    }
    EXPECT_EQ(place_channel(0xFF, 0xF800, 8), 0xF800U);
    EXPECT_EQ(read_channel(0xF800, 0xF800, 8), 0xF8U);
    EXPECT_EQ(place_channel(0xAB, 0x000F, 28), 0x0AU);
}

TEST(SurfaceFunctions, EqualXlibsOwnInEveryFormat) {
    images::Random random = images::make_random();
    for (const Format& format : images::formats()) {
        for (const bool msb : {false, true}) {
            Surface xlib(format, msb, 13, 7);
            Surface own(format, msb, 13, 7);
            surface_install_functions(&own.image);
            const bool replaced = format.bits_per_pixel == 16 || format.bits_per_pixel == 32;
            EXPECT_EQ(own.image.f.put_pixel != xlib.image.f.put_pixel, replaced) << format.name;
            EXPECT_EQ(surface_writer(&own.image).route != SurfaceRoute::image_function, replaced)
                << format.name << (msb ? " msb" : " lsb") << " goes the slow way";
            for (int i = 0; i < 500; ++i) {
                const int x = number(random, 0, 12);
                const int y = number(random, 0, 6);
                const unsigned long pixel = random();
                XPutPixel(&xlib.image, x, y, pixel);
                XPutPixel(&own.image, x, y, pixel);
                ASSERT_EQ(XGetPixel(&own.image, x, y), XGetPixel(&xlib.image, x, y)) << format.name;
            }
            EXPECT_EQ(own.bytes(), xlib.bytes()) << format.name << (msb ? " msb" : " lsb");
        }
    }
}

TEST(SurfaceFunctions, LeaveOtherKindsOfImagesAlone) {
    Surface bitmap({"1", 1, 1, 0, 0, 0}, false, 8, 8);
    bitmap.image.format = XYPixmap;
    const auto before = bitmap.image.f.put_pixel;
    surface_install_functions(&bitmap.image);
    EXPECT_EQ(bitmap.image.f.put_pixel, before);
    Surface shifted({"24", 24, 32, 0xFF0000, 0xFF00, 0xFF}, false, 8, 8);
    shifted.image.xoffset = 4;
    surface_install_functions(&shifted.image);
    EXPECT_EQ(surface_writer(&shifted.image).route, SurfaceRoute::image_function);
}

TEST(SurfaceRows, EveryRouteGivesTheSameBytes) {
    images::Random random = images::make_random();
    for (const Format& format : images::formats()) {
        for (const bool msb : {false, true}) {
            for (int round = 0; round < 30; ++round) {
                const int width = number(random, 1, 60);
                const int x = number(random, 0, width - 1);
                const auto count = static_cast<std::uint32_t>(number(random, 0, width - x));
                GuardedPixbuf row(count, 1, round % 2 == 0);
                row.randomise(random);
                Surface wanted(format, msb, width, 3);
                Surface through_image(format, msb, width, 3);
                Surface inlined(format, msb, width, 3);
                surface_install_functions(&inlined.image);
                for (std::uint32_t i = 0; i < count; ++i) {
                    const std::uint8_t* p = row.pixbuf.pixels + i * 4;
                    reference::put_pixel(wanted.image, x + static_cast<int>(i), 1,
                                         {p[0], p[1], p[2]});
                }
                surface_write_row(surface_writer(&through_image.image), x, 1, row.pixbuf.pixels,
                                  count);
                surface_write_row(surface_writer(&inlined.image), x, 1, row.pixbuf.pixels, count);
                ASSERT_EQ(through_image.bytes(), wanted.bytes()) << format.name;
                ASSERT_EQ(inlined.bytes(), wanted.bytes())
                    << format.name << (msb ? " msb" : " lsb");
            }
        }
    }
}

TEST(SurfaceRows, WholeBytesInEveryInstructionSet) {
    images::Random random = images::make_random();
    const std::uint32_t orders[4][3] = {{16, 8, 0}, {0, 8, 16}, {24, 16, 8}, {8, 16, 24}};
    for (int round = 0; round < 300; ++round) {
        const auto count = static_cast<std::uint32_t>(number(random, 0, 50));
        GuardedPixbuf row(count, 1, round % 2 == 0);
        row.randomise(random);
        for (const auto& shifts : orders) {
            for (const RowKernels* kernels : kernel_sets()) {
                images::GuardedMemory output(count * 4, round % 3 == 0);
                kernels->place_bytes(row.pixbuf.pixels, count, shifts, output.data());
                for (std::uint32_t i = 0; i < count; ++i) {
                    std::uint8_t wanted[4] = {};
                    for (std::uint32_t c = 0; c < 3; ++c) {
                        wanted[shifts[c] / 8] = row.pixbuf.pixels[i * 4 + c];
                    }
                    ASSERT_TRUE(std::equal(wanted, wanted + 4, output.data() + i * 4))
                        << kernels->name;
                }
            }
        }
    }
}

class FromPixbuf : public testing::Test {
protected:
    FromPixbuf() : engine_(engine_new()), random_(images::make_random()) {}
    ~FromPixbuf() override { engine_destroy(engine_); }
    FromPixbuf(const FromPixbuf&) = delete;
    FromPixbuf& operator=(const FromPixbuf&) = delete;

    // The rule as it is written, reads behind the source and writes beside the surface left out.
    static void convert(const Pixbuf& source, XImage& image, std::int64_t sx, std::int64_t sy,
                        std::int64_t dx, std::int64_t dy, std::int64_t width, std::int64_t height) {
        const std::int64_t columns = source.width;
        const std::int64_t rows = source.height;
        if (height < 1 || rows < 1) {
            return;
        }
        sx = std::clamp<std::int64_t>(sx, 0, columns);
        sy = std::clamp<std::int64_t>(sy, 0, rows);
        for (std::int64_t j = 0; j < height && j < rows; ++j) {
            for (std::int64_t i = 0; i < columns && i <= width - 1; ++i) {
                const std::int64_t index = (sy + j) * columns + sx + i;
                if (index < columns * rows) {
                    const std::uint8_t* p = source.pixels + index * 4;
                    reference::put_pixel(image, dx + i, dy + j, {p[0], p[1], p[2]});
                }
            }
        }
    }

    UiEngine* engine_;
    images::Random random_;
};

TEST_F(FromPixbuf, RandomRectanglesEqualTheRuleInEveryFormat) {
    for (int round = 0; round < 1100; ++round) {
        const auto& all = images::formats();
        const Format& format = all[static_cast<std::size_t>(round) % all.size()];
        const bool msb = number(random_, 0, 1) == 1;
        GuardedPixbuf source(static_cast<std::uint32_t>(number(random_, 1, 24)),
                             static_cast<std::uint32_t>(number(random_, 1, 12)), round % 2 == 0);
        source.randomise(random_);
        const int width = number(random_, 1, 30);
        const int height = number(random_, 1, 14);
        Surface wanted(format, msb, width, height);
        Surface got(format, msb, width, height, round % 3 == 0);
        if (number(random_, 0, 2) != 0) {
            surface_install_functions(&got.image);
        }
        const bool extreme = round % 10 == 0;
        const int sx = number(random_, -5, 30);
        const int sy = number(random_, -5, 15);
        const int dx = extreme ? INT_MIN : number(random_, -30, 30);
        const int dy = number(random_, -15, 15);
        const int w = extreme ? INT_MAX : number(random_, -2, 40);
        const int h = extreme ? INT_MAX : number(random_, -2, 20);
        convert(source.pixbuf, wanted.image, sx, sy, dx, dy, w, h);
        orx_image_from_pixbuf(engine_, &source.pixbuf, &got.image, sx, sy, dx, dy, w, h);
        ASSERT_EQ(got.bytes(), wanted.bytes()) << format.name << " from " << sx << "," << sy
                                               << " to " << dx << "," << dy << " " << w << "x" << h;
    }
}

TEST_F(FromPixbuf, DropsAlphaAndIgnoresWhatIsNotThere) {
    GuardedPixbuf source(1, 1);
    const std::uint8_t transparent[4] = {1, 2, 3, 0};
    std::copy_n(transparent, 4, source.pixbuf.pixels);
    Surface surface({"24", 24, 32, 0xFF0000, 0xFF00, 0xFF}, false, 1, 1);
    surface_install_functions(&surface.image);
    orx_image_from_pixbuf(engine_, &source.pixbuf, &surface.image, 0, 0, 0, 0, 1, 1);
    EXPECT_EQ(XGetPixel(&surface.image, 0, 0), 0x010203U);
    orx_image_from_pixbuf(engine_, nullptr, &surface.image, 0, 0, 0, 0, 1, 1);
    orx_image_from_pixbuf(engine_, &source.pixbuf, nullptr, 0, 0, 0, 0, 1, 1);
}

TEST(SurfaceWithoutADisplay, IsNullAndPuttingDoesNothing) {
    UiEngine* engine = engine_new();
    EXPECT_EQ(orx_image_new(engine, 10, 10), nullptr);
    Surface surface({"24", 24, 32, 0xFF0000, 0xFF00, 0xFF}, false, 4, 4);
    orx_image_put(engine, 0, &surface.image, 0, 0, 0, 0, 4, 4);
    orx_image_put(engine, no_window, &surface.image, 0, 0, 0, 0, 4, 4);
    orx_image_free(engine, &surface.image); // nothing happens
    EXPECT_EQ(surface.image.width, 4);
    orx_image_free(engine, nullptr);
    engine_destroy(engine);
}

TEST(WireArea, CutsWhatTheProtocolCannotCarry) {
    CopyArea inside{1, 2, 3, 4, 5, 6};
    EXPECT_TRUE(fit_copy(inside));
    EXPECT_EQ(inside.width, 5);
    EXPECT_EQ(inside.destination_y, 4);

    CopyArea left{-3, 0, 10, 0, 8, 1};
    EXPECT_TRUE(fit_copy(left));
    EXPECT_EQ(left.source_x, 0);
    EXPECT_EQ(left.destination_x, 13);
    EXPECT_EQ(left.width, 5);

    CopyArea above{0, 4, 0, -2, 1, 8};
    EXPECT_TRUE(fit_copy(above));
    EXPECT_EQ(above.source_y, 6);
    EXPECT_EQ(above.destination_y, 0);
    EXPECT_EQ(above.height, 6);

    CopyArea huge{0, 0, 30000, 0, INT_MAX, INT_MAX};
    EXPECT_TRUE(fit_copy(huge));
    EXPECT_EQ(huge.width, 2767);
    EXPECT_EQ(huge.height, 32767);

    CopyArea wrapped{0, 0, 70000, 0, 10, 10};
    EXPECT_FALSE(fit_copy(wrapped));
    CopyArea far{INT_MIN, INT_MIN, INT_MAX, INT_MAX, INT_MAX, INT_MAX};
    EXPECT_FALSE(fit_copy(far));
    CopyArea empty{0, 0, 0, 0, 0, 5};
    EXPECT_FALSE(fit_copy(empty));
    CopyArea negative{0, 0, 0, 0, 5, -1};
    EXPECT_FALSE(fit_copy(negative));
}

} // namespace
