// metrics_table.cpp: reads the table of glyph metrics.
#include "font_sheet.h"

#include <cstdio>
#include <fstream>

namespace {

bool fail(const std::string& file, int line, const std::string& what) {
    std::fprintf(stderr, "%s:%d: %s\n", file.c_str(), line, what.c_str());
    return false;
}

bool read_same(const std::string& file, int line, int first, int last, int target,
               FontSheet& sheet) {
    if (first < 0 || last > 255 || first > last || target < 0 || target > 255)
        return fail(file, line, "code points go from 0 to 255, the smaller first");
    for (int code = first; code <= last; ++code) {
        SheetGlyph& glyph = sheet.glyphs[static_cast<size_t>(code)];
        if (glyph.line)
            return fail(file, line,
                        "code point " + std::to_string(code) + " already has line " +
                            std::to_string(glyph.line));
        glyph.line = line;
        glyph.same = target;
    }
    return true;
}

bool read_glyph(const std::string& file, int line, int code, const SheetGlyph& read,
                FontSheet& sheet) {
    if (code < 0 || code > 255)
        return fail(file, line, "code points go from 0 to 255");
    SheetGlyph& glyph = sheet.glyphs[static_cast<size_t>(code)];
    if (glyph.line)
        return fail(file, line,
                    "code point " + std::to_string(code) + " already has line " +
                        std::to_string(glyph.line));
    if (read.advance < 0 || read.advance > 255)
        return fail(file, line, "the advance must be 0 to 255");
    glyph = read;
    glyph.line = line;
    return true;
}

bool read_line(const std::string& file, int line, const std::string& text, FontSheet& sheet) {
    const std::string body = text.substr(0, text.find('#'));
    if (body.find_first_not_of(" \t\r") == std::string::npos)
        return true;
    int first = 0, last = 0, target = 0, end = 0;
    const auto whole = [&] {
        return end > 0 &&
               body.find_first_not_of(" \t\r", static_cast<size_t>(end)) == std::string::npos;
    };
    // NOLINTBEGIN(cert-err34-c): a number too large fails the range checks that follow.
    if (std::sscanf(body.c_str(), "%5d-%5d same %5d%n", &first, &last, &target, &end) == 3 &&
        whole())
        return read_same(file, line, first, last, target, sheet);
    end = 0;
    if (std::sscanf(body.c_str(), "%5d same %5d%n", &first, &target, &end) == 2 && whole())
        return read_same(file, line, first, first, target, sheet);
    end = 0;
    SheetGlyph read;
    if (std::sscanf(body.c_str(), "%5d %5d %5d %5d %5d %5d%n", &first, &read.width, &read.height,
                    &read.advance, &read.x_bearing, &read.top_bearing, &end) == 6 &&
        whole())
        return read_glyph(file, line, first, read, sheet);
    // NOLINTEND(cert-err34-c)
    return fail(file, line,
                "expected six numbers (code point, width, height, advance, x bearing, top "
                "bearing) or \"FIRST-LAST same CODE\"");
}

} // namespace

bool read_metrics(const std::string& file, FontSheet& sheet) {
    std::ifstream in(file);
    std::string text;
    int line = 0;
    bool good = static_cast<bool>(in);
    if (!good)
        std::fprintf(stderr, "%s: cannot be read\n", file.c_str());
    while (good && std::getline(in, text))
        good = read_line(file, ++line, text, sheet);
    for (size_t code = 0; good && code < sheet.glyphs.size(); ++code) {
        const SheetGlyph& glyph = sheet.glyphs[code];
        if (!glyph.line) {
            std::fprintf(stderr, "%s: code point %zu has no line\n", file.c_str(), code);
            good = false;
        } else if (glyph.same >= 0 && sheet.glyphs[static_cast<size_t>(glyph.same)].same >= 0) {
            good = fail(file, glyph.line, "\"same\" must name a code point with its own glyph");
        }
    }
    return good;
}
