// Drawing text, against the plain rules and the limits.
#include <gtest/gtest.h> // before the X headers, whose macros break it

#include "gui/ORX/text/text_measure.h"
#include "unit/imaging/test_images.h"
#include "unit/text/text_fixture.h"

#include <climits>

namespace {

using images::GuardedPixbuf;
using images::number;
using text_rules::Canvas;
using text_rules::Clip;

constexpr int white[3] = {255, 255, 255};

class DrawTest : public TextTest {
protected:
    DrawTest() : random_(images::make_random()) {}

    static Canvas canvas(const GuardedPixbuf& image) {
        return {image.bytes(), image.pixbuf.width, image.pixbuf.height};
    }

    std::string random_text() {
        std::string text;
        const int length = number(random_, 0, 14);
        for (int i = 0; i < length; ++i) {
            text.push_back(static_cast<char>(number(random_, 1, 255)));
        }
        return text;
    }

    images::Random random_;
};

TEST_F(DrawTest, EveryGlyphEqualsTheRuleInWhiteAndInColour) {
    // White is drawn from a table of its own: what is nearly white must not be.
    const int colours[][3] = {{255, 255, 255}, {0, 0, 0},     {255, 47, 128},
                              {255, 255, 0},   {255, 0, 255}, {0, 255, 255}};
    GuardedPixbuf image(24, 24);
    for (int code = 0; code < 256; ++code) {
        for (const auto& colour : colours) {
            image.randomise(random_);
            Canvas wanted = canvas(image);
            wanted.glyph(text_, static_cast<std::uint8_t>(code), 5, 14, colour, {});
            draw_glyph(text_, &image.pixbuf, static_cast<std::uint32_t>(code) + 0x2300, 5, 14,
                       colour[0], colour[1], colour[2]);
            ASSERT_EQ(image.bytes(), wanted.bytes) << "code point " << code;
        }
    }
}

TEST_F(DrawTest, EveryCoverageOnEveryGround) {
    GuardedPixbuf image(256, 1);
    for (int coverage = 0; coverage < 256; ++coverage) {
        for (const int c : {0, 1, 100, 254, 255}) {
            for (int i = 0; i < 256; ++i) {
                const auto ground = static_cast<std::uint8_t>(i);
                std::fill_n(image.pixbuf.pixels + i * 4, 4, ground);
            }
            Canvas wanted = canvas(image);
            const int colour[3] = {c, 255 - c, c};
            for (int i = 0; i < 256; ++i) {
                wanted.blend(text_, i, 0, colour, coverage);
                blend_glyph_pixel(text_, &image.pixbuf, i, 0, c, 255 - c, c, coverage);
            }
            ASSERT_EQ(image.bytes(), wanted.bytes) << "coverage " << coverage;
        }
    }
}

TEST_F(DrawTest, WhiteWithAndWithoutItsTableIsTheSame) {
    ASSERT_NE(text_->white_over, nullptr) << "white text is drawn at half the speed";
    GuardedPixbuf image(300, 20);
    image.randomise(random_);
    const auto ground = image.bytes();
    draw_text(text_, &image.pixbuf, "Installation Complete @#&%WMwj_", 2, 14, 255, 255, 255, 100);
    const auto with_table = image.bytes();
    std::copy(ground.begin(), ground.end(), image.pixbuf.pixels);
    TextRenderer plain = *text_;
    plain.white_over = nullptr;
    draw_text(&plain, &image.pixbuf, "Installation Complete @#&%WMwj_", 2, 14, 255, 255, 255, 100);
    EXPECT_NE(with_table, ground);
    EXPECT_EQ(image.bytes(), with_table);
}

TEST_F(DrawTest, EmptyPixelsOfAGlyphGoThroughBothTables) {
    // Where a glyph has no ink the ground still changes by the round trip.
    GuardedPixbuf image(1, 1);
    for (int i = 0; i < 4; ++i) {
        image.pixbuf.pixels[i] = 100;
    }
    blend_glyph_pixel(text_, &image.pixbuf, 0, 0, 255, 255, 255, 0);
    const auto round_trip =
        static_cast<std::uint8_t>(text_->gamma_encode[text_->gamma_decode[100]]);
    EXPECT_NE(round_trip, 100);
    EXPECT_EQ(image.pixbuf.pixels[0], round_trip);
    EXPECT_EQ(image.pixbuf.pixels[3], 100);
}

TEST_F(DrawTest, RandomTextsPensAndClipsEqualTheRule) {
    for (int round = 0; round < 3000; ++round) {
        GuardedPixbuf image(static_cast<std::uint32_t>(number(random_, 1, 60)),
                            static_cast<std::uint32_t>(number(random_, 1, 30)), round % 2 == 0);
        image.randomise(random_);
        text_->utf8 = number(random_, 0, 1);
        const std::string string = random_text();
        const int x = number(random_, -30, 70);
        const int y = number(random_, -10, 45);
        const bool is_white = number(random_, 0, 1) == 1;
        const int colour[3] = {is_white ? 255 : number(random_, 0, 255), 255,
                               is_white ? 255 : number(random_, 0, 255)};
        const int max_chars = number(random_, -1, 16);
        const int top = number(random_, -5, 30);
        const int bottom = number(random_, -5, 35);
        const int left = number(random_, -5, 40);
        const int right = number(random_, -5, 70);
        const Clip clip{std::max(top, -1), bottom, std::max(left, -1), right};
        Canvas wanted = canvas(image);
        const char* s = string.c_str();
        switch (round % 5) {
        case 0:
            draw_text(text_, &image.pixbuf, s, x, y, colour[0], colour[1], colour[2], max_chars);
            wanted.string(text_, string, x, y, colour, max_chars, {}, false);
            break;
        case 1:
            draw_text_clipped(text_, &image.pixbuf, s, x, y, top, bottom, left, right, colour[0],
                              colour[1], colour[2], max_chars);
            wanted.string(text_, string, x, y, colour, max_chars, clip, false);
            break;
        case 2:
            draw_password_clipped(text_, &image.pixbuf, s, x, y, top, bottom, left, right,
                                  colour[0], colour[1], colour[2], max_chars);
            wanted.string(text_, string, x, y, colour, max_chars, clip, true);
            break;
        case 3:
            draw_text_right_clipped(text_, &image.pixbuf, s, x, y, top, bottom, left, right,
                                    colour[0], colour[1], colour[2], max_chars);
            wanted.string(text_, string, x - text_width(text_, s), y, colour, max_chars, clip,
                          false);
            break;
        default:
            draw_password_right_clipped(text_, &image.pixbuf, s, x, y, top, bottom, left, right,
                                        colour[0], colour[1], colour[2], max_chars);
            wanted.string(text_, string, x - password_width(text_, s), y, colour, max_chars, clip,
                          true);
            break;
        }
        ASSERT_EQ(image.bytes(), wanted.bytes) << "way " << round % 5 << " max_chars " << max_chars;
    }
}

TEST_F(DrawTest, DotsFollowWhenTheLimitIsReached) {
    const auto drawn = [this](const char* string, int max_chars) {
        GuardedPixbuf image(60, 16);
        draw_text(text_, &image.pixbuf, string, 1, 12, 255, 255, 255, max_chars);
        return image.bytes();
    };
    const auto nothing = drawn("", 5);
    EXPECT_EQ(drawn("abc", 3), drawn("abc...", 10));
    EXPECT_EQ(drawn("abcdef", 3), drawn("abc...", 10));
    EXPECT_NE(drawn("abc", 4), drawn("abc", 3));
    EXPECT_EQ(drawn("abc", 4), drawn("abc", 1000));
    EXPECT_EQ(drawn("abc", 0), drawn("...", 10));
    EXPECT_EQ(drawn("abc", -1), nothing);
    EXPECT_EQ(drawn("abc", INT_MIN), nothing);
    EXPECT_EQ(drawn("", 0), drawn("...", 10));
}

TEST_F(DrawTest, ACharacterBeyondTheFontIsDrawnByItsLowByte) {
    GuardedPixbuf text(20, 16);
    GuardedPixbuf glyph(20, 16);
    text_->utf8 = 1;
    draw_text(text_, &text.pixbuf, "\xE2\x82\xAC", 2, 12, 255, 255, 255, 9); // U+20AC
    draw_glyph(text_, &glyph.pixbuf, 172, 2, 12, 255, 255, 255);
    EXPECT_EQ(text.bytes(), glyph.bytes());
    EXPECT_NE(text.bytes(), GuardedPixbuf(20, 16).bytes());
}

TEST_F(DrawTest, PasswordsAreStars) {
    GuardedPixbuf masked(60, 16);
    GuardedPixbuf stars(60, 16);
    text_->utf8 = 1;
    draw_password_clipped(text_, &masked.pixbuf, "p\xC3\xA4s", 1, 12, 0, 16, 0, 60, 255, 255, 255,
                          63);
    draw_text(text_, &stars.pixbuf, "***", 1, 12, 255, 255, 255, 63);
    EXPECT_EQ(masked.bytes(), stars.bytes());
}

TEST_F(DrawTest, ARightAlignedTextShowsItsEnd) {
    const std::string path = "/usr/local/lib/a-rather-long-folder-name/vst";
    GuardedPixbuf image(80, 20);
    draw_text_right_clipped(text_, &image.pixbuf, path.c_str(), 70, 14, 0, 20, 10, 70, 255, 255,
                            255, 1024);
    Canvas wanted{std::vector<std::uint8_t>(80 * 20 * 4), 80, 20};
    wanted.string(text_, path, 70 - text_width(text_, path.c_str()), 14, white, 1024,
                  {0, 20, 10, 70}, false);
    EXPECT_EQ(image.bytes(), wanted.bytes);
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x <= 10; ++x) {
            EXPECT_EQ(image.pixbuf.pixels[(y * 80 + x) * 4], 0) << "left of the clip";
        }
    }
}

TEST_F(DrawTest, ANegativeBearingAtPenZeroLosesItsFirstColumn) {
    GuardedPixbuf at_zero(12, 16);
    GuardedPixbuf at_one(12, 16);
    draw_text(text_, &at_zero.pixbuf, "j", 0, 11, 255, 255, 255, 9);
    draw_text(text_, &at_one.pixbuf, "j", 1, 11, 255, 255, 255, 9);
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 11; ++x) {
            EXPECT_EQ(at_zero.pixbuf.pixels[(y * 12 + x) * 4],
                      at_one.pixbuf.pixels[(y * 12 + x + 1) * 4]);
        }
    }
}

TEST_F(DrawTest, EmptyAndInvertedClipsDrawNothing) {
    GuardedPixbuf image(40, 16);
    image.randomise(random_);
    const auto before = image.bytes();
    draw_text_clipped(text_, &image.pixbuf, "Wide", 2, 12, 5, 6, 0, 40, 255, 255, 255, 9);
    draw_text_clipped(text_, &image.pixbuf, "Wide", 2, 12, 12, 2, 0, 40, 255, 255, 255, 9);
    draw_text_clipped(text_, &image.pixbuf, "Wide", 2, 12, 0, 16, 30, 10, 255, 255, 255, 9);
    draw_text_clipped(text_, &image.pixbuf, "Wide", 2, 12, INT_MAX, INT_MIN, INT_MAX, INT_MIN, 255,
                      255, 255, 9);
    EXPECT_EQ(image.bytes(), before);
}

// The guard pages are the judges.
TEST_F(DrawTest, AbsurdPensColoursAndImagesStayInMemory) {
    const int extremes[] = {INT_MIN, -100000, -1, 0, 7, 100000, INT_MAX - 1, INT_MAX};
    for (int round = 0; round < 4000; ++round) {
        GuardedPixbuf image(static_cast<std::uint32_t>(number(random_, 0, 9)),
                            static_cast<std::uint32_t>(number(random_, 0, 9)), round % 2 == 0);
        const auto any = [this, &extremes] {
            return extremes[static_cast<std::size_t>(number(random_, 0, 7))];
        };
        const std::string string = random_text();
        draw_text(text_, &image.pixbuf, string.c_str(), any(), any(), any(), any(), any(), 20);
        draw_text_clipped(text_, &image.pixbuf, string.c_str(), any(), any(), any(), any(), any(),
                          any(), any(), any(), any(), 20);
        draw_password_right_clipped(text_, &image.pixbuf, string.c_str(), any(), any(), any(),
                                    any(), any(), any(), any(), any(), any(), 20);
        draw_glyph(text_, &image.pixbuf, static_cast<std::uint32_t>(any()), any(), any(), any(),
                   any(), any());
        blend_glyph_pixel(text_, &image.pixbuf, any(), any(), any(), any(), any(), any());
        put_glyph_pixel(text_, &image.pixbuf, any(), any(), any(), any(), any());
    }
    draw_text(text_, nullptr, "abc", 0, 0, 1, 2, 3, 9);
    draw_glyph(text_, nullptr, 'a', 0, 9, 1, 2, 3);
    blend_glyph_pixel(text_, nullptr, 0, 0, 1, 2, 3, 255);
    put_glyph_pixel(text_, nullptr, 0, 0, 1, 2, 3);
    GuardedPixbuf image(9, 9);
    draw_text(text_, &image.pixbuf, nullptr, 0, 9, 1, 2, 3, 9);
    EXPECT_EQ(image.bytes(), std::vector<std::uint8_t>(9 * 9 * 4));
}

TEST_F(DrawTest, AMissingGlyphMovesNothing) {
    GuardedPixbuf with(60, 16);
    GuardedPixbuf without(60, 16);
    text_->glyphs[int{'b'}] = nullptr;
    draw_text(text_, &with.pixbuf, "abc", 1, 12, 255, 255, 255, 9);
    draw_text(text_, &without.pixbuf, "ac", 1, 12, 255, 255, 255, 9);
    EXPECT_EQ(with.bytes(), without.bytes());
}

TEST_F(DrawTest, TheCurrentColourIsDecodedAndDrawnAsItIs) {
    set_colour(text_, 128, 255, 0);
    EXPECT_EQ(text_->current_colour[0], 84U);
    EXPECT_EQ(text_->current_colour[1], 255U);
    EXPECT_EQ(text_->current_colour[2], 0U);
    GuardedPixbuf current(40, 16);
    GuardedPixbuf given(40, 16);
    draw_text_current_colour(text_, &current.pixbuf, "abc", 1, 12, 9);
    draw_text(text_, &given.pixbuf, "abc", 1, 12, 84, 255, 0, 9);
    EXPECT_EQ(current.bytes(), given.bytes());
}

TEST_F(DrawTest, APutPixelIsOpaque) {
    GuardedPixbuf image(3, 3);
    put_glyph_pixel(text_, &image.pixbuf, 2, 1, 10, 20, 30);
    const std::uint8_t* p = image.pixbuf.pixels + (1 * 3 + 2) * 4;
    EXPECT_EQ(p[0], 10);
    EXPECT_EQ(p[1], 20);
    EXPECT_EQ(p[2], 30);
    EXPECT_EQ(p[3], 255);
    const auto before = image.bytes();
    put_glyph_pixel(text_, &image.pixbuf, -1, 1, 1, 1, 1);
    put_glyph_pixel(text_, &image.pixbuf, 1, -1, 1, 1, 1);
    put_glyph_pixel(text_, &image.pixbuf, 0, 3, 1, 1, 1);
    EXPECT_EQ(image.bytes(), before);
}

} // namespace
