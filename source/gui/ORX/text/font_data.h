// font_data.h: the built-in font's 256 glyph records, read-only data of the executable.
//
// The records are made at build time from the sheet in resources/font. A record is six header
// bytes and then the bitmap; all figures are design pixels:
//
//   0  width        bitmap columns
//   1  height       bitmap rows
//   2  advance      pen movement after the glyph
//   3  reserved     0
//   4  x bearing    signed: the bitmap's left column relative to the pen
//   5  top bearing  signed: the top row is drawn at baseline - top bearing
//   6  coverage     width * height bytes, top row first; 0 = no ink, 255 = full ink
//
// No entry is null. Code points that look alike because nothing can be shown for them point at
// one record. Any thread may read the data at any time; nobody frees it.
#pragma once

inline constexpr int orx_glyph_width_offset = 0;
inline constexpr int orx_glyph_height_offset = 1;
inline constexpr int orx_glyph_advance_offset = 2;
inline constexpr int orx_glyph_x_bearing_offset = 4;
inline constexpr int orx_glyph_top_bearing_offset = 5;
inline constexpr int orx_glyph_coverage_offset = 6;

// Indexed by the code point's low byte.
extern const unsigned char* const orx_font_glyphs[256];
