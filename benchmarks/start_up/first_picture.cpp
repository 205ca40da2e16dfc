// Watching the screen for a first window and its picture.

#include "start_up/first_picture.h"

#include "support/display_view.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace start_up {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience{20};
constexpr std::chrono::microseconds poll_step{200};
constexpr std::uint32_t colour_bits = 0xFFFFFF;

double milliseconds_since(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

struct Watcher {
    explicit Watcher(const std::string& display_name) : view(display_name) {
        const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(view.connection(), view.root(), XCB_CW_EVENT_MASK, &mask);
        xcb_flush(view.connection());
    }

    // The window that was shown since the last call, or 0.
    support::XWindow shown_window() {
        support::XWindow window = 0;
        while (xcb_generic_event_t* event = xcb_poll_for_event(view.connection())) {
            if ((event->response_type & 0x7FU) == XCB_MAP_NOTIFY) {
                window = reinterpret_cast<xcb_map_notify_event_t*>(event)->window;
            }
            std::free(event);
        }
        return window;
    }

    bool is_white(support::XWindow window, int x, int y) const {
        xcb_get_image_reply_t* reply = xcb_get_image_reply(
            view.connection(),
            xcb_get_image(view.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, window,
                          static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 1, 1, ~0U),
            nullptr);
        std::uint32_t pixel = colour_bits;
        if (reply != nullptr && xcb_get_image_data_length(reply) >= 4) {
            std::copy_n(xcb_get_image_data(reply), 4, reinterpret_cast<std::uint8_t*>(&pixel));
        }
        std::free(reply);
        return (pixel & colour_bits) == colour_bits;
    }

    support::DisplayView view;
};

} // namespace

FirstPicture time_first_picture(const support::XServer& server,
                                const support::ChildOptions& program) {
    Watcher watcher(server.display_name());
    const auto start = Clock::now();
    support::ChildProcess process(program);
    FirstPicture times{};
    support::XWindow window = 0;
    while (window == 0 && Clock::now() - start < patience) {
        std::this_thread::sleep_for(poll_step);
        window = watcher.shown_window();
    }
    times.mapped_ms = milliseconds_since(start);
    if (window == 0) {
        throw std::runtime_error("no window came:\n" + process.output() + process.error_output());
    }
    const support::Place place = watcher.view.place_on_root(window);
    while (watcher.is_white(window, 0, 0) ||
           watcher.is_white(window, place.width - 1, place.height - 1)) {
        if (Clock::now() - start >= patience) {
            throw std::runtime_error("the window stays white");
        }
        std::this_thread::sleep_for(poll_step);
    }
    times.painted_ms = milliseconds_since(start);
    process.send_signal(SIGTERM);
    if (!process.wait_for_end() || !watcher.view.wait_until_gone(window)) {
        throw std::runtime_error("the program does not end");
    }
    return times;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace start_up
