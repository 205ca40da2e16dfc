// console_log.h: the installer's one console routine.
#pragma once

// printf to standard output, then flush. Adds nothing: each message carries its own prefix and
// line end. Any thread. A console that is gone is not an error.
[[gnu::format(printf, 1, 2)]] void log_print(const char* format, ...);

// Fills standard streams that the parent has closed with /dev/null. To be called first: the next
// descriptor opened, the display's perhaps, would otherwise be taken for the console.
void open_closed_streams();
