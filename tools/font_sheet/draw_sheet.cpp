// draw_sheet: draws a fresh font sheet and metrics table from an outline font with FreeType.
//
// Not part of the build: the sheet in resources/font is the source of the font, and this is how
// its first state was made. It overwrites both files, so hand edits are lost.
//
//   draw_font_sheet OUTLINE.ttf PIXEL_SIZE SHEET.png METRICS.txt
#include "sheet_geometry.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include <png.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <vector>

namespace {

struct Drawing {
    int width = 0, height = 0, advance = 0, x_bearing = 0, top_bearing = 0;
    std::vector<unsigned char> coverage;
    double sharpness = 0;
};

bool is_shown(int code) {
    return (code >= 32 && code < 127) || code >= 160;
}

// Code points whose box is settled by the layout: their placement may not move the bitmap's box.
bool box_is_settled(int code) {
    constexpr int settled[] = {'*', '.', 'A', 'W', '_', 'g', 'j', 169, 196, 255};
    return std::find(std::begin(settled), std::end(settled), code) != std::end(settled);
}

// Moves the accent of an accented letter, the contours wholly above its base letter. A capital's
// accent comes down to row 11 so that lines of text keep their distance.
void move_accent(FT_Outline& outline, int code, FT_Pos shift) {
    const FT_Pos base_top = code < 224 ? 576 : 448;
    for (int contour = 0, first = 0; contour < outline.n_contours; ++contour) {
        const int last = outline.contours[contour];
        FT_Pos bottom = outline.points[first].y, top = bottom;
        for (int point = first; point <= last; ++point) {
            bottom = std::min(bottom, outline.points[point].y);
            top = std::max(top, outline.points[point].y);
        }
        const FT_Pos down = code < 224 ? std::max<FT_Pos>(0, top - 704) : 0;
        for (int point = first; point <= last && bottom >= base_top - 8; ++point) {
            outline.points[point].x += shift;
            outline.points[point].y -= down;
        }
        first = last + 1;
    }
}

// Draws the glyph moved right by shift, its accent by accent_shift more (1/64 pixel). Sharpness
// is the share of the ink that stands in full pixels.
bool draw(FT_Face face, int code, FT_Pos shift, FT_Pos accent_shift, Drawing& out) {
    // Light hinting fits heights to whole rows and leaves the widths alone.
    if (FT_Load_Char(face, static_cast<FT_ULong>(code), FT_LOAD_NO_BITMAP | FT_LOAD_TARGET_LIGHT))
        return false;
    FT_GlyphSlot slot = face->glyph;
    FT_Outline_Translate(&slot->outline, shift, 0);
    if (code >= 192)
        move_accent(slot->outline, code, accent_shift);
    if (FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL))
        return false;
    // FreeType's box may have an outer row or column without any ink.
    const FT_Bitmap& bitmap = slot->bitmap;
    const int columns = static_cast<int>(bitmap.width), rows = static_cast<int>(bitmap.rows);
    int left = columns, right = 0, top = rows, bottom = 0;
    double ink = 0, squares = 0;
    for (int row = 0; row < rows; ++row) {
        const unsigned char* line = bitmap.buffer + static_cast<std::ptrdiff_t>(row) * bitmap.pitch;
        for (int column = 0; column < columns; ++column) {
            const double value = line[column] / 255.0;
            if (value <= 0)
                continue;
            ink += value;
            squares += value * value;
            left = std::min(left, column);
            right = std::max(right, column + 1);
            top = std::min(top, row);
            bottom = std::max(bottom, row + 1);
        }
    }
    out = Drawing();
    if (ink <= 0)
        return true;
    out.width = right - left;
    out.height = bottom - top;
    out.x_bearing = slot->bitmap_left + left;
    out.top_bearing = slot->bitmap_top - top;
    for (int row = top; row < bottom; ++row) {
        const unsigned char* line = bitmap.buffer + static_cast<std::ptrdiff_t>(row) * bitmap.pitch;
        out.coverage.insert(out.coverage.end(), line + left, line + right);
    }
    out.sharpness = squares / ink;
    return true;
}

// The whole-pixel advance takes half of the rounding on each side; from there the glyph may move
// a little further to where its stems fall on whole pixels.
bool place(FT_Face face, int code, Drawing& best) {
    Drawing plain;
    if (!draw(face, code, 0, 0, plain))
        return false;
    const double exact = static_cast<double>(face->glyph->linearHoriAdvance) / 65536.0;
    // The arm of "r" would touch its neighbour in the four pixels that rounding gives.
    const int advance = code == 'r' ? 5 : std::clamp(static_cast<int>(std::lround(exact)), 3, 11);
    const double centred = (advance - exact) / 2 * 64;
    FT_Pos best_shift = 0;
    double best_score = -1;
    for (int step = -28; step <= 28; ++step) {
        Drawing candidate;
        const FT_Pos shift = std::lround(centred) + step;
        if (!draw(face, code, shift, 0, candidate))
            return false;
        if (box_is_settled(code) &&
            (candidate.width != plain.width || candidate.x_bearing != plain.x_bearing))
            continue;
        const double away = step / 64.0;
        const double score = 1 + candidate.sharpness - 0.9 * away * away;
        if (score > best_score) {
            best_score = score;
            best_shift = shift;
            best = candidate;
        }
    }
    best_score = -1;
    for (int step = -24; step <= 24; ++step) {
        Drawing candidate;
        if (!draw(face, code, best_shift, step, candidate))
            return false;
        const double away = step / 64.0;
        const double score = 1 + candidate.sharpness - 0.1 * away * away;
        if (score > best_score &&
            (candidate.width == best.width && candidate.x_bearing == best.x_bearing)) {
            best_score = score;
            best = candidate;
        }
    }
    best.advance = advance;
    return true;
}

Drawing box_glyph() {
    Drawing box{6, 12, 6, 0, 9, {}, 0};
    for (int row = 0; row < 12; ++row)
        for (int column = 0; column < 6; ++column) {
            const bool edge = row == 0 || row == 11 || column == 0 || column == 5;
            box.coverage.push_back(edge ? 200 : 0);
        }
    return box;
}

void draw_guides(std::vector<unsigned char>& sheet) {
    for (int code = 0; code < 256; ++code) {
        for (int step = 0; step < cell_size; ++step) {
            sheet[cell_pixel_index(code, step, 0)] = step == pen_column ? mark_grey : guide_grey;
            sheet[cell_pixel_index(code, 0, step)] = step == baseline_row ? mark_grey : guide_grey;
        }
    }
}

bool put(std::vector<unsigned char>& sheet, std::FILE* table, int code, const Drawing& glyph) {
    const int left = pen_column + glyph.x_bearing, top = baseline_row - glyph.top_bearing;
    if (left < 1 || top < 1 || left + glyph.width > cell_size || top + glyph.height > cell_size) {
        std::fprintf(stderr, "draw_font_sheet: code point %d does not fit its cell\n", code);
        return false;
    }
    auto coverage = glyph.coverage.begin();
    for (int row = 0; row < glyph.height; ++row)
        for (int column = 0; column < glyph.width; ++column) {
            sheet[cell_pixel_index(code, left + column, top + row)] = *coverage++;
        }
    std::fprintf(table, "%3d  %2d %2d  %2d  %2d %2d", code, glyph.width, glyph.height,
                 glyph.advance, glyph.x_bearing, glyph.top_bearing);
    if (code > 32 && code < 127)
        std::fprintf(table, "  # %c", code);
    std::fputc('\n', table);
    return true;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fprintf(stderr,
                     "usage: draw_font_sheet OUTLINE.ttf PIXEL_SIZE SHEET.png METRICS.txt\n");
        return 2;
    }
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    const long size = std::strtol(argv[2], nullptr, 10);
    if (FT_Init_FreeType(&library) || FT_New_Face(library, argv[1], 0, &face) ||
        FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(size))) {
        std::fprintf(stderr, "draw_font_sheet: %s: cannot be used at %ld pixels\n", argv[1], size);
        return 1;
    }
    std::FILE* table = std::fopen(argv[4], "w");
    if (!table) {
        std::fprintf(stderr, "draw_font_sheet: %s: cannot be written\n", argv[4]);
        return 1;
    }
    std::fputs(
        "# Font metrics, one glyph a line, in pixels. How to edit: README.md beside this file.\n"
        "# \"FIRST-LAST same CODE\" gives a range of code points the glyph of another.\n"
        "#\n# code point, width, height, advance, x bearing, top bearing\n",
        table);
    std::vector<unsigned char> sheet(sheet_pixels, 0);
    draw_guides(sheet);
    bool good = put(sheet, table, 0, box_glyph());
    std::fputs("1-31 same 0\n127-159 same 0\n", table);
    for (int code = 32; good && code < 256; ++code) {
        Drawing glyph;
        if (is_shown(code))
            good = place(face, code, glyph) && put(sheet, table, code, glyph);
    }
    good = std::fclose(table) == 0 && good;
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = image.height = sheet_size;
    image.format = PNG_FORMAT_GRAY;
    good = good && png_image_write_to_file(&image, argv[3], 0, sheet.data(), sheet_size, nullptr);
    FT_Done_Face(face);
    FT_Done_FreeType(library);
    return good ? 0 : 1;
}
