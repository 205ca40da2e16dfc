// Keys and buttons in the main window: what they are given by, and what they have come to.

#pragma once

#include "display/installer/shown_main_window.h"

#include "gui/ORX/core/window_table.h"
#include "support/person.h"

#include <atomic>
#include <memory>
#include <string>

inline std::atomic<long> last_message{0};

inline void on_message(long data, void* /*user_data*/, unsigned long /*window*/) {
    last_message = data;
}

inline constexpr int ok_x = 300;
inline constexpr int ok_y = 366;
inline constexpr int field_x = 300;
inline constexpr int field_y = 368;
inline constexpr int beside_x = 100; // of the field and the button

inline std::string field_text() {
    const std::lock_guard<std::mutex> lock(installer.screen_lock);
    return password_field_get_text(installer.field);
}

struct MainInput : ShownMainWindow {
    void SetUp() override {
        installer.finish_requested = 0;
        installer.password_submitted = 0;
        ASSERT_NO_FATAL_FAILURE(ShownMainWindow::SetUp());
        main_window_accept_keys();
        window_set_on_client_message(desk.engine, installer.main_window, on_message);
    }

    [[nodiscard]] events::Sender hand() const { return {desk.view, window()}; }

    void click(int x, int y, int button) const {
        hand().press(x, y, button);
        hand().release(x, y, button);
    }

    // Waits until everything that was pressed so far has been dealt with.
    [[nodiscard]] bool settle() const {
        const long mark = last_message + 1;
        hand().message(32, static_cast<std::uint32_t>(mark));
        return support::wait_until([mark] { return last_message == mark; });
    }

    [[nodiscard]] static bool button_is_held() {
        const std::lock_guard<std::mutex> lock(installer.screen_lock);
        return push_button_get_highlighted(installer.button);
    }

    // The keyboard is over the window.
    [[nodiscard]] std::unique_ptr<support::Person> person() const {
        auto person = std::make_unique<support::Person>(desk.server.display_name());
        const support::Place place = desk.view.place_on_root(window());
        person->move_pointer(place.x + beside_x, place.y + ok_y);
        return person;
    }
};
