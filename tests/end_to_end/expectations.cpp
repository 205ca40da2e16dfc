// Checking console text, panel lines and the main picture.

#include "end_to_end/expectations.h"

#include "end_to_end/installed_file.h"
#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/text/text_draw.h"
#include "gui/ORX/text/text_measure.h"

#include <algorithm>
#include <cstdlib>

namespace end_to_end {

using support::Colour;
using support::Picture;
using support::Place;

namespace {

constexpr int picture_width = 600;
constexpr int picture_height = 336;
constexpr int window_height = 400;
constexpr int baseline_of_line_0 = 24;
constexpr int line_step = 16;
constexpr int ink = 120;

// A glyph's ink may begin a pixel or two inside its cell.
constexpr int bearing = 3;

int width_of(const std::string& text) {
    TextRenderer* renderer = text_renderer_new(nullptr);
    const int width = text_width(renderer, text.c_str());
    text_renderer_destroy(renderer);
    return width;
}

// The green of a white text on the bar, whose colours have about the same green.
std::vector<int> greens_of_caption(const std::string& text, const Place& part, int left,
                                   int baseline) {
    constexpr int bar_green = 52;
    constexpr int white = 255;
    constexpr int glyph_limit = 1024;
    Pixbuf* image = orx_pixbuf_new(nullptr, picture_width, window_height);
    orx_pixbuf_fill(nullptr, image, bar_green, bar_green, bar_green, white);
    TextRenderer* renderer = text_renderer_new(nullptr);
    draw_text(renderer, image, text.c_str(), left, baseline, white, white, white, glyph_limit);
    text_renderer_destroy(renderer);
    std::vector<int> greens;
    for (int y = part.y; y < part.y + part.height; ++y) {
        for (int x = part.x; x < part.x + part.width; ++x) {
            greens.push_back(image->pixels[static_cast<std::size_t>(y) * image->rowstride +
                                           static_cast<std::size_t>(x) * 4 + 1]);
        }
    }
    orx_pixbuf_free(nullptr, image);
    return greens;
}

bool is_ink(Colour colour) {
    return std::min({colour.red, colour.green, colour.blue}) > ink;
}

} // namespace

std::string info(const std::string& text) {
    return std::string("** INFO ** ") + title + ": " + text + "\n";
}

std::string console_text(const std::string& method, const std::vector<std::string>& lines) {
    std::string text = std::string("\n- ") + title + " -\n\n";
    if (!method.empty()) {
        text += info("Using '" + method + "' for authentication");
    }
    text += "ORX-UI: UI dpi 96\nORX-UI: UI scale 100.0 %\n";
    for (const std::string& line : lines) {
        text += line;
    }
    return text + "ORX-UI Engine: Closing Input Method (XIM)\nORX-UI Engine: XClose\n\n" +
           info("Exiting") + "\n";
}

testing::AssertionResult line_reads(const Picture& picture, int line, const std::string& text) {
    const int baseline = baseline_of_line_0 + line_step * line;
    int first = picture_width;
    int last = -1;
    for (int y = baseline - 9; y <= baseline; ++y) {
        for (int x = 0; x < picture_width; ++x) {
            if (is_ink(picture.at(x, y))) {
                first = std::min(first, x);
                last = std::max(last, x);
            }
        }
    }
    const int width = width_of(text);
    const int left = (picture_width - width) / 2;
    if (std::abs(first - left) <= bearing && std::abs(last - (left + width - 1)) <= bearing) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << "line " << line << " reaches from " << first << " to " << last << ", \"" << text
           << "\" from " << left << " to " << left + width - 1;
}

testing::AssertionResult caption_reads(const Picture& picture, const std::string& text) {
    constexpr Place bar{25, 360, 550, 16};
    constexpr int tolerance = 16;
    // All of it, so that no longer caption passes for this one.
    constexpr Place inside{bar.x + 4, bar.y + 2, bar.width - 8, bar.height - 4};
    const int left = bar.x + (bar.width - width_of(text)) / 2 + 3;
    const std::vector<int> greens =
        greens_of_caption(text, inside, left, bar.y + bar.height / 2 + 5);
    if (picture.height < window_height) {
        return testing::AssertionFailure() << "there is no window";
    }
    auto wanted = greens.begin();
    for (int y = inside.y; y < inside.y + inside.height; ++y) {
        for (int x = inside.x; x < inside.x + inside.width; ++x, ++wanted) {
            if (std::abs(picture.at(x, y).green - *wanted) > tolerance) {
                return testing::AssertionFailure()
                       << "the green of pixel " << x << "," << y << " is " << picture.at(x, y).green
                       << ", in \"" << text << "\" " << *wanted;
            }
        }
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult shows_background(const Picture& picture, bool dimmed) {
    const Picture artwork =
        support::load_png(std::string(ZEPH_SOURCE) + "/resources/artwork/background.png");
    // Rows above the first line of text and below the last.
    for (int y = 0; y < picture_height; ++y) {
        if (y >= 8 && y < 212) {
            continue;
        }
        for (int x = 0; x < picture_width; ++x) {
            Colour wanted = artwork.at(x, y);
            if (dimmed) {
                wanted = {wanted.red / 2, wanted.green / 2, wanted.blue / 2};
            }
            if (!(picture.at(x, y) == wanted)) {
                const Colour seen = picture.at(x, y);
                return testing::AssertionFailure()
                       << "pixel " << x << "," << y << " is " << seen.red << " " << seen.green
                       << " " << seen.blue << ", not " << wanted.red << " " << wanted.green << " "
                       << wanted.blue;
            }
        }
    }
    return testing::AssertionSuccess();
}

void expect_installed(Scenario& scenario) {
    EXPECT_TRUE(
        line_reads(scenario.picture_of(scenario.main_window()), 2, "Installation Complete"));
    scenario.press_ok();
    EXPECT_TRUE(ended_clean(scenario.finish()));
    EXPECT_EQ(plugin_in(scenario.account().home), plugin_of_archive());
}

testing::AssertionResult ended_clean(const support::ChildEnd& end) {
    if (end.exit_status != 0) {
        return testing::AssertionFailure() << "exit status " << end.exit_status.value_or(-1)
                                           << ", signal " << end.signal.value_or(0);
    }
    for (const std::string& name : installer_files_in_tmp()) {
        return testing::AssertionFailure() << "/tmp/" << name << " was left";
    }
    return testing::AssertionSuccess();
}

} // namespace end_to_end
