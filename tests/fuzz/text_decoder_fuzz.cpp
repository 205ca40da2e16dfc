// Text decoder: any bytes against a plain reading of the rules, well-formed text there and back,
// and taking the last character off buffers of any size.

#include "fuzz/fuzz_input.h"

#include "gui/ORX/text/utf8.h"

#include <bit>
#include <cstring>

namespace {

using fuzz::require;

struct Character {
    std::uint32_t code_point;
    std::size_t end;
};

bool is_continuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

Character decode(const std::string& text, std::size_t at) {
    while (at < text.size() && is_continuation(text[at])) {
        ++at;
    }
    if (at == text.size()) {
        return {0, at};
    }
    const auto lead = static_cast<unsigned char>(text[at]);
    if (lead < 0x80) {
        return {lead, at + 1};
    }
    const auto announced = static_cast<unsigned>(std::countl_one(lead));
    const std::size_t end = std::min(text.size(), at + announced);
    std::uint32_t value = announced >= 7 ? 0 : lead & ((1U << (7 - announced)) - 1);
    for (std::size_t i = at + 1; i < end; ++i) {
        value = value << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    return {value, end};
}

void decode_any(const std::string& text, bool utf8) {
    const auto copy = fuzz::exact_copy(text);
    std::size_t at = 0;
    while (at < text.size()) {
        std::uint32_t code_point = 0;
        const char* next = utf8_next(copy.get() + at, utf8, &code_point);
        const auto end = static_cast<std::size_t>(next - copy.get());
        const Character expected =
            utf8 ? decode(text, at) : Character{static_cast<unsigned char>(text[at]), at + 1};
        require(end > at, "the decoder goes on");
        require(code_point == expected.code_point, "the code point follows the rule");
        // Whoever stops at a code point of zero does not look at the position any more.
        require(end == expected.end || (code_point == 0 && end == text.size() + 1),
                "the position follows the rule and never passes the end");
        at = end;
    }
}

std::string encode(std::uint32_t code_point) {
    std::string tail;
    unsigned length = code_point < 0x80 ? 1 : code_point < 0x800 ? 2 : code_point < 0x10000 ? 3 : 4;
    if (length == 1) {
        return {static_cast<char>(code_point)};
    }
    for (unsigned i = 1; i < length; ++i) {
        tail.insert(tail.begin(), static_cast<char>(0x80U | (code_point & 0x3FU)));
        code_point >>= 6U;
    }
    return static_cast<char>((0xF00U >> length & 0xFFU) | code_point) + tail;
}

// Each three bytes are a character; all of them come back, and go again one by one.
void there_and_back(fuzz::Input input) {
    std::u32string characters;
    std::string text;
    while (!fuzz::is_empty(input) && text.size() < 200) {
        const std::uint32_t high = fuzz::take_byte(input) % 17;
        const std::uint32_t middle = fuzz::take_byte(input);
        const char32_t character = high << 16U | middle << 8U | fuzz::take_byte(input);
        if (character != 0) {
            characters += character;
            text += encode(character);
        }
    }
    const auto copy = fuzz::exact_copy(text);
    const char* at = copy.get();
    for (const char32_t character : characters) {
        std::uint32_t code_point = 0;
        at = utf8_next(at, true, &code_point);
        require(code_point == character, "a well-formed character comes back");
    }
    require(*at == '\0', "well-formed text ends where it ends");

    std::string buffer = text + std::string(2, '\0');
    while (!characters.empty()) {
        text.resize(text.size() - encode(characters.back()).size());
        characters.pop_back();
        delete_last_char(buffer.data(), static_cast<std::int32_t>(buffer.size()), true);
        require(buffer.c_str() == text, "one whole character goes");
    }
}

std::size_t length_after_delete(const std::string& text, bool utf8) {
    std::size_t length = text.size();
    bool cleared_continuation = false;
    while (length > 0) {
        const char last = text[length - 1];
        const bool ascii = utf8 && static_cast<unsigned char>(last) < 0x80;
        if (!(ascii && cleared_continuation)) {
            --length;
        }
        if (!utf8 || !is_continuation(last)) {
            break;
        }
        cleared_continuation = true;
    }
    return length;
}

void delete_from_any(const std::string& text, std::size_t size, bool utf8) {
    // A text as long as the buffer leaves no room for its end.
    std::string content = text.substr(0, size);
    const bool untouched = content.size() + 1 >= size;
    content.resize(size);
    std::string expected = content;
    if (!untouched) {
        const std::size_t length = length_after_delete(text, utf8);
        std::fill(expected.begin() + static_cast<std::ptrdiff_t>(length), expected.end(), '\0');
    }
    const auto buffer = std::make_unique<char[]>(size);
    content.copy(buffer.get(), size);
    delete_last_char(buffer.get(), static_cast<std::int32_t>(size), utf8);
    require(std::memcmp(buffer.get(), expected.data(), size) == 0,
            "the last character, and nothing else, is wiped");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input{data, size};
    const bool utf8 = fuzz::take_byte(input) % 2 == 0;
    const std::size_t buffer_size = fuzz::take_byte(input);
    there_and_back(input);
    const std::string text = fuzz::take_text(input);
    decode_any(text, utf8);
    delete_from_any(text, buffer_size, utf8);
    delete_from_any(text, text.size() + 2, utf8);
    return 0;
}
