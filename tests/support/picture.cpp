// Reading the screen into pictures, comparing them, and PNG files.

#include "support/picture.h"

#include <png.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace support {

namespace {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};

const xcb_visualtype_t* visual_of(const DisplayView& view, std::uint32_t id) {
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(view.connection()));
    for (; screens.rem > 0; xcb_screen_next(&screens)) {
        xcb_depth_iterator_t depths = xcb_screen_allowed_depths_iterator(screens.data);
        for (; depths.rem > 0; xcb_depth_next(&depths)) {
            xcb_visualtype_iterator_t visuals = xcb_depth_visuals_iterator(depths.data);
            for (; visuals.rem > 0; xcb_visualtype_next(&visuals)) {
                if (visuals.data->visual_id == id) {
                    return visuals.data;
                }
            }
        }
    }
    throw std::runtime_error("the picture has no visual");
}

const xcb_format_t& format_of(const DisplayView& view, int depth) {
    xcb_format_iterator_t formats =
        xcb_setup_pixmap_formats_iterator(xcb_get_setup(view.connection()));
    for (; formats.rem > 0; xcb_format_next(&formats)) {
        if (formats.data->depth == depth) {
            return *formats.data;
        }
    }
    throw std::runtime_error("the picture has no pixmap format");
}

// One channel of a pixel, stretched to 0..255.
struct Channel {
    std::uint32_t shift;
    std::uint32_t most;
    explicit Channel(std::uint32_t mask)
        : shift(static_cast<std::uint32_t>(std::countr_zero(mask))), most(mask >> shift) {}
    [[nodiscard]] int of(std::uint32_t pixel) const {
        const std::uint32_t value = (pixel >> shift) & most;
        return static_cast<int>(most == 255 ? value : (value * 255 + most / 2) / most);
    }
};

// The 256 colours of a palette screen.
std::vector<Colour> palette_of(const DisplayView& view, XWindow window) {
    xcb_connection_t* connection = view.connection();
    const std::unique_ptr<xcb_get_window_attributes_reply_t, FreeReply> attributes(
        xcb_get_window_attributes_reply(connection, xcb_get_window_attributes(connection, window),
                                        nullptr));
    std::vector<std::uint32_t> pixels(256);
    for (std::uint32_t index = 0; index < pixels.size(); ++index) {
        pixels[index] = index;
    }
    std::vector<Colour> palette(pixels.size());
    if (!attributes) {
        return palette;
    }
    const std::unique_ptr<xcb_query_colors_reply_t, FreeReply> colours(xcb_query_colors_reply(
        connection,
        xcb_query_colors(connection, attributes->colormap,
                         static_cast<std::uint32_t>(pixels.size()), pixels.data()),
        nullptr));
    if (!colours) {
        return palette;
    }
    const xcb_rgb_t* rows = xcb_query_colors_colors(colours.get());
    for (std::size_t index = 0; index < palette.size(); ++index) {
        palette[index] = {rows[index].red >> 8, rows[index].green >> 8, rows[index].blue >> 8};
    }
    return palette;
}

std::size_t index_of(const Picture& picture, int x, int y) {
    return (static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) +
            static_cast<std::size_t>(x)) *
           3;
}

void put(std::uint8_t* pixel, Colour colour) {
    pixel[0] = static_cast<std::uint8_t>(colour.red);
    pixel[1] = static_cast<std::uint8_t>(colour.green);
    pixel[2] = static_cast<std::uint8_t>(colour.blue);
}

void set_pixel(Picture& picture, int x, int y, Colour colour) {
    put(&picture.rgb[index_of(picture, x, y)], colour);
}

Picture empty_picture(int width, int height) {
    return {width, height,
            std::vector<std::uint8_t>(static_cast<std::size_t>(width) *
                                      static_cast<std::size_t>(height) * 3)};
}

} // namespace

bool near_colour(Colour a, Colour b, int tolerance) {
    return std::abs(a.red - b.red) <= tolerance && std::abs(a.green - b.green) <= tolerance &&
           std::abs(a.blue - b.blue) <= tolerance;
}

Colour Picture::at(int x, int y) const {
    if (x < 0 || y < 0 || x >= width || y >= height) {
        throw std::out_of_range("no such pixel");
    }
    const std::uint8_t* pixel = &rgb[index_of(*this, x, y)];
    return {pixel[0], pixel[1], pixel[2]};
}

Picture take_picture(const DisplayView& view, XWindow window) {
    const Place place = view.place_on_root(window);
    return take_picture(view, window, {0, 0, place.width, place.height});
}

Picture take_picture(const DisplayView& view, XWindow window, const Place& part) {
    xcb_connection_t* connection = view.connection();
    const std::unique_ptr<xcb_get_image_reply_t, FreeReply> image(xcb_get_image_reply(
        connection,
        xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window,
                      static_cast<std::int16_t>(part.x), static_cast<std::int16_t>(part.y),
                      static_cast<std::uint16_t>(part.width),
                      static_cast<std::uint16_t>(part.height), ~0U),
        nullptr));
    if (!image) {
        return {};
    }
    // A pixmap has no visual of its own: it is meant for windows like the root.
    const std::uint32_t root_visual =
        xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root_visual;
    const xcb_visualtype_t& visual =
        *visual_of(view, image->visual != XCB_NONE ? image->visual : root_visual);
    const xcb_format_t& format = format_of(view, image->depth);
    const bool palette_screen = visual._class == XCB_VISUAL_CLASS_PSEUDO_COLOR;
    const Channel red(palette_screen ? 1U : visual.red_mask);
    const Channel green(palette_screen ? 1U : visual.green_mask);
    const Channel blue(palette_screen ? 1U : visual.blue_mask);
    const std::vector<Colour> palette =
        palette_screen ? palette_of(view, window) : std::vector<Colour>();
    const auto bytes_per_pixel = static_cast<std::size_t>(format.bits_per_pixel / 8);
    const int pad = format.scanline_pad;
    const int row_bytes = (part.width * format.bits_per_pixel + pad - 1) / pad * pad / 8;
    const std::uint8_t* bytes = xcb_get_image_data(image.get());
    Picture picture = empty_picture(part.width, part.height);
    std::uint8_t* to = picture.rgb.data();
    for (int y = 0; y < part.height; ++y) {
        const std::uint8_t* from = bytes + y * row_bytes;
        for (int x = 0; x < part.width; ++x, from += bytes_per_pixel, to += 3) {
            std::uint32_t pixel = 0;
            // Server and test share the machine's byte order, which is little-endian.
            std::memcpy(&pixel, from, bytes_per_pixel);
            put(to, palette_screen ? palette[pixel & 0xffU]
                                   : Colour{red.of(pixel), green.of(pixel), blue.of(pixel)});
        }
    }
    return picture;
}

Picture crop(const Picture& picture, const Place& part) {
    Picture result = empty_picture(part.width, part.height);
    for (int y = 0; y < part.height; ++y) {
        for (int x = 0; x < part.width; ++x) {
            set_pixel(result, x, y, picture.at(part.x + x, part.y + y));
        }
    }
    return result;
}

int count_colour(const Picture& picture, const Place& part, Colour colour, int tolerance) {
    int count = 0;
    for (int y = part.y; y < part.y + part.height; ++y) {
        for (int x = part.x; x < part.x + part.width; ++x) {
            count += near_colour(picture.at(x, y), colour, tolerance) ? 1 : 0;
        }
    }
    return count;
}

int count_differences(const Picture& a, const Picture& b, int tolerance) {
    if (a.width != b.width || a.height != b.height) {
        return std::max(a.width * a.height, b.width * b.height);
    }
    int count = 0;
    for (int y = 0; y < a.height; ++y) {
        for (int x = 0; x < a.width; ++x) {
            count += near_colour(a.at(x, y), b.at(x, y), tolerance) ? 0 : 1;
        }
    }
    return count;
}

void save_png(const Picture& picture, const std::string& path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    image.format = PNG_FORMAT_RGB;
    if (png_image_write_to_file(&image, path.c_str(), 0, picture.rgb.data(), 0, nullptr) == 0) {
        throw std::runtime_error("cannot write " + path + ": " + image.message);
    }
}

Picture load_png(const std::string& path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, path.c_str()) == 0) {
        throw std::runtime_error("cannot read " + path + ": " + image.message);
    }
    // Read with alpha and drop it by hand: the library would compose on a background otherwise.
    image.format = PNG_FORMAT_RGBA;
    std::vector<std::uint8_t> rgba(PNG_IMAGE_SIZE(image));
    if (png_image_finish_read(&image, nullptr, rgba.data(), 0, nullptr) == 0) {
        throw std::runtime_error("cannot read " + path + ": " + image.message);
    }
    Picture picture = empty_picture(static_cast<int>(image.width), static_cast<int>(image.height));
    for (std::size_t pixel = 0; pixel < rgba.size() / 4; ++pixel) {
        std::memcpy(&picture.rgb[pixel * 3], &rgba[pixel * 4], 3);
    }
    return picture;
}

} // namespace support
