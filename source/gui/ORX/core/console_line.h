// console_line.h: one line of the engine on standard output, flushed at once.
#pragma once

#include <cstdio>

inline void print_line(const char* line) {
    std::puts(line);
    std::fflush(stdout);
}
