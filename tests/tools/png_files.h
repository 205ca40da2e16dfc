// png_files.h: PNG files as tests make and read them, with libpng's row by row interface.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace png_files {

using Bytes = std::vector<std::uint8_t>;

enum class Kind { grey, rgb, palette, rgba };

// What a file says it holds. Rows have no padding.
struct Image {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    Kind kind = Kind::rgba;
    int bits = 8; // a channel; samples of 16 bits are two bytes, big-endian
    bool interlaced = false;
    Bytes samples;       // 1, 3, 1 (an index) or 4 samples a pixel, as the kind says
    Bytes palette;       // R, G, B for each index
    Bytes palette_alpha; // for the first indices; the others are opaque
};

// Both throw std::runtime_error; reading does so for any wrong checksum, too.
void write(const Image& image, const std::string& path);
[[nodiscard]] Image read(const std::string& path);

// The image's pixels as R, G, B, A bytes; for 8-bit images.
[[nodiscard]] Bytes rgba(const Image& image);

[[nodiscard]] Bytes file_bytes(const std::string& path);
void write_bytes(const std::string& path, const Bytes& bytes);

// Six big-endian words and the pixels: how the program carries a picture.
[[nodiscard]] Bytes blob(const Image& image);

// A folder of the test's own, removed with all that is in it.
class Folder {
public:
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    [[nodiscard]] std::string file(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

} // namespace png_files
