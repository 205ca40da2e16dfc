// disk_room.h: whether so much fits, asked before anything is written.
#pragma once

#include <cstdint>

// Whose writing is meant: a part of a disk may be kept for root.
enum class Writer { person, root };

// true when so many bytes fit where the folder is, and when that cannot be told.
[[nodiscard]] bool has_room(const char* folder, std::int64_t bytes, Writer writer);
