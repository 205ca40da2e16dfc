// widget_paint.h: what every kind of widget draws alike. For the widgets themselves.
//
// Design pixels; (x, y, w, h) is the widget's rectangle, which lies inside the image.
#pragma once

#include "gui/ORX/widgets/widget_geometry.h"

#include "gui/ORX/core/window_id.h"

#include <cstdint>

struct Pixbuf;
struct TextRenderer;

// The inside of the rectangle, x + 1 to x + w - 1 and y + 1 to y + h - 1, opaquely.
void widget_fill_inside(UiEngine* engine, Pixbuf* image, std::int32_t x, std::int32_t y,
                        std::int32_t w, std::int32_t h, const WidgetColour& colour);

// A border of four lines of one pixel whose corner pixels stay unpainted.
void widget_border(UiEngine* engine, Pixbuf* image, std::int32_t x, std::int32_t y, std::int32_t w,
                   std::int32_t h, const WidgetColour& colour);

// Plain text from a pen position and baseline, kept inside the image: a text too long for the image
// must not come out at the left end of the next row. At most limit glyphs, then three dots.
void widget_draw_text(const TextRenderer* text, Pixbuf* image, const char* string, std::int32_t x,
                      std::int32_t y, const WidgetColour& colour, std::int32_t limit);

// Asks the event thread to show the device rectangle again. Takes x_lock.
void widget_request_redraw(UiEngine* engine, WindowId window, std::int32_t x, std::int32_t y,
                           std::int32_t w, std::int32_t h, float scale);

// Copies a text into a buffer of size bytes, cut to fit and zero-terminated; null empties it.
void widget_copy_text(char* buffer, std::int32_t size, const char* text);
