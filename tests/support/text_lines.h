// Texts taken apart.

#pragma once

#include <string>
#include <vector>

namespace support {

// The lines of a text, without their line feeds.
[[nodiscard]] std::vector<std::string> lines_of(const std::string& text);

} // namespace support
