// Eight installers started at the same moment on one display.

#include "end_to_end/expectations.h"
#include "faults/surroundings.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <csignal>
#include <filesystem>

namespace faults {
namespace {

using namespace end_to_end;

constexpr std::size_t started = 8;
constexpr const char* go = "/tmp/go";

std::vector<support::XWindow> installer_windows(const support::DisplayView& view) {
    std::vector<support::XWindow> windows;
    for (const support::XWindow window : view.children(view.root())) {
        if (view.viewable(window) && view.class_name(window) == "zeph-installer") {
            windows.push_back(window);
        }
    }
    return windows;
}

void raise(const support::DisplayView& view, support::XWindow window) {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(view.connection(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_flush(view.connection());
}

bool found_another(support::ChildProcess& installer) {
    return installer.output().find("There appears to be another instance of the installer\n") !=
           std::string::npos;
}

TEST(EightInstallers, StartedTogetherLetExactlyOneGoOn) {
    // Without a window manager windows can be raised from here, to be looked at.
    Scenario scenario({.manager = support::WindowManagerKind::none});
    start_through_shell(scenario, std::string("until [ -e ") + go + " ]; do sleep 0.01; done");
    std::vector<std::unique_ptr<support::ChildProcess>> installers;
    for (std::size_t i = 0; i < started; ++i) {
        installers.push_back(std::make_unique<support::ChildProcess>(
            support::run_as(scenario.account(), {scenario.program_path()},
                            {"DISPLAY=" + scenario.display_name(), "LC_ALL=C", "ORXDPI=96"})));
    }
    support::write_file(go, "");
    const auto count_others = [&] {
        return std::count_if(installers.begin(), installers.end(),
                             [](auto& installer) { return found_another(*installer); });
    };
    ASSERT_TRUE(support::wait_until(
        [&] {
            return installer_windows(scenario.view()).size() == started &&
                   count_others() == static_cast<std::ptrdiff_t>(started - 1);
        },
        std::chrono::milliseconds{60'000},
        [&] {
            return scenario.view().describe_tree() + std::to_string(count_others()) +
                   " saw another one";
        }));
    EXPECT_TRUE(std::filesystem::exists(lock_path));

    std::size_t refused = 0;
    std::size_t asking = 0;
    for (const support::XWindow window : installer_windows(scenario.view())) {
        std::string lines;
        EXPECT_TRUE(support::wait_until([&] {
            raise(scenario.view(), window);
            const support::Picture picture = scenario.picture_of(window);
            lines = scenario.lines_shown(picture);
            return (lines == "0 2 3" && scenario.field_shown(picture)) ||
                   (lines == "0 2 3 4 5 7 8 9 10" && scenario.button_shown(picture));
        })) << lines;
        refused += lines == "0 2 3 4 5 7 8 9 10" ? 1 : 0;
        asking += lines == "0 2 3" ? 1 : 0;
    }
    EXPECT_EQ(refused, started - 1);
    EXPECT_EQ(asking, 1U);

    // The seven go without taking the lock of the eighth, which takes it away itself.
    for (auto& installer : installers) {
        if (found_another(*installer)) {
            installer->send_signal(SIGTERM);
            const auto end = installer->wait_for_end();
            ASSERT_TRUE(end);
            EXPECT_EQ(end->exit_status, 0);
        }
    }
    EXPECT_TRUE(std::filesystem::exists(lock_path));
    for (auto& installer : installers) {
        if (installer->running()) {
            installer->send_signal(SIGTERM);
            const auto end = installer->wait_for_end();
            ASSERT_TRUE(end);
            EXPECT_TRUE(ended_clean(*end));
        }
    }
}

} // namespace
} // namespace faults
