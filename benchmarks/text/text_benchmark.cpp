// Text beside the scaling of the panel that it stands on, and where a repaint of the whole window
// spends its time.
#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/window_properties.h"
#include "gui/ORX/core/window_table.h"
#include "gui/ORX/imaging/scaler.h"
#include "gui/ORX/text/text_draw.h"
#include "gui/ORX/text/text_measure.h"
#include "imaging/benchmark_images.h"
#include "imaging/paired_runs.h"

#include <string>

namespace {

constexpr int panel_width = 600;
constexpr int panel_height = 400;
constexpr int picture_height = 336;
constexpr int lines = 12;

// 62 characters, which is as long as a line of the panel can be.
const char* const full_line = "The quick brown fox jumps over the lazy dog and 4 sleepy cats.";

struct Panel {
    explicit Panel(float factor)
        : engine(engine_new()), text(text_renderer_new(engine)),
          artwork(pictures::artwork(panel_width, picture_height)),
          rgba(pictures::artwork(panel_width, panel_height)),
          picture(pictures::view(artwork, panel_width, picture_height)),
          pixbuf(pictures::view(rgba, panel_width, panel_height)),
          surface(static_cast<int>(panel_width * factor), static_cast<int>(panel_height * factor)),
          scale(factor) {
        if (engine_open_display(engine)) {
            window = window_create_plain(engine, 0, 0, panel_width, panel_height, nullptr, factor);
            window_map(engine, window);
        }
    }
    ~Panel() {
        text_renderer_destroy(text);
        engine_destroy(engine);
    }
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;

    void draw_background() {
        orx_pixbuf_fill_rect(engine, &pixbuf, 0, 0, panel_width, panel_height, 0, 0, 0);
        orx_pixbuf_copy_area(engine, &picture, &pixbuf, 0, 0, 0, 0, panel_width, picture_height);
    }
    void draw_lines() {
        for (int line = 0; line < lines; ++line) {
            const int x = (panel_width - text_width(text, full_line)) / 2;
            draw_text(text, &pixbuf, full_line, x, 24 + 16 * line, 255, 255, 255, 63);
        }
    }
    void draw_coloured_lines() {
        for (int line = 0; line < lines; ++line) {
            draw_text(text, &pixbuf, full_line, 90, 24 + 16 * line, 255, 47, 200, 63);
        }
    }
    void show() {
        orx_image_scale_from_pixbuf(engine, &pixbuf, &surface.image, 0, 0, surface.image.width,
                                    surface.image.height, 0, 0, scale);
    }

    // To a window, when there is a display.
    void put() {
        orx_image_put(engine, window, &surface.image, 0, 0, 0, 0, surface.image.width,
                      surface.image.height);
    }

    UiEngine* engine;
    WindowId window = no_window;
    TextRenderer* text;
    std::vector<std::uint8_t> artwork;
    std::vector<std::uint8_t> rgba;
    Pixbuf picture;
    Pixbuf pixbuf;
    pictures::Surface surface;
    float scale;
};

void full_panel_of_text_beside_scaling_it(benchmark::State& state) {
    Panel panel(2.0F);
    panel.draw_background();
    paired::compare(
        state, [&panel] { panel.draw_lines(); }, [&panel] { panel.show(); }, 8);
}

void coloured_text_beside_scaling_it(benchmark::State& state) {
    Panel panel(2.0F);
    panel.draw_background();
    paired::compare(
        state, [&panel] { panel.draw_coloured_lines(); }, [&panel] { panel.show(); }, 8);
}

// Shares of a repaint of the whole window: ours is the step, theirs the whole.
void repaint_share(benchmark::State& state, void (Panel::*step)()) {
    Panel panel(static_cast<float>(state.range(0)) / 100.0F);
    paired::compare(
        state, [&panel, step] { (panel.*step)(); },
        [&panel] {
            panel.draw_background();
            panel.draw_lines();
            panel.show();
            panel.put();
        });
}

BENCHMARK(full_panel_of_text_beside_scaling_it)->Iterations(100);
BENCHMARK(coloured_text_beside_scaling_it)->Iterations(100);
BENCHMARK_CAPTURE(repaint_share, background, &Panel::draw_background)
    ->Arg(100)
    ->Arg(200)
    ->Iterations(200);
BENCHMARK_CAPTURE(repaint_share, text, &Panel::draw_lines)->Arg(100)->Arg(200)->Iterations(200);
BENCHMARK_CAPTURE(repaint_share, scaling, &Panel::show)->Arg(100)->Arg(200)->Iterations(200);
BENCHMARK_CAPTURE(repaint_share, put_on_screen, &Panel::put)->Arg(100)->Arg(200)->Iterations(200);

} // namespace

BENCHMARK_MAIN();
