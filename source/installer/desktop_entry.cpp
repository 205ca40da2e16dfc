// desktop_entry.cpp: the ten lines of the desktop entry.
#include "installer/desktop_entry.h"

#include <cstring>

namespace {

constexpr char plain[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._+@:,=/-";
constexpr char quoted_by_backslash[] = "\"`$\\";

bool is_plain(const char* text) {
    return text[std::strspn(text, plain)] == '\0';
}

// A character of a value: a desktop reads backslashes there.
void write_in_value(std::FILE* file, char character) {
    if (character == '\n') {
        std::fputs("\\n", file);
        return;
    }
    if (character == '\\') {
        std::fputc('\\', file);
    }
    std::fputc(character, file);
}

void write_value(std::FILE* file, const char* text) {
    for (; *text != '\0'; ++text) {
        write_in_value(file, *text);
    }
}

// A part of a command line within quotes, in which codes begin with "%".
void write_quoted(std::FILE* file, const char* text) {
    for (; *text != '\0'; ++text) {
        if (std::strchr(quoted_by_backslash, *text) != nullptr) {
            write_in_value(file, '\\');
        }
        if (*text == '%') {
            std::fputc('%', file);
        }
        write_in_value(file, *text);
    }
}

void write_command(std::FILE* file, const char* folder, const char* name) {
    if (is_plain(folder)) {
        std::fprintf(file, "%s/%s", folder, name);
        return;
    }
    std::fputc('"', file);
    write_quoted(file, folder);
    std::fputc('/', file);
    write_quoted(file, name);
    std::fputc('"', file);
}

} // namespace

bool write_desktop_entry(std::FILE* file, const char* program_folder, const char* icon_folder) {
    // Exec names the default folder whatever folder the person chose.
    std::fputs("[Desktop Entry]\n"
               "Encoding=UTF-8\n"
               "Version=1.0\n"
               "Type=Application\n"
               "Terminal=false\n"
               "Exec=",
               file);
    write_command(file, program_folder, product.product_executable);
    std::fprintf(file, "\nName=%s\nIcon=", product.product_short_name);
    write_value(file, icon_folder);
    std::fprintf(file,
                 "/%s\n"
                 "Comment=%s\n"
                 "Categories=%s\n",
                 product.icon_file_name, product.product_comment, product.desktop_categories);
    return std::ferror(file) == 0;
}
