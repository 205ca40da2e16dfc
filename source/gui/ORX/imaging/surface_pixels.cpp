// surface_pixels.cpp: the engine's own put-pixel and get-pixel, and writing rows with them.
#include "gui/ORX/imaging/surface_pixels.h"

#include "gui/ORX/imaging/channel_shift.h"
#include "gui/ORX/imaging/row_kernels.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>

namespace {

// The bytes of a pixel in the order in which they lie in memory.
template <int bytes, bool most_significant_first>
void store_pixel(std::uint8_t* memory, std::uint32_t pixel) {
    for (int i = 0; i < bytes; ++i) {
        const int place = most_significant_first ? bytes - 1 - i : i;
        memory[i] = static_cast<std::uint8_t>(pixel >> (8 * place));
    }
}

template <int bytes, bool most_significant_first>
std::uint32_t load_pixel(const std::uint8_t* memory) {
    std::uint32_t pixel = 0;
    for (int i = 0; i < bytes; ++i) {
        const int place = most_significant_first ? bytes - 1 - i : i;
        pixel |= std::uint32_t{memory[i]} << (8 * place);
    }
    return pixel;
}

std::uint8_t* pixel_memory(const XImage* image, std::int64_t x, std::int64_t y, int bytes) {
    return reinterpret_cast<std::uint8_t*>(image->data) + y * image->bytes_per_line + x * bytes;
}

template <int bytes, bool most_significant_first>
int put_pixel(XImage* image, int x, int y, unsigned long pixel) {
    store_pixel<bytes, most_significant_first>(pixel_memory(image, x, y, bytes),
                                               static_cast<std::uint32_t>(pixel));
    return 1;
}

// Bits above the image's depth read as 0.
template <int bytes, bool most_significant_first>
unsigned long get_pixel(XImage* image, int x, int y) {
    const std::uint32_t depth_bits =
        image->depth >= 32 ? 0xFFFFFFFFU : (1U << static_cast<unsigned>(image->depth)) - 1U;
    return load_pixel<bytes, most_significant_first>(pixel_memory(image, x, y, bytes)) & depth_bits;
}

template <int bytes, bool most_significant_first> void install(XImage* image) {
    image->f.put_pixel = put_pixel<bytes, most_significant_first>;
    image->f.get_pixel = get_pixel<bytes, most_significant_first>;
}

SurfaceRoute route_of(const XImage* image) {
    if (image->f.put_pixel == put_pixel<2, false>) {
        return SurfaceRoute::bytes16_lsb;
    }
    if (image->f.put_pixel == put_pixel<2, true>) {
        return SurfaceRoute::bytes16_msb;
    }
    if (image->f.put_pixel == put_pixel<4, false>) {
        return SurfaceRoute::bytes32_lsb;
    }
    if (image->f.put_pixel == put_pixel<4, true>) {
        return SurfaceRoute::bytes32_msb;
    }
    return SurfaceRoute::image_function;
}

bool is_whole_byte(std::uint32_t mask) {
    return mask == 0xFFU || mask == 0xFF00U || mask == 0xFF0000U || mask == 0xFF000000U;
}

std::uint32_t row_pixel(const SurfaceWriter& writer, const std::uint8_t* rgba) {
    return place_channel(rgba[0], writer.masks[0], writer.shifts[0]) |
           place_channel(rgba[1], writer.masks[1], writer.shifts[1]) |
           place_channel(rgba[2], writer.masks[2], writer.shifts[2]);
}

template <int bytes, bool most_significant_first>
void write_row(const SurfaceWriter& writer, std::int64_t x, std::int64_t y,
               const std::uint8_t* pixels, std::size_t count) {
    std::uint8_t* memory = pixel_memory(writer.surface, x, y, bytes);
    const SurfaceWriter format = writer; // a copy, which no store into the row can change
    for (std::size_t i = 0; i < count; ++i) {
        store_pixel<bytes, most_significant_first>(memory + i * bytes,
                                                   row_pixel(format, pixels + i * 4));
    }
}

} // namespace

void surface_install_functions(ImageSurface* surface) {
    const bool msb = surface->byte_order == MSBFirst;
    if (surface->format != ZPixmap || surface->xoffset != 0) {
        return;
    }
    if (surface->bits_per_pixel == 16) {
        msb ? install<2, true>(surface) : install<2, false>(surface);
    } else if (surface->bits_per_pixel == 32) {
        msb ? install<4, true>(surface) : install<4, false>(surface);
    }
}

SurfaceWriter surface_writer(ImageSurface* surface) {
    SurfaceWriter writer{};
    writer.surface = surface;
    writer.route = route_of(surface);
    const unsigned long masks[3] = {surface->red_mask, surface->green_mask, surface->blue_mask};
    bool whole_bytes =
        writer.route == SurfaceRoute::bytes32_lsb || writer.route == SurfaceRoute::bytes32_msb;
    for (std::size_t channel = 0; channel < 3; ++channel) {
        const auto mask = static_cast<std::uint32_t>(masks[channel]);
        const std::uint32_t shift = channel_shift(mask);
        writer.masks[channel] = mask;
        writer.shifts[channel] = shift;
        writer.byte_shifts[channel] =
            writer.route == SurfaceRoute::bytes32_msb ? (24U - shift) & 31U : shift;
        whole_bytes = whole_bytes && is_whole_byte(mask);
    }
    // Two channels in one byte would mix, which the byte-wise way cannot do.
    const std::uint32_t together = writer.masks[0] | writer.masks[1] | writer.masks[2];
    writer.whole_bytes = whole_bytes && std::popcount(together) == 24;
    return writer;
}

unsigned long surface_pixel(const SurfaceWriter& writer, std::uint32_t r, std::uint32_t g,
                            std::uint32_t b) {
    return place_channel(r, writer.masks[0], writer.shifts[0]) |
           place_channel(g, writer.masks[1], writer.shifts[1]) |
           place_channel(b, writer.masks[2], writer.shifts[2]);
}

std::uint32_t surface_channel(const SurfaceWriter& writer, unsigned long pixel,
                              std::size_t channel) {
    return read_channel(static_cast<std::uint32_t>(pixel), writer.masks[channel],
                        writer.shifts[channel]);
}

void surface_write_row(const SurfaceWriter& writer, std::int64_t x, std::int64_t y,
                       const std::uint8_t* pixels, std::size_t count) {
    if (writer.whole_bytes) {
        best_row_kernels().place_bytes(pixels, count, writer.byte_shifts,
                                       pixel_memory(writer.surface, x, y, 4));
        return;
    }
    switch (writer.route) {
    case SurfaceRoute::bytes16_lsb:
        write_row<2, false>(writer, x, y, pixels, count);
        break;
    case SurfaceRoute::bytes16_msb:
        write_row<2, true>(writer, x, y, pixels, count);
        break;
    case SurfaceRoute::bytes32_lsb:
        write_row<4, false>(writer, x, y, pixels, count);
        break;
    case SurfaceRoute::bytes32_msb:
        write_row<4, true>(writer, x, y, pixels, count);
        break;
    case SurfaceRoute::image_function:
        for (std::size_t i = 0; i < count; ++i) {
            XPutPixel(writer.surface, static_cast<int>(x) + static_cast<int>(i),
                      static_cast<int>(y), row_pixel(writer, pixels + i * 4));
        }
        break;
    }
}
