// disk_room.h: whether so much fits, asked before anything is written.
#pragma once

#include <cstddef>
#include <cstdint>

// Whose writing is meant: a part of a disk may be kept for root.
enum class Writer { person, root };

// Bytes to come into a folder, which need not be there yet.
struct RoomWanted {
    const char* folder;
    std::int64_t bytes;
};

// true when so many bytes fit where the folder is, and when that cannot be told.
[[nodiscard]] bool has_room(const char* folder, std::int64_t bytes, Writer writer);

// The same of several folders at once, some of which may be on one disk.
[[nodiscard]] bool has_room_for_all(const RoomWanted* wanted, std::size_t count, Writer writer);

// false when a disk takes no more files, whatever room for bytes it has. To tell why something
// failed; asked before, it would wrong file systems that do not know.
[[nodiscard]] bool has_room_for_a_file(const char* folder);
