// folder_levels.cpp: counting names.
#include "installer/folder_levels.h"

#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>

namespace {

bool leads_to_nothing(const char* path, std::int32_t length) {
    char text[PATH_MAX];
    const int written = std::snprintf(text, sizeof text, "%.*s", length, path);
    struct stat status {};
    return written >= 0 && static_cast<std::size_t>(written) < sizeof text &&
           stat(text, &status) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

} // namespace

std::int32_t length_without_levels(const char* path, std::int32_t levels) {
    auto length = static_cast<std::int32_t>(std::strlen(path));
    for (; levels > 0 && length > 1; --levels) {
        while (length > 1 && path[length - 1] != '/') {
            --length;
        }
        if (length > 1) {
            --length;
        }
    }
    return length;
}

std::int32_t missing_levels(const char* path) {
    std::int32_t levels = 0;
    for (;;) {
        const std::int32_t length = length_without_levels(path, levels);
        if (length <= 1 || !leads_to_nothing(path, length)) {
            return levels;
        }
        ++levels;
    }
}
