// window_pixels.h: moving a window's pixels on the server, asking for a repaint, and server-side
// pixmaps.
//
// Device pixels, cut to what lies at or right of and below 0 and to what the protocol can carry.
// Every operation takes x_lock, waits for the server's answer, and does nothing for a free slot or
// a closed display. A window or pixmap that the server has lost makes no error that ends the
// process.
#pragma once

#include "gui/ORX/imaging/image_surface.h"

#include <cstdint>

// Moves the pixels of the band (x, y, width, height) by dy rows, down when dy is above 0. The
// uncovered rows are the caller's to repaint; a dy of the band's height or more moves nothing and
// leaves all of it to the caller. Places that other windows covered, which have no pixels to move,
// become damage and are painted by the event thread.
void orx_window_scroll(UiEngine* engine, WindowId id, std::int32_t x, std::int32_t y,
                       std::int32_t width, std::int32_t height, std::int32_t dy);

// Asks the event thread to repaint that area, by a synthetic Expose event. Any thread.
void orx_window_request_redraw(UiEngine* engine, WindowId id, std::int32_t x, std::int32_t y,
                               std::int32_t width, std::int32_t height);

// A pixmap of the screen's depth for the window, its pixels undefined; 0 when the server refuses it
// and for a width or height below 1 or above 32,767. The caller frees it; 0 is ignored.
[[nodiscard]] unsigned long orx_pixmap_new(UiEngine* engine, WindowId id, std::int32_t width,
                                           std::int32_t height);
void orx_pixmap_free(UiEngine* engine, unsigned long pixmap);

// Copies a rectangle of the surface into the pixmap.
void orx_pixmap_put(UiEngine* engine, unsigned long pixmap, ImageSurface* surface,
                    std::int32_t source_x, std::int32_t source_y, std::int32_t destination_x,
                    std::int32_t destination_y, std::int32_t width, std::int32_t height);

// Copies a rectangle of the pixmap onto the window.
void orx_pixmap_show(UiEngine* engine, unsigned long pixmap, WindowId id, std::int32_t source_x,
                     std::int32_t source_y, std::int32_t width, std::int32_t height,
                     std::int32_t destination_x, std::int32_t destination_y);
