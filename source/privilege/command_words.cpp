// command_words.cpp: splitting and quoting.
#include "privilege/command_words.h"

#include "privilege/privileged_runner.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

bool tar_command(char (&command)[command_line_size], const char* action, const char* folder) {
    const int length = std::snprintf(command, sizeof command, "tar %s %s -C %s", action,
                                     extraction_archive, folder);
    return length >= 0 && static_cast<std::size_t>(length) < sizeof command;
}

char* quoted_tar_command(const char* action, const char* folder) {
    constexpr char escaped_quote[] = "'\\''"; // ends the quotes, adds one, opens them again
    const std::size_t longest = std::strlen(folder) * std::strlen(escaped_quote);
    const std::size_t size = command_line_size + longest;
    auto* command = static_cast<char*>(std::malloc(size));
    if (command == nullptr) {
        return nullptr;
    }
    const int start = std::snprintf(command, size, "tar %s %s -C '", action, extraction_archive);
    char* end = command + start;
    for (const char* c = folder; *c != '\0'; ++c) {
        if (*c == '\'') {
            std::memcpy(end, escaped_quote, std::strlen(escaped_quote));
            end += std::strlen(escaped_quote);
        } else {
            *end++ = *c;
        }
    }
    std::memcpy(end, "'", 2);
    return command;
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

bool extraction_command(char (&command)[command_line_size], const char* folder) {
    return tar_command(command, "-xf", folder);
}

bool comparison_command(char (&command)[command_line_size], const char* folder) {
    return tar_command(command, "-df", folder);
}

char* quoted_extraction_command(const char* folder) {
    return quoted_tar_command("-xf", folder);
}

char* quoted_comparison_command(const char* folder) {
    return quoted_tar_command("-df", folder);
}
