// splash_window.cpp: the splash window's set-up, its callbacks and its six seconds.
#include "installer/splash_window.h"

#include "gui/ORX/core/window_placement.h"
#include "gui/ORX/core/window_properties.h"
#include "gui/ORX/core/window_table.h"
#include "gui/ORX/imaging/inline_image.h"
#include "gui/ORX/imaging/pixbuf.h"
#include "installer/console_log.h"
#include "installer/embedded_payload.h"
#include "installer/installer_state.h"
#include "installer/window_picture.h"

#include <unistd.h>

namespace {

constexpr std::int32_t shown_ms = 6000;
constexpr std::int32_t background_white = 255;

void on_paint(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
              WindowId id, void* /*user_data*/) {
    window_picture_show(installer.splash_picture, id, left, top, width, height);
}

void on_close(std::int32_t /*outer_x*/, std::int32_t /*outer_y*/, WindowId /*id*/,
              void* /*user_data*/) {}

void on_button_press(std::int32_t /*x*/, std::int32_t /*y*/, std::int32_t /*button*/,
                     WindowId /*id*/, void* /*user_data*/) {
    installer.splash_dismissed = 1;
}

bool create_window() {
    UiEngine* engine = installer.engine;
    std::int32_t centre_x = 0;
    std::int32_t centre_y = 0;
    screen_centre(engine, &centre_x, &centre_y);
    const std::int32_t width = installer.splash_w;
    const std::int32_t height = installer.splash_h;
    const std::int32_t x = centre_x - width / 2;
    const std::int32_t y = centre_y - height / 2;
    installer.splash_window =
        window_create_colored(engine, x, y, width, height, background_white, background_white,
                              background_white, nullptr, 1.0F);
    if (installer.splash_window < 0) {
        log_print("** ERROR ** %s: Could not create splash screen windown", installer.title);
        return false;
    }
    const WindowId id = installer.splash_window;
    window_set_size_hints(engine, width, height, width, height, 0, 0, x, y, id);
    window_set_class_hint(engine, id, "zeph-inst-splash");
    window_set_above(engine, id);
    window_set_type_splash(engine, id);
    window_select_input(engine, id);
    return true;
}

bool create_pictures() {
    UiEngine* engine = installer.engine;
    installer.splash_pixbuf =
        orx_pixbuf_new_from_inline(engine, zeph_payload_images[payload_splash_picture]);
    if (installer.splash_pixbuf == nullptr ||
        !window_picture_new(&installer.splash_picture, installer.splash_w, installer.splash_h)) {
        log_print("** ERROR ** %s: Unable to allocate memory for splash screen GUI objects\n",
                  installer.title);
        return false;
    }
    orx_pixbuf_copy_area(engine, installer.splash_pixbuf, installer.splash_picture.surface, 0, 0, 0,
                         0, design_width, design_height);
    return true;
}

void show_until_dismissed() {
    UiEngine* engine = installer.engine;
    const WindowId id = installer.splash_window;
    installer.splash_dismissed = 0;
    window_set_on_paint(engine, id, on_paint);
    window_set_on_close(engine, id, on_close);
    window_set_on_button_press(engine, id, on_button_press);
    // Right after the start a first press counts as the second of a double click.
    window_set_on_double_click(engine, id, on_button_press);
    window_map(engine, id);
    for (std::int32_t i = 0;
         i < shown_ms && installer.splash_dismissed == 0 && installer.cancel_requested == 0; ++i) {
        installer.steps += 1;
        usleep(1000);
    }
}

// The window goes first: once it is gone the event thread paints it no more.
void take_away() {
    if (installer.splash_window >= 0) {
        window_destroy(installer.engine, installer.splash_window);
        installer.splash_window = no_window;
    }
    orx_pixbuf_free_inline(installer.engine, installer.splash_pixbuf);
    installer.splash_pixbuf = nullptr;
    window_picture_free(&installer.splash_picture);
}

} // namespace

bool show_splash() {
    const bool ready = create_window() && create_pictures();
    if (ready) {
        show_until_dismissed();
    }
    take_away();
    return ready;
}
