// Writes pictures for people to look at: all 256 glyphs of the font, a page of text, and the
// artwork, at all nine scales. picture_sheets FOLDER
#include "gui/ORX/imaging/inline_image.h"
#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/imaging/row_kernels.h"
#include "gui/ORX/imaging/scaler_rows.h"
#include "gui/ORX/text/text_draw.h"
#include "installer/embedded_artwork.h"
#include "support/picture.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>

namespace {

constexpr float scales[9] = {1.0F, 1.125F, 1.25F, 1.375F, 1.5F, 1.625F, 1.75F, 1.875F, 2.0F};

void keep_row(void* data, std::int64_t x, std::int64_t y, const std::uint8_t* pixels,
              std::size_t count) {
    auto* picture = static_cast<support::Picture*>(data);
    for (std::size_t i = 0; i < count; ++i) {
        const auto place = (static_cast<std::size_t>(y * picture->width + x) + i) * 3;
        std::copy_n(pixels + i * 4, 3, picture->rgb.begin() + static_cast<std::ptrdiff_t>(place));
    }
}

void save_at_all_scales(const Pixbuf* pixbuf, const std::string& stem) {
    for (const float scale : scales) {
        support::Picture picture;
        picture.width = static_cast<int>(static_cast<float>(pixbuf->width) * scale);
        picture.height = static_cast<int>(static_cast<float>(pixbuf->height) * scale);
        picture.rgb.resize(static_cast<std::size_t>(picture.width) *
                           static_cast<std::size_t>(picture.height) * 3);
        scale_rows(best_row_kernels(), pixbuf, {0, 0, picture.width, picture.height, 0, 0, scale},
                   picture.width, picture.height, keep_row, &picture);
        char name[16];
        std::snprintf(name, sizeof name, "_%.3f.png", static_cast<double>(scale));
        support::save_png(picture, stem + name);
    }
}

void save_artwork(const unsigned char* blob, const std::string& stem) {
    Pixbuf* artwork = orx_pixbuf_new_from_inline(nullptr, blob);
    Pixbuf* ground = orx_pixbuf_new(nullptr, static_cast<std::int32_t>(artwork->width),
                                    static_cast<std::int32_t>(artwork->height));
    orx_pixbuf_composite(nullptr, artwork, ground, 0, 0, 0, 0,
                         static_cast<std::int32_t>(artwork->width),
                         static_cast<std::int32_t>(artwork->height));
    save_at_all_scales(ground, stem);
    orx_pixbuf_free(nullptr, ground);
    orx_pixbuf_free_inline(nullptr, artwork);
}

// Sixteen by sixteen cells; a dark line marks each cell's baseline.
void save_glyphs(const TextRenderer* text, const std::string& stem) {
    constexpr int cell_width = 18;
    constexpr int cell_height = 22;
    Pixbuf* sheet = orx_pixbuf_new(nullptr, 16 * cell_width, 16 * cell_height);
    orx_pixbuf_fill(nullptr, sheet, 24, 24, 28, 255);
    for (int code = 0; code < 256; ++code) {
        const int x = code % 16 * cell_width + 4;
        const int y = code / 16 * cell_height + 16;
        orx_pixbuf_hline(nullptr, sheet, x - 2, y, x + 11, y, 90, 40, 90, 255);
        draw_glyph(text, sheet, static_cast<std::uint32_t>(code), x, y, 255, 255, 255);
    }
    save_at_all_scales(sheet, stem);
    orx_pixbuf_free(nullptr, sheet);
}

void save_text(const TextRenderer* text, const std::string& stem) {
    const char* const lines[] = {
        "The quick brown fox jumps over the lazy dog and 4 sleepy cats.",
        "ABCDEFGHIJKLMNOPQRSTUVWXYZ abcdefghijklmnopqrstuvwxyz 0123456789",
        "Please enter your password: !\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~",
        "Installation Complete /usr/local/lib/ladspa (100 %)",
    };
    Pixbuf* page = orx_pixbuf_new(nullptr, 440, 5 * 16 + 12);
    orx_pixbuf_fill(nullptr, page, 24, 24, 28, 255);
    int y = 18;
    for (const char* line : lines) {
        draw_text(text, page, line, 8, y, 255, 255, 255, 100);
        y += 16;
    }
    draw_text(text, page, lines[0], 8, y, 255, 176, 0, 100);
    save_at_all_scales(page, stem);
    orx_pixbuf_free(nullptr, page);
}

} // namespace

int main(int argc, char** argv) {
    const std::string folder = argc > 1 ? argv[1] : "build/pictures";
    std::filesystem::create_directories(folder);
    TextRenderer* text = text_renderer_new(nullptr);
    save_glyphs(text, folder + "/glyphs");
    save_text(text, folder + "/text");
    text_renderer_destroy(text);
    save_artwork(inline_image_splash, folder + "/splash");
    save_artwork(inline_image_background, folder + "/background");
    save_artwork(inline_image_window_icon, folder + "/window_icon");
    save_artwork(inline_image_folder_icon, folder + "/folder_icon");
    std::printf("pictures in %s\n", folder.c_str());
}
