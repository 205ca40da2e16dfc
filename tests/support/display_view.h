// What anybody can see on a display from outside: the window tree, properties, places, and how a
// window manager asks a window to close.
//
// The view has its own connection and handles X errors itself, so that a window that vanishes
// between two questions is "not there" and never ends the test, and so that the Xlib error handlers
// of a program under test in the same process stay alone. Coordinates are device pixels. Questions
// about a window that is not there give nothing, empty, or zero.

#pragma once

#include "support/wait_until.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

struct xcb_connection_t;

namespace support {

using XWindow = std::uint32_t;

struct Place {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    friend bool operator==(const Place&, const Place&) = default;
};

struct Property {
    std::string type; // name of the type atom
    int format = 0;   // 8, 16 or 32
    std::string bytes;
};

// WM_NORMAL_HINTS; flags are those of ICCCM (USPosition 1, PPosition 4, PSize 8, PMinSize 16, ...).
// Base size and gravity are 0 when a program has set the older, shorter property.
struct SizeHints {
    std::uint32_t flags = 0;
    int x = 0, y = 0, width = 0, height = 0;
    int min_width = 0, min_height = 0, max_width = 0, max_height = 0;
    int width_step = 0, height_step = 0;
    int min_aspect_x = 0, min_aspect_y = 0, max_aspect_x = 0, max_aspect_y = 0;
    int base_width = 0, base_height = 0;
    int gravity = 0;
};

class DisplayView {
public:
    // Connects; throws std::runtime_error when there is no such display.
    explicit DisplayView(const std::string& display_name, int screen = 0);
    ~DisplayView();
    DisplayView(const DisplayView&) = delete;
    DisplayView& operator=(const DisplayView&) = delete;

    [[nodiscard]] XWindow root() const { return root_; }
    [[nodiscard]] Place root_place() const { return place_on_root(root_); }
    [[nodiscard]] xcb_connection_t* connection() const { return connection_; }

    [[nodiscard]] bool exists(XWindow window) const;
    [[nodiscard]] bool viewable(XWindow window) const;
    [[nodiscard]] std::vector<XWindow> children(XWindow window) const; // the lowest first
    // The child of the root that is the window or its frame; 0 for a window that is not there.
    [[nodiscard]] XWindow top_level_of(XWindow window) const;
    // Position of the window's own corner (not its frame's) on the root, and its size.
    [[nodiscard]] Place place_on_root(XWindow window) const;

    [[nodiscard]] std::optional<Property> property(XWindow window, const std::string& name) const;
    [[nodiscard]] std::string text_property(XWindow window, const std::string& name) const;
    [[nodiscard]] std::vector<std::uint32_t> numbers_property(XWindow window,
                                                              const std::string& name) const;
    // The names of the atoms in a list property such as _NET_WM_STATE.
    [[nodiscard]] std::vector<std::string> atoms_property(XWindow window,
                                                          const std::string& name) const;
    [[nodiscard]] std::string title(XWindow window) const;
    [[nodiscard]] std::string class_name(XWindow window) const;
    [[nodiscard]] std::optional<SizeHints> size_hints(XWindow window) const;
    // Set by every window manager on the windows it manages.
    [[nodiscard]] bool managed(XWindow window) const;

    // Viewable windows by WM_NAME or by either word of WM_CLASS, anywhere in the tree; the one
    // nearest to the root.
    [[nodiscard]] std::optional<XWindow> find_title(const std::string& title) const;
    [[nodiscard]] std::optional<XWindow> find_class(const std::string& name) const;
    // The same with patience; throw std::runtime_error with the window tree on time-out.
    [[nodiscard]] XWindow
    wait_for_title(const std::string& title,
                   std::chrono::milliseconds patience = default_patience) const;
    [[nodiscard]] XWindow
    wait_for_class(const std::string& name,
                   std::chrono::milliseconds patience = default_patience) const;
    [[nodiscard]] bool wait_until_gone(XWindow window,
                                       std::chrono::milliseconds patience = default_patience) const;

    [[nodiscard]] XWindow input_focus() const;

    // Asks a window to close with WM_DELETE_WINDOW, as a window manager's close button does.
    void ask_to_close(XWindow window) const;

    // Asks the window manager to do something to a window, as a taskbar does: a message of that
    // type, with up to five numbers.
    void ask_manager(XWindow window, const std::string& type,
                     const std::vector<std::uint32_t>& numbers) const;

    // One line per window of more than a pixel: id, place, class, title, shown or not.
    [[nodiscard]] std::string describe_tree() const;

private:
    [[nodiscard]] std::uint32_t atom(const std::string& name) const;
    [[nodiscard]] std::string atom_name(std::uint32_t atom) const;
    // The first viewable window, those nearest to the root first, whose text property matches.
    [[nodiscard]] std::optional<XWindow>
    find(const std::string& property, const std::function<bool(const std::string&)>& matches) const;
    void describe(XWindow window, int depth, std::string& text) const;

    xcb_connection_t* connection_;
    XWindow root_ = 0;
    // Atoms stay what they are while the server lives.
    mutable std::mutex atoms_lock_;
    mutable std::map<std::string, std::uint32_t> atoms_;
};

} // namespace support
