// font_data_test.cpp: the compiled glyph records: metrics the layout relies on, and their ink.
#include "gui/ORX/text/font_data.h"

#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

int width(int code) {
    return orx_font_glyphs[code][orx_glyph_width_offset];
}
int height(int code) {
    return orx_font_glyphs[code][orx_glyph_height_offset];
}
int advance(int code) {
    return orx_font_glyphs[code][orx_glyph_advance_offset];
}
int x_bearing(int code) {
    return static_cast<signed char>(orx_font_glyphs[code][orx_glyph_x_bearing_offset]);
}
int top_bearing(int code) {
    return static_cast<signed char>(orx_font_glyphs[code][orx_glyph_top_bearing_offset]);
}
int coverage(int code, int row, int column) {
    return orx_font_glyphs[code][orx_glyph_coverage_offset + row * width(code) + column];
}

bool shows_the_box(int code) {
    return code < 32 || (code >= 127 && code < 160);
}
bool is_space(int code) {
    return code == 32 || code == 160;
}

// The sheet read by libpng alone, without any code of the build tool.
std::vector<unsigned char> sheet_pixels() {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    std::vector<unsigned char> pixels;
    if (!png_image_begin_read_from_file(&image, "resources/font/font_sheet.png"))
        return pixels;
    image.format = PNG_FORMAT_GRAY;
    pixels.resize(PNG_IMAGE_SIZE(image));
    if (!png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr))
        pixels.clear();
    return pixels;
}

struct TellingRow {
    int code, width, height, advance, x_bearing, top_bearing;
};

class FontTellingRow : public testing::TestWithParam<TellingRow> {};

} // namespace

TEST_P(FontTellingRow, HasTheMetricsTheLayoutReliesOn) {
    const TellingRow row = GetParam();
    EXPECT_EQ(width(row.code), row.width);
    EXPECT_EQ(height(row.code), row.height);
    EXPECT_EQ(advance(row.code), row.advance);
    EXPECT_EQ(x_bearing(row.code), row.x_bearing);
    EXPECT_EQ(top_bearing(row.code), row.top_bearing);
}

INSTANTIATE_TEST_SUITE_P(
    Glyphs, FontTellingRow,
    testing::Values(TellingRow{'A', 8, 9, 7, 0, 9}, TellingRow{'g', 6, 10, 7, 0, 7},
                    TellingRow{'j', 3, 13, 3, -1, 10}, TellingRow{'W', 11, 9, 11, 0, 9},
                    TellingRow{'_', 7, 1, 5, -1, -2}, TellingRow{'.', 2, 2, 3, 1, 2},
                    TellingRow{'*', 6, 6, 5, 0, 9}, TellingRow{169, 9, 9, 11, 1, 9},
                    TellingRow{196, 8, 11, 7, 0, 11}, TellingRow{255, 7, 13, 6, 0, 10}),
    [](const auto& shown) { return "CodePoint" + std::to_string(shown.param.code); });

TEST(FontData, ControlCodesShareOneBox) {
    for (int code = 0; code < 256; ++code)
        EXPECT_EQ(orx_font_glyphs[code] == orx_font_glyphs[0], shows_the_box(code)) << code;
    EXPECT_EQ(width(0), 6);
    EXPECT_EQ(height(0), 12);
    EXPECT_EQ(advance(0), 6);
    EXPECT_EQ(top_bearing(0), 9);
    for (int row = 0; row < 12; ++row) {
        EXPECT_GT(coverage(0, row, 0), 0);
        EXPECT_GT(coverage(0, row, 5), 0);
    }
    EXPECT_EQ(coverage(0, 6, 3), 0) << "the box is hollow";
}

TEST(FontData, SpacesAreEmptyAndThreeWide) {
    for (const int code : {32, 160}) {
        EXPECT_EQ(width(code), 0);
        EXPECT_EQ(height(code), 0);
        EXPECT_EQ(advance(code), 3);
    }
}

TEST(FontData, AdvancesGoFromThreeToEleven) {
    int least = 255, most = 0;
    for (int code = 0; code < 256; ++code) {
        least = std::min(least, advance(code));
        most = std::max(most, advance(code));
        EXPECT_EQ(orx_font_glyphs[code][3], 0) << "reserved byte of " << code;
    }
    EXPECT_EQ(least, 3);
    EXPECT_EQ(most, 11);
}

// The walk leaves glyph 255 out and reads bearings as unsigned bytes, so the underscore's counts
// as 254 and the ascent is cut to the height.
TEST(FontData, OverallMetricsAreThirteenAndEleven) {
    int tallest = 0, widest = 0, ascent = 0;
    for (int code = 0; code < 255; ++code) {
        tallest = std::max(tallest, height(code));
        widest = std::max({widest, width(code), advance(code)});
        ascent = std::max<int>(ascent, orx_font_glyphs[code][orx_glyph_top_bearing_offset]);
    }
    ascent = std::min(ascent, tallest);
    EXPECT_EQ(tallest, 13);
    EXPECT_EQ(height(255), 13);
    EXPECT_EQ(widest, 11);
    EXPECT_EQ(ascent, 13);
    EXPECT_EQ(2 * tallest - ascent, 13);
}

TEST(FontData, CapitalsStandNineRowsAboveTheBaseline) {
    for (int code = 'A'; code <= 'Z'; ++code)
        EXPECT_EQ(top_bearing(code), 9) << static_cast<char>(code);
    for (const char flat : {'A', 'B', 'E', 'H', 'I', 'M', 'T', 'X', 'Z'})
        EXPECT_EQ(height(flat), 9) << flat;
    for (int code = 0; code < 256; ++code) {
        EXPECT_LE(top_bearing(code), 13) << code;
        EXPECT_LE(height(code) - top_bearing(code), 4) << "descends below the line: " << code;
    }
}

TEST(FontData, EveryPrintableGlyphHasInkToTheEdgesOfItsBox) {
    for (int code = 32; code < 256; ++code) {
        if (is_space(code) || shows_the_box(code))
            continue;
        int top = 0, bottom = 0, left = 0, right = 0, darkest = 0;
        for (int row = 0; row < height(code); ++row)
            for (int column = 0; column < width(code); ++column) {
                const int ink = coverage(code, row, column);
                top += row == 0 ? ink : 0;
                bottom += row == height(code) - 1 ? ink : 0;
                left += column == 0 ? ink : 0;
                right += column == width(code) - 1 ? ink : 0;
                darkest = std::max(darkest, ink);
            }
        EXPECT_TRUE(top && bottom && left && right) << code;
        EXPECT_GE(darkest, 128) << "too faint to read: " << code;
    }
}

// Upright stems that fall between two columns would look grey beside their neighbours.
TEST(FontData, StemsAreCrisp) {
    for (const char letter : {'l', 'i', 'h', 'n', 'H', 'I', 'L', 'E', 'T', 'd', 'b', 'p', 'q'}) {
        const int row = height(letter) - 2;
        int darkest = 0;
        for (int column = 0; column < width(letter); ++column)
            darkest = std::max(darkest, coverage(letter, row, column));
        EXPECT_GE(darkest, 225) << letter;
    }
}

TEST(FontData, DotsOfADiaeresisStayApart) {
    for (const int code : {196, 214, 220, 228, 246, 252}) {
        std::vector<int> columns; // ink of the two rows that hold the dots
        columns.reserve(static_cast<size_t>(width(code)));
        for (int column = 0; column < width(code); ++column)
            columns.push_back(coverage(code, 0, column) + coverage(code, 1, column));
        const auto first =
            std::find_if(columns.begin(), columns.end(), [](int c) { return c > 127; });
        const auto gap = std::find_if(first, columns.end(), [](int c) { return c < 64; });
        const auto second = std::find_if(gap, columns.end(), [](int c) { return c > 127; });
        EXPECT_NE(second, columns.end()) << code;
    }
}

TEST(FontData, LooksDifferentForEveryPrintableCharacter) {
    for (int one = 33; one < 256; ++one)
        for (int other = one + 1; other < 256; ++other) {
            const bool hyphens = one == '-' && other == 173; // the soft hyphen is shown as a hyphen
            if (hyphens || is_space(one) || is_space(other) || shows_the_box(one) ||
                shows_the_box(other))
                continue;
            const bool same_size = width(one) == width(other) && height(one) == height(other) &&
                                   top_bearing(one) == top_bearing(other);
            EXPECT_FALSE(same_size &&
                         std::memcmp(orx_font_glyphs[one] + orx_glyph_coverage_offset,
                                     orx_font_glyphs[other] + orx_glyph_coverage_offset,
                                     static_cast<size_t>(width(one) * height(one))) == 0)
                << one << " and " << other;
        }
}

TEST(FontData, RecordsAndTheirTableTakeAboutTwentyKilobytes) {
    size_t bytes = sizeof orx_font_glyphs;
    for (int code = 0; code < 256; ++code)
        bytes += static_cast<size_t>(orx_glyph_coverage_offset + width(code) * height(code));
    EXPECT_GT(bytes, 18000u);
    EXPECT_LT(bytes, 22000u);
}

TEST(FontData, CoverageIsTheSheetsPixels) {
    const std::vector<unsigned char> sheet = sheet_pixels();
    ASSERT_EQ(sheet.size(), 320u * 320u);
    for (int code = 32; code < 256; ++code) {
        if (shows_the_box(code))
            continue;
        for (int row = 0; row < height(code); ++row)
            for (int column = 0; column < width(code); ++column) {
                const int x = code % 16 * 20 + 4 + x_bearing(code) + column;
                const int y = code / 16 * 20 + 15 - top_bearing(code) + row;
                ASSERT_EQ(coverage(code, row, column), sheet[static_cast<size_t>(y * 320 + x)])
                    << "code point " << code << ", row " << row << ", column " << column;
            }
    }
}
