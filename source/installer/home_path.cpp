// home_path.cpp: putting home in front.
#include "installer/home_path.h"

#include <cstdio>
#include <cstring>

bool path_at_home(char (&path)[PATH_MAX], const char* home, const char* text) {
    if (home == nullptr || home[0] != '/' || text[0] != '~') {
        return false;
    }
    std::size_t length = std::strlen(home);
    while (length > 0 && home[length - 1] == '/') {
        --length;
    }
    if (length >= sizeof path) {
        return false;
    }
    const int written =
        std::snprintf(path, sizeof path, "%.*s%s", static_cast<int>(length), home, text + 1);
    return written >= 0 && static_cast<std::size_t>(written) < sizeof path;
}
