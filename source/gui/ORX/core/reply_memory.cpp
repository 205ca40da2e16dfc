// reply_memory.cpp: reading a property, and writing over where its value has been.
#include "gui/ORX/core/reply_memory.h"

#include "gui/ORX/core/blank_answer.h"

#include <malloc.h>

#include <cstring>

namespace {

constexpr long largest_answer = 10'000'000; // in units of 4 bytes
// What freed memory is filled with, but for small pieces and the last word of large ones. Such a
// piece is handed out again to whoever asks for as much.
constexpr int pattern = 0xA5;

PropertyText read_property(Display* display, Window window, Atom property, Atom wanted) {
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    PropertyText text;
    const int status = XGetWindowProperty(display, window, property, 0, largest_answer, False,
                                          wanted, &type, &format, &count, &left, &text.data);
    if (status != Success) {
        return {};
    }
    text.size = count;
    text.type = type;
    if ((wanted != AnyPropertyType && type != wanted) || format != 8) {
        text.size = text.data == nullptr ? 0 : malloc_usable_size(text.data);
        free_reply(text.data);
        text.data = nullptr;
    }
    return text;
}

// As large as the answer was, for the memory that it was in; then larger than the buffer, which
// may hold events before the answer.
void overwrite_answer(Display* display, Window window, unsigned long size) {
    const Atom property = XInternAtom(display, "_ORX_BLANKS", False);
    if (size < more_than_the_buffer) {
        take_blank_answer(display, window, property, size);
    }
    take_blank_answer(display, window, property, more_than_the_buffer);
    XDeleteProperty(display, window, property);
}

} // namespace

PropertyText read_text_property(Display* display, Window window, Atom property, Atom wanted) {
    mallopt(M_PERTURB, pattern);
    const PropertyText text = read_property(display, window, property, wanted);
    mallopt(M_PERTURB, 0);
    if (text.size > 0) {
        overwrite_answer(display, window, text.size);
    }
    return text;
}

void free_reply(unsigned char* data) {
    if (data != nullptr) {
        explicit_bzero(data, malloc_usable_size(data));
        XFree(data);
    }
}
