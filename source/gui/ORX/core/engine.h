// engine.h: the one object through which the program talks to the X server.
//
// main makes it once, before the text renderer and before the event thread starts. It owns the
// display connection, the input method, the table of windows, the three locks, the engine-wide
// timer settings and the double-click clock. Whoever else calls Xlib does so on its display and
// under its x_lock.
//
// Locks. x_lock (plain) is held for every Xlib call on the engine's display. table_lock
// (recursive) is held while window slots are torn down or walked. loop_lock is held by the event
// loop for its whole run, so that closing the display waits for it. Order: loop_lock, table_lock,
// x_lock. Use the guards of engine_locks.h, which check the order in debug builds.
#pragma once

#include "gui/ORX/core/elapsed_time.h"
#include "gui/ORX/core/paste_transfer.h"
#include "gui/ORX/core/window_slot.h"

#include <X11/Xlib.h>
#include <pthread.h>

#include <atomic>
#include <cstdint>

// The fields stand in the order in which they are read about, not in that of least padding.
struct UiEngine { // NOLINT(clang-analyzer-optin.performance.Padding)
    WindowSlot windows[window_capacity];
    WindowId live_order[window_capacity]; // windows in use in order of creation, then -1
    std::uint32_t tone_table[256];        // 255 * (i / 255) ^ 0.8, truncated; nothing reads it
    Display* display = nullptr;           // null while closed
    Visual* visual = nullptr;             // root visual of screen 0
    pthread_mutex_t x_lock;
    pthread_mutex_t loop_lock;
    pthread_mutex_t table_lock;
    std::int32_t depth = 0;                               // root depth of screen 0
    std::atomic<std::int32_t> tick_interval_ms{0};        // 0 = engine-wide tick off
    std::atomic<std::int32_t> window_tick_interval_ms{0}; // 0 = per-window ticks off
    MonotonicTime last_press_time;                        // last press of button 1
    std::atomic<bool> stop_requested{false};
    std::atomic<EngineTickCallback> tick_callback{};
    std::atomic<void*> tick_pointer{}; // has a setter and no reader
    XErrorHandler saved_error_handler = nullptr;
    char key_text[17]; // text of the key press being dispatched: up to 16 bytes, zero-terminated
    XIM input_method = nullptr;
    bool keyboard_alone = false;              // the person's input method has been given up
    std::atomic<bool> composed_text{false};   // see engine_set_composed_text
    std::atomic<bool> converted_paste{false}; // see engine_set_converted_paste
    PasteTransfer paste;                      // the one under way
    double last_pointer_x;                    // unset until pointer_set_origin
    double last_pointer_y;
    std::atomic<float> ui_scale{0.0F};        // 0 = not yet computed
    Cursor busy_cursor = 0;                   // the watch cursor, made on first use
    std::atomic<bool> connection_lost{false}; // the X server or the connection to it has gone
};

// Error code of the last X error seen while errors were trapped. Written under x_lock.
extern std::atomic<int> last_x_error;

// Makes the engine, closed, and sets the locale from the environment. Null without memory; what
// goes wrong with the locale is printed. The caller owns the engine and gives it to engine_destroy.
[[nodiscard]] UiEngine* engine_new();

// Closes the display, destroys the locks and frees the engine. The event loop must have ended or
// be about to: this waits for it. Null is ignored.
void engine_destroy(UiEngine* engine);

// Opens the display that the environment names, and the input method. true when the display is
// open, also when it already was; false when it cannot be opened or its connection was lost and it
// has not been closed since. Without an input method a line says so, windows get no input context
// and their on_key_press is not called; see engine_use_keyboard_alone. Takes x_lock, any thread.
[[nodiscard]] bool engine_open_display(UiEngine* engine);

// Stops the event loop, waits for it, closes the input method and the display. Windows that are
// left end with the display and their slots are given back. Takes loop_lock, table_lock and x_lock;
// must not be called on the event thread while the loop runs. After a lost connection nothing is
// sent or printed and the dead display is left to the end of the process.
void engine_close_display(UiEngine* engine);

// The display, or null while closed or once its connection is lost. Call and use it under x_lock.
[[nodiscard]] Display* engine_display(const UiEngine* engine);

// true once the X server or the connection to it has gone: from then on every operation acts as
// with a closed display, and the loop only ticks. Ends with engine_close_display. No lock, any
// thread.
[[nodiscard]] bool engine_connection_lost(const UiEngine* engine);

// The mutex under which every Xlib call on engine_display is made.
[[nodiscard]] pthread_mutex_t* engine_lock(UiEngine* engine);

// Bracket Xlib calls whose failure must not end the process. Both with x_lock held; pairs do not
// nest. The second returns the error code seen in between, 0 = none; XSync before it, or errors
// that are still under way end the process later. XErrorTrap (x_error_trap.h) does all of that.
void trap_x_errors(UiEngine* engine);
[[nodiscard]] int untrap_x_errors(UiEngine* engine);

// Both off in a new engine; no lock. Composed text: what an input method composes without a key of
// its own reaches on_key_press, with keysym 0, and text of any length does. Converted paste: the
// clipboard's text is asked for in today's ways, put together when it comes in pieces, and
// delivered in the locale's encoding.
void engine_set_composed_text(UiEngine* engine, bool on);
void engine_set_converted_paste(UiEngine* engine, bool on);

// Timers, in milliseconds; 0 = off. Intervals are measured within the second only, so that 1,000
// or more never fires. No lock.
void engine_set_tick_interval(UiEngine* engine, std::int32_t milliseconds);
[[nodiscard]] std::int32_t engine_tick_interval(const UiEngine* engine);
void engine_set_window_tick_interval(UiEngine* engine, std::int32_t milliseconds);
[[nodiscard]] std::int32_t engine_window_tick_interval(const UiEngine* engine);
void engine_set_tick_callback(UiEngine* engine, EngineTickCallback callback);
void engine_set_tick_pointer(UiEngine* engine, void* pointer);
