// The three worlds a window can live in: a modern window manager, an old one, and none.
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
    std::unique_ptr<ChildProcess> process_;
};

} // namespace support
