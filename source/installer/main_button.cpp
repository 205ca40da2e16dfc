// main_button.cpp: one look for all buttons.
#include "installer/main_button.h"

#include "installer/installer_state.h"

void configure_main_button(PushButton* button, const Rectangle& place, const char* label) {
    push_button_set_x(button, place.x);
    push_button_set_y(button, place.y);
    push_button_set_w(button, place.w);
    push_button_set_h(button, place.h);
    push_button_set_background_colour(button, layout_grey.r, layout_grey.g, layout_grey.b);
    push_button_set_fill_colour(button, layout_grey.r, layout_grey.g, layout_grey.b);
    push_button_set_border_colour(button, layout_grey.r, layout_grey.g, layout_grey.b);
    push_button_set_highlighted_fill_colour(button, layout_accent.r, layout_accent.g,
                                            layout_accent.b);
    push_button_set_label_colour(button, layout_white.r, layout_white.g, layout_white.b);
    push_button_set_highlighted_label_colour(button, layout_white.r, layout_white.g,
                                             layout_white.b);
    push_button_set_label(button, label);
    push_button_set_hidden(button, true);
    push_button_set_scale(button, installer.scale);
}

void paint_main_button(const PushButton* button) {
    push_button_paint_background(button, installer.main_picture.surface);
    push_button_paint(button, installer.main_picture.surface);
    push_button_request_redraw(button, installer.main_window);
}
