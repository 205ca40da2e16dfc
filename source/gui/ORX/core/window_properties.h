// window_properties.h: what the window manager is told about a window, its input and its size.
//
// Every operation takes x_lock, and does nothing for a slot not in use or a closed display. Sizes
// and positions are device pixels. No X error of a window that has just gone ends the process.
#pragma once

#include "gui/ORX/core/window_id.h"

#include <cstdint>

void window_set_title(UiEngine* engine, WindowId id, const char* utf8_text);
void window_set_class_hint(UiEngine* engine, WindowId id, const char* text);
void window_set_type_utility(UiEngine* engine, WindowId id);
void window_set_type_splash(UiEngine* engine, WindowId id);
void window_set_above(UiEngine* engine, WindowId id);
void window_set_protocols(UiEngine* engine, WindowId id, unsigned long atom);

// WM_NORMAL_HINTS. minimum and base size are always set; maximum, aspect and position each only
// when one of its two numbers is not 0.
void window_set_size_hints(UiEngine* engine, std::int32_t min_width, std::int32_t min_height,
                           std::int32_t max_width, std::int32_t max_height, std::int32_t aspect_x,
                           std::int32_t aspect_y, std::int32_t x, std::int32_t y, WindowId id);

void window_map(UiEngine* engine, WindowId id);
void window_select_input(UiEngine* engine, WindowId id);
void window_select_input_with_motion(UiEngine* engine, WindowId id, bool motion);
void window_resize(UiEngine* engine, WindowId id, std::int32_t width, std::int32_t height);
void x_window_resize(UiEngine* engine, unsigned long x_window, std::int32_t width,
                     std::int32_t height);
void x_window_size(UiEngine* engine, unsigned long x_window, std::int32_t* width,
                   std::int32_t* height);

// Grabs.
void window_grab_pointer(UiEngine* engine, WindowId id);
void window_ungrab_pointer(UiEngine* engine);
void window_grab_keyboard(UiEngine* engine, WindowId id);
void window_ungrab_keyboard(UiEngine* engine);
void window_grab_all_keys(UiEngine* engine, WindowId id);
void window_ungrab_all_keys(UiEngine* engine, WindowId id);
