// font_sheet.h: the glyphs of a font sheet, read from its metrics table and its picture.
//
// read_metrics, then read_sheet, then check_and_cut; each prints what is wrong as
// "FILE:LINE: message" or "FILE: message" on standard error and returns false. Nothing is repaired
// silently: a sheet that is off by a pixel fails the build.
#pragma once

#include "sheet_geometry.h"

#include <array>
#include <string>
#include <vector>

struct SheetGlyph {
    int line = 0;  // of the metrics table; 0 = no line yet
    int same = -1; // the code point whose glyph this one shows, -1 = its own
    int width = 0;
    int height = 0;
    int advance = 0;
    int x_bearing = 0;
    int top_bearing = 0;
    std::vector<unsigned char> coverage; // width * height, top row first
};

struct FontSheet {
    std::array<SheetGlyph, 256> glyphs;
    std::vector<unsigned char> pixels; // sheet_size * sheet_size
};

[[nodiscard]] bool read_metrics(const std::string& file, FontSheet& sheet);
[[nodiscard]] bool read_sheet(const std::string& file, FontSheet& sheet);

// Fills every glyph's coverage; fails where ink and metrics disagree, naming the table's line.
[[nodiscard]] bool check_and_cut(const std::string& metrics_file, FontSheet& sheet);

// Writes the C++ source that defines the records of font_data.h.
[[nodiscard]] bool write_records(const std::string& file, const FontSheet& sheet);
