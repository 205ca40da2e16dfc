// Pictures for tests that look at the screen.
#include "display/imaging/shown_images.h"

support::Colour colour_at(int x, int y) {
    return {(x * 8) & 248, (y * 8) & 248, ((x + 2 * y) * 16) & 240};
}

Pixbuf* make_picture(UiEngine* engine, int width, int height) {
    Pixbuf* pixbuf = orx_pixbuf_new(engine, width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const support::Colour colour = colour_at(x, y);
            orx_pixbuf_set_pixel(engine, pixbuf, x, y, colour.red, colour.green, colour.blue, 255);
        }
    }
    return pixbuf;
}

ImageSurface* make_surface(UiEngine* engine, int width, int height) {
    Pixbuf* pixbuf = make_picture(engine, width, height);
    ImageSurface* surface = orx_image_new(engine, width, height);
    orx_image_from_pixbuf(engine, pixbuf, surface, 0, 0, 0, 0, width, height);
    orx_pixbuf_free(engine, pixbuf);
    return surface;
}

std::vector<unsigned char> make_blob(int width, int height, support::Colour colour, int alpha) {
    std::vector<unsigned char> blob = {'G', 'd', 'k', 'P'};
    const int words[5] = {24 + width * height * 4, 0x01010002, width * 4, width, height};
    for (const int word : words) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            blob.push_back(static_cast<unsigned char>(word >> shift));
        }
    }
    for (int i = 0; i < width * height; ++i) {
        for (const int byte : {colour.red, colour.green, colour.blue, alpha}) {
            blob.push_back(static_cast<unsigned char>(byte));
        }
    }
    return blob;
}
