// pixbuf.cpp: making, freeing, filling and copying RGBA images.
#include "gui/ORX/imaging/pixbuf.h"

#include "gui/ORX/imaging/pixel_fill.h"
#include "gui/ORX/imaging/pixel_run.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace {

// Filters may read a little past the edges of an image, so there is room behind them.
constexpr std::size_t margin_bytes_per_row = 32;
constexpr std::size_t margin_rows = 8;
// No screen comes near this; whatever asks for more has lost its way.
constexpr std::size_t largest_buffer = 0x7FFFFFFF;

std::uint8_t* allocate_pixels(std::uint32_t width, std::uint32_t height) {
    const std::size_t row_bytes = std::size_t{width} * 4 + margin_bytes_per_row;
    const std::size_t rows = std::size_t{height} + margin_rows;
    if (row_bytes > largest_buffer / rows) {
        return nullptr;
    }
    return static_cast<std::uint8_t*>(std::malloc(row_bytes * rows));
}

void set_pixels(Pixbuf* pixbuf, std::uint8_t r, std::uint8_t g, std::uint8_t b, std::uint8_t a) {
    if (pixel_count(pixbuf) > 0) {
        fill_pixels(pixbuf->pixels, static_cast<std::size_t>(pixel_count(pixbuf)), r, g, b, a);
    }
}

} // namespace

Pixbuf* orx_pixbuf_new(UiEngine*, std::int32_t width, std::int32_t height) {
    const std::uint32_t columns = width < 1 ? 0 : static_cast<std::uint32_t>(width);
    const std::uint32_t rows = height < 1 ? 0 : static_cast<std::uint32_t>(height);
    std::uint8_t* pixels = allocate_pixels(columns, rows);
    if (pixels == nullptr) {
        return nullptr;
    }
    auto* pixbuf = new (std::nothrow) Pixbuf{columns, rows, columns * 4, 4, pixels};
    if (pixbuf == nullptr) {
        std::free(pixels);
        return nullptr;
    }
    set_pixels(pixbuf, 0, 0, 0, 255);
    return pixbuf;
}

void orx_pixbuf_free(UiEngine*, Pixbuf* pixbuf) {
    if (pixbuf != nullptr) {
        std::free(pixbuf->pixels);
        delete pixbuf;
    }
}

void orx_pixbuf_fill(UiEngine*, Pixbuf* pixbuf, std::int32_t r, std::int32_t g, std::int32_t b,
                     std::int32_t a) {
    if (pixbuf == nullptr) {
        return;
    }
    if (pixbuf->pixels == nullptr) {
        pixbuf->pixels = allocate_pixels(pixbuf->width, pixbuf->height);
    }
    set_pixels(pixbuf, static_cast<std::uint8_t>(r), static_cast<std::uint8_t>(g),
               static_cast<std::uint8_t>(b), static_cast<std::uint8_t>(a));
}

void orx_pixbuf_clear(UiEngine* engine, Pixbuf* pixbuf) {
    orx_pixbuf_fill(engine, pixbuf, 0, 0, 0, 255);
}

void orx_pixbuf_copy_area(UiEngine*, const Pixbuf* source, Pixbuf* destination,
                          std::int32_t source_x, std::int32_t source_y, std::int32_t destination_x,
                          std::int32_t destination_y, std::int32_t width, std::int32_t height) {
    for_each_row(source, source_x, source_y, destination, destination_x, destination_y, width,
                 height, [](const std::uint8_t* from, std::uint8_t* to, std::size_t count) {
                     std::memmove(to, from, count * 4);
                 });
}
