// command_words.h: how a command reaches sudo and su.
//
// sudo is given words, su a line for root's shell. Commands are plain text and are split at blanks
// without quoting or escaping; an exact command's words are kept in one piece each. Pure, apart
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

// Joins the words of a command with blanks. false when the line does not fit: nobody would want a
// command run that names the first half of a folder.
[[nodiscard]] bool plain_line(char (&line)[command_line_size], const char* const* words);

// The words for a shell, each quoted so that it stays one word whatever it holds. The caller frees
// the line; null when there is no memory.
[[nodiscard]] char* quoted_line(const char* const* words);
