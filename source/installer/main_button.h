// main_button.h: the look of the main window's buttons, and putting one on the screen.
#pragma once

#include "installer/main_layout.h"

struct PushButton;

// Gives a button its place, colours and label; it is hidden.
void configure_main_button(PushButton* button, const Rectangle& place, const char* label);

// Paints it into the main window's picture and has that shown. With screen_lock held, on the event
// thread.
void paint_main_button(const PushButton* button);
