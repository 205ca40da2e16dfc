// desktop_folder.cpp: reading user-dirs.dirs.
#include "installer/desktop_folder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr char name[] = "XDG_DESKTOP_DIR=\"";
constexpr char home_word[] = "$HOME";
constexpr std::size_t line_size = PATH_MAX + sizeof name + 2; // quote and line feed

// Copies up to the closing quote. false when there is none, or too much before it.
bool copy_value(char* end, const char* limit, const char* value) {
    for (; *value != '"'; ++value) {
        if (*value == '\\') {
            ++value;
        }
        if (*value == '\0' || end == limit) {
            return false;
        }
        *end++ = *value;
    }
    *end = '\0';
    return true;
}

bool is_folder(const char* path) {
    struct stat status {};
    return stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

bool write_path(char (&path)[PATH_MAX], const char* folder, const char* rest) {
    const int length = std::snprintf(path, sizeof path, "%s/%s", folder, rest);
    return length >= 0 && static_cast<std::size_t>(length) < sizeof path;
}

bool settings_path(char (&path)[PATH_MAX], const char* home) {
    const char* folder = std::getenv("XDG_CONFIG_HOME");
    return folder != nullptr && folder[0] == '/' ? write_path(path, folder, "user-dirs.dirs")
                                                 : write_path(path, home, ".config/user-dirs.dirs");
}

// Null when there is no such file. A pipe or device under that name is not waited for.
std::FILE* open_plain_file(const char* path) {
    const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat status {};
    if (descriptor < 0) {
        return nullptr;
    }
    std::FILE* file = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)
                          ? fdopen(descriptor, "r")
                          : nullptr;
    if (file == nullptr) {
        close(descriptor);
    }
    return file;
}

} // namespace

bool desktop_folder_of_line(char (&folder)[PATH_MAX], const char* line, const char* home) {
    line += std::strspn(line, " \t");
    if (std::strncmp(line, name, sizeof name - 1) != 0) {
        return false;
    }
    const char* value = line + sizeof name - 1;
    char read[PATH_MAX] = "";
    std::size_t start = 0;
    if (std::strncmp(value, home_word, sizeof home_word - 1) == 0) {
        value += sizeof home_word - 1;
        start = std::strlen(home);
        if (start >= sizeof read) {
            return false;
        }
        std::memcpy(read, home, start);
    }
    if (*value != '/' || !copy_value(read + start, read + sizeof read - 1, value) ||
        std::strspn(read + start, "/") == std::strlen(read + start)) {
        return false;
    }
    std::memcpy(folder, read, sizeof read);
    return true;
}

bool default_desktop_folder(char (&folder)[PATH_MAX], const char* home) {
    return write_path(folder, home, "Desktop");
}

bool find_desktop_folder(char (&folder)[PATH_MAX], const char* home) {
    char path[PATH_MAX];
    std::FILE* file = settings_path(path, home) ? open_plain_file(path) : nullptr;
    if (file != nullptr) {
        bool named = false;
        char line[line_size];
        while (std::fgets(line, sizeof line, file) != nullptr) {
            named = desktop_folder_of_line(folder, line, home) || named;
        }
        (void)std::fclose(file);
        if (named && is_folder(folder)) {
            return true;
        }
    }
    return default_desktop_folder(folder, home);
}
