// records.cpp: writes the glyph records as C++ source.
#include "font_sheet.h"

#include <cstdio>

namespace {

int byte_of(int value) {
    return value & 255;
} // two's complement for the bearings

} // namespace

bool write_records(const std::string& file, const FontSheet& sheet) {
    std::FILE* out = std::fopen(file.c_str(), "w");
    if (!out) {
        std::fprintf(stderr, "%s: cannot be written\n", file.c_str());
        return false;
    }
    std::fputs("// Made from the font sheet by font_sheet; edit the sheet, not this file.\n"
               "#include \"gui/ORX/text/font_data.h\"\n\nnamespace {\n",
               out);
    for (size_t code = 0; code < sheet.glyphs.size(); ++code) {
        const SheetGlyph& glyph = sheet.glyphs[code];
        if (glyph.same >= 0)
            continue;
        std::fprintf(out, "constexpr unsigned char glyph_%zu[] = {%d, %d, %d, 0, %d, %d", code,
                     glyph.width, glyph.height, glyph.advance, byte_of(glyph.x_bearing),
                     byte_of(glyph.top_bearing));
        for (const unsigned char value : glyph.coverage)
            std::fprintf(out, ",%d", value);
        std::fputs("};\n", out);
    }
    std::fputs("} // namespace\n\nconst unsigned char* const orx_font_glyphs[256] = {\n", out);
    for (size_t code = 0; code < sheet.glyphs.size(); ++code) {
        const int same = sheet.glyphs[code].same;
        std::fprintf(out, "glyph_%zu,\n", same >= 0 ? static_cast<size_t>(same) : code);
    }
    std::fputs("};\n", out);
    const bool written = !std::ferror(out);
    if (std::fclose(out) != 0 || !written) {
        std::fprintf(stderr, "%s: cannot be written in full\n", file.c_str());
        return false;
    }
    return true;
}
