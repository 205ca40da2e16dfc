// folder_listing.cpp: reading, hiding, sorting and finding entries.

#include "gui/ORX/widgets/folder_listing.h"

#include "gui/ORX/orx_helpers/ORX_nat_string_compare.h"
#include "gui/ORX/widgets/widget_geometry.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::int32_t list_margin = 2;
constexpr std::int32_t smallest_list_height = 268;
constexpr std::int32_t tallest_list =
    32767; // device pixels: what a pixmap and 16.16 fixed point hold
constexpr float scroll_bar_height = 272.0F;

std::int32_t named_rows(const DirEntry* table) {
    std::int32_t count = 0;
    while (count < folder_listing_capacity && table[count].name != nullptr) {
        ++count;
    }
    return count;
}

bool sorts_before(const DirEntry& a, const DirEntry& b) {
    const bool a_is_directory = folder_entry_is_directory(&a);
    if (a_is_directory != folder_entry_is_directory(&b)) {
        return a_is_directory;
    }
    return orx_natural_compare(a.name, b.name) < 0;
}

bool is_shown(const DirEntry& entry) {
    return entry.hidden == 0;
}

} // namespace

void folder_listing_clear(DirEntry* table) {
    for (std::int32_t row = 0; row < folder_listing_capacity; ++row) {
        std::free(table[row].name);
        table[row] = DirEntry{};
    }
}

bool folder_listing_read(DirEntry* table, const char* path, std::int32_t* visible) {
    folder_listing_clear(table);
    *visible = 0;
    DIR* folder = opendir(path);
    if (folder == nullptr) {
        return false;
    }
    const int descriptor = dirfd(folder);
    struct stat status {};
    std::int32_t row = 0;
    while (row < folder_listing_capacity) {
        const dirent* found = readdir(folder);
        if (found == nullptr) {
            break;
        }
        DirEntry& entry = table[row];
        entry.name = strdup(found->d_name);
        if (entry.name == nullptr) {
            break;
        }
        ++row;
        // Not checked: an entry that cannot be queried keeps the mode of the one before it.
        (void)fstatat(descriptor, found->d_name, &status, 0);
        entry.mode = status.st_mode;
        entry.hidden = folder_entry_is_hidden(entry.name, entry.mode) ? 1 : 0;
        *visible += is_shown(entry) ? 1 : 0;
    }
    closedir(folder);
    return true;
}

bool folder_entry_is_hidden(const char* name, std::uint32_t mode) {
    return name[0] == '.' && name[1] != '.' && name[1] != '\0' && !S_ISDIR(mode);
}

bool folder_entry_is_directory(const DirEntry* entry) {
    return S_ISDIR(entry->mode);
}

void folder_listing_sort(DirEntry* table) {
    std::stable_sort(table, table + named_rows(table), sorts_before);
}

void folder_listing_place(DirEntry* table, MeasureText measure, const void* context) {
    const std::int32_t rows = named_rows(table);
    std::int32_t y = folder_row_height;
    for (std::int32_t row = 0; row < rows; ++row) {
        DirEntry& entry = table[row];
        if (is_shown(entry)) {
            entry.x = folder_name_x;
            entry.y = y;
            entry.text_width = measure(context, entry.name);
            y += folder_row_height;
        }
    }
}

DirEntry* folder_listing_at(DirEntry* table, std::int32_t x, std::int32_t y) {
    const std::int32_t rows = named_rows(table);
    DirEntry* found = std::find_if(table, table + rows, [x, y](const DirEntry& entry) {
        return is_shown(entry) && entry.y - folder_row_height <= y && y <= entry.y &&
               x < entry.x + entry.text_width;
    });
    return found == table + rows ? nullptr : found;
}

bool folder_listing_clear_selection(DirEntry* table) {
    bool any = false;
    for (std::int32_t row = 0; row < folder_listing_capacity; ++row) {
        any = any || table[row].selected != 0;
        table[row].selected = 0;
    }
    return any;
}

std::int32_t folder_list_height(std::int32_t visible) {
    return std::max(visible * folder_row_height + list_margin, smallest_list_height);
}

std::int32_t folder_list_device_height(std::int32_t visible, float scale) {
    return std::min(scale_rounded(folder_list_height(visible), scale), tallest_list);
}

float folder_list_thumb_percent(std::int32_t device_height, float scale) {
    if (device_height <= 0) {
        return 100.0F;
    }
    return std::min(100.0F,
                    scroll_bar_height / (static_cast<float>(device_height) / scale) * 100.0F);
}
