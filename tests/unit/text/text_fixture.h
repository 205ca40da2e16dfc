// A text renderer in a known encoding, and the plain rules of text that it must follow.
#pragma once

#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/text/text_draw.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace text_rules {

struct Decoded {
    std::uint32_t code_point;
    std::size_t length; // bytes passed over
};

// One character, byte by byte as the rule is written. A zero byte inside a sequence ends it and is
// not passed over.
[[nodiscard]] Decoded decode(const std::string& bytes, std::size_t position, bool utf8);

// The low bytes of the characters of a text, at most limit.
[[nodiscard]] std::vector<std::uint8_t> characters(const std::string& bytes, bool utf8, int limit);

struct Clip {
    std::int64_t top = -1;
    std::int64_t bottom = INT32_MAX;
    std::int64_t left = -1;
    std::int64_t right = INT32_MAX;
};

// Draws a text pixel by pixel on a copy of an image's bytes; what lies outside is left out.
struct Canvas {
    std::vector<std::uint8_t> bytes;
    std::int64_t width;
    std::int64_t height;

    void blend(const TextRenderer* text, std::int64_t x, std::int64_t y, const int colour[3],
               int coverage);
    void glyph(const TextRenderer* text, std::uint8_t code, std::int64_t pen, std::int64_t baseline,
               const int colour[3], const Clip& clip);
    void string(const TextRenderer* text, const std::string& bytes, std::int64_t pen,
                std::int64_t baseline, const int colour[3], int max_chars, const Clip& clip,
                bool masked);
};

} // namespace text_rules

// The renderer is made in the C locale; its encoding is then set as the test wants it.
class TextTest : public testing::Test {
protected:
    TextTest();
    ~TextTest() override;
    TextTest(const TextTest&) = delete;
    TextTest& operator=(const TextTest&) = delete;

    TextRenderer* text_;
};
