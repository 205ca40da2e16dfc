// inline_image_blob.cpp: lays out the header words and the pixels.
#include "inline_image_blob.h"

std::vector<std::uint8_t> inline_image_blob(PictureSize size,
                                            const std::vector<std::uint8_t>& pixels) {
    constexpr std::uint32_t magic = 0x47646B50;    // "GdkP"
    constexpr std::uint32_t raw_rgba = 0x01010002; // RGBA, 8 bits a sample, not packed
    constexpr std::uint32_t header_length = 24;
    const std::uint32_t row_length = size.width * 4;
    const std::uint32_t header[] = {magic,      header_length + row_length * size.height,
                                    raw_rgba,   row_length,
                                    size.width, size.height};

    std::vector<std::uint8_t> blob;
    blob.reserve(header_length + pixels.size());
    for (const std::uint32_t word : header) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            blob.push_back(static_cast<std::uint8_t>(word >> shift));
        }
    }
    blob.insert(blob.end(), pixels.begin(), pixels.end());
    return blob;
}
