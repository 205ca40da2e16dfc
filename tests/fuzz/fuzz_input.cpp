// Taking bytes apart for the harnesses.

#include "fuzz/fuzz_input.h"

#include <bit>
#include <cstdio>
#include <cstdlib>

namespace fuzz {

bool is_empty(const Input& input) {
    return input.left == 0;
}

std::uint8_t take_byte(Input& input) {
    if (input.left == 0) {
        return 0;
    }
    --input.left;
    return *input.next++;
}

std::uint32_t take_below(Input& input, std::uint32_t limit) {
    return limit > 256 ? (take_byte(input) * 256U + take_byte(input)) % limit
                       : take_byte(input) % limit;
}

std::uint32_t take_word(Input& input) {
    std::uint32_t word = 0;
    for (int byte = 0; byte < 4; ++byte) {
        word = word << 8U | take_byte(input);
    }
    return word;
}

std::string take_text(Input& input) {
    std::string text;
    while (!is_empty(input)) {
        const auto byte = static_cast<char>(take_byte(input));
        if (byte == '\0') {
            break;
        }
        text += byte;
    }
    return text;
}

std::unique_ptr<char[]> exact_copy(const std::string& text) {
    auto copy = std::make_unique<char[]>(text.size() + 1);
    text.copy(copy.get(), text.size());
    return copy;
}

bool has_whole_sequences(const std::string& text) {
    std::size_t at = 0;
    while (at < text.size()) {
        const auto lead = static_cast<unsigned char>(text[at]);
        const auto length = lead < 0x80 ? 1U : static_cast<unsigned>(std::countl_one(lead));
        if ((lead >= 0x80 && length < 2) || length > 4 || at + length > text.size()) {
            return false;
        }
        for (std::size_t i = 1; i < length; ++i) {
            if ((static_cast<unsigned char>(text[at + i]) & 0xC0U) != 0x80U) {
                return false;
            }
        }
        at += length;
    }
    return true;
}

void require(bool met, const char* demand) {
    if (!met) {
        std::fprintf(stderr, "not met: %s\n", demand);
        std::abort();
    }
}

} // namespace fuzz
