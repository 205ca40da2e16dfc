// png_files.cpp: the tests' own PNG reading and writing.
#include "tools/png_files.h"

#include <png.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace png_files {

namespace {

[[noreturn]] void fail(png_structp, png_const_charp message) {
    throw std::runtime_error(message);
}

void ignore(png_structp, png_const_charp) {}

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File open_file(const std::string& path, const char* mode) {
    File file(std::fopen(path.c_str(), mode), &std::fclose);
    if (!file) {
        throw std::runtime_error(path + " cannot be opened");
    }
    return file;
}

int color_type(Kind kind) {
    switch (kind) {
    case Kind::grey:
        return PNG_COLOR_TYPE_GRAY;
    case Kind::rgb:
        return PNG_COLOR_TYPE_RGB;
    case Kind::palette:
        return PNG_COLOR_TYPE_PALETTE;
    case Kind::rgba:
        break;
    }
    return PNG_COLOR_TYPE_RGBA;
}

Kind kind_of(int type) {
    for (const Kind kind : {Kind::grey, Kind::rgb, Kind::palette, Kind::rgba}) {
        if (color_type(kind) == type) {
            return kind;
        }
    }
    throw std::runtime_error("unexpected colour type");
}

std::size_t row_bytes(const Image& image) {
    const std::size_t channels = image.kind == Kind::rgba ? 4 : image.kind == Kind::rgb ? 3 : 1;
    return image.width * channels * static_cast<std::size_t>(image.bits) / 8;
}

std::vector<png_bytep> rows_of(Image& image) {
    std::vector<png_bytep> rows;
    for (std::uint32_t y = 0; y < image.height; ++y) {
        rows.push_back(&image.samples[y * row_bytes(image)]);
    }
    return rows;
}

// Frees libpng's records however the function that holds it is left.
struct Session {
    png_structp png;
    png_infop info;
    bool writing;
    explicit Session(bool writes)
        : png(writes ? png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore)
                     : png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore)),
          info(png_create_info_struct(png)), writing(writes) {}
    ~Session() {
        if (writing) {
            png_destroy_write_struct(&png, &info);
        } else {
            png_destroy_read_struct(&png, &info, nullptr);
        }
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
};

void add_palette(const Session& session, const Image& image) {
    std::vector<png_color> colours;
    for (std::size_t index = 0; index + 2 < image.palette.size(); index += 3) {
        colours.push_back(
            {image.palette[index], image.palette[index + 1], image.palette[index + 2]});
    }
    png_set_PLTE(session.png, session.info, colours.data(), static_cast<int>(colours.size()));
    if (!image.palette_alpha.empty()) {
        png_set_tRNS(session.png, session.info, image.palette_alpha.data(),
                     static_cast<int>(image.palette_alpha.size()), nullptr);
    }
}

} // namespace

void write(const Image& image, const std::string& path) {
    const File file = open_file(path, "wb");
    const Session session(true);
    Image copy = image;
    std::vector<png_bytep> rows = rows_of(copy);
    png_init_io(session.png, file.get());
    png_set_IHDR(session.png, session.info, image.width, image.height, image.bits,
                 color_type(image.kind),
                 image.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (image.kind == Kind::palette) {
        add_palette(session, image);
    }
    png_set_rows(session.png, session.info, rows.data());
    png_write_png(session.png, session.info, PNG_TRANSFORM_IDENTITY, nullptr);
}

Image read(const std::string& path) {
    const File file = open_file(path, "rb");
    const Session session(false);
    png_set_crc_action(session.png, PNG_CRC_ERROR_QUIT, PNG_CRC_ERROR_QUIT);
    png_init_io(session.png, file.get());
    png_read_info(session.png, session.info);
    Image image;
    image.width = png_get_image_width(session.png, session.info);
    image.height = png_get_image_height(session.png, session.info);
    image.bits = png_get_bit_depth(session.png, session.info);
    image.kind = kind_of(png_get_color_type(session.png, session.info));
    image.samples.resize(row_bytes(image) * image.height);
    std::vector<png_bytep> rows = rows_of(image);
    png_read_image(session.png, rows.data());
    png_read_end(session.png, nullptr);
    return image;
}

Bytes rgba(const Image& image) {
    Bytes pixels;
    const Bytes& samples = image.samples;
    for (std::size_t place = 0; place < samples.size();) {
        switch (image.kind) {
        case Kind::grey:
            pixels.insert(pixels.end(), 3, samples[place]);
            pixels.push_back(255);
            place += 1;
            break;
        case Kind::rgb:
            pixels.insert(pixels.end(), {samples[place], samples[place + 1], samples[place + 2]});
            pixels.push_back(255);
            place += 3;
            break;
        case Kind::palette: {
            const std::size_t index = samples[place];
            for (std::size_t channel = 0; channel < 3; ++channel) {
                pixels.push_back(image.palette[index * 3 + channel]);
            }
            pixels.push_back(index < image.palette_alpha.size() ? image.palette_alpha[index]
                                                                : std::uint8_t{255});
            place += 1;
            break;
        }
        case Kind::rgba:
            pixels.insert(pixels.end(), {samples[place], samples[place + 1], samples[place + 2],
                                         samples[place + 3]});
            place += 4;
            break;
        }
    }
    return pixels;
}

Bytes file_bytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error(path + " cannot be opened");
    }
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

void write_bytes(const std::string& path, const Bytes& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    if (!file) {
        throw std::runtime_error(path + " cannot be written");
    }
}

Bytes blob(const Image& image) {
    Bytes bytes = {'G', 'd', 'k', 'P'};
    const Bytes pixels = rgba(image);
    const std::size_t words[] = {24 + pixels.size(), 0x01010002, std::size_t{image.width} * 4,
                                 image.width, image.height};
    for (const std::size_t word : words) {
        bytes.insert(bytes.end(),
                     {static_cast<std::uint8_t>(word >> 24), static_cast<std::uint8_t>(word >> 16),
                      static_cast<std::uint8_t>(word >> 8), static_cast<std::uint8_t>(word)});
    }
    bytes.insert(bytes.end(), pixels.begin(), pixels.end());
    return bytes;
}

Folder::Folder() {
    std::string pattern = std::filesystem::temp_directory_path() / "png-files-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no folder could be made at " + pattern);
    }
    path_ = pattern;
}

Folder::~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

} // namespace png_files
