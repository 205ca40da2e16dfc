// canvas.cpp: the drawing rules, the slow way.

#include "unit/widgets/canvas.h"

#include <algorithm>
#include <cmath>

Pixel blended(Pixel below, Pixel colour, int alpha) {
    const auto channel = [alpha](int d, int c) {
        return d + static_cast<int>(std::floor((c - d) * alpha / 256.0));
    };
    return {channel(below.r, colour.r), channel(below.g, colour.g), channel(below.b, colour.b)};
}

Canvas::Canvas(int width, int height, Pixel ground)
    : image_(orx_pixbuf_new(nullptr, width, height)) {
    fill(0, 0, width, height, ground);
}

Canvas::~Canvas() {
    orx_pixbuf_free(nullptr, image_);
}

void Canvas::set(int x, int y, Pixel colour) {
    std::uint8_t* p = image_->pixels + y * static_cast<int>(image_->rowstride) + x * 4;
    p[0] = static_cast<std::uint8_t>(colour.r);
    p[1] = static_cast<std::uint8_t>(colour.g);
    p[2] = static_cast<std::uint8_t>(colour.b);
}

void Canvas::fill(int x, int y, int w, int h, Pixel colour) {
    for (int j = y; j < y + h; ++j) {
        for (int i = x; i < x + w; ++i) {
            set(i, j, colour);
        }
    }
}

void Canvas::row(int left, int right, int y, Pixel colour, int alpha) {
    for (int x = std::min(left, right); x <= std::max(left, right); ++x) {
        set(x, y, blended(at(x, y), colour, alpha));
    }
}

void Canvas::column(int x, int top, int bottom, Pixel colour, int alpha) {
    for (int y = std::min(top, bottom); y <= std::max(top, bottom); ++y) {
        set(x, y, blended(at(x, y), colour, alpha));
    }
}

void Canvas::border(int x, int y, int w, int h, Pixel colour) {
    row(x + 1, x + w - 1, y, colour);
    row(x + 1, x + w - 1, y + h, colour);
    column(x, y + 1, y + h - 1, colour);
    column(x + w, y + 1, y + h - 1, colour);
}

std::string difference(const Canvas& actual, const Canvas& expected) {
    int count = 0;
    std::string first;
    for (int y = 0; y < actual.height(); ++y) {
        for (int x = 0; x < actual.width(); ++x) {
            const Pixel is = actual.at(x, y);
            const Pixel should = expected.at(x, y);
            if (is == should) {
                continue;
            }
            if (++count == 1) {
                const auto text = [](Pixel p) {
                    return std::to_string(p.r) + "," + std::to_string(p.g) + "," +
                           std::to_string(p.b);
                };
                first = "(" + std::to_string(x) + ", " + std::to_string(y) + ") is " + text(is) +
                        ", should be " + text(should);
            }
        }
    }
    return count == 0 ? "" : std::to_string(count) + " pixels differ, the first: " + first;
}

Font::Font(bool utf8) : text_(text_renderer_new(nullptr)) {
    text_->utf8 = utf8 ? 1 : 0;
}

Font::~Font() {
    text_renderer_destroy(text_);
}
