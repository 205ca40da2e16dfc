// pixbuf_drawing.cpp: blending images, lines and pixels into an RGBA image.
#include "gui/ORX/imaging/pixbuf.h"

#include "gui/ORX/imaging/blend.h"
#include "gui/ORX/imaging/pixel_fill.h"
#include "gui/ORX/imaging/pixel_run.h"
#include "gui/ORX/imaging/row_kernels.h"

namespace {

struct BlendColour {
    std::uint32_t r;
    std::uint32_t g;
    std::uint32_t b;
    std::uint32_t alpha;
};

BlendColour blend_colour(std::int32_t r, std::int32_t g, std::int32_t b, std::int32_t alpha) {
    return {static_cast<std::uint32_t>(r), static_cast<std::uint32_t>(g),
            static_cast<std::uint32_t>(b), static_cast<std::uint32_t>(alpha)};
}

void blend_into(std::uint8_t* pixel, const BlendColour& colour) {
    pixel[0] = blend_channel(pixel[0], colour.r, colour.alpha);
    pixel[1] = blend_channel(pixel[1], colour.g, colour.alpha);
    pixel[2] = blend_channel(pixel[2], colour.b, colour.alpha);
}

} // namespace

void orx_pixbuf_composite(UiEngine*, const Pixbuf* source, Pixbuf* destination,
                          std::int32_t source_x, std::int32_t source_y, std::int32_t destination_x,
                          std::int32_t destination_y, std::int32_t width, std::int32_t height) {
    for_each_row(source, source_x, source_y, destination, destination_x, destination_y, width,
                 height, best_row_kernels().blend_row);
}

void orx_pixbuf_fill_rect(UiEngine*, Pixbuf* pixbuf, std::int32_t x, std::int32_t y,
                          std::int32_t width, std::int32_t height, std::int32_t r, std::int32_t g,
                          std::int32_t b) {
    for_each_row(pixbuf, x, y, pixbuf, x, y, width, height,
                 [r, g, b](const std::uint8_t*, std::uint8_t* pixels, std::size_t count) {
                     fill_pixels(pixels, count, static_cast<std::uint8_t>(r),
                                 static_cast<std::uint8_t>(g), static_cast<std::uint8_t>(b), 255);
                 });
}

void orx_pixbuf_hline(UiEngine*, Pixbuf* pixbuf, std::int32_t x0, std::int32_t y, std::int32_t x1,
                      std::int32_t, std::int32_t r, std::int32_t g, std::int32_t b,
                      std::int32_t alpha) {
    const std::int64_t pixels = pixel_count(pixbuf);
    if (pixels == 0) {
        return;
    }
    const std::int64_t left = std::min(x0, x1);
    const std::int64_t right = std::max(x0, x1);
    const std::int64_t start = pixel_index(pixbuf, left, y);
    const PixelRun run = cut_run({start, start, right - left + 1}, pixels, pixels);
    const BlendColour colour = blend_colour(r, g, b, alpha);
    for (std::int64_t i = 0; i < run.count; ++i) {
        blend_into(pixel_at(pixbuf, run.destination + i), colour);
    }
}

void orx_pixbuf_vline(UiEngine*, Pixbuf* pixbuf, std::int32_t x, std::int32_t y0, std::int32_t,
                      std::int32_t y1, std::int32_t r, std::int32_t g, std::int32_t b,
                      std::int32_t alpha) {
    if (pixel_count(pixbuf) == 0) {
        return;
    }
    const RowRange rows = rows_in_reach(
        pixbuf, x, 0, 1, {std::min(y0, y1), static_cast<std::int64_t>(std::max(y0, y1)) + 1});
    const BlendColour colour = blend_colour(r, g, b, alpha);
    for (std::int64_t y = rows.first; y < rows.end; ++y) {
        blend_into(pixel_at(pixbuf, pixel_index(pixbuf, x, y)), colour);
    }
}

void orx_pixbuf_blend_pixel(UiEngine*, Pixbuf* pixbuf, std::int32_t x, std::int32_t y,
                            std::int32_t r, std::int32_t g, std::int32_t b, std::int32_t alpha) {
    const std::int64_t pixels = pixel_count(pixbuf);
    if (pixels == 0) {
        return;
    }
    const std::int64_t index = pixel_index(pixbuf, x, y);
    if (index >= 0 && index < pixels) {
        blend_into(pixel_at(pixbuf, index), blend_colour(r, g, b, alpha));
    }
}

void orx_pixbuf_set_pixel(UiEngine*, Pixbuf* pixbuf, std::int32_t x, std::int32_t y, std::int32_t r,
                          std::int32_t g, std::int32_t b, std::int32_t a) {
    const std::int64_t pixels = pixel_count(pixbuf);
    if (pixels == 0) {
        return;
    }
    const std::int64_t index = pixel_index(pixbuf, x, y);
    if (index >= 0 && index < pixels) {
        fill_pixels(pixel_at(pixbuf, index), 1, static_cast<std::uint8_t>(r),
                    static_cast<std::uint8_t>(g), static_cast<std::uint8_t>(b),
                    static_cast<std::uint8_t>(a));
    }
}
