// Pictures for tests that look at the screen: made from a rule, drawn by the engine, compared with
// what the server shows.
#pragma once

#include "display/core/engine_desk.h"

#include "gui/ORX/imaging/image_surface.h"
#include "gui/ORX/imaging/pixbuf.h"
#include "support/picture.h"

#include <cstdint>
#include <vector>

// A colour for each place, different from its neighbours.
[[nodiscard]] support::Colour colour_at(int x, int y);

// A Pixbuf of those colours; the caller frees it.
[[nodiscard]] Pixbuf* make_picture(UiEngine* engine, int width, int height);

// A surface of those colours, from (0, 0) on; the caller frees it.
[[nodiscard]] ImageSurface* make_surface(UiEngine* engine, int width, int height);

// Waits until the window shows colour(x, y) in the whole part, within tolerance.
template <typename Rule>
[[nodiscard]] bool shows(const EngineDesk& desk, WindowId id, const support::Place& part,
                         int tolerance, Rule colour) {
    support::Picture picture;
    std::string first_difference;
    const auto equal = [&] {
        picture = support::take_picture(desk.view, desk.x_window(id), part);
        if (picture.width != part.width || picture.height != part.height) {
            first_difference = "no picture";
            return false;
        }
        for (int y = 0; y < part.height; ++y) {
            for (int x = 0; x < part.width; ++x) {
                const support::Colour wanted = colour(part.x + x, part.y + y);
                const support::Colour seen = picture.at(x, y);
                if (!support::near_colour(seen, wanted, tolerance)) {
                    first_difference =
                        "at " + std::to_string(part.x + x) + "," + std::to_string(part.y + y) +
                        " seen " + std::to_string(seen.red) + " " + std::to_string(seen.green) +
                        " " + std::to_string(seen.blue) + " wanted " + std::to_string(wanted.red) +
                        " " + std::to_string(wanted.green) + " " + std::to_string(wanted.blue) +
                        "\n";
                    return false;
                }
            }
        }
        return true;
    };
    return support::wait_until(equal, std::chrono::seconds(5), [&] { return first_difference; });
}

// A GdkPixdata blob of one colour.
[[nodiscard]] std::vector<unsigned char> make_blob(int width, int height, support::Colour colour,
                                                   int alpha);
