// Adding up the font's records.

#include "start_up/font_size.h"

#include "gui/ORX/text/font_data.h"

#include <iterator>
#include <set>

namespace start_up {

std::uintmax_t font_bytes() {
    std::uintmax_t bytes = sizeof orx_font_glyphs;
    const std::set<const unsigned char*> records(std::begin(orx_font_glyphs),
                                                 std::end(orx_font_glyphs));
    for (const unsigned char* record : records) {
        bytes += static_cast<std::uintmax_t>(orx_glyph_coverage_offset) +
                 static_cast<std::uintmax_t>(record[orx_glyph_width_offset]) *
                     record[orx_glyph_height_offset];
    }
    return bytes;
}

} // namespace start_up
