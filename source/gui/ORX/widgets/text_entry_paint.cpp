// text_entry_paint.cpp: text, placeholder and caret of the one-line fields.

#include "gui/ORX/widgets/text_entry_paint.h"

#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/text/text_draw.h"
#include "gui/ORX/text/text_measure.h"
#include "gui/ORX/widgets/widget_paint.h"

#include <algorithm>

namespace {

constexpr std::int32_t glyph_limit = 1024;
constexpr WidgetColour placeholder_colour{104, 104, 104};

std::int32_t caret_x(const TextEntryLook& look) {
    const std::int32_t width =
        look.masked ? password_width(look.text, look.content) : text_width(look.text, look.content);
    const std::int32_t behind_text = look.x + width + 3;
    return behind_text < look.x + look.w - 1 ? behind_text : look.x + look.w - 2;
}

// Taller than a very low field, but not than the image.
void paint_caret(const TextEntryLook& look, Pixbuf* image, std::int32_t x) {
    const std::int32_t middle = look.y + look.h / 2;
    const std::int32_t top = std::max(middle - 5, 0);
    const std::int32_t bottom = std::min(middle + 5, static_cast<std::int32_t>(image->height) - 1);
    for (std::int32_t column = std::max(x, 0); column <= x + 1; ++column) {
        orx_pixbuf_vline(look.engine, image, column, bottom, column, top, look.caret.r,
                         look.caret.g, look.caret.b, 255);
    }
}

} // namespace

void text_entry_paint(const TextEntryLook& look, Pixbuf* image) {
    const std::int32_t x = caret_x(look);
    const std::int32_t baseline = look.y + look.h / 2 + 5;
    if (look.content[0] == '\0' && look.placeholder != nullptr) {
        widget_draw_text(look.text, image, look.placeholder, x, baseline, placeholder_colour,
                         glyph_limit);
    }
    const auto draw = look.masked ? draw_password_right_clipped : draw_text_right_clipped;
    draw(look.text, image, look.content, x, baseline, look.y, look.y + look.h, look.x,
         look.x + look.w, look.text_colour.r, look.text_colour.g, look.text_colour.b, glyph_limit);
    paint_caret(look, image, x);
}
