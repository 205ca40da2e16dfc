// Allocations that fail, all from one on, or one or some of the program's own in a whole
// installation: a clear outcome, and nothing left.

#include "attacks/no_memory.h"
#include "attacks/undaunted_person.h"
#include "end_to_end/expectations.h"
#include "end_to_end/installed_file.h"
#include "faults/memory_scan.h"
#include "faults/surroundings.h"

namespace {

using namespace end_to_end;

constexpr const char* no_engine = ": GUI Engine is not running or was not started\n";
constexpr const char* no_thread = ": Unable to create GUI thread :(\n";
// What sudo does not do is not noticed without the maker's switches, but said.
constexpr const char* no_sudo = ": failed to fork pty for sudo\n";

class NoMemoryFrom : public testing::TestWithParam<int> {
protected:
    NoMemoryFrom() {
        no_memory::prepare(scenario_, "NO_MEMORY_FROM=" + std::to_string(GetParam()));
    }

    Scenario scenario_;
};

INSTANTIATE_TEST_SUITE_P(Call, NoMemoryFrom, testing::Values(1, 2, 5, 10, 30));

TEST_P(NoMemoryFrom, IsSaidAndEndsTheRun) {
    scenario_.start();
    const support::ChildEnd end = scenario_.finish();
    EXPECT_EQ(end.exit_status, 255) << scenario_.report();
    EXPECT_NE(scenario_.console().find(no_engine), std::string::npos);
    EXPECT_TRUE(installer_files_in_tmp().empty());
}

class NoMemoryFor : public testing::TestWithParam<std::string> {
protected:
    NoMemoryFor() {
        // Whoever is asked for root's password in place of the own one knows it.
        support::set_root_password(user_password);
        no_memory::prepare(scenario_, "NO_MEMORY_" + GetParam());
    }

    bool said(const std::string& text) {
        return scenario_.console().find(text) != std::string::npos;
    }

    void expect_nothing_left() {
        EXPECT_EQ(installer_files_in_tmp(), std::vector<std::string>{});
        EXPECT_EQ(faults::processes_left(scenario_.account()), std::vector<std::string>{});
        EXPECT_EQ(faults::files_that_hold(scenario_.account().home, user_password),
                  std::vector<std::string>{});
    }

    Scenario scenario_;
};

// A good run has some 310 requests. These fall about where sudo is looked for, where the windows
// are painted, where the password is taken, where the browser is made and where the archive is
// extracted; the last one never comes.
INSTANTIATE_TEST_SUITE_P(Request, NoMemoryFor,
                         testing::ValuesIn(no_memory::requests({
                             "EVERY=2",
                             "EVERY=3",
                             "EVERY=7",
                             "EVERY=60",
                             "AT=3",
                             "AT=48",
                             "AT=53",
                             "AT=134",
                             "AT=185",
                             "AT=100000",
                         })),
                         [](const auto& request) { return no_memory::name_of(request.param); });

TEST_P(NoMemoryFor, OneRequestHasATrueOutcome) {
    UndauntedPerson person(scenario_, user_password);
    person.play();
    const support::ChildEnd end = scenario_.finish();
    RecordProperty("requests", no_memory::log());
    SCOPED_TRACE(scenario_.console() + scenario_.installer().error_output() + no_memory::log());
    EXPECT_EQ(end.exit_status, said(no_engine) || said(no_thread) ? 255 : 0);
    EXPECT_EQ(scenario_.console().ends_with(info("Exiting") + "\n"), !said(no_thread));
    EXPECT_FALSE(person.interrupted());
    EXPECT_EQ(person.copies(), std::vector<std::string>{});
    expect_nothing_left();

    const auto installed = plugin_in(scenario_.account().home);
    const bool complete = said(info("Installation Complete"));
    if (installed) {
        EXPECT_EQ(installed, plugin_of_archive());
        EXPECT_TRUE(complete);
    } else {
        EXPECT_TRUE(!complete || said(no_sudo));
    }
    EXPECT_EQ(plugin_in(default_folder), std::nullopt);
}

} // namespace
