// The product's pictures: what the program carries is what the PNG files show, and text can be read
// on the background.

#include "installer/embedded_artwork.h"
#include "support/child_process.h"
#include "tools/png_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace {

using png_files::Bytes;
using png_files::Image;

const std::string folder = "resources/artwork/";

struct Carried {
    const char* name;
    const unsigned char* bytes;
    std::uint32_t width;
    std::uint32_t height;
};

const std::array<Carried, 4> carried_pictures = {{
    {"splash.png", inline_image_splash, 600, 400},
    {"background.png", inline_image_background, 600, 336},
    {"window_icon.png", inline_image_window_icon, 64, 64},
    {"folder_icon.png", inline_image_folder_icon, 64, 64},
}};

// Relative luminance as the Web Content Accessibility Guidelines define it.
double luminance(const std::uint8_t* pixel) {
    const auto linear = [](std::uint8_t value) {
        const double share = value / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(pixel[0]) + 0.7152 * linear(pixel[1]) + 0.0722 * linear(pixel[2]);
}

double contrast_with_white(const std::uint8_t* pixel) {
    return 1.05 / (luminance(pixel) + 0.05);
}

bool opaque_everywhere(const Bytes& rgba) {
    for (std::size_t place = 3; place < rgba.size(); place += 4) {
        if (rgba[place] != 255) {
            return false;
        }
    }
    return true;
}

TEST(Artwork, TheProgramCarriesThePicturesPixelForPixel) {
    for (const Carried& picture : carried_pictures) {
        SCOPED_TRACE(picture.name);
        const Image image = png_files::read(folder + picture.name);
        EXPECT_EQ(image.width, picture.width);
        EXPECT_EQ(image.height, picture.height);
        const Bytes expected = png_files::blob(image);
        EXPECT_EQ(std::memcmp(picture.bytes, expected.data(), expected.size()), 0);
    }
}

TEST(Artwork, WhiteTextIsReadableWhereverAMessageLineFalls) {
    constexpr std::size_t first_text_row = 10;
    constexpr std::size_t last_text_row = 204;
    const Image image = png_files::read(folder + "background.png");
    const Bytes pixels = png_files::rgba(image);
    double worst = 21.0;
    for (std::size_t y = first_text_row; y <= last_text_row; ++y) {
        for (std::size_t x = 0; x < image.width; ++x) {
            worst = std::min(worst, contrast_with_white(&pixels[(y * image.width + x) * 4]));
        }
    }
    RecordProperty("worst_contrast", std::to_string(worst));
    EXPECT_GE(worst, 7.0);
}

TEST(Artwork, TheBackgroundEndsInTheBlackOfTheWindowBelow) {
    const Image image = png_files::read(folder + "background.png");
    const Bytes pixels = png_files::rgba(image);
    const std::size_t last_row = std::size_t{image.height - 1} * image.width * 4;
    for (std::size_t x = 0; x < image.width; ++x) {
        for (std::size_t channel = 0; channel < 3; ++channel) {
            EXPECT_LE(pixels[last_row + x * 4 + channel], 2) << "column " << x;
        }
    }
}

TEST(Artwork, TheLargePicturesHaveNoHoles) {
    EXPECT_TRUE(opaque_everywhere(png_files::rgba(png_files::read(folder + "splash.png"))));
    EXPECT_TRUE(opaque_everywhere(png_files::rgba(png_files::read(folder + "background.png"))));
}

// Window managers show an icon on whatever they like, so the plate's corners must be free; and the
// two windows must be told apart.
TEST(Artwork, TheTwoWindowIconsAreDifferentAndHaveFreeCorners) {
    const Bytes window = png_files::rgba(png_files::read(folder + "window_icon.png"));
    const Bytes browser = png_files::rgba(png_files::read(folder + "folder_icon.png"));
    for (const Bytes& icon : {window, browser}) {
        for (const std::size_t corner : {0U, 63U, 63U * 64U, 64U * 64U - 1U}) {
            EXPECT_EQ(icon[corner * 4 + 3], 0);
        }
    }
    std::size_t different = 0;
    for (std::size_t place = 0; place < window.size(); place += 4) {
        different += std::memcmp(&window[place], &browser[place], 4) != 0 ? 1U : 0U;
    }
    EXPECT_GT(different, std::size_t{64 * 64 / 2});
}

TEST(Artwork, TheDesktopIconIsASmallRgbaPngOfItsPromisedLength) {
    EXPECT_EQ(png_files::file_bytes(folder + "desktop_icon.png").size(), 304U);
    const Image icon = png_files::read(folder + "desktop_icon.png");
    EXPECT_EQ(icon.width, 48U);
    EXPECT_EQ(icon.height, 48U);
    EXPECT_EQ(icon.bits, 8);
    EXPECT_EQ(icon.kind, png_files::Kind::rgba);
    EXPECT_EQ(icon.samples[3], 0) << "the corner is free";
    EXPECT_EQ(icon.samples[(std::size_t{24} * 48 + 24) * 4 + 3], 255);
}

#ifdef TEST_PYTHON
TEST(Artwork, TheDesktopIconIsMadeFromItsDrawing) {
    const png_files::Folder scratch;
    const std::string made = scratch.file("icon.png");
    EXPECT_NE(support::output_of(
                  {TEST_PYTHON, folder + "desktop_icon.py", folder + "desktop_icon.txt", made}),
              "");
    EXPECT_EQ(png_files::file_bytes(made).size(), 304U);
    EXPECT_TRUE(png_files::read(made).samples ==
                png_files::read(folder + "desktop_icon.png").samples);
}
#endif

} // namespace
