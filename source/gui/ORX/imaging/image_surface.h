// image_surface.h: client-side images in the screen's own pixel format, and putting them on
// windows.
//
// Coordinates and sizes are device pixels. Every operation takes x_lock for its whole duration; do
// not hold it. Pixels are written and read only through the image's own put-pixel and get-pixel.
#pragma once

#include "gui/ORX/core/window_id.h"

#include <cstdint>

struct _XImage;
using ImageSurface = _XImage; // Xlib's XImage
struct Pixbuf;

// A zero-filled surface of the engine's screen, or null without a display connection or memory.
// The caller frees it with orx_image_free (null is ignored; nothing happens without a display).
[[nodiscard]] ImageSurface* orx_image_new(UiEngine* engine, std::int32_t width,
                                          std::int32_t height);
void orx_image_free(UiEngine* engine, ImageSurface* surface);

// Copies a rectangle of the surface into the window. Does nothing for a free slot.
void orx_image_put(UiEngine* engine, WindowId id, ImageSurface* surface, std::int32_t source_x,
                   std::int32_t source_y, std::int32_t destination_x, std::int32_t destination_y,
                   std::int32_t width, std::int32_t height);

// Converts pixels 1:1 into the surface's format; the source's alpha is dropped.
void orx_image_from_pixbuf(UiEngine* engine, const Pixbuf* source, ImageSurface* destination,
                           std::int32_t source_x, std::int32_t source_y, std::int32_t destination_x,
                           std::int32_t destination_y, std::int32_t width, std::int32_t height);

// Makes the window's icon from a blob, flattened on black. The pixmap belongs to the window.
void orx_window_set_icon(UiEngine* engine, const unsigned char* blob, WindowId id);
