// window_callbacks.h: the shapes of the functions that the event thread calls for a window.
//
// All of them run on the event thread with x_lock released, so they may call any engine operation
// and draw. Coordinates and sizes are device pixels. user_data is the pointer given when the
// window was created. on_paint and on_tick run while the event thread holds table_lock.
#pragma once

#include "gui/ORX/core/window_id.h"

#include <cstdint>

// ConfigureNotify. The height comes before the width. A repaint of the whole window follows.
using ConfigureCallback = void (*)(std::int32_t height, std::int32_t width, WindowId id,
                                   void* user_data);
// One damaged rectangle, right and bottom exclusive.
using PaintCallback = void (*)(std::int32_t left, std::int32_t top, std::int32_t width,
                               std::int32_t height, WindowId id, void* user_data);
// ButtonPress, ButtonRelease, and a second press of button 1 within 0.3 s.
using ButtonCallback = void (*)(std::int32_t x, std::int32_t y, std::int32_t button, WindowId id,
                                void* user_data);
using MotionCallback = void (*)(std::int32_t x, std::int32_t y, WindowId id, void* user_data);
// ReparentNotify. The X window is the event's, and comes after user_data.
using ReparentCallback = void (*)(std::int32_t x, std::int32_t y, void* user_data,
                                  unsigned long window);
// ClientMessage other than the close request: its first data long.
using ClientMessageCallback = void (*)(long data, void* user_data, unsigned long window);
// CreateNotify. The height comes before the width.
using CreateNotifyCallback = void (*)(std::int32_t height, std::int32_t width, WindowId id,
                                      void* user_data);
// Never called.
using SpareCallback = void (*)(void* user_data);
// The close request of the window manager; (outer_x, outer_y) is where the frame stood on the
// root window. The X window is already destroyed; the handle is given back after the call.
// A window that another client has destroyed, or says that it has, counts as closed too: then the
// handle has been given back before, and the place is 0, 0.
using CloseCallback = void (*)(std::int32_t outer_x, std::int32_t outer_y, WindowId id,
                               void* user_data);
// KeyPress and KeyRelease. text is zero-terminated and belongs to the engine until the next key;
// it is null for a release.
using KeyCallback = void (*)(const char* text, unsigned long keysym, std::uint32_t state,
                             WindowId id, void* user_data);
// SelectionNotify. data is STRING text (with engine_set_converted_paste text of the locale),
// zero-terminated, and belongs to the callback, which frees it with XFree, or with
// clipboard_free_text, which overwrites it first; null when the owner refused or sends the text in
// pieces.
using SelectionCallback = void (*)(unsigned char* data, WindowId id, void* user_data);
// Periodic. false unregisters the callback.
using TickCallback = bool (*)(void* user_data);
// Periodic, once for the engine. false unregisters the callback.
using EngineTickCallback = bool (*)();
