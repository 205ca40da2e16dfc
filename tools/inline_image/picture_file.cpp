// picture_file.cpp: PNG decoding with libpng, and the words for every way in which a file can fail.
#include "picture_file.h"

#include <png.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t signature_length = 8;

struct FileCloser {
    void operator()(std::FILE* file) const {
        // Nothing was written, so closing has nothing to lose.
        static_cast<void>(std::fclose(file));
    }
};

PictureFile refused(const std::string& complaint) {
    return {{}, complaint};
}

std::string size_text(PictureSize size) {
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

// The whole file, or the complaint that it cannot be read.
PictureFile file_bytes(const std::string& path) {
    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "rb"));
    if (!file) {
        return refused("cannot be opened (" + std::string(std::strerror(errno)) +
                       "); put the picture there, or name another file");
    }
    PictureFile content;
    std::uint8_t part[65536];
    std::size_t length = 0;
    while ((length = std::fread(part, 1, sizeof part, file.get())) > 0) {
        content.pixels.insert(content.pixels.end(), part, part + length);
    }
    if (std::ferror(file.get()) != 0) {
        return refused("cannot be read (" + std::string(std::strerror(errno)) +
                       "); name a readable PNG file");
    }
    return content;
}

PictureFile broken(const png_image& image) {
    return refused("is a broken PNG (" + std::string(image.message) + "); save the picture anew");
}

// libpng stops at the last row; a file cut off behind it is no whole file either.
bool has_end_chunk(const Bytes& file) {
    constexpr std::uint8_t end_chunk[] = {0, 0, 0, 0, 'I', 'E', 'N', 'D', 0xae, 0x42, 0x60, 0x82};
    std::size_t place = signature_length;
    while (place + sizeof end_chunk <= file.size()) {
        if (std::memcmp(&file[place], end_chunk, sizeof end_chunk) == 0) {
            return true;
        }
        const std::size_t length = std::size_t{file[place]} << 24 |
                                   std::size_t{file[place + 1]} << 16 |
                                   std::size_t{file[place + 2]} << 8 | std::size_t{file[place + 3]};
        place += sizeof end_chunk + length;
    }
    return false;
}

PictureFile decode(const Bytes& file, PictureSize size) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&image, file.data(), file.size()) == 0) {
        return broken(image);
    }
    const std::unique_ptr<png_image, decltype(&png_image_free)> owner(&image, &png_image_free);
    if (image.width != size.width || image.height != size.height) {
        return refused("is " + size_text({image.width, image.height}) + " pixels, but must be " +
                       size_text(size) + "; scale or crop the picture to that size");
    }
    if ((image.format & PNG_FORMAT_FLAG_LINEAR) != 0) {
        return refused("has 16 bits a channel; save the picture with 8 bits a channel");
    }
    image.format = PNG_FORMAT_RGBA;
    PictureFile picture;
    picture.pixels.resize(PNG_IMAGE_SIZE(image));
    if (png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr) == 0) {
        return broken(image);
    }
    if (!has_end_chunk(file)) {
        return refused("is a broken PNG (it ends too early); save the picture anew");
    }
    return picture;
}

} // namespace

PictureFile read_picture_file(const std::string& path, PictureSize size) {
    PictureFile file = file_bytes(path);
    if (file.complaint.empty()) {
        const Bytes& bytes = file.pixels;
        file =
            bytes.size() < signature_length || png_sig_cmp(bytes.data(), 0, signature_length) != 0
                ? refused("is not a PNG file; save the picture as an 8-bit RGB or RGBA PNG")
                : decode(bytes, size);
    }
    if (!file.complaint.empty()) {
        file.complaint.insert(0, path + ": ");
    }
    return file;
}
