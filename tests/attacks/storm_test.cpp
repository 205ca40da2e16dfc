// Events and signals by the ten thousand: the installation goes on, and ends when it is told to.

#include "end_to_end/expectations.h"
#include "end_to_end/stages.h"
#include "faults/surroundings.h"

#include <xcb/xcb.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <random>

namespace {

using namespace end_to_end;

constexpr int many_events = 100'000;
constexpr int many_signals = 10'000;

void round_trip(xcb_connection_t* connection) {
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

// One event with the window's id where its type has it, and anything else in the rest. None of them
// is what a person does, and none says that the window has gone.
void send_any(xcb_connection_t* connection, support::XWindow window, std::mt19937& random) {
    constexpr std::uint8_t types[] = {XCB_EXPOSE,           XCB_MOTION_NOTIFY, XCB_CONFIGURE_NOTIFY,
                                      XCB_CLIENT_MESSAGE,   XCB_MAP_NOTIFY,    XCB_PROPERTY_NOTIFY,
                                      XCB_SELECTION_NOTIFY, XCB_FOCUS_IN,      XCB_REPARENT_NOTIFY,
                                      XCB_CREATE_NOTIFY,    XCB_KEY_RELEASE,   XCB_EXPOSE};
    char event[32];
    for (char& byte : event) {
        byte = static_cast<char>(random());
    }
    event[0] = static_cast<char>(types[random() % std::size(types)]);
    for (const int offset : {4, 8, 12}) {
        std::memcpy(event + offset, &window, sizeof window);
    }
    if (event[0] == XCB_EXPOSE) {
        for (int field = 8; field < 16; field += 2) {
            const auto place = static_cast<std::uint16_t>(random() % 600);
            std::memcpy(event + field, &place, sizeof place);
        }
    }
    xcb_send_event(connection, 0, window, 0, event);
}

void storm(Scenario& scenario, support::XWindow window, int count) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    xcb_connection_t* connection = scenario.view().connection();
    for (int i = 0; i < count; ++i) {
        send_any(connection, window, random);
        if (i % 1'000 == 0) {
            round_trip(connection);
        }
    }
    round_trip(connection);
}

TEST(XStorm, LetsTheInstallationGoOn) {
    Scenario scenario;
    scenario.reach_password_screen();
    storm(scenario, scenario.main_window(), many_events);
    scenario.give_password(user_password);
    scenario.reach_folder_browser();
    storm(scenario, scenario.browser_window(), many_events / 10);
    scenario.accept_folder();
    scenario.reach_last_screen();
    expect_installed(scenario);
}

TEST(XStorm, EndsWhenTheWindowIsSaidToBeGone) {
    Scenario scenario;
    scenario.reach_password_screen();
    storm(scenario, scenario.main_window(), many_events / 10);
    xcb_destroy_notify_event_t event{};
    event.response_type = XCB_DESTROY_NOTIFY;
    event.event = scenario.main_window();
    event.window = scenario.main_window();
    char bytes[32] = {};
    std::memcpy(bytes, &event, sizeof event);
    for (int i = 0; i < 1'000; ++i) {
        xcb_send_event(scenario.view().connection(), 0, scenario.main_window(), 0, bytes);
    }
    round_trip(scenario.view().connection());
    EXPECT_TRUE(ended_clean(scenario.finish()));
}

TEST(SignalStorm, OfSignalsThatMeanNothingLetsTheInstallationGoOn) {
    Scenario scenario;
    scenario.reach_password_screen();
    constexpr int signals[] = {SIGCHLD, SIGWINCH, SIGCONT, SIGURG, SIGPIPE, SIGXFSZ};
    const auto send = [&] {
        for (int i = 0; i < many_signals / 2; ++i) {
            scenario.installer().send_signal(
                signals[static_cast<std::size_t>(i) % std::size(signals)]);
        }
    };
    scenario.give_password(user_password);
    send();
    scenario.reach_folder_browser();
    scenario.accept_folder();
    send();
    scenario.reach_last_screen();
    expect_installed(scenario);
}

class CancelStorm : public testing::TestWithParam<Stage> {};

INSTANTIATE_TEST_SUITE_P(At, CancelStorm,
                         testing::Values(Stage::password, Stage::unpacking, Stage::copying),
                         [](const auto& stage) { return stage_name(stage.param); });

TEST_P(CancelStorm, EndsTheRunAsOneSignalDoes) {
    Scenario scenario;
    reach(scenario, GetParam());
    constexpr int signals[] = {SIGTERM, SIGINT, SIGHUP};
    for (int i = 0; i < many_signals && scenario.installer().running(); ++i) {
        scenario.installer().send_signal(signals[static_cast<std::size_t>(i) % std::size(signals)]);
    }
    // In the moment between the farewell and the end a signal is nobody's any more and may be what
    // ends the process; nothing is left to be done then.
    support::ChildEnd end = scenario.finish();
    if (end.signal) {
        end.signal.reset();
        end.exit_status = 0;
    }
    EXPECT_TRUE(ended_clean(end));
    EXPECT_EQ(faults::processes_left(scenario.account()), std::vector<std::string>{});
}

} // namespace
