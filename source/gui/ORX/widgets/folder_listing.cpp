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

// A row on its way to its place, by a key whose first byte puts folders before everything else.
struct SortedRow {
    const unsigned char* key;
    std::size_t key_length;
    DirEntry entry;
};

bool sorts_before(const SortedRow& a, const SortedRow& b) {
    return std::memcmp(a.key, b.key, std::min(a.key_length, b.key_length)) < 0;
}

bool entry_sorts_before(const DirEntry& a, const DirEntry& b) {
    const bool a_is_directory = folder_entry_is_directory(&a);
    if (a_is_directory != folder_entry_is_directory(&b)) {
        return a_is_directory;
    }
    return orx_natural_compare(a.name, b.name) < 0;
}

std::size_t key_room(const DirEntry& entry) {
    return 1 + orx_natural_key_room(std::strlen(entry.name));
}

// Gives each row its key, one behind the other.
void make_keys(const DirEntry* table, std::int32_t count, SortedRow* rows, unsigned char* keys) {
    for (std::int32_t row = 0; row < count; ++row) {
        keys[0] = folder_entry_is_directory(&table[row]) ? 0 : 1;
        const std::size_t length = 1 + orx_natural_key(table[row].name, keys + 1);
        rows[row] = SortedRow{keys, length, table[row]};
        keys += length;
    }
}

// The folder itself tells what most entries are. Only the others are asked, since one that lies on
// a mount whose server has gone would never answer.
mode_t mode_of(int folder, const dirent& found, mode_t mode_before) {
    if (found.d_type != DT_LNK && found.d_type != DT_UNKNOWN) {
        return static_cast<mode_t>(DTTOIF(found.d_type));
    }
    struct stat status {};
    return fstatat(folder, found.d_name, &status, 0) == 0 ? status.st_mode : mode_before;
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
    mode_t mode = 0;
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
        mode = mode_of(descriptor, *found, mode);
        entry.mode = mode;
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
    const std::int32_t count = named_rows(table);
    std::size_t room = 1;
    for (std::int32_t row = 0; row < count; ++row) {
        room += key_room(table[row]);
    }
    auto* keys = static_cast<unsigned char*>(std::malloc(room));
    auto* rows = static_cast<SortedRow*>(
        std::malloc(sizeof(SortedRow) * (static_cast<std::size_t>(count) + 1)));
    if (keys != nullptr && rows != nullptr) {
        make_keys(table, count, rows, keys);
        std::stable_sort(rows, rows + count, sorts_before);
        std::transform(rows, rows + count, table, [](const SortedRow& row) { return row.entry; });
    } else {
        std::stable_sort(table, table + count, entry_sorts_before); // slower, without the memory
    }
    std::free(rows);
    std::free(keys);
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
