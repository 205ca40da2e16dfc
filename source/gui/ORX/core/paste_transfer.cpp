// paste_transfer.cpp: one paste from the first request to the last piece.
#include "gui/ORX/core/paste_transfer.h"

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/locale_text.h"
#include "gui/ORX/core/reply_memory.h"
#include "gui/ORX/core/x_error_trap.h"

#include <X11/Xatom.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::size_t largest_text = std::size_t{1} << 20U;
constexpr std::size_t first_capacity = 4096;
constexpr float patience_seconds = 5.0F;

// Whether the window's changed properties are reported, beside the events that it gets anyway.
void watch_properties(Display* display, Window window, bool watch) {
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(display, window, &attributes) != 0) {
        XSelectInput(display, window,
                     watch ? attributes.your_event_mask | PropertyChangeMask
                           : attributes.your_event_mask & ~PropertyChangeMask);
    }
}

void ask_for(UiEngine* engine, Atom target) {
    Display* display = engine_display(engine);
    PasteTransfer& paste = engine->paste;
    paste.target = target;
    paste.last_sign = monotonic_now();
    // What an earlier paste left may still stand there, and a refusal must not bring it back.
    XDeleteProperty(display, paste.window, XA_PRIMARY);
    XConvertSelection(display, XInternAtom(display, "CLIPBOARD", False), target, XA_PRIMARY,
                      paste.window, CurrentTime);
    XFlush(display);
}

void end(UiEngine* engine) {
    watch_properties(engine_display(engine), engine->paste.window, false);
    paste_forget(engine);
}

// Ends the transfer with its text, or without one.
bool finish(UiEngine* engine, const unsigned char* bytes, std::size_t size, unsigned char** text) {
    *text = bytes == nullptr ? nullptr : text_in_locale(bytes, size);
    end(engine);
    return true;
}

// In a place of its own, so that what it leaves can be wiped.
bool make_room(PasteTransfer* paste, std::size_t size) {
    if (size <= paste->capacity) {
        return true;
    }
    const std::size_t capacity = std::max({size, 2 * paste->capacity, first_capacity});
    auto* larger = static_cast<unsigned char*>(std::malloc(capacity));
    if (larger == nullptr) {
        return false;
    }
    if (paste->text != nullptr) {
        std::memcpy(larger, paste->text, paste->size);
        free_reply(paste->text);
    }
    paste->text = larger;
    paste->capacity = capacity;
    return true;
}

bool is_text(Display* display, Atom type) {
    return type == XA_STRING || type == XInternAtom(display, "UTF8_STRING", False);
}

} // namespace

void paste_begin(UiEngine* engine, Window window) {
    paste_forget(engine);
    engine->paste.window = window;
    Display* display = engine_display(engine);
    watch_properties(display, window, true);
    ask_for(engine, XInternAtom(display, "UTF8_STRING", False));
}

bool paste_take_answer(UiEngine* engine, const XSelectionEvent& event, unsigned char** text) {
    Display* display = engine_display(engine);
    PasteTransfer& paste = engine->paste;
    if (display == nullptr || paste.window != event.requestor || paste.target != event.target ||
        paste.in_pieces) {
        return false; // nobody has asked for it
    }
    PropertyText answer;
    if (event.property != 0) {
        answer = read_text_property(display, paste.window, XA_PRIMARY, AnyPropertyType);
    }
    if (answer.type == XInternAtom(display, "INCR", False)) {
        free_reply(answer.data);
        paste.in_pieces = true;
        paste.last_sign = monotonic_now();
        XDeleteProperty(display, paste.window, XA_PRIMARY); // by which the owner is told to begin
        return false;
    }
    bool ended = true;
    if (answer.data != nullptr && is_text(display, answer.type)) {
        ended = finish(engine, answer.data, std::min<std::size_t>(answer.size, largest_text), text);
    } else if (paste.target != XA_STRING) {
        ask_for(engine, XA_STRING);
        ended = false;
    } else {
        ended = finish(engine, nullptr, 0, text);
    }
    free_reply(answer.data);
    return ended;
}

bool paste_take_piece(UiEngine* engine, const XPropertyEvent& event, unsigned char** text) {
    Display* display = engine_display(engine);
    PasteTransfer& paste = engine->paste;
    if (display == nullptr || !paste.in_pieces || paste.window != event.window ||
        event.atom != XA_PRIMARY || event.state != PropertyNewValue) {
        return false;
    }
    const PropertyText piece =
        read_text_property(display, paste.window, XA_PRIMARY, AnyPropertyType);
    if (piece.type == 0) {
        return false; // taken already
    }
    XDeleteProperty(display, paste.window, XA_PRIMARY);
    paste.last_sign = monotonic_now();
    bool ended = false;
    if (piece.data == nullptr || !is_text(display, piece.type) ||
        paste.size + piece.size > largest_text || !make_room(&paste, paste.size + piece.size)) {
        ended = finish(engine, nullptr, 0, text);
    } else if (piece.size == 0) {
        ended = finish(engine, paste.text, paste.size, text);
    } else {
        std::memcpy(paste.text + paste.size, piece.data, piece.size);
        paste.size += piece.size;
    }
    free_reply(piece.data);
    return ended;
}

void paste_give_up_when_late(UiEngine* engine) {
    if (engine->paste.window == 0 ||
        elapsed_seconds(engine->paste.last_sign, monotonic_now()) < patience_seconds) {
        return;
    }
    const XErrorTrap trap(engine);
    if (engine_display(engine) != nullptr) {
        end(engine);
    }
    paste_forget(engine);
}

void paste_forget(UiEngine* engine) {
    free_reply(engine->paste.text);
    engine->paste = {};
}
