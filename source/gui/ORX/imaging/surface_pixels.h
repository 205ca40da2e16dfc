// surface_pixels.h: the pixels of a surface, whatever the screen's format.
//
// Pixels go through the image's own put-pixel and get-pixel. Surfaces made here carry functions of
// the engine's own, one for each of the common formats, and a row writer that finds one of them in
// the image writes the whole row the same way without a call for each pixel. Any other image is
// written through the function it carries.
//
// Device pixels; callers hold x_lock and stay inside the surface.
#pragma once

#include "gui/ORX/imaging/image_surface.h"

#include <cstddef>
#include <cstdint>

enum class SurfaceRoute {
    image_function, // call what the image carries
    bytes16_lsb,    // the engine's own: 16 or 32 bits a pixel, least or most significant byte first
    bytes16_msb,
    bytes32_lsb,
    bytes32_msb,
};

// How the channels lie in the surface's pixels, and how pixels are written.
struct SurfaceWriter {
    ImageSurface* surface;
    SurfaceRoute route;
    bool whole_bytes;             // every channel is a byte of a 32-bit pixel, and in memory
    std::uint32_t byte_shifts[3]; // lies at this bit of a little-endian word
    std::uint32_t masks[3];       // red, green, blue
    std::uint32_t shifts[3];
};

// Puts the engine's own functions into an image whose format they fit; leaves others alone.
void surface_install_functions(ImageSurface* surface);

[[nodiscard]] SurfaceWriter surface_writer(ImageSurface* surface);

// The pixel of a colour, and one channel (0 red, 1 green, 2 blue) of a pixel.
[[nodiscard]] unsigned long surface_pixel(const SurfaceWriter& writer, std::uint32_t r,
                                          std::uint32_t g, std::uint32_t b);
[[nodiscard]] std::uint32_t surface_channel(const SurfaceWriter& writer, unsigned long pixel,
                                            std::size_t channel);

// Writes a row of R, G, B, A pixels from (x, y) on; their alpha is dropped.
void surface_write_row(const SurfaceWriter& writer, std::int64_t x, std::int64_t y,
                       const std::uint8_t* pixels, std::size_t count);
