// browser_desk.cpp: bringing up and taking down a folder browser.

#include <gtest/gtest.h> // first: Xlib's macros would break it

#include "display/widgets/browser_desk.h"

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/event_loop.h"
#include "gui/ORX/text/text_renderer.h"
#include "support/wait_until.h"

#include <cstdlib>

namespace {

UiEngine* engine_on(const std::string& display_name) {
    setenv("DISPLAY", display_name.c_str(), 1);
    setenv("LC_ALL", "C.UTF-8", 1);
    UiEngine* engine = engine_new();
    EXPECT_TRUE(engine_open_display(engine));
    return engine;
}

int device(int value, float scale) {
    return static_cast<int>(static_cast<float>(value) * scale);
}

} // namespace

BrowserDesk::BrowserDesk(const std::string& folder, const BrowserOptions& options)
    : server(options.server), window_manager(options.window_manager, server.display_name()),
      view(server.display_name()), person(server.display_name()), scale(options.scale),
      engine(engine_on(server.display_name())), text(text_renderer_new(engine)),
      dialog(new FolderDialog) {
    setenv("HOME", folder.c_str(), 1);
    folder_dialog_init(dialog.get(), engine, text);
    folder_dialog_set_scale(dialog.get(), scale);
    folder_dialog_set_title(dialog.get(), browser_title);
    folder_dialog_set_accept_callback(dialog.get(), on_accept, this);
    folder_dialog_set_cancel_callback(dialog.get(), on_cancel, this);
    loop_ = std::thread([this] { event_loop_run(engine); });
}

BrowserDesk::~BrowserDesk() {
    end_loop();
    folder_dialog_destroy(dialog.get());
    engine_close_display(engine);
    text_renderer_destroy(text);
    engine_destroy(engine);
}

void BrowserDesk::end_loop() {
    if (loop_.joinable()) {
        event_loop_stop(engine);
        loop_.join();
    }
}

void BrowserDesk::open() {
    folder_dialog_open(dialog.get());
    window_ = view.wait_for_title(browser_title);
}

support::Picture BrowserDesk::picture() const {
    return support::take_picture(view, window_);
}

void BrowserDesk::point_at_device(int x, int y) {
    const support::Place place = view.place_on_root(window_);
    person.move_pointer(place.x + x, place.y + y);
}

void BrowserDesk::point_at(int x, int y) {
    point_at_device(device(x, scale), device(y, scale));
}

void BrowserDesk::click(int x, int y) {
    point_at(x, y);
    person.click();
}

void BrowserDesk::click_row(int row) {
    // Rows begin at the list's frame; the scroll offset moves them up.
    const int content_y = device(16 * row + 8, scale);
    point_at_device(device(18 + 34, scale), device(82, scale) + content_y - scroll_offset());
    person.click();
}

std::string BrowserDesk::accepted_path() const {
    const std::lock_guard<std::mutex> lock(path_mutex_);
    return path_;
}

bool BrowserDesk::wait_for_accept() const {
    return support::wait_until([this] { return accepted_ > 0; });
}

bool BrowserDesk::wait_for_cancel() const {
    return support::wait_until([this] { return cancelled_ > 0; });
}

int BrowserDesk::scroll_offset() const {
    const std::lock_guard<std::mutex> lock(dialog->mutex);
    return dialog->scroll_view.scroll_offset;
}

void BrowserDesk::on_accept(const char* path, void* user) {
    auto* desk = static_cast<BrowserDesk*>(user);
    {
        const std::lock_guard<std::mutex> lock(desk->path_mutex_);
        desk->path_ = path == nullptr ? "(no path)" : path;
    }
    ++desk->accepted_;
}

void BrowserDesk::on_cancel(const char* path, void* user) {
    auto* desk = static_cast<BrowserDesk*>(user);
    EXPECT_EQ(path, nullptr);
    ++desk->cancelled_;
}
