// no_memory_test.cpp: allocations that fail in a whole installation with every switch: what the
// console says of it is true.
#include "attacks/no_memory.h"
#include "attacks/undaunted_person.h"
#include "end_to_end/scenario.h"
#include "faults/surroundings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

using end_to_end::Scenario;

namespace {

constexpr const char* offered = "/usr/local/lib/lv2";
constexpr const char* uninstaller = "/usr/local/bin/uninstall-lantern-set";

// Names that tell of the installation; empty where there is no such folder.
std::vector<std::string> traces_in(const std::string& folder) {
    std::vector<std::string> traces;
    if (!folder.empty() && fs::exists(folder)) {
        for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
            const std::string name = entry.path().filename().string();
            if (name.find("lantern") != std::string::npos ||
                (folder == "/tmp" && name.find("zeph-installer") != std::string::npos)) {
                traces.push_back(name);
            }
        }
    }
    return traces;
}

class NoMemoryFor : public testing::TestWithParam<std::string> {
protected:
    NoMemoryFor() {
        // Whoever is asked for root's password in place of the own one knows it.
        support::set_root_password(end_to_end::user_password);
        fs::remove_all(offered);
        no_memory::prepare(scenario_, "NO_MEMORY_" + GetParam());
    }

    bool said(const std::string& text) {
        return scenario_.console().find(text) != std::string::npos;
    }

    // Where the console says that it installs to. The folder that is offered is not there when it
    // could not be made.
    std::string chosen_folder() {
        const std::string words = ": Installing to - ";
        const std::string console = scenario_.console();
        const auto at = console.find(words);
        return at == std::string::npos
                   ? ""
                   : console.substr(at + words.size(), console.find('\n', at) - at - words.size());
    }

    Scenario scenario_{
        {.browser_title = "- Select your LV2 plug-in folder -", .keep_visible = {ZEPH_SOURCE}}};
};

// A good run has some 360 requests. These fall about where the offered folder is made and where the
// installation is begun; the last one never comes.
INSTANTIATE_TEST_SUITE_P(Request, NoMemoryFor,
                         testing::ValuesIn(no_memory::requests({
                             "EVERY=60",
                             "AT=100",
                             "AT=165",
                             "AT=100000",
                         })),
                         [](const auto& request) { return no_memory::name_of(request.param); });

} // namespace

TEST_P(NoMemoryFor, OneRequestHasATrueOutcome) {
    UndauntedPerson person(scenario_, end_to_end::user_password);
    person.play();
    const support::ChildEnd end = scenario_.finish();
    RecordProperty("requests", no_memory::log());
    SCOPED_TRACE(scenario_.console() + scenario_.installer().error_output() + no_memory::log());
    const bool not_begun = said(": GUI Engine is not running or was not started\n") ||
                           said(": Unable to create GUI thread :(\n");
    EXPECT_EQ(end.exit_status, not_begun ? 255 : 0);
    EXPECT_FALSE(person.interrupted());
    EXPECT_EQ(person.copies(), std::vector<std::string>{});
    EXPECT_EQ(faults::processes_left(scenario_.account()), std::vector<std::string>{});
    EXPECT_EQ(traces_in("/tmp"), std::vector<std::string>{});

    const std::string folder = chosen_folder();
    const bool complete = said("Installation Complete");
    std::vector<std::string> installed = traces_in(folder);
    std::sort(installed.begin(), installed.end());
    const std::vector<std::string> bundles = {"lantern-presets.lv2", "lantern-tilt.lv2"};
    EXPECT_EQ(installed, complete ? bundles : std::vector<std::string>{});
    EXPECT_EQ(fs::exists("/usr/local/share/doc/lantern-set/lantern-tilt.html"), complete);
    EXPECT_EQ(fs::exists(uninstaller), complete);
    if (complete) {
        EXPECT_EQ(
            support::output_of({"diff", "-r", ZEPH_SOURCE "/products/lantern-tilt/lantern-tilt.lv2",
                                folder + "/lantern-tilt.lv2"}),
            "");
    }
}
