// console_log.h: the installer's one console routine.
#pragma once

#include <cstddef>

// printf to standard output, then flush. Adds nothing: each message carries its own prefix and
// line end. Any thread. A console that is gone is not an error.
[[gnu::format(printf, 1, 2)]] void log_print(const char* format, ...);

// The text to standard output, unless that would have to wait or the text is of more than 4,096
// bytes: then it is lost. Safe in a signal handler, and whoever holds the stream's lock.
void log_without_waiting(const char* text, std::size_t length);

// A heap copy of a text with its control characters made visible, as \x1B, so that a name that
// somebody has made up writes nothing but itself on a terminal. Null without memory.
[[nodiscard]] char* visible_copy(const char* text);

// Fills standard streams that the parent has closed with /dev/null. To be called first: the next
// descriptor opened, the display's perhaps, would otherwise be taken for the console.
void open_closed_streams();
