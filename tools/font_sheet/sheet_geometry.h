// sheet_geometry.h: where a glyph stands on the font sheet.
//
// The sheet is 16 x 16 equal cells in code point order. A cell's first row and first column are
// guides, never ink; the rest is the ink area. All figures are sheet pixels, one per coverage byte.
#pragma once

#include <cstddef>

inline constexpr int cells_per_side = 16;
inline constexpr int cell_size = 20;
inline constexpr int sheet_size = cells_per_side * cell_size;
inline constexpr std::size_t sheet_pixels = std::size_t{sheet_size} * sheet_size;
inline constexpr int pen_column = 4;    // the cell column in which x bearing 0 begins
inline constexpr int baseline_row = 15; // the first cell row below the baseline

inline constexpr unsigned char guide_grey = 40;
inline constexpr unsigned char mark_grey = 160; // pen column and baseline, inside the guides

// The index of a cell's pixel in the sheet.
constexpr std::size_t cell_pixel_index(int code, int column, int row) {
    const int x = code % cells_per_side * cell_size + column;
    const int y = code / cells_per_side * cell_size + row;
    return static_cast<std::size_t>(y) * sheet_size + static_cast<std::size_t>(x);
}
