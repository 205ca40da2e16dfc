// Proof that the installed file is the plug-in that was shipped and that a real host can run it.

#pragma once

#include "end_to_end/installed_file.h"

#include <string>

namespace end_to_end {

// Compares the plug-in in the folder with the installer's archive. Throws std::runtime_error with
// the difference.
[[nodiscard]] PluginFile prove_file(const std::string& folder);

// Has analyseplugin list the plug-in and applyplugin run loud noise through it, which must come out
// under the ceiling asked for. Throws std::runtime_error when the hosts or the sound say otherwise.
void prove_in_hosts(const std::string& folder);

} // namespace end_to_end
