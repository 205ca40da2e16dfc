// browser_desk.h: the folder browser on a private X server, with its event thread, a person in
// front of it and a look from outside.
#pragma once

#include "gui/ORX/widgets/folder_dialog.h"
#include "support/display_view.h"
#include "support/person.h"
#include "support/picture.h"
#include "support/window_manager.h"
#include "support/x_server.h"
#include "unit/widgets/test_folder.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

struct BrowserOptions {
    float scale = 1.0F;
    support::WindowManagerKind window_manager = support::WindowManagerKind::none;
    support::XServerOptions server = {.width = 1400, .height = 960};
};

class BrowserDesk {
public:
    // The dialog is prepared, with the folder as HOME, and not yet open.
    explicit BrowserDesk(const std::string& folder, const BrowserOptions& options = {});
    ~BrowserDesk();
    BrowserDesk(const BrowserDesk&) = delete;
    BrowserDesk& operator=(const BrowserDesk&) = delete;

    // Opens the dialog on this thread, as the installer's flow does, and finds its window.
    void open();
    [[nodiscard]] support::XWindow window() const { return window_; }
    // What is on the dialog's window now; empty while it is not on screen.
    [[nodiscard]] support::Picture picture() const;

    // Pointer places in design pixels of the dialog; rows of the list as it stands, from 0.
    void point_at(int x, int y);
    void point_at_device(int x, int y); // device pixels of the dialog's window
    void click(int x, int y);
    void click_row(int row);

    // What the dialog has answered so far.
    [[nodiscard]] int accepted_count() const { return accepted_; }
    [[nodiscard]] int cancelled_count() const { return cancelled_; }
    [[nodiscard]] std::string accepted_path() const;
    [[nodiscard]] bool wait_for_accept() const;
    [[nodiscard]] bool wait_for_cancel() const;
    // The scroll offset of the view, device pixels.
    [[nodiscard]] int scroll_offset() const;

    // Ends the event loop, as the installer does at its end.
    void end_loop();

    support::XServer server;
    support::WindowManager window_manager;
    support::DisplayView view;
    support::Person person;
    WorkingDirectory working_directory;
    float scale;
    UiEngine* engine;
    TextRenderer* text;
    std::unique_ptr<FolderDialog> dialog;

private:
    static void on_accept(const char* path, void* user);
    static void on_cancel(const char* path, void* user);

    std::atomic<int> accepted_{0};
    std::atomic<int> cancelled_{0};
    mutable std::mutex path_mutex_;
    std::string path_;
    support::XWindow window_ = 0;
    std::thread loop_;
};

inline constexpr const char* browser_title = "- Select your VST plugins folder -";
