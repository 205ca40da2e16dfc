// folder_listing.h: what the folder browser knows of the folder that it shows. Pure, no display.
//
// A table of up to 4,096 entries, in design pixels of the list image, where each visible entry
// takes a row of 16. Hidden entries take table rows too, but no place in the list. Rows without a
// name end the table. No lock: the table belongs to its dialog.
#pragma once

#include <cstdint>

inline constexpr std::int32_t folder_listing_capacity = 4096;
inline constexpr std::int32_t folder_row_height = 16;
inline constexpr std::int32_t folder_name_x = 32; // left edge of every name

struct DirEntry {
    std::uint32_t mode; // st_mode; its kind is all that is sure to be known
    char* name;         // owned; null ends the table
    std::uint8_t hidden;
    std::uint8_t selected;
    std::int32_t x;          // left edge of the name
    std::int32_t y;          // its baseline
    std::int32_t text_width; // of the name
};

// Frees every name and zeroes every row.
void folder_listing_clear(DirEntry* table);

// Clears the table and reads a folder into it, in the order of the file system; entries past the
// 4,096th are dropped. Links are followed; an entry that does not tell its kind, and whose status
// cannot be had, keeps the mode of the one before it. *visible becomes the number of entries that
// are not hidden. false, with an empty table and 0, when the folder cannot be opened.
[[nodiscard]] bool folder_listing_read(DirEntry* table, const char* path, std::int32_t* visible);

// Whether an entry is left out: a name of a dot and anything but another dot, that is no folder.
[[nodiscard]] bool folder_entry_is_hidden(const char* name, std::uint32_t mode);

[[nodiscard]] bool folder_entry_is_directory(const DirEntry* entry);

// Folders first, then everything else, each in natural order; equal names keep their order, and
// rows without a name stay at the end. Mode, name and hidden move together.
void folder_listing_sort(DirEntry* table);

// Gives each visible row its place and the width of its name as `measure` tells it.
using MeasureText = std::int32_t (*)(const void* context, const char* name);
void folder_listing_place(DirEntry* table, MeasureText measure, const void* context);

// The first visible row at a point of the list image, or null. The margin and the folder mark
// count; what lies right of the name does not.
[[nodiscard]] DirEntry* folder_listing_at(DirEntry* table, std::int32_t x, std::int32_t y);

// Clears every selected byte. true when one was set.
bool folder_listing_clear_selection(DirEntry* table);

// Height of the list image for so many visible rows, design pixels.
[[nodiscard]] std::int32_t folder_list_height(std::int32_t visible);

// The same in device pixels, at most 32,767.
[[nodiscard]] std::int32_t folder_list_device_height(std::int32_t visible, float scale);

// How much of the scroll bar its thumb takes, for a list of so many device pixels.
[[nodiscard]] float folder_list_thumb_percent(std::int32_t device_height, float scale);
