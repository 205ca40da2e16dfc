// A private X server with an engine on it, and events from another client.

#include "display/core/engine_desk.h"

#include "gui/ORX/core/event_loop.h"
#include "gui/ORX/core/window_properties.h"
#include "gui/ORX/core/window_table.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <iostream>

namespace {

// There is nothing left to test: the desk itself does not stand.
void give_up(const std::string& reason) {
    std::cerr << reason << std::endl;
    std::abort();
}

UiEngine* engine_for(const std::string& display_name, bool open) {
    setenv("DISPLAY", display_name.c_str(), 1);
    UiEngine* engine = engine_new();
    if (open && !engine_open_display(engine)) {
        give_up("the engine does not open " + display_name);
    }
    return engine;
}

} // namespace

EngineDesk::EngineDesk(const DeskOptions& options)
    : server(options.server), window_manager(options.window_manager, server.display_name()),
      view(server.display_name()), engine(engine_for(server.display_name(), options.open)) {
    // Long ago, or the first press would count as the second of a double click.
    engine->last_press_time = {};
    if (options.run) {
        start_loop();
    }
}

EngineDesk::~EngineDesk() {
    end_loop();
    engine_destroy(engine);
}

void EngineDesk::start_loop() {
    loop_ = std::thread([this] { event_loop_run(engine); });
}

void EngineDesk::end_loop() {
    if (loop_.joinable()) {
        event_loop_stop(engine);
        loop_.join();
    }
}

void EngineDesk::join_loop() {
    loop_.join();
}

CallLog& EngineDesk::new_log() {
    logs_.push_back(std::make_unique<CallLog>());
    return *logs_.back();
}

WindowId EngineDesk::make_window(CallLog* log, int x, int y, int width, int height) {
    const WindowId id = window_create_plain(engine, x, y, width, height, log, 1.0F);
    if (id != no_window) {
        record_calls(engine, id);
    }
    return id;
}

WindowId EngineDesk::show_window(CallLog* log, int x, int y, int width, int height) {
    const WindowId id = make_window(log, x, y, width, height);
    // Position the window for every window manager, so that none waits for a hand.
    window_set_size_hints(engine, 1, 1, 0, 0, 0, 0, x, y, id);
    window_select_input(engine, id);
    window_map(engine, id);
    if (!support::wait_until([&] { return view.viewable(x_window(id)); })) {
        give_up("the window does not come up\n" + view.describe_tree());
    }
    settle(id, log);
    return id;
}

support::XWindow EngineDesk::x_window(WindowId id) const {
    return static_cast<support::XWindow>(window_x_window(engine, id));
}

void EngineDesk::settle(WindowId id, CallLog* log) {
    settle_count_ += 1;
    const std::string mark = "message " + std::to_string(settle_count_) + " ";
    events::Sender{view, x_window(id)}.message(32, static_cast<std::uint32_t>(settle_count_));
    if (!log->wait_for_count(mark, 1)) {
        give_up("the event thread does not answer");
    }
}

namespace events {

namespace {

template <typename Event> void send(const Sender& sender, Event event) {
    char bytes[32] = {};
    static_assert(sizeof event <= sizeof bytes);
    std::memcpy(bytes, &event, sizeof event);
    xcb_connection_t* connection = sender.view.connection();
    xcb_send_event(connection, 0, sender.window, 0, bytes);
    // A round trip: the event has reached the server when this returns.
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

template <typename Event>
Event input_event(const Sender& sender, int type, int x, int y, int detail) {
    Event event{};
    event.response_type = static_cast<std::uint8_t>(type);
    event.detail = static_cast<std::uint8_t>(detail);
    event.root = sender.view.root();
    event.event = sender.window;
    event.event_x = static_cast<std::int16_t>(x);
    event.event_y = static_cast<std::int16_t>(y);
    event.same_screen = 1;
    return event;
}

} // namespace

void Sender::expose(int x, int y, int width, int height) const {
    xcb_expose_event_t event{};
    event.response_type = XCB_EXPOSE;
    event.window = window;
    event.x = static_cast<std::uint16_t>(x);
    event.y = static_cast<std::uint16_t>(y);
    event.width = static_cast<std::uint16_t>(width);
    event.height = static_cast<std::uint16_t>(height);
    send(*this, event);
}

void Sender::configure(int width, int height) const {
    xcb_configure_notify_event_t event{};
    event.response_type = XCB_CONFIGURE_NOTIFY;
    event.event = event.window = window;
    event.width = static_cast<std::uint16_t>(width);
    event.height = static_cast<std::uint16_t>(height);
    send(*this, event);
}

void Sender::press(int x, int y, int button) const {
    send(*this, input_event<xcb_button_press_event_t>(*this, XCB_BUTTON_PRESS, x, y, button));
}

void Sender::release(int x, int y, int button) const {
    send(*this, input_event<xcb_button_press_event_t>(*this, XCB_BUTTON_RELEASE, x, y, button));
}

void Sender::motion(int x, int y) const {
    send(*this, input_event<xcb_motion_notify_event_t>(*this, XCB_MOTION_NOTIFY, x, y, 0));
}

void Sender::key(bool press, int keycode, int state) const {
    auto event = input_event<xcb_key_press_event_t>(*this, press ? XCB_KEY_PRESS : XCB_KEY_RELEASE,
                                                    1, 1, keycode);
    event.state = static_cast<std::uint16_t>(state);
    send(*this, event);
}

void Sender::create(int width, int height) const {
    xcb_create_notify_event_t event{};
    event.response_type = XCB_CREATE_NOTIFY;
    event.parent = window;
    event.width = static_cast<std::uint16_t>(width);
    event.height = static_cast<std::uint16_t>(height);
    send(*this, event);
}

void Sender::reparent(int x, int y) const {
    xcb_reparent_notify_event_t event{};
    event.response_type = XCB_REPARENT_NOTIFY;
    event.event = event.window = window;
    event.x = static_cast<std::int16_t>(x);
    event.y = static_cast<std::int16_t>(y);
    send(*this, event);
}

void Sender::destroy() const {
    xcb_destroy_notify_event_t event{};
    event.response_type = XCB_DESTROY_NOTIFY;
    event.event = event.window = window;
    send(*this, event);
}

void Sender::selection(std::uint32_t property) const {
    xcb_selection_notify_event_t event{};
    event.response_type = XCB_SELECTION_NOTIFY;
    event.requestor = window;
    event.property = property;
    send(*this, event);
}

void Sender::message(int format, std::uint32_t first) const {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = static_cast<std::uint8_t>(format);
    event.window = window;
    event.type = XCB_ATOM_STRING;
    event.data.data32[0] = first;
    send(*this, event);
}

void Sender::close() const {
    view.ask_to_close(window);
}

void Sender::raw(std::uint8_t type, std::uint8_t fill, int window_offset) const {
    struct {
        std::uint8_t bytes[32];
    } event{};
    std::memset(event.bytes, fill, sizeof event.bytes);
    event.bytes[0] = type;
    std::memcpy(event.bytes + window_offset, &window, sizeof window);
    send(*this, event);
}

} // namespace events
