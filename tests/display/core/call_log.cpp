// Callbacks that write down what they are told.

#include "display/core/call_log.h"

#include "gui/ORX/core/window_table.h"
#include "support/wait_until.h"

#include <algorithm>
#include <sstream>

namespace {

template <typename... Parts> std::string joined(const Parts&... parts) {
    std::ostringstream text;
    const char* separator = "";
    ((text << separator << parts, separator = " "), ...);
    return text.str();
}

void note(void* log, const std::string& line) {
    static_cast<CallLog*>(log)->write(line);
}

std::string quoted(const char* text) {
    return text == nullptr ? "-" : "[" + std::string(text) + "]";
}

void on_configure(std::int32_t height, std::int32_t width, WindowId id, void* log) {
    note(log, joined("configure", height, width, id));
}

void on_paint(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
              WindowId id, void* log) {
    note(log, joined("paint", left, top, width, height, id));
}

void on_press(std::int32_t x, std::int32_t y, std::int32_t button, WindowId id, void* log) {
    note(log, joined("press", x, y, button, id));
}

void on_release(std::int32_t x, std::int32_t y, std::int32_t button, WindowId id, void* log) {
    note(log, joined("release", x, y, button, id));
}

void on_double(std::int32_t x, std::int32_t y, std::int32_t button, WindowId id, void* log) {
    note(log, joined("double", x, y, button, id));
}

void on_motion(std::int32_t x, std::int32_t y, WindowId id, void* log) {
    note(log, joined("motion", x, y, id));
}

void on_reparent(std::int32_t x, std::int32_t y, void* log, unsigned long window) {
    note(log, joined("reparent", x, y, window));
}

void on_message(long data, void* log, unsigned long window) {
    note(log, joined("message", data, window));
}

void on_create(std::int32_t height, std::int32_t width, WindowId id, void* log) {
    note(log, joined("create", height, width, id));
}

void on_spare(void* log) {
    note(log, "spare");
}

void on_close(std::int32_t x, std::int32_t y, WindowId id, void* log) {
    note(log, joined("close", x, y, id));
}

void on_key(const char* text, unsigned long keysym, std::uint32_t state, WindowId id, void* log) {
    note(log, joined("key", quoted(text), keysym, state, id));
}

void on_keyup(const char* text, unsigned long keysym, std::uint32_t state, WindowId id, void* log) {
    note(log, joined("keyup", quoted(text), keysym, state, id));
}

void on_selection(unsigned char* data, WindowId id, void* log) {
    note(log, joined("selection", quoted(reinterpret_cast<const char*>(data)), id));
    if (data != nullptr) {
        XFree(data);
    }
}

bool on_tick(void* log) {
    note(log, "tick");
    return static_cast<CallLog*>(log)->keep_ticking;
}

bool begins_with(const std::string& line, const std::string& beginning) {
    return line.rfind(beginning, 0) == 0;
}

} // namespace

void CallLog::write(const std::string& line) {
    {
        const std::lock_guard guard(mutex_);
        lines_.push_back(line);
    }
    const auto action = actions.find(line.substr(0, line.find(' ')));
    if (action != actions.end()) {
        action->second();
    }
}

std::vector<std::string> CallLog::lines() const {
    const std::lock_guard guard(mutex_);
    return lines_;
}

std::vector<std::string> CallLog::lines_of(const std::string& beginning) const {
    std::vector<std::string> found;
    for (const std::string& line : lines()) {
        if (begins_with(line, beginning)) {
            found.push_back(line);
        }
    }
    return found;
}

bool CallLog::has(const std::string& line) const {
    const std::vector<std::string> all = lines();
    return std::find(all.begin(), all.end(), line) != all.end();
}

int CallLog::count(const std::string& beginning) const {
    return static_cast<int>(lines_of(beginning).size());
}

bool CallLog::wait_for(const std::string& line) const {
    return support::wait_until([&] { return has(line); }, support::default_patience,
                               [this] { return text(); });
}

bool CallLog::wait_for_count(const std::string& beginning, int wanted) const {
    return support::wait_until([&] { return count(beginning) >= wanted; },
                               support::default_patience, [this] { return text(); });
}

std::string CallLog::text() const {
    std::string text;
    for (const std::string& line : lines()) {
        text += line.substr(0, 200) + "\n";
    }
    return text;
}

void CallLog::clear() {
    const std::lock_guard guard(mutex_);
    lines_.clear();
}

void record_calls(UiEngine* engine, WindowId id) {
    window_set_on_configure(engine, id, on_configure);
    window_set_on_paint(engine, id, on_paint);
    window_set_on_button_press(engine, id, on_press);
    window_set_on_button_release(engine, id, on_release);
    window_set_on_double_click(engine, id, on_double);
    window_set_on_motion(engine, id, on_motion);
    window_set_on_reparent(engine, id, on_reparent);
    window_set_on_client_message(engine, id, on_message);
    window_set_on_create_notify(engine, id, on_create);
    window_set_spare_callback(engine, id, on_spare);
    window_set_on_close(engine, id, on_close);
    window_set_on_key_press(engine, id, on_key);
    window_set_on_key_release(engine, id, on_keyup);
    window_set_on_selection(engine, id, on_selection);
    window_set_on_tick(engine, id, on_tick);
}
