// The renderer: tables, metrics, encoding; and measuring.
#include "gui/ORX/text/font_data.h"
#include "gui/ORX/text/text_measure.h"
#include "unit/text/text_fixture.h"

#include <clocale>
#include <cmath>

namespace {

constexpr const char* utf8_notice = "\nZEPH-UI: UI text - Using UTF-8 encoding\n";

TEST_F(TextTest, GammaTables) {
    EXPECT_EQ(text_->gamma_decode[0], 0U);
    EXPECT_EQ(text_->gamma_encode[0], 0U);
    EXPECT_EQ(text_->gamma_decode[255], 255U);
    EXPECT_EQ(text_->gamma_encode[255], 255U);
    EXPECT_EQ(text_->gamma_decode[128], 84U);
    EXPECT_EQ(text_->gamma_encode[128], 165U);
    for (int i = 1; i < 256; ++i) {
        const auto base = static_cast<float>(i) / 255.0F;
        EXPECT_EQ(text_->gamma_decode[i], static_cast<std::uint32_t>(powf(base, 1.6F) * 255.0F));
        EXPECT_EQ(text_->gamma_encode[i], static_cast<std::uint32_t>(powf(base, 0.625F) * 255.0F));
    }
}

TEST_F(TextTest, MetricsOfTheBuiltInFont) {
    EXPECT_EQ(font_height(text_), 13U);
    EXPECT_EQ(max_glyph_width(text_), 11U);
    EXPECT_EQ(ascent(text_), 13U); // the underscore's -2 counts as 254 and is cut to the height
    EXPECT_EQ(line_height(text_), 13U);
    EXPECT_EQ(text_->default_colour, 0xFFFFFFU);
    EXPECT_EQ(text_->engine, nullptr);
    for (int i = 0; i < 256; ++i) {
        EXPECT_EQ(text_->glyphs[i], orx_font_glyphs[i]);
    }
}

TEST_F(TextTest, TheCLocaleIsNotUtf8AndSaysNothing) {
    testing::internal::CaptureStdout();
    TextRenderer* text = text_renderer_new(nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(text->utf8, 0);
    text_renderer_destroy(text);
    text_renderer_destroy(nullptr);
}

TEST_F(TextTest, AUtf8LocaleIsAnnouncedOnce) {
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
    testing::internal::CaptureStdout();
    TextRenderer* text = text_renderer_new(nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), utf8_notice);
    EXPECT_EQ(text->utf8, 1);
    text_renderer_destroy(text);
    std::setlocale(LC_ALL, "C");
}

TEST_F(TextTest, WidthIsTheSumOfAdvances) {
    EXPECT_EQ(text_width(text_, ""), 0);
    EXPECT_EQ(text_width(text_, nullptr), 0);
    EXPECT_EQ(text_width(text_, "AgW"), 7 + 7 + 11);
    const auto advance = [](int code) { return static_cast<int>(orx_font_glyphs[code][2]); };
    text_->utf8 = 1;
    EXPECT_EQ(text_width(text_, "\xC3\xA4"), advance(228));
    EXPECT_EQ(text_width(text_, "\xE2\x82\xAC"), advance(172));
    EXPECT_EQ(text_width(text_, "ab\xC4\x80"
                                "cd"),
              advance('a') + advance('b')); // U+0100 ends
    EXPECT_EQ(text_width(text_, "a\xC3"), advance('a') + advance(3));
    text_->utf8 = 0;
    EXPECT_EQ(text_width(text_, "\xC3\xA4"), advance(195) + advance(164));
}

TEST_F(TextTest, MeasuringStopsAt1024Characters) {
    for (const int length : {1023, 1024, 1025, 5000}) {
        const std::string text(static_cast<std::size_t>(length), 'A');
        const int counted = std::min(length, 1024);
        EXPECT_EQ(text_width(text_, text.c_str()), counted * 7);
        EXPECT_EQ(password_width(text_, text.c_str()), counted * 5);
        const std::string high_last = std::string(static_cast<std::size_t>(length) - 1, '.') + "A";
        EXPECT_EQ(text_height(text_, high_last.c_str()), length <= 1024 ? 9 : 2);
    }
}

TEST_F(TextTest, PasswordWidthCountsStars) {
    text_->utf8 = 1;
    EXPECT_EQ(password_width(text_, ""), 0);
    EXPECT_EQ(password_width(text_, "WWW"), 15);
    EXPECT_EQ(password_width(text_, "\xC3\xA4\xE2\x82\xAC"), 10);
    EXPECT_EQ(password_width(text_, "a\xC4\x80z"), 5);
}

TEST_F(TextTest, HeightOfATextWithItsDescenders) {
    EXPECT_EQ(text_height(text_, ""), 0);
    EXPECT_EQ(text_height(text_, "Ag"), 11);
    EXPECT_EQ(text_height(text_, "A"), 9);
    EXPECT_EQ(text_height(text_, "A_"), 9);
    EXPECT_EQ(text_height(text_, "j_"), 13);
    EXPECT_EQ(text_height(text_, " "), 0);
}

TEST_F(TextTest, AMissingGlyphIsInvisibleAndWithoutWidth) {
    text_->glyphs[int{'b'}] = nullptr;
    EXPECT_EQ(text_width(text_, "abc"), text_width(text_, "ac"));
    EXPECT_EQ(text_height(text_, "b"), 0);
    text_->glyphs[int{'*'}] = nullptr;
    EXPECT_EQ(password_width(text_, "abc"), 0);
}

} // namespace
