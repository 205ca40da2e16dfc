// embedded_artwork.h: the pictures of the installer's own screens, carried in the executable.
//
// Each is an inline image: a header of 24 bytes (six big-endian 32-bit words: "GdkP", length of the
// whole blob, 0x01010002, bytes a row, width, height) and then the rows of R, G, B, A bytes, not
// premultiplied. orx_pixbuf_new_from_inline and orx_window_set_icon take the address as it is. The
// bytes are read-only, aligned to 16, owned by nobody and there as long as the process; any thread
// may read them without a lock. The build converts them from PNG files and refuses other sizes.
#pragma once

extern "C" {
#pragma GCC visibility push(hidden)
extern const unsigned char inline_image_splash[];      // 600x400, opaque
extern const unsigned char inline_image_background[];  // 600x336, opaque, black at its lower edge
extern const unsigned char inline_image_window_icon[]; // 64x64, transparent corners
extern const unsigned char inline_image_folder_icon[]; // 64x64, the folder browser's
#pragma GCC visibility pop
}
