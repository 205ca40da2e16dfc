// The worlds a window can live in: modern window managers, an old one, and none.
//
// The window manager has its own small configuration in a folder of its own, removed at the end,
// and is ready when the constructor returns: it has managed a first window.

#pragma once

#include "support/child_process.h"

#include <memory>
#include <ostream>
#include <string>

namespace support {

enum class WindowManagerKind {
    none,    // keys go to the window under the pointer; windows stay where they are put
    twm,     // ICCCM only; keys go to the window under the pointer
    openbox, // EWMH; a new window gets the keys, later a click moves them
    // As people have them: EWMH, and the keys as with openbox.
    xfwm4,
    icewm,
    fluxbox,
    i3, // tiles windows, but for those of a fixed size
};

[[nodiscard]] const char* window_manager_name(WindowManagerKind kind);

inline std::ostream& operator<<(std::ostream& stream, WindowManagerKind kind) {
    return stream << window_manager_name(kind);
}

class WindowManager {
public:
    // Throws std::runtime_error when it does not begin to manage windows.
    WindowManager(WindowManagerKind kind, const std::string& display_name);
    ~WindowManager();
    WindowManager(const WindowManager&) = delete;
    WindowManager& operator=(const WindowManager&) = delete;

    [[nodiscard]] WindowManagerKind kind() const { return kind_; }

private:
    WindowManagerKind kind_;
    std::string folder_;
    std::unique_ptr<ChildProcess> message_bus_; // only where the manager needs one
    std::unique_ptr<ChildProcess> process_;
};

} // namespace support
