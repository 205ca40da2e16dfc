// canvas.h: an image that a test paints on and looks at, and the pixels that the drawing rules say
// should be there.
//
// The rules are worked out here anew, pixel by pixel and slowly, so that a widget and the drawing
// code that it uses are both checked. Text is the exception: it is drawn by the text renderer, at
// the place that the test names.
#pragma once

#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/text/text_renderer.h"

#include <cstdint>
#include <string>

struct Pixel {
    int r = 0;
    int g = 0;
    int b = 0;
    friend bool operator==(const Pixel&, const Pixel&) = default;
};

// What a colour leaves of a channel at an alpha of 0 to 255.
[[nodiscard]] Pixel blended(Pixel below, Pixel colour, int alpha);

class Canvas {
public:
    // Filled with a colour that no widget uses, so that every painted pixel shows.
    explicit Canvas(int width, int height, Pixel ground = {10, 20, 30});
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    [[nodiscard]] Pixbuf* image() { return image_; }
    [[nodiscard]] int width() const { return static_cast<int>(image_->width); }
    [[nodiscard]] int height() const { return static_cast<int>(image_->height); }
    [[nodiscard]] Pixel at(int x, int y) const {
        const std::uint8_t* p = image_->pixels + y * static_cast<int>(image_->rowstride) + x * 4;
        return {p[0], p[1], p[2]};
    }
    void set(int x, int y, Pixel colour);

    // Rectangles by first column and row, width and height; lines with both ends included. Alpha
    // 255 blends too, and leaves its trace.
    void fill(int x, int y, int w, int h, Pixel colour);
    void row(int left, int right, int y, Pixel colour, int alpha = 255);
    void column(int x, int top, int bottom, Pixel colour, int alpha = 255);
    void border(int x, int y, int w, int h, Pixel colour);

private:
    Pixbuf* image_;
};

// Empty when all pixels are the same, else the first that differs and how many do.
[[nodiscard]] std::string difference(const Canvas& actual, const Canvas& expected);

// The built-in font, with UTF-8 on or off.
class Font {
public:
    explicit Font(bool utf8 = true);
    ~Font();
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;
    [[nodiscard]] TextRenderer* text() { return text_; }

private:
    TextRenderer* text_;
};
