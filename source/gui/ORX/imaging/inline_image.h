// inline_image.h: images that are compiled into the executable.
//
// A blob is a GdkPixdata record (the published GdkPixbuf serialisation): six big-endian 32-bit
// words (magic "GdkP", length, type 0x01010002, rowstride, width, height), then rows of R, G, B, A.
// Pure, no display, no lock. The engine argument is not used and may be null.
#pragma once

#include "gui/ORX/core/window_id.h"

struct Pixbuf;

// A Pixbuf that shares the blob's pixels, or null (and a line on standard output) when the magic
// is not there. Length and type are not looked at: the blob is taken to hold as many pixels as its
// width and height say. Free with orx_pixbuf_free_inline, which leaves the blob alone and ignores
// null; never with orx_pixbuf_free. The pixels are read-only, and last as long as the blob.
[[nodiscard]] Pixbuf* orx_pixbuf_new_from_inline(UiEngine* engine, const unsigned char* blob);
void orx_pixbuf_free_inline(UiEngine* engine, Pixbuf* pixbuf);
