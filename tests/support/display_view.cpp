// Looking at windows from outside, over a connection of its own.

#include "support/display_view.h"

#include <xcb/xcb.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <stdexcept>

namespace support {

namespace {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};

template <typename Reply> using ReplyOf = std::unique_ptr<Reply, FreeReply>;

template <typename Reply> ReplyOf<Reply> owned(Reply* reply) {
    return ReplyOf<Reply>(reply);
}

constexpr std::uint32_t longest_property = 1U << 20U; // in four-byte units

std::string text_of(const xcb_get_property_reply_t& reply) {
    return {static_cast<const char*>(xcb_get_property_value(&reply)),
            static_cast<std::size_t>(xcb_get_property_value_length(&reply))};
}

// A wait looks at the whole tree every few milliseconds, so all windows of a level are asked about
// before the first answer is awaited.
std::vector<XWindow> children_of_all(xcb_connection_t* connection,
                                     const std::vector<XWindow>& windows) {
    std::vector<xcb_query_tree_cookie_t> questions;
    questions.reserve(windows.size());
    for (const XWindow window : windows) {
        questions.push_back(xcb_query_tree(connection, window));
    }
    std::vector<XWindow> children;
    for (const xcb_query_tree_cookie_t question : questions) {
        if (const auto tree = owned(xcb_query_tree_reply(connection, question, nullptr))) {
            const xcb_window_t* first = xcb_query_tree_children(tree.get());
            children.insert(children.end(), first,
                            first + xcb_query_tree_children_length(tree.get()));
        }
    }
    return children;
}

std::vector<std::string> text_of_all(xcb_connection_t* connection,
                                     const std::vector<XWindow>& windows, std::uint32_t property) {
    std::vector<xcb_get_property_cookie_t> questions;
    questions.reserve(windows.size());
    for (const XWindow window : windows) {
        questions.push_back(xcb_get_property(connection, 0, window, property,
                                             XCB_GET_PROPERTY_TYPE_ANY, 0, longest_property));
    }
    std::vector<std::string> texts;
    texts.reserve(windows.size());
    for (const xcb_get_property_cookie_t question : questions) {
        const auto reply = owned(xcb_get_property_reply(connection, question, nullptr));
        texts.push_back(reply ? text_of(*reply) : std::string());
    }
    return texts;
}

XWindow wait_for(const DisplayView& view, const std::string& what,
                 std::chrono::milliseconds patience,
                 const std::function<std::optional<XWindow>()>& find) {
    std::optional<XWindow> found;
    const auto seen = [&] { return (found = find()).has_value(); };
    if (!wait_until(seen, patience)) {
        throw std::runtime_error("no window \"" + what + "\" came; there are\n" +
                                 view.describe_tree());
    }
    return *found;
}

} // namespace

DisplayView::DisplayView(const std::string& display_name, int screen)
    : connection_(xcb_connect(display_name.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
        xcb_disconnect(connection_);
        throw std::runtime_error("cannot connect to display " + display_name);
    }
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection_));
    for (; screen > 0; --screen) {
        xcb_screen_next(&screens);
    }
    root_ = screens.data->root;
}

DisplayView::~DisplayView() {
    xcb_disconnect(connection_);
}

bool DisplayView::exists(XWindow window) const {
    return owned(xcb_get_window_attributes_reply(
               connection_, xcb_get_window_attributes(connection_, window), nullptr)) != nullptr;
}

bool DisplayView::viewable(XWindow window) const {
    const auto attributes = owned(xcb_get_window_attributes_reply(
        connection_, xcb_get_window_attributes(connection_, window), nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

std::vector<XWindow> DisplayView::children(XWindow window) const {
    return children_of_all(connection_, {window});
}

XWindow DisplayView::top_level_of(XWindow window) const {
    for (;;) {
        const auto tree =
            owned(xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
        if (!tree || tree->parent == root_) {
            return tree ? window : 0U;
        }
        window = tree->parent;
    }
}

Place DisplayView::place_on_root(XWindow window) const {
    const auto geometry =
        owned(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
    const auto corner = owned(xcb_translate_coordinates_reply(
        connection_, xcb_translate_coordinates(connection_, window, root_, 0, 0), nullptr));
    if (!geometry || !corner) {
        return {};
    }
    return {corner->dst_x, corner->dst_y, geometry->width, geometry->height};
}

std::uint32_t DisplayView::atom(const std::string& name) const {
    const std::lock_guard guard(atoms_lock_);
    std::uint32_t& known = atoms_[name];
    if (known == XCB_NONE) {
        const auto reply = owned(xcb_intern_atom_reply(
            connection_,
            xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.c_str()),
            nullptr));
        known = reply ? reply->atom : XCB_NONE;
    }
    return known;
}

std::string DisplayView::atom_name(std::uint32_t atom) const {
    const auto reply =
        owned(xcb_get_atom_name_reply(connection_, xcb_get_atom_name(connection_, atom), nullptr));
    if (!reply) {
        return {};
    }
    return {xcb_get_atom_name_name(reply.get()),
            static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

std::optional<Property> DisplayView::property(XWindow window, const std::string& name) const {
    const auto reply = owned(
        xcb_get_property_reply(connection_,
                               xcb_get_property(connection_, 0, window, atom(name),
                                                XCB_GET_PROPERTY_TYPE_ANY, 0, longest_property),
                               nullptr));
    if (!reply || reply->type == XCB_NONE) {
        return std::nullopt;
    }
    return Property{atom_name(reply->type), reply->format, text_of(*reply)};
}

std::string DisplayView::text_property(XWindow window, const std::string& name) const {
    const std::optional<Property> found = property(window, name);
    return found ? found->bytes : std::string();
}

std::vector<std::uint32_t> DisplayView::numbers_property(XWindow window,
                                                         const std::string& name) const {
    const std::optional<Property> found = property(window, name);
    if (!found || found->format != 32) {
        return {};
    }
    std::vector<std::uint32_t> numbers(found->bytes.size() / sizeof(std::uint32_t));
    std::memcpy(numbers.data(), found->bytes.data(), numbers.size() * sizeof(std::uint32_t));
    return numbers;
}

std::vector<std::string> DisplayView::atoms_property(XWindow window,
                                                     const std::string& name) const {
    std::vector<std::string> names;
    for (const std::uint32_t number : numbers_property(window, name)) {
        names.push_back(atom_name(number));
    }
    return names;
}

std::string DisplayView::title(XWindow window) const {
    return text_property(window, "WM_NAME");
}

std::string DisplayView::class_name(XWindow window) const {
    return text_property(window, "WM_CLASS").c_str();
}

std::optional<SizeHints> DisplayView::size_hints(XWindow window) const {
    const std::vector<std::uint32_t> numbers = numbers_property(window, "WM_NORMAL_HINTS");
    SizeHints hints;
    // Before ICCCM the property had neither base size nor gravity.
    constexpr std::size_t old_count = 15;
    const std::size_t bytes = numbers.size() * sizeof(std::uint32_t);
    if (numbers.size() < old_count || bytes > sizeof hints) {
        return std::nullopt;
    }
    std::memcpy(static_cast<void*>(&hints), numbers.data(), bytes);
    return hints;
}

bool DisplayView::managed(XWindow window) const {
    const std::vector<std::uint32_t> state = numbers_property(window, "WM_STATE");
    constexpr std::uint32_t normal_state = 1;
    return !state.empty() && state.front() == normal_state;
}

std::optional<XWindow>
DisplayView::find(const std::string& property,
                  const std::function<bool(const std::string&)>& matches) const {
    std::vector<XWindow> level = children(root_);
    while (!level.empty()) {
        const std::vector<std::string> texts = text_of_all(connection_, level, atom(property));
        for (std::size_t at = 0; at < level.size(); ++at) {
            if (matches(texts[at]) && viewable(level[at])) {
                return level[at];
            }
        }
        level = children_of_all(connection_, level);
    }
    return std::nullopt;
}

std::optional<XWindow> DisplayView::find_title(const std::string& wanted) const {
    return find("WM_NAME", [&](const std::string& title) { return title == wanted; });
}

std::optional<XWindow> DisplayView::find_class(const std::string& name) const {
    return find("WM_CLASS", [&](const std::string& words) {
        const std::size_t end = words.find('\0');
        return words.substr(0, end) == name ||
               (end != std::string::npos && words.substr(end + 1).c_str() == name);
    });
}

XWindow DisplayView::wait_for_title(const std::string& title,
                                    std::chrono::milliseconds patience) const {
    return wait_for(*this, title, patience, [&] { return find_title(title); });
}

XWindow DisplayView::wait_for_class(const std::string& name,
                                    std::chrono::milliseconds patience) const {
    return wait_for(*this, name, patience, [&] { return find_class(name); });
}

bool DisplayView::wait_until_gone(XWindow window, std::chrono::milliseconds patience) const {
    return wait_until([&] { return !exists(window); }, patience,
                      [this] { return describe_tree(); });
}

XWindow DisplayView::input_focus() const {
    const auto reply =
        owned(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    return reply ? reply->focus : 0U;
}

void DisplayView::ask_to_close(XWindow window) const {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom("WM_PROTOCOLS");
    message.data.data32[0] = atom("WM_DELETE_WINDOW");
    message.data.data32[1] = XCB_CURRENT_TIME;
    char bytes[32] = {};
    std::memcpy(bytes, &message, sizeof message);
    xcb_send_event(connection_, 0, window, XCB_EVENT_MASK_NO_EVENT, bytes);
    xcb_flush(connection_);
}

void DisplayView::ask_manager(XWindow window, const std::string& type,
                              const std::vector<std::uint32_t>& numbers) const {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(type);
    std::copy(numbers.begin(), numbers.end(), std::begin(message.data.data32));
    char bytes[32] = {};
    std::memcpy(bytes, &message, sizeof message);
    xcb_send_event(connection_, 0, root_,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   bytes);
    xcb_flush(connection_);
}

std::string DisplayView::describe_tree() const {
    std::string text;
    describe(root_, 0, text);
    return text;
}

void DisplayView::describe(XWindow window, int depth, std::string& text) const {
    const Place place = place_on_root(window);
    // Window managers keep dozens of one-pixel windows for themselves.
    if (place.width <= 1 && place.height <= 1) {
        return;
    }
    char line[256];
    std::snprintf(line, sizeof line, "%*s0x%x %dx%d+%d+%d \"%.40s\" \"%.60s\"%s\n", depth * 2, "",
                  window, place.width, place.height, place.x, place.y, class_name(window).c_str(),
                  title(window).c_str(), viewable(window) ? "" : " (not shown)");
    text += line;
    for (const XWindow child : children(window)) {
        describe(child, depth + 1, text);
    }
}

} // namespace support
