// pixel_run.h: what keeps unclipped drawing inside the memory of the images it draws on.
//
// Drawing on a Pixbuf does not clip: pixel (x, y) is pixel y * width + x of the buffer, wherever
// that falls. Rectangles and runs of such pixels are cut here to those that the buffers really
// have. Any coordinates and sizes may come in: everything is 64-bit, where nothing can overflow.
#pragma once

#include "gui/ORX/imaging/pixbuf.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

// Rectangles are no wider and no higher than this, which no screen reaches; it keeps the time
// bounded that a nonsensical rectangle can take.
inline constexpr std::int32_t largest_extent = 65535;

struct RowRange {
    std::int64_t first;
    std::int64_t end; // exclusive
};

struct PixelRun {
    std::int64_t source;      // index of the first pixel that is read
    std::int64_t destination; // index of the first pixel that is written
    std::int64_t count;
};

// Number of pixels of the image, 0 when there is nothing to draw on.
inline std::int64_t pixel_count(const Pixbuf* pixbuf) {
    if (pixbuf == nullptr || pixbuf->pixels == nullptr) {
        return 0;
    }
    constexpr std::uint64_t most = std::uint64_t{1} << 62U;
    return static_cast<std::int64_t>(
        std::min(std::uint64_t{pixbuf->width} * std::uint64_t{pixbuf->height}, most));
}

inline std::int64_t pixel_index(const Pixbuf* pixbuf, std::int64_t x, std::int64_t y) {
    return y * static_cast<std::int64_t>(pixbuf->width) + x;
}

inline std::uint8_t* pixel_at(const Pixbuf* pixbuf, std::int64_t index) {
    return pixbuf->pixels + static_cast<std::size_t>(index) * 4;
}

inline std::int64_t floor_divide(std::int64_t dividend, std::int64_t divisor) {
    return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

// Rows of a rectangle at (x, y) that touch the image's buffer; the image has at least one pixel.
inline RowRange rows_in_reach(const Pixbuf* pixbuf, std::int64_t x, std::int64_t y,
                              std::int64_t width, RowRange rows) {
    const std::int64_t columns = pixbuf->width;
    return {std::max(rows.first, floor_divide(-x - width, columns) + 1 - y),
            std::min(rows.end, floor_divide(pixel_count(pixbuf) - x - 1, columns) + 1 - y)};
}

// Cuts the run to source pixels [0, source_pixels) and destination pixels [0, destination_pixels).
inline PixelRun cut_run(PixelRun run, std::int64_t source_pixels, std::int64_t destination_pixels) {
    const std::int64_t skipped = std::max<std::int64_t>({0, -run.source, -run.destination});
    run.source += skipped;
    run.destination += skipped;
    run.count -= skipped;
    run.count =
        std::min({run.count, source_pixels - run.source, destination_pixels - run.destination});
    return run;
}

// Calls action(source bytes, destination bytes, pixels) for each row of a rectangle, cut to what
// the two images have.
template <typename Action>
void for_each_row(const Pixbuf* source, std::int32_t source_x, std::int32_t source_y,
                  Pixbuf* destination, std::int32_t destination_x, std::int32_t destination_y,
                  std::int32_t width, std::int32_t height, Action action) {
    const std::int64_t source_pixels = pixel_count(source);
    const std::int64_t destination_pixels = pixel_count(destination);
    if (source_pixels == 0 || destination_pixels == 0 || width < 1) {
        return;
    }
    const std::int64_t columns = std::min(width, largest_extent);
    RowRange rows{0, std::min(height, largest_extent)};
    rows = rows_in_reach(source, source_x, source_y, columns, rows);
    rows = rows_in_reach(destination, destination_x, destination_y, columns, rows);
    for (std::int64_t row = rows.first; row < rows.end; ++row) {
        const PixelRun run =
            cut_run({pixel_index(source, source_x, source_y + row),
                     pixel_index(destination, destination_x, destination_y + row), columns},
                    source_pixels, destination_pixels);
        if (run.count > 0) {
            action(pixel_at(source, run.source), pixel_at(destination, run.destination),
                   static_cast<std::size_t>(run.count));
        }
    }
}
