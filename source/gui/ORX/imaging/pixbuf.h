// pixbuf.h: RGBA images in memory and the drawing primitives on them. Pure, no display.
//
// Pixels are four bytes R, G, B, A in memory, not premultiplied; rows are rowstride bytes apart
// and rowstride is width * 4. Coordinates are pixels of the image, which is design pixels wherever
// a widget draws. Nothing here takes a lock: a Pixbuf belongs to whoever draws into it. The engine
// argument is not used and may be null.
//
// Nothing clips: pixel (x, y) is the pixel y * width + x of the memory, so that what runs over the
// right edge goes on in the next row. What would lie before the first or behind the last pixel is
// left out, and rectangles end at 65,535 columns and rows. Null images, and images without pixels,
// do nothing unless said otherwise. Colours are 0 to 255; of other numbers the low byte counts
// where they are stored.
//
// Blending: channel d becomes d + floor((c - d) * a / 256); alpha 255 leaves a residue (255 over 0
// gives 254), on purpose. The destination's alpha is never changed.
#pragma once

#include "gui/ORX/core/window_id.h"

#include <cstdint>

struct Pixbuf {
    std::uint32_t width;
    std::uint32_t height;
    std::uint32_t rowstride;  // bytes
    std::uint32_t n_channels; // always 4
    std::uint8_t* pixels;     // owned by a blank Pixbuf, borrowed by an inline one
};

// A blank image, opaque black, which owns its pixels: free with orx_pixbuf_free, which ignores
// null; never with orx_pixbuf_free_inline. A width or height below 1 gives a record of that side 0,
// which has no pixels to draw on. Null when no memory can be had or for more than 2 GB.
[[nodiscard]] Pixbuf* orx_pixbuf_new(UiEngine* engine, std::int32_t width, std::int32_t height);
void orx_pixbuf_free(UiEngine* engine, Pixbuf* pixbuf);

// Sets every pixel; makes the buffer, which then belongs to the record, if there is none. clear is
// opaque black.
void orx_pixbuf_fill(UiEngine* engine, Pixbuf* pixbuf, std::int32_t r, std::int32_t g,
                     std::int32_t b, std::int32_t a);
void orx_pixbuf_clear(UiEngine* engine, Pixbuf* pixbuf);

// Copies pixels as they are, alpha included, row by row from the top.
void orx_pixbuf_copy_area(UiEngine* engine, const Pixbuf* source, Pixbuf* destination,
                          std::int32_t source_x, std::int32_t source_y, std::int32_t destination_x,
                          std::int32_t destination_y, std::int32_t width, std::int32_t height);

// Blends source over destination by the source's alpha. The two are not the same image.
void orx_pixbuf_composite(UiEngine* engine, const Pixbuf* source, Pixbuf* destination,
                          std::int32_t source_x, std::int32_t source_y, std::int32_t destination_x,
                          std::int32_t destination_y, std::int32_t width, std::int32_t height);

// Opaque fill (alpha 255). A null Pixbuf or a height below 1 does nothing.
void orx_pixbuf_fill_rect(UiEngine* engine, Pixbuf* pixbuf, std::int32_t x, std::int32_t y,
                          std::int32_t width, std::int32_t height, std::int32_t r, std::int32_t g,
                          std::int32_t b);

// Blended one-pixel lines, both ends inclusive and in either order. hline draws in row y and does
// not use y1; vline draws in column x and does not use x1.
void orx_pixbuf_hline(UiEngine* engine, Pixbuf* pixbuf, std::int32_t x0, std::int32_t y,
                      std::int32_t x1, std::int32_t y1, std::int32_t r, std::int32_t g,
                      std::int32_t b, std::int32_t alpha);
void orx_pixbuf_vline(UiEngine* engine, Pixbuf* pixbuf, std::int32_t x, std::int32_t y0,
                      std::int32_t x1, std::int32_t y1, std::int32_t r, std::int32_t g,
                      std::int32_t b, std::int32_t alpha);

// One pixel, blended or stored.
void orx_pixbuf_blend_pixel(UiEngine* engine, Pixbuf* pixbuf, std::int32_t x, std::int32_t y,
                            std::int32_t r, std::int32_t g, std::int32_t b, std::int32_t alpha);
void orx_pixbuf_set_pixel(UiEngine* engine, Pixbuf* pixbuf, std::int32_t x, std::int32_t y,
                          std::int32_t r, std::int32_t g, std::int32_t b, std::int32_t a);
