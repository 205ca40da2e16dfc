// How many bytes the built-in font takes in the executable.

#pragma once

#include <cstdint>

namespace start_up {

// The records, each once, and the table of pointers to them.
[[nodiscard]] std::uintmax_t font_bytes();

} // namespace start_up
