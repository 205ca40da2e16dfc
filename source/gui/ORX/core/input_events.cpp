// input_events.cpp: delivering keys, pointer buttons and motion.
#include "gui/ORX/core/event_dispatch.h"

#include "gui/ORX/core/event_target.h"
#include "gui/ORX/core/reply_memory.h"
#include "gui/ORX/core/x_error_trap.h"

#include <X11/Xutil.h>

#include <cstdlib>
#include <cstring>

namespace {

constexpr float double_click_seconds = 0.3F;
constexpr int key_text_length = sizeof(UiEngine::key_text) - 1;

// Composed text for which key_text has no room; a sentence at once is more than anybody composes.
struct LongText {
    char* text = nullptr; // owned, zero-terminated
    ~LongText() { free_reply(reinterpret_cast<unsigned char*>(text)); }
};
constexpr int longest_text = 64 * 1024;

bool look_up_long_text(XIC context, XKeyEvent* event, int length, LongText* text, KeySym* keysym,
                       Status* status) {
    if (length < 0 || length > longest_text) {
        return false;
    }
    text->text = static_cast<char*>(std::calloc(static_cast<std::size_t>(length) + 1, 1));
    if (text->text == nullptr) {
        return false;
    }
    XmbLookupString(context, event, text->text, length, keysym, status);
    return *status == XLookupBoth || *status == XLookupChars;
}

// Fills key_text, or the long text. Returns false when the key is not to be delivered. With x_lock
// held.
bool look_up_key(UiEngine* engine, XIC context, XKeyEvent* event, LongText* long_text,
                 KeySym* keysym) {
    std::memset(engine->key_text, 0, sizeof engine->key_text);
    if (context == nullptr || engine_display(engine) == nullptr) {
        return false;
    }
    Status status = XLookupNone;
    const XErrorTrap trap(engine);
    XSetICFocus(context);
    const int length =
        XmbLookupString(context, event, engine->key_text, key_text_length, keysym, &status);
    if (status == XBufferOverflow && engine->composed_text &&
        !look_up_long_text(context, event, length, long_text, keysym, &status)) {
        return false;
    }
    if (status == XLookupKeySym) {
        engine->key_text[0] = '\0';
    }
    if (status == XLookupChars) {
        *keysym = NoSymbol;
        return engine->composed_text;
    }
    return status == XLookupKeySym || status == XLookupBoth;
}

} // namespace

void dispatch_key_press(UiEngine* engine, XKeyEvent* event) {
    EventTarget<KeyCallback> target;
    KeySym keysym = NoSymbol;
    LongText long_text;
    {
        const XLockGuard x_guard(engine);
        target = target_with_lock(engine, event->window, &WindowSlot::on_key_press);
        if (target.id == no_window || !look_up_key(engine, engine->windows[target.id].input_context,
                                                   event, &long_text, &keysym)) {
            return;
        }
    }
    if (target.callback != nullptr) {
        const char* text = long_text.text != nullptr ? long_text.text : engine->key_text;
        target.callback(text, keysym, event->state, target.id, target.user_data);
    }
}

void dispatch_key_release(UiEngine* engine, XKeyEvent* event) {
    EventTarget<KeyCallback> target;
    KeySym keysym = NoSymbol;
    {
        const XLockGuard x_guard(engine);
        target = target_with_lock(engine, event->window, &WindowSlot::on_key_release);
        if (target.id == no_window || engine_display(engine) == nullptr) {
            return;
        }
        char text[16];
        XLookupString(event, text, sizeof text, &keysym, nullptr);
    }
    if (target.callback != nullptr) {
        target.callback(nullptr, keysym, event->state, target.id, target.user_data);
    }
}

void dispatch_keyboard_change(UiEngine* engine, XMappingEvent* event) {
    const XLockGuard x_guard(engine);
    if (engine_display(engine) != nullptr) {
        const XErrorTrap trap(engine);
        XRefreshKeyboardMapping(event);
    }
}

void dispatch_button_press(UiEngine* engine, const XButtonEvent& event) {
    const MonotonicTime now = monotonic_now();
    const float since_last = elapsed_seconds(engine->last_press_time, now);
    const bool first_button = event.button == Button1;
    const bool again = first_button && since_last > 0.0F && since_last < double_click_seconds;
    const auto target = find_target(
        engine, event.window, again ? &WindowSlot::on_double_click : &WindowSlot::on_button_press);
    if (target.id == no_window) {
        return;
    }
    if (target.callback != nullptr) {
        target.callback(event.x, event.y, static_cast<std::int32_t>(event.button), target.id,
                        target.user_data);
    }
    if (first_button) {
        engine->last_press_time = now;
    }
}

void dispatch_button_release(UiEngine* engine, const XButtonEvent& event) {
    const auto target = find_target(engine, event.window, &WindowSlot::on_button_release);
    if (target.callback != nullptr) {
        target.callback(event.x, event.y, static_cast<std::int32_t>(event.button), target.id,
                        target.user_data);
    }
}

void dispatch_motion(UiEngine* engine, const XMotionEvent& event) {
    const auto target = find_target(engine, event.window, &WindowSlot::on_motion);
    if (target.callback != nullptr) {
        target.callback(event.x, event.y, target.id, target.user_data);
    }
}
