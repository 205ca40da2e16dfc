// prompt_text.h: what the text on the child's terminal means.
//
// A recogniser that is fed the child's output as it comes, in pieces of any length, and knows at
// any moment whether a password is being asked for or refused. It keeps no text, only how far each
// word has been matched: what passes through it may be an echoed password.
//
// Words are recognised whatever their case. A prompt is the word "password" in a line that has not
// ended yet; the same word in an ended line (a lecture, a file name) only counts as a mention. A
// complaint is "Sorry" and "try again" within one reading's length of each other. sudo-rs and its
// su have their own: ": Authentication failed, try again" behind their name.
//
// What sudo-rs asks it begins with "[sudo: " and what for, whatever the language; the other sudo's
// prompt begins with "[sudo] ". A line is only shaped like a question: whether somebody is asked,
// the terminal knows, which hides what is typed then.
//
// Pure: no process, no clock, no allocation; nothing here can fail.
#pragma once

#include <cstddef>
#include <cstdint>

// The most that is read from a child at once, in bytes; also how far apart the two halves of a
// complaint may lie.
inline constexpr std::size_t reading_length = 255;

struct PromptText {
    std::uint64_t length;          // bytes fed since the start or the last answer
    std::uint64_t sorry_end;       // length when the word was last complete, 0 = never
    std::uint64_t try_again_end;   // the same
    std::uint8_t password_matched; // bytes of each word matched so far
    std::uint8_t sorry_matched;
    std::uint8_t try_again_matched;
    std::uint8_t failed_matched;
    std::uint8_t sudo_matched;
    std::uint8_t sudo_rs_matched; // the same, from the line's beginning
    bool answer_line;             // still in the line that an answer was typed into
    bool answered_blind;          // that line showed nothing when the answer was typed
    bool line_is_open;            // the last line holds something visible and has not ended
    bool prompt_is_open;          // the last line has not ended and holds "password"
    bool prompt_mentioned;        // "password" has been seen in any line
    bool sudo_rs_line; // the last line has not ended, begins as sudo-rs's questions do, and no
                       // prompt of the other sudo follows in it
    bool complained;   // a complaint has been seen
    bool failed;       // one of sudo-rs or its su has been seen
};

// A recogniser that has seen nothing.
[[nodiscard]] PromptText prompt_text_start();

// Takes the next count bytes of output.
void prompt_text_feed(PromptText* text, const char* bytes, std::size_t count);

// A password has been typed: everything so far is forgotten, and answer_line is set until the
// current line ends. What is still to come of it may be a rest of the prompt, asterisks or an echo,
// or, where the answer was typed blind, the prompt itself.
void prompt_text_answered(PromptText* text);
