// Cursors of one picture while this lives: a theme's watch may move, and then counts as another
// cursor with each picture.

#pragma once

#include <cstdlib>

namespace support {

struct PlainCursors {
    PlainCursors() { setenv("XCURSOR_CORE", "1", 1); }
    ~PlainCursors() { unsetenv("XCURSOR_CORE"); }
    PlainCursors(const PlainCursors&) = delete;
    PlainCursors& operator=(const PlainCursors&) = delete;
};

} // namespace support
