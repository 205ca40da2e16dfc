// Starting a window manager and waiting until it manages windows.

#include "support/window_manager.h"

#include "support/display_view.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace support {

namespace {

// Without random placement twm would wait for a person to place each window by hand.
constexpr const char* twm_configuration = "RandomPlacement\n"
                                          "UsePPosition \"on\"\n"
                                          "NoGrabServer\n"
                                          "BorderWidth 2\n";

constexpr const char* openbox_configuration =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <placement><policy>Smart</policy><center>yes</center></placement>
  <theme><name>Clearlooks</name><titleLayout>NLC</titleLayout></theme>
  <desktops><number>1</number><popupTime>0</popupTime></desktops>
  <mouse>
    <context name="Client">
      <mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
      <mousebind button="Middle" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
      <mousebind button="Right" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
    </context>
    <context name="Titlebar">
      <mousebind button="Left" action="Drag"><action name="Move"/></mousebind>
    </context>
    <context name="Close">
      <mousebind button="Left" action="Click"><action name="Close"/></mousebind>
    </context>
  </mouse>
</openbox_config>
)";

// Shows small windows until the window manager has taken one: a window that appears while the
// manager starts may be missed, and another one is shown then. Each stays for longer, because a
// slow manager may otherwise never catch one.
bool manages_a_window(const DisplayView& view) {
    xcb_connection_t* connection = view.connection();
    std::chrono::milliseconds patience{50};
    const bool managed = wait_until([&] {
        const xcb_window_t probe = xcb_generate_id(connection);
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, probe, view.root(), 0, 0, 16, 16, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_map_window(connection, probe);
        xcb_flush(connection);
        const bool taken = wait_until([&] { return view.managed(probe); }, patience);
        xcb_destroy_window(connection, probe);
        xcb_flush(connection);
        patience *= 2;
        return taken;
    });
    // Its frame is taken down a moment later; nothing else is on the screen when the test begins.
    const auto frame_gone = [&] {
        for (const XWindow child : view.children(view.root())) {
            const Place place = view.place_on_root(child);
            // Window managers keep windows of their own outside the screen.
            if (view.viewable(child) && place.x + place.width > 0 && place.y + place.height > 0) {
                return false;
            }
        }
        return true;
    };
    return managed && wait_until(frame_gone, std::chrono::milliseconds{5000},
                                 [&] { return view.describe_tree(); });
}

} // namespace

const char* window_manager_name(WindowManagerKind kind) {
    switch (kind) {
    case WindowManagerKind::none:
        return "none";
    case WindowManagerKind::twm:
        return "twm";
    case WindowManagerKind::openbox:
        return "openbox";
    }
    return "";
}

WindowManager::WindowManager(WindowManagerKind kind, const std::string& display_name)
    : kind_(kind) {
    if (kind == WindowManagerKind::none) {
        return;
    }
    char folder[] = "/tmp/zeph-window-manager-XXXXXX";
    if (mkdtemp(folder) == nullptr) {
        throw std::runtime_error("no folder for the window manager's configuration");
    }
    folder_ = folder;
    const std::string file = folder_ + "/configuration";
    const bool old = kind == WindowManagerKind::twm;
    std::ofstream(file) << (old ? twm_configuration : openbox_configuration);
    const char* path = std::getenv("PATH");
    ChildOptions options;
    options.command =
        old ? std::vector<std::string>{"twm", "-f", file}
            : std::vector<std::string>{"openbox", "--sm-disable", "--config-file", file};
    options.environment = std::vector<std::string>{
        "DISPLAY=" + display_name,
        "HOME=" + folder_,
        "XDG_CONFIG_HOME=" + folder_,
        "XDG_CACHE_HOME=" + folder_,
        "XDG_DATA_HOME=" + folder_,
        "LC_ALL=C.UTF-8",
        std::string("PATH=") + (path != nullptr ? path : "/usr/local/bin:/usr/bin:/bin")};
    process_ = std::make_unique<ChildProcess>(options);
    if (!manages_a_window(DisplayView(display_name))) {
        throw std::runtime_error(std::string(window_manager_name(kind)) +
                                 " does not manage windows: " + process_->error_output());
    }
}

WindowManager::~WindowManager() {
    process_.reset();
    if (!folder_.empty()) {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
}

} // namespace support
