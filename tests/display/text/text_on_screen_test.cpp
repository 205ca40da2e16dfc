// Text on screens of every depth, at its own size and at twice that.
#include "display/imaging/shown_images.h"

#include "gui/ORX/imaging/scaler.h"
#include "gui/ORX/text/text_draw.h"

namespace {

constexpr int width = 90;
constexpr int height = 40;

struct TextOnScreen : testing::TestWithParam<int> {
    EngineDesk desk{{.server = {.depth = GetParam()}}};
    CallLog& log = desk.new_log();
    WindowId id = desk.show_window(&log);
    TextRenderer* text = text_renderer_new(desk.engine);
    Pixbuf* page = orx_pixbuf_new(desk.engine, width, height);

    ~TextOnScreen() override {
        orx_pixbuf_free(desk.engine, page);
        text_renderer_destroy(text);
    }

    void show(float scale) const {
        const auto device_width = static_cast<int>(width * scale);
        const auto device_height = static_cast<int>(height * scale);
        ImageSurface* surface = orx_image_new(desk.engine, device_width, device_height);
        orx_image_scale_from_pixbuf(desk.engine, page, surface, 0, 0, device_width, device_height,
                                    0, 0, scale);
        orx_image_put(desk.engine, id, surface, 0, 0, 0, 0, device_width, device_height);
        orx_image_free(desk.engine, surface);
    }
    [[nodiscard]] support::Colour drawn(int x, int y) const {
        const std::uint8_t* pixel = page->pixels + (y * width + x) * 4;
        return {pixel[0], pixel[1], pixel[2]};
    }
};

TEST_P(TextOnScreen, IsShownAsItWasDrawn) {
    ASSERT_EQ(text->engine, desk.engine);
    draw_text(text, page, "Installing...", 4, 16, 255, 255, 255, 63);
    draw_text_clipped(text, page, "/usr/lib/vst", 4, 34, 20, 40, 2, 60, 255, 176, 0, 1024);
    show(1.0F);
    EXPECT_TRUE(
        shows(desk, id, {0, 0, width, height}, 8, [this](int x, int y) { return drawn(x, y); }));
    const support::Picture shown = support::take_picture(desk.view, desk.x_window(id));
    EXPECT_GT(support::count_colour(shown, {0, 0, width, 20}, {255, 255, 255}, 8), 20);

    show(2.0F);
    const support::Picture doubled = support::take_picture(desk.view, desk.x_window(id));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            ASSERT_TRUE(support::near_colour(doubled.at(2 * x, 2 * y), drawn(x, y), 8));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Depths, TextOnScreen, testing::Values(15, 16, 24, 30),
                         testing::PrintToStringParamName());

} // namespace
