// sheet_picture.cpp: reads the sheet's picture and cuts the glyphs out of it.
#include "font_sheet.h"

#include <png.h>

#include <cstdio>

namespace {

bool fail(const std::string& file, int code, const SheetGlyph& glyph, const std::string& what) {
    std::fprintf(stderr, "%s:%d: code point %d: %s\n", file.c_str(), glyph.line, code,
                 what.c_str());
    return false;
}

} // namespace

bool read_sheet(const std::string& file, FontSheet& sheet) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, file.c_str())) {
        std::fprintf(stderr, "%s: %s\n", file.c_str(), image.message);
        return false;
    }
    const char* wrong = nullptr;
    if (image.width != sheet_size || image.height != sheet_size)
        wrong = "the sheet must be 320 x 320 pixels";
    else if (image.format != PNG_FORMAT_GRAY)
        wrong = "the sheet must be saved as 8-bit greyscale without alpha";
    if (wrong) {
        std::fprintf(stderr, "%s: %s\n", file.c_str(), wrong);
        png_image_free(&image);
        return false;
    }
    sheet.pixels.resize(sheet_pixels);
    if (!png_image_finish_read(&image, nullptr, sheet.pixels.data(), sheet_size, nullptr)) {
        std::fprintf(stderr, "%s: %s\n", file.c_str(), image.message);
        return false;
    }
    return true;
}

bool check_and_cut(const std::string& metrics_file, FontSheet& sheet) {
    for (int code = 0; code < 256; ++code) {
        SheetGlyph& glyph = sheet.glyphs[static_cast<size_t>(code)];
        const int left = pen_column + glyph.x_bearing, top = baseline_row - glyph.top_bearing;
        const int right = left + glyph.width, bottom = top + glyph.height;
        const bool empty = glyph.width == 0 && glyph.height == 0;
        if (!empty && (glyph.width < 1 || glyph.height < 1 || left < 1 || top < 1 ||
                       right > cell_size || bottom > cell_size))
            return fail(metrics_file, code, glyph, "the bitmap lies outside its cell");
        for (int row = 1; row < cell_size; ++row)
            for (int column = 1; column < cell_size; ++column) {
                const unsigned char ink = sheet.pixels[cell_pixel_index(code, column, row)];
                const bool inside = row >= top && row < bottom && column >= left && column < right;
                if (inside)
                    glyph.coverage.push_back(ink);
                else if (ink)
                    return fail(metrics_file, code, glyph,
                                "ink outside the declared box, at column " +
                                    std::to_string(column) + ", row " + std::to_string(row) +
                                    " of its cell");
            }
    }
    return true;
}
