// window_table.h: making and ending windows, and the table's rules.
//
// A new window takes the lowest free slot and goes to the end of live_order. A slot that is given
// back keeps on_close, aux_pointer, x, y and delete_atom, so set on_close anew for each window.
// Every operation does nothing for a slot not in use, and nothing while the display is closed or
// its connection lost. Handles are not checked for range: pass only handles that were given. All
// operations may be called on any thread and in callbacks; no X error ends the process.
//
// A callback that the event thread has begun to deliver still comes after another thread has
// destroyed the window or cleared its callbacks, so what user_data points to must live until the
// event thread has gone on. on_paint and on_tick are the exception: destroying and clearing wait
// for them.
#pragma once

#include "gui/ORX/core/window_callbacks.h"
#include "gui/ORX/core/window_id.h"

#include <cstdint>

// Creation. x, y are device pixels of the root window; width and height are design pixels and are
// multiplied by scale, rounded. The window is not mapped and selects no input; its only protocol is
// WM_DELETE_WINDOW, its background black unless it is a splash (white) or colored. Colours are 0 to
// 255. Each returns the handle, or -1 when the display is closed, all 255 slots are in use, the
// device size is not 1 to 65535 or the server refuses. With a full table the X window that was made
// stays, unmapped, until the display closes. Takes table_lock, then x_lock.
[[nodiscard]] WindowId window_create_simple(UiEngine* engine, std::int32_t x, std::int32_t y,
                                            std::int32_t width, std::int32_t height,
                                            void* user_data, float scale);
[[nodiscard]] WindowId window_create_splash(UiEngine* engine, std::int32_t x, std::int32_t y,
                                            std::int32_t width, std::int32_t height,
                                            void* user_data, float scale);
[[nodiscard]] WindowId window_create_colored(UiEngine* engine, std::int32_t x, std::int32_t y,
                                             std::int32_t width, std::int32_t height,
                                             std::int32_t red, std::int32_t green,
                                             std::int32_t blue, void* user_data, float scale);
[[nodiscard]] WindowId window_create_plain(UiEngine* engine, std::int32_t x, std::int32_t y,
                                           std::int32_t width, std::int32_t height, void* user_data,
                                           float scale);

// Destroys the window, its pixmap and its input context and gives its slot back. Returns the X
// error code (3 when the server had destroyed the window already), 0 = success or nothing to do;
// the slot is free either way. Takes table_lock, then x_lock.
int window_destroy(UiEngine* engine, WindowId id);

// Gives back the slot of a window that the server has already destroyed, with its pixmap and input
// context. Takes table_lock, then x_lock.
void window_forget(UiEngine* engine, WindowId id);

// Destroys every window; live_order stays as it is. Takes table_lock, then x_lock.
void window_destroy_all(UiEngine* engine);

// Clears every callback but on_close, under table_lock then x_lock, or without locks.
void window_clear_callbacks(UiEngine* engine, WindowId id);
void window_clear_callbacks_unlocked(UiEngine* engine, WindowId id);

// Queries and reparenting. is_valid and reparent take x_lock and return the X error code, 0 = fine
// or nothing done; reparent puts the window at 0, 0 of its new parent. The others take no lock.
// Sizes are device pixels, 0 for a free slot. X window 0 is in no slot.
[[nodiscard]] int window_is_valid(UiEngine* engine, unsigned long x_window);
// Whether a window that was made has been given back or destroyed since. Nobody is told of an end
// that comes before the window has its on_close and its input selected: ask once after both. Takes
// x_lock.
[[nodiscard]] bool window_is_gone(UiEngine* engine, WindowId id);
int window_reparent(UiEngine* engine, WindowId id, unsigned long new_parent);
[[nodiscard]] unsigned long window_x_window(const UiEngine* engine, WindowId id); // 0 = none
[[nodiscard]] WindowId window_from_x_window(const UiEngine* engine, unsigned long x_window);
[[nodiscard]] std::uint32_t window_width(const UiEngine* engine, WindowId id);
[[nodiscard]] std::uint32_t window_height(const UiEngine* engine, WindowId id);
[[nodiscard]] bool window_table_empty(const UiEngine* engine);

// Callback and pointer setters: plain stores, no lock, any thread.
void window_set_on_configure(UiEngine* engine, WindowId id, ConfigureCallback callback);
void window_set_on_paint(UiEngine* engine, WindowId id, PaintCallback callback);
void window_set_on_button_press(UiEngine* engine, WindowId id, ButtonCallback callback);
void window_set_on_button_release(UiEngine* engine, WindowId id, ButtonCallback callback);
void window_set_on_motion(UiEngine* engine, WindowId id, MotionCallback callback);
void window_set_on_reparent(UiEngine* engine, WindowId id, ReparentCallback callback);
void window_set_on_client_message(UiEngine* engine, WindowId id, ClientMessageCallback callback);
void window_set_on_create_notify(UiEngine* engine, WindowId id, CreateNotifyCallback callback);
void window_set_spare_callback(UiEngine* engine, WindowId id, SpareCallback callback);
void window_set_on_double_click(UiEngine* engine, WindowId id, ButtonCallback callback);
void window_set_on_close(UiEngine* engine, WindowId id, CloseCallback callback);
void window_set_on_key_press(UiEngine* engine, WindowId id, KeyCallback callback);
void window_set_on_key_release(UiEngine* engine, WindowId id, KeyCallback callback);
void window_set_on_selection(UiEngine* engine, WindowId id, SelectionCallback callback);
void window_set_on_tick(UiEngine* engine, WindowId id, TickCallback callback);
void window_set_aux_pointer(UiEngine* engine, WindowId id, void* pointer);
[[nodiscard]] void* window_aux_pointer(const UiEngine* engine, WindowId id);
