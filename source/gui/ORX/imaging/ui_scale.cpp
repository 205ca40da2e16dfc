// ui_scale.cpp: measuring the screen and deriving the one factor of enlargement.
#include "gui/ORX/imaging/ui_scale.h"

#include "gui/ORX/core/connection_loss.h"
#include "gui/ORX/core/console_line.h"
#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/imaging/screen_density.h"

#include <cstdlib>

namespace {

struct ScreenSize {
    std::int32_t width;
    std::int32_t height;
    std::int32_t width_mm;
    std::int32_t height_mm;
};

ScreenSize size_of_default_screen(Display* display) {
    const int screen = DefaultScreen(display);
    return {DisplayWidth(display, screen), DisplayHeight(display, screen),
            DisplayWidthMM(display, screen), DisplayHeightMM(display, screen)};
}

bool measure_screen(ScreenSize* size) {
    Display* display = open_display_or_none();
    if (display == nullptr) {
        return false;
    }
    // Closing talks to the server once more; a server that has gone by then must not end us.
    watch_connection(display, nullptr);
    *size = size_of_default_screen(display);
    XCloseDisplay(display);
    return true;
}

std::int32_t density(const ScreenSize& size) {
    if (const char* wanted = std::getenv("ORXDPI"); wanted != nullptr) {
        return static_cast<std::int32_t>(std::strtol(wanted, nullptr, 10));
    }
    return dots_per_inch(diagonal(size.width, size.height),
                         diagonal(size.width_mm, size.height_mm));
}

} // namespace

float orx_ui_scale(UiEngine* engine) {
    if (const float known = engine->ui_scale; known != 0.0F) {
        return known;
    }
    ScreenSize size{};
    if (!measure_screen(&size)) {
        engine->ui_scale = 1.0F;
        return 1.0F;
    }
    const std::int32_t dpi = density(size);
    console_print("ORX-UI: UI dpi %d\n", dpi);
    const float scale = scale_of_density(dpi);
    engine->ui_scale = scale;
    console_print("ORX-UI: UI scale %.01f %%\n", static_cast<double>(scale) * 100.0);
    return scale;
}

std::int32_t orx_screen_dpi(UiEngine* engine, std::int32_t* vertical, std::int32_t* horizontal) {
    const XLockGuard x_guard(engine);
    Display* display = engine_display(engine);
    if (display == nullptr) {
        return 0;
    }
    const ScreenSize size = size_of_default_screen(display);
    *vertical = dots_per_inch(static_cast<float>(size.height), static_cast<float>(size.height_mm));
    *horizontal = dots_per_inch(static_cast<float>(size.width), static_cast<float>(size.width_mm));
    return ScreenCount(display);
}
