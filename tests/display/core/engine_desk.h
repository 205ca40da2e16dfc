// A private X server with an engine on it, its event thread, and a look from outside.

#pragma once

#include "display/core/call_log.h"
#include "support/display_view.h"
#include "support/window_manager.h"
#include "support/x_server.h"

#include <memory>
#include <string>
#include <thread>

struct DeskOptions {
    support::XServerOptions server = {};
    support::WindowManagerKind window_manager = support::WindowManagerKind::none;
    bool open = true; // open the display
    bool run = true;  // run the loop on a thread of its own
};

class EngineDesk {
public:
    explicit EngineDesk(const DeskOptions& options = {});
    ~EngineDesk();
    EngineDesk(const EngineDesk&) = delete;
    EngineDesk& operator=(const EngineDesk&) = delete;

    support::XServer server;
    support::WindowManager window_manager;
    support::DisplayView view;
    UiEngine* engine = nullptr;

    void start_loop();
    // Stops the loop and waits for its end.
    void end_loop();
    // Waits for the end of a loop that something else has stopped.
    void join_loop();

    // A log that outlives the event thread, as every log of a window must.
    CallLog& new_log();

    // A plain window of 200 x 100 with every callback recorded and input selected, on screen.
    WindowId show_window(CallLog* log, int x = 50, int y = 60, int width = 200, int height = 100);
    // The same, not mapped and with no input selected.
    WindowId make_window(CallLog* log, int x = 50, int y = 60, int width = 200, int height = 100);
    [[nodiscard]] support::XWindow x_window(WindowId id) const;
    // Waits until the event thread has dealt with everything sent so far.
    void settle(WindowId id, CallLog* log);

private:
    std::vector<std::unique_ptr<CallLog>> logs_;
    std::thread loop_;
    long settle_count_ = 1'000'000;
};

// Events made by another client and sent to the engine's window, any field at will.
namespace events {

struct Sender {
    const support::DisplayView& view;
    support::XWindow window; // the field and the destination

    void expose(int x, int y, int width, int height) const;
    void configure(int width, int height) const;
    void press(int x, int y, int button) const;
    void release(int x, int y, int button) const;
    void motion(int x, int y) const;
    void key(bool press, int keycode, int state = 0) const;
    void create(int width, int height) const;
    void reparent(int x, int y) const;
    void destroy() const;
    void selection(std::uint32_t property = 0) const;
    void message(int format, std::uint32_t first) const;
    void close() const;
    // Any event type with any bytes in the other fields, the window's id in the field at offset.
    void raw(std::uint8_t type, std::uint8_t fill, int window_offset) const;
};

} // namespace events
