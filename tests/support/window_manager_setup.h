// How each window manager is started: its small configuration and its command.

#pragma once

#include "support/window_manager.h"

#include <string>
#include <vector>

namespace support {

struct WindowManagerSetup {
    std::vector<std::string> command;
    bool needs_message_bus = false;
};

// Writes the configuration into the folder, which is also the manager's home.
[[nodiscard]] WindowManagerSetup set_up_window_manager(WindowManagerKind kind,
                                                       const std::string& folder);

} // namespace support
