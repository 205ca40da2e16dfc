// Starting a window manager and waiting until it manages windows.

#include "support/window_manager.h"

#include "support/display_view.h"
#include "support/window_manager_setup.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace support {

namespace {

// Shows small windows until the window manager has taken one: a window that appears while the
// manager starts may be missed, and another one is shown then. Each stays for longer, because a
// slow manager may otherwise never catch one.
bool manages_a_window(const DisplayView& view) {
    xcb_connection_t* connection = view.connection();
    std::chrono::milliseconds patience{50};
    XWindow frame = 0;
    const bool managed = wait_until([&] {
        const xcb_window_t probe = xcb_generate_id(connection);
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, probe, view.root(), 0, 0, 16, 16, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_map_window(connection, probe);
        xcb_flush(connection);
        const bool taken = wait_until([&] { return view.managed(probe); }, patience);
        frame = view.top_level_of(probe);
        xcb_destroy_window(connection, probe);
        xcb_flush(connection);
        patience *= 2;
        return taken;
    });
    // Its frame is taken down a moment later; it is not on the screen when the test begins.
    return managed &&
           wait_until([&] { return !view.viewable(frame); }, std::chrono::milliseconds{5000},
                      [&] { return view.describe_tree(); });
}

} // namespace

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
    const WindowManagerSetup setup = set_up_window_manager(kind, folder_);
    const char* path = std::getenv("PATH");
    ChildOptions options;
    options.environment = std::vector<std::string>{
        "DISPLAY=" + display_name,
        "HOME=" + folder_,
        "XDG_CONFIG_HOME=" + folder_,
        "XDG_CACHE_HOME=" + folder_,
        "XDG_DATA_HOME=" + folder_,
        "XDG_RUNTIME_DIR=" + folder_,
        "ICEWM_PRIVCFG=" + folder_,
        "LC_ALL=C.UTF-8",
        std::string("PATH=") + (path != nullptr ? path : "/usr/local/bin:/usr/bin:/bin")};
    if (setup.needs_message_bus) {
        const std::string address = "unix:path=" + folder_ + "/bus";
        options.command = {"dbus-daemon", "--session", "--nofork", "--address=" + address};
        message_bus_ = std::make_unique<ChildProcess>(options);
        if (!wait_until([&] { return std::filesystem::exists(folder_ + "/bus"); })) {
            throw std::runtime_error("there is no message bus: " + message_bus_->error_output());
        }
        options.environment->push_back("DBUS_SESSION_BUS_ADDRESS=" + address);
    }
    options.command = setup.command;
    process_ = std::make_unique<ChildProcess>(options);
    if (!manages_a_window(DisplayView(display_name))) {
        throw std::runtime_error(std::string(window_manager_name(kind)) +
                                 " does not manage windows: " + process_->error_output());
    }
}

WindowManager::~WindowManager() {
    process_.reset();
    message_bus_.reset();
    if (!folder_.empty()) {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
}

} // namespace support
