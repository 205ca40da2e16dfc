// console_log.cpp: formatted text to standard output, flushed.
#include "installer/console_log.h"

#include <cstdarg>
#include <cstdio>

void log_print(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    (void)std::vprintf(format, arguments);
    va_end(arguments);
    (void)std::fflush(stdout);
}
