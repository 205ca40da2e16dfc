// inline_image_blob.h: the form in which the program carries a picture.
//
// Six big-endian 32-bit words ("GdkP", length of the whole blob, 0x01010002 for raw RGBA, bytes a
// row, width, height), then the rows of R, G, B, A bytes.
#pragma once

#include "picture_file.h"

// The blob of width * height RGBA pixels.
[[nodiscard]] std::vector<std::uint8_t> inline_image_blob(PictureSize size,
                                                          const std::vector<std::uint8_t>& pixels);
