// engine.cpp: making and ending the engine, its getters and its timer settings.
#include "gui/ORX/core/engine.h"

#include "gui/ORX/core/console_line.h"
#include "gui/ORX/core/window_records.h"

#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <new>

namespace {

void fill_tone_table(UiEngine* engine) {
    engine->tone_table[0] = 0;
    for (int i = 1; i < 256; ++i) {
        const float tone = 255.0F * std::pow(static_cast<float>(i) / 255.0F, 0.8F);
        engine->tone_table[i] = static_cast<std::uint32_t>(std::min(255.0F, tone));
    }
}

void make_locks(UiEngine* engine) {
    pthread_mutex_init(&engine->x_lock, nullptr);
    pthread_mutex_init(&engine->loop_lock, nullptr);
    pthread_mutexattr_t recursive;
    pthread_mutexattr_init(&recursive);
    pthread_mutexattr_settype(&recursive, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&engine->table_lock, &recursive);
    pthread_mutexattr_destroy(&recursive);
}

void set_up_locale() {
    if (std::setlocale(LC_ALL, "") == nullptr) {
        print_line("** ORX-UI Engine: cannot set locale");
    }
    if (XSupportsLocale() == False) {
        print_line("** ORX-UI Engine: X doesn not support this locale");
    }
    if (XSetLocaleModifiers("") == nullptr) {
        print_line("** ORX-UI Engine: Unable to set Locale Modifiers");
    }
}

// Xlib's look at the locale, and much of the rest of it, does not check what it allocates.
bool memory_is_left() {
    constexpr std::size_t enough = 1 << 18;
    void* memory = std::malloc(enough);
    std::free(memory);
    return memory != nullptr;
}

} // namespace

UiEngine* engine_new() {
    if (!memory_is_left()) {
        return nullptr;
    }
    // Before any other Xlib call: X libraries older than 1.8 do not do it by themselves.
    XInitThreads();
    auto* engine = new (std::nothrow) UiEngine;
    if (engine == nullptr) {
        return nullptr;
    }
    clear_live_order(engine);
    fill_tone_table(engine);
    engine->last_press_time = monotonic_now();
    make_locks(engine);
    set_up_locale();
    return engine;
}

void engine_destroy(UiEngine* engine) {
    if (engine == nullptr) {
        return;
    }
    engine_close_display(engine);
    paste_forget(engine);
    pthread_mutex_destroy(&engine->x_lock);
    pthread_mutex_destroy(&engine->table_lock);
    pthread_mutex_destroy(&engine->loop_lock);
    for (WindowSlot& slot : engine->windows) {
        damage_free(&slot.damage);
    }
    delete engine;
}

Display* engine_display(const UiEngine* engine) {
    return engine->connection_lost ? nullptr : engine->display;
}

bool engine_connection_lost(const UiEngine* engine) {
    return engine->connection_lost;
}

pthread_mutex_t* engine_lock(UiEngine* engine) {
    return &engine->x_lock;
}

void engine_set_composed_text(UiEngine* engine, bool on) {
    engine->composed_text = on;
}

void engine_set_converted_paste(UiEngine* engine, bool on) {
    engine->converted_paste = on;
}

void engine_set_tick_interval(UiEngine* engine, std::int32_t milliseconds) {
    engine->tick_interval_ms = milliseconds;
}

std::int32_t engine_tick_interval(const UiEngine* engine) {
    return engine->tick_interval_ms;
}

void engine_set_window_tick_interval(UiEngine* engine, std::int32_t milliseconds) {
    engine->window_tick_interval_ms = milliseconds;
}

std::int32_t engine_window_tick_interval(const UiEngine* engine) {
    return engine->window_tick_interval_ms;
}

void engine_set_tick_callback(UiEngine* engine, EngineTickCallback callback) {
    engine->tick_callback = callback;
}

void engine_set_tick_pointer(UiEngine* engine, void* pointer) {
    engine->tick_pointer = pointer;
}
