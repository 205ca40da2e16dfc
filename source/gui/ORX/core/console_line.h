// console_line.h: text on standard output, flushed at once.
//
// A console that nobody reads keeps whoever writes there waiting. The wait comes first, without the
// stream: nobody else has to wait for that, least of all whoever ends the process.
#pragma once

#include <cstdarg>

// As printf. Any thread. A console that is gone is not an error.
[[gnu::format(printf, 1, 2)]] void console_print(const char* format, ...);

// The same with its arguments in a list, as vprintf.
[[gnu::format(printf, 1, 0)]] void console_print_list(const char* format, std::va_list arguments);

// The text and a line end.
void print_line(const char* line);
