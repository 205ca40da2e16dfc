// command_words.h: how a command reaches sudo and su.
//
// sudo is given words, su a line for root's shell. Commands are plain text and are split at blanks
// without quoting or escaping; only an extraction folder can be kept in one piece. Pure, apart
// from the one function that allocates.
#pragma once

#include <cstddef>

inline constexpr std::size_t command_words_most = 6;
inline constexpr std::size_t command_word_length = 253; // bytes, without the zero
inline constexpr std::size_t command_line_size = 1024;  // bytes, with the zero

struct CommandWords {
    char text[command_words_most][command_word_length + 1];
    std::size_t count;
};

// Splits command_line at single blanks: two in a row, or one at the end, make an empty word. Words
// beyond the sixth are dropped, and so are the bytes of a word beyond its 253rd.
void split_command(CommandWords* words, const char* command_line);

// Writes the command that extracts the archive into folder, as plain text. false when it does not
// fit: nobody would want it run into the first half of a folder's name.
[[nodiscard]] bool extraction_command(char (&command)[command_line_size], const char* folder);

// The same, for a shell, with folder quoted so that it stays one word whatever it holds. The
// caller frees it; null when there is no memory.
[[nodiscard]] char* quoted_extraction_command(const char* folder);

// Both again, for the command that compares what stands in folder with the archive.
[[nodiscard]] bool comparison_command(char (&command)[command_line_size], const char* folder);
[[nodiscard]] char* quoted_comparison_command(const char* folder);
