// privileged_command.h: one command for root, and what became of it.
#pragma once

#include <cstddef>
#include <cstdint>

// The most words that an exact command has.
inline constexpr std::size_t privileged_words_most = 160;

struct PrivilegedCommand {
    const char* const* words; // null-terminated; borrowed
    // true: each word reaches the command as it is, whatever it holds. false: the words, joined by
    // blanks, are plain text, which sudo's words are split from (command_words.h) and which root's
    // shell reads as it likes.
    bool exact;
};

enum class CommandOutcome {
    not_made,    // too long, or no memory for it: nothing was run
    no_terminal, // there was no pseudo-terminal: nothing was run
    refused,     // the password is not accepted any more
    cancelled,   // broken off
    failed,      // ended with another exit status than 0
    succeeded,
};

struct CommandResult {
    CommandOutcome outcome;
    // Of a command that has ended: its exit status, or 128 and the signal that ended it.
    std::int32_t exit_status = 0;
};
