// console_log.cpp: formatted text to standard output, flushed.
#include "installer/console_log.h"

#include "gui/ORX/core/console_line.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <climits>
#include <cstdarg>
#include <cstdlib>
#include <cstring>

namespace {

constexpr char hex_digits[] = "0123456789ABCDEF";

// How many bytes of a control character stand here; 0 for none. Those of U+0080 to U+009F are two
// bytes in UTF-8, and terminals obey them as well.
std::size_t control_at(const char* text) {
    const auto first = static_cast<unsigned char>(text[0]);
    const auto second = static_cast<unsigned char>(text[1]);
    if (first < 0x20 || first == 0x7F) {
        return 1;
    }
    return first == 0xC2 && second >= 0x80 && second < 0xA0 ? 2 : 0;
}

} // namespace

void log_print(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    console_print_list(format, arguments);
    va_end(arguments);
}

// A pipe that is ready takes that much at once.
void log_without_waiting(const char* text, std::size_t length) {
    pollfd console{STDOUT_FILENO, POLLOUT, 0};
    if (length <= PIPE_BUF && poll(&console, 1, 0) == 1 && (console.revents & POLLOUT) != 0) {
        (void)!write(STDOUT_FILENO, text, length);
    }
}

char* visible_copy(const char* text) {
    constexpr std::size_t longest_form = 4;
    auto* copy = static_cast<char*>(std::malloc(std::strlen(text) * longest_form + 1));
    if (copy == nullptr) {
        return nullptr;
    }
    char* end = copy;
    for (const char* at = text; *at != '\0';) {
        const std::size_t control = control_at(at);
        if (control == 0) {
            *end++ = *at++;
            continue;
        }
        // The last byte tells which one it is, also of those of two bytes.
        const auto code = static_cast<unsigned char>(at[control - 1]);
        *end++ = '\\';
        *end++ = 'x';
        *end++ = hex_digits[code >> 4];
        *end++ = hex_digits[code & 0xF];
        at += control;
    }
    *end = '\0';
    return copy;
}

void open_closed_streams() {
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        // The lowest free descriptor is taken, which is the closed stream itself.
        if (fcntl(stream, F_GETFD) < 0) {
            (void)!open("/dev/null", O_RDWR);
        }
    }
}
