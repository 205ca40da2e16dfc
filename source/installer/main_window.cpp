// main_window.cpp: making the main window and taking it down.
#include "installer/main_window.h"

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/window_placement.h"
#include "gui/ORX/core/window_properties.h"
#include "gui/ORX/core/window_table.h"
#include "gui/ORX/imaging/image_surface.h"
#include "gui/ORX/imaging/inline_image.h"
#include "installer/choice_buttons.h"
#include "installer/console_log.h"
#include "installer/embedded_artwork.h"
#include "installer/embedded_payload.h"
#include "installer/installer_state.h"
#include "installer/main_button.h"
#include "installer/main_callbacks.h"
#include "installer/main_layout.h"
#include "installer/product_settings.h"
#include "installer/window_picture.h"

#include <new>

namespace {

constexpr std::int32_t window_tick_ms = 50;

bool create_window() {
    UiEngine* engine = installer.engine;
    std::int32_t centre_x = 0;
    std::int32_t centre_y = 0;
    screen_centre(engine, &centre_x, &centre_y);
    const std::int32_t width = installer.main_w;
    const std::int32_t height = installer.main_h;
    const std::int32_t x = centre_x - width / 2;
    const std::int32_t y = centre_y - height / 2;
    installer.main_window = window_create_plain(engine, x, y, width, height, nullptr, 1.0F);
    if (installer.main_window < 0) {
        log_print("** ERROR ** %s: Could not create GUI window\n", installer.title);
        return false;
    }
    const WindowId id = installer.main_window;
    window_set_size_hints(engine, width, height, width, height, 0, 0, x, y, id);
    window_set_class_hint(engine, id, "zeph-installer");
    orx_window_set_icon(engine, zeph_payload_images[payload_window_icon], id);
    window_set_title(engine, id, installer.title);
    window_select_input(engine, id);
    return true;
}

void configure_panel() {
    MessagePanel* panel = installer.panel;
    message_panel_set_header_image(panel, installer.background_pixbuf);
    message_panel_set_width(panel, design_width);
    message_panel_set_height(panel, design_height);
    message_panel_set_scale(panel, installer.scale);
}

void configure_field() {
    PasswordField* field = installer.field;
    password_field_set_x(field, password_field_place.x);
    password_field_set_y(field, password_field_place.y);
    password_field_set_w(field, password_field_place.w);
    password_field_set_h(field, password_field_place.h);
    password_field_set_background_colour(field, layout_grey.r, layout_grey.g, layout_grey.b);
    password_field_set_border_colour(field, layout_grey.r, layout_grey.g, layout_grey.b);
    password_field_set_focused_text_colour(field, layout_white.r, layout_white.g, layout_white.b);
    password_field_set_unfocused_text_colour(field, layout_light_grey.r, layout_light_grey.g,
                                             layout_light_grey.b);
    password_field_set_focused(field, true);
    password_field_set_scale(field, installer.scale);
}

void configure_bar() {
    ProgressBar* bar = installer.bar;
    progress_bar_set_x(bar, progress_bar_place.x);
    progress_bar_set_y(bar, progress_bar_place.y);
    progress_bar_set_width(bar, progress_bar_place.w);
    progress_bar_set_h(bar, progress_bar_place.h);
    progress_bar_set_background_colour(bar, layout_grey.r, layout_grey.g, layout_grey.b);
    progress_bar_set_border_colour(bar, layout_grey.r, layout_grey.g, layout_grey.b);
    progress_bar_set_bar_colour(bar, layout_accent.r, layout_accent.g, layout_accent.b);
    progress_bar_set_caption_colour(bar, layout_white.r, layout_white.g, layout_white.b);
    progress_bar_set_hidden(bar, true);
    progress_bar_set_scale(bar, installer.scale);
}

// Makes what it can; false when something is missing.
bool create_widgets() {
    UiEngine* engine = installer.engine;
    TextRenderer* text = installer.text;
    installer.panel = new (std::nothrow) MessagePanel;
    if (installer.panel != nullptr) {
        message_panel_init(installer.panel, engine, text);
    }
    installer.field = new (std::nothrow) PasswordField;
    if (installer.field != nullptr) {
        password_field_init(installer.field, engine, text);
    }
    installer.bar = new (std::nothrow) ProgressBar;
    if (installer.bar != nullptr) {
        progress_bar_init(installer.bar, engine, text);
    }
    installer.button = new (std::nothrow) PushButton;
    if (installer.button != nullptr) {
        push_button_init(installer.button, engine, text);
    }
    installer.browser = new (std::nothrow) FolderDialog;
    if (installer.browser != nullptr) {
        folder_dialog_init(installer.browser, engine, text);
    }
    installer.background_pixbuf =
        orx_pixbuf_new_from_inline(engine, zeph_payload_images[payload_background_picture]);
    return installer.panel != nullptr && installer.field != nullptr && installer.bar != nullptr &&
           installer.button != nullptr && installer.browser != nullptr &&
           installer.background_pixbuf != nullptr &&
           (product.install_for != InstallFor::ask || choice_buttons_create());
}

// Frees one widget, if it was made.
template <typename Widget> void destroy_widget(Widget** widget, void (*destroy)(Widget*)) {
    if (*widget != nullptr) {
        destroy(*widget);
        delete *widget;
        *widget = nullptr;
    }
}

} // namespace

bool main_window_create() {
    if (!create_window()) {
        return false;
    }
    if (!create_widgets() ||
        !window_picture_new(&installer.main_picture, installer.main_w, installer.main_h)) {
        log_print("** ERROR ** %s: Unable to allocate memory for GUI objects\n", installer.title);
        return false;
    }
    configure_panel();
    configure_field();
    configure_bar();
    configure_main_button(installer.button, ok_button_place, ok_button_label);
    folder_dialog_set_scale(installer.browser, installer.scale);
    folder_dialog_set_icon(installer.browser, inline_image_folder_icon);
    folder_dialog_set_owner(installer.browser, installer.main_window);
    return true;
}

void main_window_open() {
    if (product.install_for == InstallFor::ask) {
        main_window_ask_for_whom();
    } else {
        main_window_show_screen(authentication_screen(installer.auth_method));
    }
    main_callbacks_register();
    engine_set_window_tick_interval(installer.engine, window_tick_ms / installer.tick_ms);
    window_map(installer.engine, installer.main_window);
    window_take_keyboard_without_manager(installer.engine, installer.main_window);
    if (window_is_gone(installer.engine, installer.main_window)) {
        installer.cancel_requested = 1; // as closing it does
    }
}

void main_window_accept_keys() {
    main_callbacks_register_field();
}

void main_window_destroy() {
    destroy_widget(&installer.panel, message_panel_destroy);
    destroy_widget(&installer.field, password_field_destroy);
    destroy_widget(&installer.bar, progress_bar_destroy);
    destroy_widget(&installer.button, push_button_destroy);
    destroy_widget(&installer.browser, folder_dialog_destroy);
    choice_buttons_destroy();
    orx_pixbuf_free_inline(installer.engine, installer.background_pixbuf);
    installer.background_pixbuf = nullptr;
    window_picture_free(&installer.main_picture);
}
