// The plain rules of text.
#include "unit/text/text_fixture.h"

#include "gui/ORX/text/font_data.h"

#include <clocale>
#include <cmath>

namespace text_rules {

Decoded decode(const std::string& bytes, std::size_t position, bool utf8) {
    // A string's end is a zero byte.
    const auto at = [&bytes](std::size_t i) {
        return i < bytes.size() ? static_cast<std::uint8_t>(bytes[i]) : std::uint8_t{0};
    };
    std::size_t next = position;
    if (!utf8) {
        return {at(next), 1};
    }
    while (at(next) >= 0x80 && at(next) < 0xC0) {
        ++next;
    }
    const std::uint8_t lead = at(next);
    ++next;
    if (lead < 0x80) {
        return {lead, next - position};
    }
    int ones = 0;
    while (ones < 8 && (lead & (0x80 >> ones)) != 0) {
        ++ones;
    }
    std::uint32_t value = 0;
    for (int bit = 6 - ones; bit >= 0; --bit) {
        value |= static_cast<std::uint32_t>(lead) & (1U << bit);
    }
    for (int i = 0; i < ones - 1; ++i) {
        if (at(next) == 0) {
            break;
        }
        value = value * 64 + (at(next) % 64);
        ++next;
    }
    return {value, next - position};
}

std::vector<std::uint8_t> characters(const std::string& bytes, bool utf8, int limit) {
    std::vector<std::uint8_t> codes;
    std::size_t position = 0;
    while (static_cast<int>(codes.size()) < limit) {
        const Decoded decoded = decode(bytes, position, utf8);
        if (decoded.code_point % 256 == 0) {
            break;
        }
        codes.push_back(static_cast<std::uint8_t>(decoded.code_point));
        position += decoded.length;
    }
    return codes;
}

void Canvas::blend(const TextRenderer* text, std::int64_t x, std::int64_t y, const int colour[3],
                   int coverage) {
    const std::int64_t offset = y * width * 4 + x * 4;
    if (x < 0 || y < 0 || offset + 4 > width * height * 4) {
        return;
    }
    for (std::int64_t c = 0; c < 3; ++c) {
        std::uint8_t& stored = bytes[static_cast<std::size_t>(offset + c)];
        const int d = static_cast<int>(text->gamma_decode[stored]);
        const int change = static_cast<int>(std::floor((colour[c] - d) * coverage / 256.0));
        stored = static_cast<std::uint8_t>(text->gamma_encode[(d + change) & 255]);
    }
}

void Canvas::glyph(const TextRenderer* text, std::uint8_t code, std::int64_t pen,
                   std::int64_t baseline, const int colour[3], const Clip& clip) {
    const unsigned char* glyph = text->glyphs[code];
    if (glyph == nullptr) {
        return;
    }
    const int glyph_width = glyph[0];
    const int glyph_height = glyph[1];
    const int x_bearing = glyph[4] < 128 ? glyph[4] : glyph[4] - 256;
    const int top_bearing = glyph[5] < 128 ? glyph[5] : glyph[5] - 256;
    for (int row = 0; row < glyph_height; ++row) {
        for (int column = 0; column < glyph_width; ++column) {
            const std::int64_t x = pen + x_bearing + column;
            const std::int64_t y = baseline - top_bearing + row;
            if (clip.top < y && y < clip.bottom && clip.left < x && x < clip.right) {
                blend(text, x, y, colour, glyph[6 + row * glyph_width + column]);
            }
        }
    }
}

void Canvas::string(const TextRenderer* text, const std::string& string_bytes, std::int64_t pen,
                    std::int64_t baseline, const int colour[3], int max_chars, const Clip& clip,
                    bool masked) {
    if (max_chars < 0) {
        return;
    }
    std::vector<std::uint8_t> codes = characters(string_bytes, text->utf8 != 0, max_chars);
    const bool limit_reached = static_cast<int>(codes.size()) == max_chars;
    if (masked) {
        codes.assign(codes.size(), '*');
    }
    if (limit_reached) {
        codes.insert(codes.end(), 3, '.');
    }
    for (const std::uint8_t code : codes) {
        glyph(text, code, pen, baseline, colour, clip);
        pen += text->glyphs[code] == nullptr ? 0 : text->glyphs[code][2];
    }
}

} // namespace text_rules

TextTest::TextTest() {
    std::setlocale(LC_ALL, "C");
    text_ = text_renderer_new(nullptr);
}

TextTest::~TextTest() {
    text_renderer_destroy(text_);
}
