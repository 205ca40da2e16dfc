// What the tools inherit and what a run keeps: descriptors and processes.

#include "end_to_end/expectations.h"
#include "faults/surroundings.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace faults {
namespace {

namespace files = std::filesystem;

using namespace end_to_end;

constexpr const char* witness_file = "/tmp/seen-by-the-tool";
constexpr int script_descriptor = 255; // bash keeps its script there

// A tool that first writes down what descriptors it was given, then does its work.
void install_witness(const std::string& tool) {
    support::install_program("/usr/bin/" + tool + ".real", "/usr/bin/" + tool, 04755);
    // The listing's own descriptor is opened by its own process, so the tool's are seen as given.
    support::install_script("/usr/bin/" + tool, "#!/bin/bash\nls -l /proc/$$/fd >> " +
                                                    std::string(witness_file) + "\nexec /usr/bin/" +
                                                    tool + ".real \"$@\"\n");
}

// Each call's listing begins with a line "total N"; the others end in "NUMBER -> TARGET".
void expect_only_a_terminal() {
    std::istringstream lines(text_of(witness_file));
    std::string terminal;
    int calls = 0;
    int streams = 0;
    for (std::string line; std::getline(lines, line);) {
        const auto arrow = line.find(" -> ");
        if (arrow == std::string::npos) {
            ++calls;
            terminal.clear();
            continue;
        }
        const std::string target = line.substr(arrow + 4);
        const auto number = line.rfind(' ', arrow - 1);
        const int descriptor = std::stoi(line.substr(number + 1));
        if (descriptor == script_descriptor) {
            continue;
        }
        EXPECT_LE(descriptor, STDERR_FILENO) << line;
        EXPECT_TRUE(target.starts_with("/dev/pts/")) << line;
        EXPECT_TRUE(terminal.empty() || terminal == target) << "one terminal for all three";
        terminal = target;
        ++streams;
    }
    EXPECT_GE(calls, 2) << "the tool was called to check and to extract";
    EXPECT_EQ(streams, 3 * calls);
}

// What the process's descriptors point to, sorted.
std::vector<std::string> descriptors_of(pid_t process) {
    std::vector<std::string> targets;
    std::error_code failure;
    for (const auto& entry :
         files::directory_iterator("/proc/" + std::to_string(process) + "/fd")) {
        const std::string target = files::read_symlink(entry.path(), failure).string();
        if (!target.empty()) {
            targets.push_back(target);
        }
    }
    std::sort(targets.begin(), targets.end());
    return targets;
}

std::size_t masters_in(const std::vector<std::string>& targets) {
    return static_cast<std::size_t>(
        std::count_if(targets.begin(), targets.end(), [](const std::string& target) {
            return target == "/dev/ptmx" || target == "/dev/pts/ptmx";
        }));
}

struct Method {
    const char* name;
    Rights rights;
    const char* tool;
    const char* password;
    std::size_t masters_left; // of a wrong password, the right one and the extraction
};

constexpr Method methods[] = {
    {"Sudo", Rights::sudo, "sudo", user_password, 0},
    {"Su", Rights::only_su, "su", root_password, 3},
};

class Descriptors : public testing::TestWithParam<Method> {};

INSTANTIATE_TEST_SUITE_P(With, Descriptors, testing::ValuesIn(methods),
                         [](const auto& method) { return method.param.name; });

TEST_P(Descriptors, OfTheToolAreItsTerminalAndOfARunOnlySuMastersStay) {
    Scenario scenario({.rights = GetParam().rights});
    install_witness(GetParam().tool);
    // A descriptor from the person's shell that is not closed on exec.
    start_through_shell(scenario, "exec 9< /etc/hostname");
    scenario.reach_password_screen();
    const pid_t process = scenario.installer().process_id();
    const std::vector<std::string> before = descriptors_of(process);
    const std::size_t probing_masters = masters_in(before);
    scenario.give_password("not it");
    scenario.reach_wrong_password_screen();
    install_from_password_screen(scenario, GetParam().password);
    expect_only_a_terminal();

    std::vector<std::string> after = descriptors_of(process);
    EXPECT_LE(masters_in(after), probing_masters + GetParam().masters_left);
    std::erase_if(after, [](const std::string& target) {
        return target == "/dev/ptmx" || target == "/dev/pts/ptmx";
    });
    std::vector<std::string> others_before = before;
    std::erase_if(others_before, [](const std::string& target) {
        return target == "/dev/ptmx" || target == "/dev/pts/ptmx";
    });
    EXPECT_EQ(after.size(), others_before.size());
    EXPECT_EQ(children_of(process), std::vector<pid_t>{}) << "children, zombies included";
    EXPECT_EQ(processes_of(scenario.account()).size(), 1U);

    files::remove(witness_file);
    scenario.press_ok();
    EXPECT_TRUE(ended_clean(scenario.finish()));
    EXPECT_EQ(processes_left(scenario.account()), std::vector<std::string>{});
}

} // namespace
} // namespace faults
