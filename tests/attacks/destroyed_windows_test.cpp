// Another client destroys the installer's windows, or only says so: they count as closed.

#include "end_to_end/expectations.h"
#include "faults/surroundings.h"

#include <xcb/xcb.h>

#include <cstring>

namespace {

using namespace end_to_end;

enum class End { destroyed, said_to_be };

void end_window(Scenario& scenario, support::XWindow window, End end) {
    xcb_connection_t* connection = scenario.view().connection();
    if (end == End::destroyed) {
        xcb_destroy_window(connection, window);
    } else {
        xcb_destroy_notify_event_t event{};
        event.response_type = XCB_DESTROY_NOTIFY;
        event.event = window;
        event.window = window;
        char bytes[32] = {};
        std::memcpy(bytes, &event, sizeof event);
        xcb_send_event(connection, 0, window, 0, bytes);
    }
    xcb_flush(connection);
}

class EndedWindow : public testing::TestWithParam<End> {};

INSTANTIATE_TEST_SUITE_P(Ways, EndedWindow, testing::Values(End::destroyed, End::said_to_be),
                         [](const auto& end) {
                             return end.param == End::destroyed ? "Destroyed" : "SaidToBe";
                         });

TEST_P(EndedWindow, OfTheSplashLetsTheInstallationGoOn) {
    Scenario scenario;
    scenario.reach_splash();
    end_window(scenario, scenario.splash_window(), GetParam());
    EXPECT_TRUE(scenario.view().wait_until_gone(scenario.splash_window()));
    (void)scenario.view().wait_for_class("zeph-installer");
    scenario.wait_for("the lock file", [] { return faults::text_of(lock_path) != ""; });
    scenario.installer().send_signal(SIGTERM);
    EXPECT_TRUE(ended_clean(scenario.finish()));
}

TEST_P(EndedWindow, OfThePasswordEndsTheRun) {
    Scenario scenario;
    scenario.reach_password_screen();
    end_window(scenario, scenario.main_window(), GetParam());
    EXPECT_TRUE(ended_clean(scenario.finish()));
    EXPECT_NE(scenario.console().find(info("Exiting")), std::string::npos);
}

TEST_P(EndedWindow, OfTheUnpackingEndsTheRun) {
    Scenario scenario;
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.reach_unpacking();
    end_window(scenario, scenario.main_window(), GetParam());
    EXPECT_TRUE(ended_clean(scenario.finish()));
}

TEST_P(EndedWindow, OfTheLastScreenEndsTheRun) {
    Scenario scenario;
    support::write_file(lock_path, "somebody's");
    scenario.reach_main_window();
    scenario.reach_last_screen();
    end_window(scenario, scenario.main_window(), GetParam());
    EXPECT_EQ(scenario.finish().exit_status, 0);
}

TEST_P(EndedWindow, OfTheBrowserIsACancel) {
    Scenario scenario;
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.reach_folder_browser();
    end_window(scenario, scenario.browser_window(), GetParam());
    scenario.reach_last_screen();
    EXPECT_NE(scenario.console().find(info("Install cancelled by user.")), std::string::npos);
    scenario.press_ok();
    EXPECT_TRUE(ended_clean(scenario.finish()));
}

// Whoever waits for the window's making and destroys it before anybody could be told of its end.
TEST(WindowDestroyedAtOnce, EndsTheRun) {
    for (int attempt = 0; attempt < 4; ++attempt) {
        Scenario scenario;
        xcb_connection_t* connection = scenario.view().connection();
        scenario.reach_splash();
        const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(connection, scenario.view().root(), XCB_CW_EVENT_MASK, &mask);
        scenario.click(scenario.splash_window(), 300, 200);
        scenario.wait_for("the end of the main window", [&] {
            for (xcb_generic_event_t* event = xcb_poll_for_event(connection); event != nullptr;
                 event = xcb_poll_for_event(connection)) {
                const auto created = *reinterpret_cast<xcb_create_notify_event_t*>(event);
                std::free(event);
                if ((created.response_type & 0x7F) == XCB_CREATE_NOTIFY &&
                    created.override_redirect == 0 && created.width == 600) {
                    xcb_destroy_window(connection, created.window);
                    xcb_flush(connection);
                    return true;
                }
            }
            return false;
        });
        EXPECT_TRUE(ended_clean(scenario.finish()));
    }
}

} // namespace
