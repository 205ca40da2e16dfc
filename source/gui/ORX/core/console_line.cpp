// console_line.cpp: waiting for room, then printing.
#include "gui/ORX/core/console_line.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace {

// A console that is closed or broken counts as ready: it fails at once.
void wait_for_room() {
    pollfd console{STDOUT_FILENO, POLLOUT, 0};
    while (poll(&console, 1, -1) < 0 && errno == EINTR) {
    }
}

} // namespace

void console_print_list(const char* format, std::va_list arguments) {
    wait_for_room();
    // The checker loses sight of va_start on the way from console_print.
    (void)std::vprintf(format, arguments); // NOLINT(clang-analyzer-valist.Uninitialized)
    (void)std::fflush(stdout);
}

void console_print(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    console_print_list(format, arguments);
    va_end(arguments);
}

void print_line(const char* line) {
    console_print("%s\n", line);
}
