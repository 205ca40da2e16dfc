// privileged_runner.h: what every privileged step needs to know.
//
// The program runs as an ordinary user and becomes root for single commands only, by driving sudo
// or su on a pseudo-terminal and typing the password that the user gave. This record is the little
// that those steps share: where the tools are, where messages go, and when to stop waiting.
//
// The password itself is never kept here. It is handed to each call, written from the caller's own
// buffer straight to the terminal, and whatever comes back from the terminal is wiped after use.
//
// Everything in this folder runs on one thread, one child at a time. Other threads may go on
// drawing; the only thing shared with them is *cancel_requested.
#pragma once

#include <atomic>
#include <cstdint>

struct PrivilegedRunner {
    const char* title;                                 // borrowed; first argument of log lines
    const std::atomic<std::int32_t>* cancel_requested; // borrowed, never null; 1 = unwind
    void (*log)(const char* format, ...);              // borrowed; printf-style, adds nothing
    char sudo_path[1024]; // absolute path of the tool, filled by find_sudo
    char su_path[1024];   // the same, filled by find_su
};
