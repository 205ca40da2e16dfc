// Answering (or not) what the clipboard is asked for.

#include "display/core/clipboard_owner.h"

#include <xcb/xcb.h>

#include <sys/socket.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace {

xcb_atom_t intern(xcb_connection_t* connection, const char* name) {
    auto* reply = xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
        nullptr);
    const xcb_atom_t atom = reply != nullptr ? reply->atom : 0;
    std::free(reply);
    return atom;
}

} // namespace

ClipboardOwner::ClipboardOwner(const std::string& display_name, OwnerManners manners,
                               std::string text)
    : connection_(xcb_connect(display_name.c_str(), nullptr)), manners_(manners),
      text_(std::move(text)) {
    if (xcb_connection_has_error(connection_) != 0) {
        std::abort();
    }
    const xcb_window_t window = xcb_generate_id(connection_);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    xcb_create_window(connection_, 0, window, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, 0,
                      0, nullptr);
    xcb_set_selection_owner(connection_, window, intern(connection_, "CLIPBOARD"), 0);
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    thread_ = std::thread([this] { serve(); });
}

ClipboardOwner::~ClipboardOwner() {
    stop_ = true;
    thread_.join();
    xcb_disconnect(connection_);
}

void ClipboardOwner::send_piece(std::uint32_t requestor, std::uint32_t property) {
    constexpr std::size_t longest = 100'000;
    if (manners_ == OwnerManners::for_ever && sent_ == text_.size()) {
        sent_ = 0;
    }
    const std::size_t length = std::min(longest, text_.size() - sent_);
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, requestor, property, utf8_, 8,
                        static_cast<std::uint32_t>(length), text_.data() + sent_);
    sent_ += length;
    xcb_flush(connection_);
}

void ClipboardOwner::serve() {
    const xcb_atom_t incr = intern(connection_, "INCR");
    utf8_ = intern(connection_, "UTF8_STRING");
    const bool sends_pieces =
        manners_ == OwnerManners::pieces || manners_ == OwnerManners::for_ever;
    while (!stop_ && xcb_connection_has_error(connection_) == 0) {
        xcb_generic_event_t* event = xcb_poll_for_event(connection_);
        if (event == nullptr) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            continue;
        }
        if (event->response_type == XCB_PROPERTY_NOTIFY) {
            const auto change = *reinterpret_cast<xcb_property_notify_event_t*>(event);
            if (change.state == XCB_PROPERTY_DELETE && change.atom == XCB_ATOM_PRIMARY) {
                send_piece(change.window, change.atom);
            }
        }
        if ((event->response_type & 0x7F) != XCB_SELECTION_REQUEST) {
            std::free(event);
            continue;
        }
        const auto request = *reinterpret_cast<xcb_selection_request_event_t*>(event);
        std::free(event);
        requests_ += 1;
        xcb_atom_t property = 0;
        if (manners_ == OwnerManners::dies) {
            shutdown(xcb_get_file_descriptor(connection_), SHUT_RDWR);
            return;
        }
        if (manners_ == OwnerManners::text && request.target == XCB_ATOM_STRING) {
            property = request.property;
            xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, request.requestor, property,
                                XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(text_.size()),
                                text_.data());
        }
        if (manners_ == OwnerManners::utf8_only && request.target == utf8_) {
            property = request.property;
            xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, request.requestor, property,
                                utf8_, 8, static_cast<std::uint32_t>(text_.size()), text_.data());
        }
        if (sends_pieces && request.target == utf8_) {
            const std::uint32_t watched = XCB_EVENT_MASK_PROPERTY_CHANGE;
            xcb_change_window_attributes(connection_, request.requestor, XCB_CW_EVENT_MASK,
                                         &watched);
            sent_ = 0;
        }
        if (manners_ == OwnerManners::in_pieces || (sends_pieces && request.target == utf8_)) {
            property = request.property;
            const std::uint32_t size = 1'000'000;
            xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, request.requestor, property,
                                incr, 32, 1, &size);
        }
        xcb_selection_notify_event_t answer{};
        answer.response_type = XCB_SELECTION_NOTIFY;
        answer.requestor = request.requestor;
        answer.selection = request.selection;
        answer.target = request.target;
        answer.property = property;
        char bytes[32] = {};
        std::memcpy(bytes, &answer, sizeof answer);
        xcb_send_event(connection_, 0, request.requestor, 0, bytes);
        xcb_flush(connection_);
    }
}
