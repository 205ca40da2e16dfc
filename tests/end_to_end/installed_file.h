// What an installation leaves: the plug-in in its folder, compared with the archive it came from.

#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace end_to_end {

inline constexpr const char* plugin_name = "QB20.so";

struct PluginFile {
    std::uintmax_t bytes = 0;
    std::string sha256; // lower-case hexadecimal
    friend bool operator==(const PluginFile&, const PluginFile&) = default;
};

// The plug-in in that folder; nothing when there is none.
[[nodiscard]] std::optional<PluginFile> plugin_in(const std::string& folder);

// The plug-in as it is in the archive that the installer carries. Throws when tar cannot read it.
[[nodiscard]] PluginFile plugin_of_archive();

// Names in /tmp that are the installer's.
[[nodiscard]] std::vector<std::string> installer_files_in_tmp();

} // namespace end_to_end
