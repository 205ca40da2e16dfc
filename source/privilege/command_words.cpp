// command_words.cpp: joining, splitting and quoting.
#include "privilege/command_words.h"

#include <cstdlib>
#include <cstring>

namespace {

constexpr char escaped_quote[] = "'\\''"; // ends the quotes, adds one, opens them again
constexpr std::size_t escaped_quote_length = sizeof escaped_quote - 1;

char* append(char* end, const char* text, std::size_t length) {
    std::memcpy(end, text, length);
    return end + length;
}

char* append_quoted(char* end, const char* word) {
    *end++ = '\'';
    for (const char* c = word; *c != '\0'; ++c) {
        if (*c == '\'') {
            end = append(end, escaped_quote, escaped_quote_length);
        } else {
            *end++ = *c;
        }
    }
    *end++ = '\'';
    return end;
}

} // namespace

void split_command(CommandWords* words, const char* command_line) {
    *words = CommandWords{};
    while (words->count < command_words_most) {
        const std::size_t length = std::strcspn(command_line, " ");
        const std::size_t taken = length < command_word_length ? length : command_word_length;
        std::memcpy(words->text[words->count], command_line, taken);
        ++words->count;
        if (command_line[length] == '\0') {
            return;
        }
        command_line += length + 1;
    }
}

bool plain_line(char (&line)[command_line_size], const char* const* words) {
    char* end = line;
    for (const char* const* word = words; *word != nullptr; ++word) {
        const std::size_t blank = word == words ? 0 : 1;
        const std::size_t length = std::strlen(*word);
        if (length + blank >= static_cast<std::size_t>(line + command_line_size - end)) {
            return false;
        }
        end = append(end, " ", blank);
        end = append(end, *word, length);
    }
    *end = '\0';
    return true;
}

char* quoted_line(const char* const* words) {
    std::size_t size = 1;
    for (const char* const* word = words; *word != nullptr; ++word) {
        size += std::strlen(*word) * escaped_quote_length + 3; // two quotes and a blank
    }
    auto* line = static_cast<char*>(std::malloc(size));
    if (line == nullptr) {
        return nullptr;
    }
    char* end = line;
    for (const char* const* word = words; *word != nullptr; ++word) {
        if (word != words) {
            *end++ = ' ';
        }
        end = append_quoted(end, *word);
    }
    *end = '\0';
    return line;
}
