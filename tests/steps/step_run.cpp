// step_run.cpp: runs and looks.
#include "steps/step_run.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace steps {

std::vector<std::string> step_command(const std::vector<std::string>& shell,
                                      const std::string& step, const std::string& folder) {
    std::ifstream file("resources/steps/install.sh");
    std::vector<std::string> command = shell;
    command.insert(command.end(), {"-c", {std::istreambuf_iterator<char>(file), {}}});
    command.insert(command.end(), {"install", step, "tilt", archive, folder, bundle});
    return command;
}

int run_step(const std::vector<std::string>& shell, const std::string& step,
             const std::string& folder) {
    support::ChildProcess child({.command = step_command(shell, step, folder)});
    const auto end = child.wait_for_end();
    EXPECT_EQ(child.output() + child.error_output(), "");
    return end && end->exit_status ? *end->exit_status : -1;
}

int install(const std::vector<std::string>& shell, const std::string& folder) {
    const int status = run_step(shell, "put_beside", folder);
    return status != 0 ? status : run_step(shell, "move_into_place", folder);
}

std::string tree_of(const std::string& folder) {
    return support::output_of({"sh", "-c",
                               "cd \"$1\" && { find . -mindepth 1 -printf '%y %m %U %p %l\\n'; "
                               "find . -type f -exec sha256sum {} +; } | sort",
                               "tree", folder});
}

void prepare(const std::string& line) {
    (void)support::output_of({"sh", "-e", "-c", line});
}

} // namespace steps
