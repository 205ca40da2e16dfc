// Folder listing: tables of any names and kinds, sorted, placed and clicked, against a plain bubble
// sort and a plain search.

#include "fuzz/fuzz_input.h"

#include "gui/ORX/orx_helpers/ORX_nat_string_compare.h"
#include "gui/ORX/widgets/folder_listing.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <vector>

namespace {

using fuzz::require;

constexpr std::size_t most_entries = 120; // enough for every path, and quick to sort by bubbles

struct Entry {
    std::string name;
    std::uint32_t mode;
    bool hidden;
    friend bool operator==(const Entry&, const Entry&) = default;
};

bool is_folder(const Entry& entry) {
    return S_ISDIR(entry.mode);
}

bool is_hidden(const std::string& name, std::uint32_t mode) {
    return name.size() > 1 && name[0] == '.' && name[1] != '.' && !S_ISDIR(mode);
}

std::vector<Entry> take_entries(fuzz::Input& input) {
    constexpr std::uint32_t kinds[] = {S_IFDIR | 0755U, S_IFREG | 0644U, S_IFLNK | 0777U,
                                       S_IFIFO | 0600U, 0U};
    std::vector<Entry> entries;
    while (!fuzz::is_empty(input) && entries.size() < most_entries) {
        const std::uint32_t mode = kinds[fuzz::take_below(input, std::size(kinds))];
        const std::string name = fuzz::take_text(input);
        entries.push_back({name, mode, is_hidden(name, mode)});
    }
    return entries;
}

void bubble_sort(std::vector<Entry>& entries) {
    for (std::size_t end = entries.size(); end > 1; --end) {
        for (std::size_t i = 1; i < end; ++i) {
            const Entry& previous = entries[i - 1];
            const Entry& current = entries[i];
            const bool later = is_folder(previous) == is_folder(current)
                                   ? strnatcmp0(previous.name.c_str(), current.name.c_str(), 0) > 0
                                   : is_folder(current);
            if (later) {
                std::swap(entries[i - 1], entries[i]);
            }
        }
    }
}

std::int32_t measured_width(const void* context, const char* name) {
    return *static_cast<const std::int32_t*>(context) *
           static_cast<std::int32_t>(std::min<std::size_t>(std::strlen(name), 80));
}

// The row whose band holds y; a point on the line between two rows belongs to the upper one.
const DirEntry* row_at(const std::vector<DirEntry*>& shown, std::int32_t x, std::int32_t y) {
    for (const DirEntry* entry : shown) {
        const bool in_band = y >= entry->y - folder_row_height && y <= entry->y;
        if (in_band && x < folder_name_x + entry->text_width) {
            return entry;
        }
    }
    return nullptr;
}

void check_places(DirEntry* table, std::size_t count, fuzz::Input& points, std::int32_t advance) {
    folder_listing_place(table, measured_width, &advance);
    std::vector<DirEntry*> shown;
    for (std::size_t row = 0; row < count; ++row) {
        if (table[row].hidden == 0) {
            shown.push_back(&table[row]);
            require(table[row].x == folder_name_x, "names begin in one column");
            require(table[row].y == folder_row_height * static_cast<std::int32_t>(shown.size()),
                    "each visible entry has a row of its own");
            require(table[row].text_width == measured_width(&advance, table[row].name),
                    "the width is the measured one");
        }
    }
    const auto visible = static_cast<std::int32_t>(shown.size());
    for (int point = 0; point < 16; ++point) {
        const std::int32_t x = static_cast<std::int32_t>(fuzz::take_below(points, 700)) - 40;
        const std::int32_t y = static_cast<std::int32_t>(fuzz::take_below(points, 2200)) - 40;
        require(folder_listing_at(table, x, y) == row_at(shown, x, y), "a click finds its row");
    }
    for (DirEntry* entry : shown) {
        require(folder_listing_at(table, 0, entry->y) == row_at(shown, 0, entry->y),
                "the margin belongs to the row");
    }
    require(folder_list_height(visible) >= visible * folder_row_height, "every row has its place");
}

void check_sizes(fuzz::Input& input) {
    const auto visible =
        static_cast<std::int32_t>(fuzz::take_below(input, folder_listing_capacity + 1));
    const float scale = 1.0F + 0.125F * static_cast<float>(fuzz::take_below(input, 9));
    const std::int32_t height = folder_list_device_height(visible, scale);
    require(height >= 268 && height <= 32767, "the list has a height that a server can hold");
    require(visible == 0 || folder_list_device_height(visible - 1, scale) <= height,
            "a longer list is no lower");
    const float thumb = folder_list_thumb_percent(height, scale);
    require(thumb > 0.0F && thumb <= 100.0F, "the thumb lies in its bar");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Cleared row by row, so that a run costs no more than its entries.
    static DirEntry table[folder_listing_capacity];
    fuzz::Input input{data, size};
    const std::int32_t advance = fuzz::take_byte(input) % 12;
    check_sizes(input);
    fuzz::Input points = input;
    std::vector<Entry> entries = take_entries(input);
    for (std::size_t row = 0; row < entries.size(); ++row) {
        const auto name = fuzz::exact_copy(entries[row].name);
        table[row] = DirEntry{};
        table[row].mode = entries[row].mode;
        table[row].name = strdup(name.get());
        table[row].hidden = folder_entry_is_hidden(name.get(), entries[row].mode) ? 1 : 0;
        require((table[row].hidden != 0) == entries[row].hidden, "hidden entries are left out");
        require(folder_entry_is_directory(&table[row]) == is_folder(entries[row]), "folders");
    }
    folder_listing_sort(table);
    bubble_sort(entries);
    for (std::size_t row = 0; row < entries.size(); ++row) {
        const Entry sorted{table[row].name, table[row].mode, table[row].hidden != 0};
        require(sorted == entries[row], "folders first, each group in natural order");
    }
    check_places(table, entries.size(), points, advance);
    if (!entries.empty()) {
        table[points.left % entries.size()].selected = 1;
        require(folder_listing_clear_selection(table), "a selection is found");
    }
    require(!folder_listing_clear_selection(table), "a cleared selection is gone");
    folder_listing_clear(table);
    require(table[0].name == nullptr && table[folder_listing_capacity - 1].name == nullptr,
            "a cleared table is empty");
    return 0;
}
