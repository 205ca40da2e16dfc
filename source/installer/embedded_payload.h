// embedded_payload.h: the bytes that the executable carries for the person.
//
// One stretch of initialised data, in this order: the table of the installer's own pictures, the
// plug-in archive (gzip'd tar), the desktop icon (PNG). The archive ends where the icon begins, the
// icon ends at zeph_payload_end: [zeph_payload_archive, zeph_payload_icon) and
// [zeph_payload_icon, zeph_payload_end). All of it is read-only and lives as long as the process.
// The build fails when the archive's length is not product.archive_size.
#pragma once

// Places in zeph_payload_images. Each picture is an inline image (see inline_image.h).
inline constexpr int payload_splash_picture = 0;     // 600x400
inline constexpr int payload_background_picture = 1; // 600x336
inline constexpr int payload_window_icon = 2;        // 64x64
inline constexpr int payload_image_count = 3;

extern "C" {
#pragma GCC visibility push(hidden)
extern const unsigned char* const zeph_payload_images[payload_image_count];
extern const unsigned char zeph_payload_archive[];
extern const unsigned char zeph_payload_icon[];
extern const unsigned char zeph_payload_end[];
#pragma GCC visibility pop
}
