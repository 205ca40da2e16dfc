// Standard output that takes nothing: closed, full, or a pipe whose reader has gone.

#include "end_to_end/expectations.h"
#include "end_to_end/installed_file.h"
#include "faults/surroundings.h"

#include <csignal>

namespace faults {
namespace {

using namespace end_to_end;

struct Output {
    const char* name;
    const char* redirection;
};

constexpr Output outputs[] = {
    {"Closed", ">&-"},
    {"AllStreamsClosed", "<&- >&- 2>&-"},
    {"FullDevice", ">/dev/full"},
    {"BrokenPipe", "> >(head -n 1 >/dev/null)"},
};

class DeafConsole : public testing::TestWithParam<Output> {
protected:
    void SetUp() override {
        start_through_shell(scenario_, "", "", GetParam().redirection);
        scenario_.reach_password_screen();
    }

    void expect_nothing_left() {
        EXPECT_TRUE(ended_clean(scenario_.finish()));
        EXPECT_TRUE(
            support::wait_until([this] { return processes_of(scenario_.account()).empty(); }));
    }

    Scenario scenario_;
};

INSTANTIATE_TEST_SUITE_P(Output, DeafConsole, testing::ValuesIn(outputs),
                         [](const auto& output) { return output.param.name; });

TEST_P(DeafConsole, DoesNotDisturbAnInstallation) {
    install_from_password_screen(scenario_, user_password);
    EXPECT_TRUE(
        line_reads(scenario_.picture_of(scenario_.main_window()), 2, "Installation Complete"));
    scenario_.press_ok();
    expect_nothing_left();
    EXPECT_EQ(plugin_in(scenario_.account().home), plugin_of_archive());
}

TEST_P(DeafConsole, DoesNotDisturbAnInterrupt) {
    scenario_.give_password(user_password);
    scenario_.reach_unpacking();
    scenario_.installer().send_signal(SIGINT);
    expect_nothing_left();
}

} // namespace
} // namespace faults
