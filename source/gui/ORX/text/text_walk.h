// text_walk.h: going through the characters of a text up to a limit.
#pragma once

#include "gui/ORX/text/text_renderer.h"
#include "gui/ORX/text/utf8.h"

#include <cstdint>

struct TextWalk {
    const char* position;
    std::int32_t characters_left;
    std::uint32_t code_point; // of the character met last
    bool utf8;
    bool ended; // the text ended before the limit
};

// A null string is an empty one.
inline TextWalk walk_text(const TextRenderer* text, const char* string, std::int32_t limit) {
    return {string == nullptr ? "" : string, limit, 0, text->utf8 != 0, false};
}

// Goes to the next character; false at the end of the text, which a low byte of 0 is, or when the
// limit is reached.
[[nodiscard]] inline bool next_character(TextWalk& walk) {
    if (walk.characters_left < 1) {
        return false;
    }
    --walk.characters_left;
    walk.position = utf8_next(walk.position, walk.utf8, &walk.code_point);
    walk.ended = (walk.code_point & 255U) == 0;
    return !walk.ended;
}
