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

// A zero-filled surface in the format of the engine's screen. Null without a display connection or
// memory, for a width or height below 1 or above 65,535, and for more than 2 GB. The caller frees
// it with orx_image_free while the display is open: null is ignored, and without a display nothing
// happens, so free surfaces before the display is closed.
[[nodiscard]] ImageSurface* orx_image_new(UiEngine* engine, std::int32_t width,
                                          std::int32_t height);
void orx_image_free(UiEngine* engine, ImageSurface* surface);

// Copies a rectangle of the surface into the window, cut to both of them; it waits for the server,
// so that a window that has just been lost makes no error later. Does nothing for a free slot, a
// closed display or a null surface.
void orx_image_put(UiEngine* engine, WindowId id, ImageSurface* surface, std::int32_t source_x,
                   std::int32_t source_y, std::int32_t destination_x, std::int32_t destination_y,
                   std::int32_t width, std::int32_t height);

// Converts pixels 1:1 into the surface's format; the source's alpha is dropped. The source position
// is clamped to the source; no more columns and rows are converted than the source has. Source rows
// follow one another, as in all drawing on a Pixbuf; nothing behind the last pixel is read and
// nothing beside the surface is written. Works without a display. Null images do nothing.
void orx_image_from_pixbuf(UiEngine* engine, const Pixbuf* source, ImageSurface* destination,
                           std::int32_t source_x, std::int32_t source_y, std::int32_t destination_x,
                           std::int32_t destination_y, std::int32_t width, std::int32_t height);

// Makes the window's icon from a blob (inline_image.h): a pixmap, flattened on black, which the
// window's hints name, and _NET_WM_ICON with its transparency. The pixmap belongs to the window,
// which frees it; an earlier icon's is freed here. Without the blob's magic (one line on standard
// output), for a free slot, a closed display, a size that no surface has, or when the server
// refuses the pixmap, the window keeps the icon it had.
void orx_window_set_icon(UiEngine* engine, const unsigned char* blob, WindowId id);
