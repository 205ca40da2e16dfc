// text_entry_paint.h: how one-line fields draw their text and caret. For the fields themselves.
#pragma once

#include "gui/ORX/widgets/widget_geometry.h"

#include "gui/ORX/core/window_id.h"

#include <cstdint>

struct Pixbuf;
struct TextRenderer;

struct TextEntryLook {
    UiEngine* engine;
    const TextRenderer* text;
    const char* content;
    std::int32_t x;
    std::int32_t y;
    std::int32_t w;
    std::int32_t h;
    WidgetColour caret;
    WidgetColour text_colour;
    bool masked;             // a star for each character
    const char* placeholder; // shown while there is no text; null for none
};

// Design pixels. The text ends at the caret, which stands behind it until the field is full and
// then stays at its right end, so that a long text leaves the field on the left.
void text_entry_paint(const TextEntryLook& look, Pixbuf* image);
