// widget_paint.h: what every kind of widget draws alike. For the widgets themselves.
//
// Design pixels; (x, y, w, h) is the widget's rectangle, which lies inside the image. Lines run
// from the lesser end to the greater, so that on a widget of one to three pixels they reach out of
// it.
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

// A row from one column to another, in either order and both included, blended with alpha and kept
// on the image: what stands out of it must not come out at the other end of the row before or
// after.
void widget_row(UiEngine* engine, Pixbuf* image, std::int32_t x0, std::int32_t y, std::int32_t x1,
                const WidgetColourAlpha& colour);

// The same for a column.
void widget_column(UiEngine* engine, Pixbuf* image, std::int32_t x, std::int32_t y0,
                   std::int32_t y1, const WidgetColourAlpha& colour);

// Plain text from a pen position and baseline, kept inside the image: a text too long for the image
// must not come out at the left end of the next row. At most limit glyphs, then three dots.
void widget_draw_text(const TextRenderer* text, Pixbuf* image, const char* string, std::int32_t x,
                      std::int32_t y, const WidgetColour& colour, std::int32_t limit);

// Asks the event thread to show the device rectangle again. Takes x_lock.
void widget_request_redraw(UiEngine* engine, WindowId window, std::int32_t x, std::int32_t y,
                           std::int32_t w, std::int32_t h, float scale);

// Copies a text into a buffer of size bytes, cut to fit and zero-terminated; null empties it.
void widget_copy_text(char* buffer, std::int32_t size, const char* text);
