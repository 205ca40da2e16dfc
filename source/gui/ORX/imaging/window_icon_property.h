// window_icon_property.h: _NET_WM_ICON, the icon with transparency that today's desktops read.
#pragma once

#include "gui/ORX/core/window_id.h"

struct Pixbuf;

// Sets the property to that one picture. Nothing for a free slot, a closed display, without memory,
// or for a picture that is too large for one request. Takes x_lock.
void set_icon_property(UiEngine* engine, WindowId id, const Pixbuf* icon);
