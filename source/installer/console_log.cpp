// console_log.cpp: formatted text to standard output, flushed.
#include "installer/console_log.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>

void log_print(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    (void)std::vprintf(format, arguments);
    va_end(arguments);
    (void)std::fflush(stdout);
}

void open_closed_streams() {
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        // The lowest free descriptor is taken, which is the closed stream itself.
        if (fcntl(stream, F_GETFD) < 0) {
            (void)!open("/dev/null", O_RDWR);
        }
    }
}
