// folder_levels.h: the names of a path that lead to folders which are still to be made.
#pragma once

#include <cstdint>

// How many of the path's names, from the last one on, lead to nothing, or on from what is no
// folder. The path is absolute and has neither empty names nor a slash at its end.
[[nodiscard]] std::int32_t missing_levels(const char* path);

// Bytes of the path without its last names, so many of them; at least 1, for "/". Pure.
[[nodiscard]] std::int32_t length_without_levels(const char* path, std::int32_t levels);
