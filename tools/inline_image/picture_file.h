// picture_file.h: a picture read from a PNG file that somebody made by hand.
//
// 8-bit PNG of any kind is taken (RGB, RGBA, palette, grey; interlaced or not) and brought to RGBA,
// colours never premultiplied, opaque where the file has no transparency.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct PictureSize {
    std::uint32_t width = 0; // pixels
    std::uint32_t height = 0;
};

// Either the pixels, rows from the top of R, G, B, A bytes without padding, and an empty complaint;
// or a complaint that says in one line what is wrong with the file and what helps, and no pixels.
struct PictureFile {
    std::vector<std::uint8_t> pixels;
    std::string complaint;
};

// Reads the file at path, which must hold a picture of exactly this size.
[[nodiscard]] PictureFile read_picture_file(const std::string& path, PictureSize size);
