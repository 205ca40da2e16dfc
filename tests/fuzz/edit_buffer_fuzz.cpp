// Edit buffer: any sequence of keys, pastes and deletions keeps a text that ends, has only whole
// characters, no control characters, and nothing of what left it.

#include "fuzz/fuzz_input.h"

#include "gui/ORX/widgets/edit_buffer.h"

#include <algorithm>
#include <cstring>

namespace {

using fuzz::require;

constexpr unsigned long return_key = 0xFF0D;
constexpr unsigned long backspace_key = 0xFF08;
constexpr unsigned long delete_key = 0xFFFF;
constexpr std::size_t longest_text = edit_buffer_size - 1;
constexpr std::size_t longest_character = 8; // bytes, malformed ones included

bool is_control(char byte) {
    return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F;
}

std::string text_of(const char* buffer) {
    const std::size_t length = strnlen(buffer, edit_buffer_size);
    require(length <= longest_text, "the text ends inside the buffer");
    constexpr char zeros[edit_buffer_size] = {};
    require(std::memcmp(buffer + length, zeros, edit_buffer_size - length) == 0,
            "nothing is left behind the text");
    const std::string text(buffer, length);
    require(std::none_of(text.begin(), text.end(), is_control), "no control character enters");
    return text;
}

void check_added(const std::string& before, std::string added, const std::string& after,
                 bool utf8) {
    const bool whole = fuzz::has_whole_sequences(before) && fuzz::has_whole_sequences(added);
    std::erase_if(added, is_control);
    const std::string wanted = before + added;
    require(wanted.starts_with(after) && after.starts_with(before), "text is added in order");
    require(after.size() == wanted.size() || after.size() + longest_character > longest_text,
            "as much enters as fits");
    require(utf8 || after.size() == std::min(wanted.size(), longest_text), "every byte counts");
    require(!utf8 || !whole || fuzz::has_whole_sequences(after), "characters enter whole");
}

void check_deleted(const std::string& before, const std::string& after, bool utf8) {
    if (before.empty() || before.size() == longest_text) {
        require(after == before, "an empty and a full text stay");
        return;
    }
    require(before.starts_with(after) && after.size() < before.size(), "the end of the text goes");
    require(utf8 || after.size() + 1 == before.size(), "one byte is one character");
    if (utf8 && fuzz::has_whole_sequences(before)) {
        const auto first = static_cast<unsigned char>(before[after.size()]);
        require((first & 0xC0U) != 0x80U && fuzz::has_whole_sequences(after),
                "one whole character goes");
    }
}

std::string repeated(const std::string& text, std::size_t times) {
    std::string result;
    while (times-- > 0 && result.size() < 2 * longest_text) {
        result += text;
    }
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input{data, size};
    const bool utf8 = fuzz::take_byte(input) % 2 == 0;
    const auto storage = std::make_unique<char[]>(edit_buffer_size);
    char* buffer = storage.get();
    std::memset(buffer, 'x', edit_buffer_size);
    edit_buffer_clear(buffer);
    std::string text;
    while (!fuzz::is_empty(input)) {
        const std::uint8_t action = fuzz::take_byte(input) % 8;
        const std::string before = text;
        require(text_of(buffer) == before, "the text stays as it is between two actions");
        std::int32_t reported = 0;
        if (action == 0) {
            edit_buffer_clear(buffer);
            text = text_of(buffer);
            require(text.empty(), "clearing empties");
        } else if (action == 1) {
            const std::size_t times = 1 + fuzz::take_byte(input);
            const std::string added = repeated(fuzz::take_text(input), times);
            edit_buffer_set(buffer, fuzz::exact_copy(added).get(), utf8);
            text = text_of(buffer);
            check_added("", added, text, utf8);
        } else if (action == 2) {
            const std::size_t from = fuzz::take_below(input, edit_buffer_size) % (text.size() + 1);
            edit_buffer_set(buffer, buffer + from, utf8);
            text = text_of(buffer);
            require(text == before.substr(from), "a text can become its own tail");
        } else if (action == 3) {
            reported = edit_buffer_key(buffer, return_key, "\r", utf8);
            text = text_of(buffer);
            require(reported == 1 && text == before, "Return only reports");
        } else if (action == 4) {
            const bool back = fuzz::take_byte(input) % 2 == 0;
            reported = edit_buffer_key(buffer, back ? backspace_key : delete_key, "\b", utf8);
            text = text_of(buffer);
            require(reported == 0, "only Return reports");
            check_deleted(before, text, utf8);
        } else if (action == 5) {
            const std::size_t times = 1 + fuzz::take_byte(input);
            const std::string added = repeated(fuzz::take_text(input), times);
            edit_buffer_append(buffer, fuzz::exact_copy(added).get(), utf8);
            text = text_of(buffer);
            check_added(before, added, text, utf8);
        } else if (action == 6) {
            const std::string added = fuzz::take_text(input).substr(0, 15);
            reported = edit_buffer_key(buffer, 'a', fuzz::exact_copy(added).get(), utf8);
            text = text_of(buffer);
            require(reported == 0, "only Return reports");
            check_added(before, added, text, utf8);
        } else {
            edit_buffer_append(buffer, nullptr, utf8);
            text = text_of(buffer);
            require(text == before, "no text adds nothing");
        }
    }
    return 0;
}
