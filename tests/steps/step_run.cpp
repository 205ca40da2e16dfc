// step_run.cpp: runs and looks.
#include "steps/step_run.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace steps {

namespace {

std::string text_of(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

std::vector<std::string> step_command(const std::vector<std::string>& shell,
                                      const std::string& step, const std::string& folder,
                                      const Keeping& keeping) {
    std::vector<std::string> command = shell;
    command.insert(command.end(),
                   {"-c", text_of("resources/steps/install.sh"), "install", step, "tilt", archive,
                    keeping.prefix, text_of("resources/steps/uninstall.sh"), folder, bundle});
    command.insert(command.end(), keeping.items.begin(), keeping.items.end());
    command.emplace_back("--");
    command.insert(command.end(), keeping.others.begin(), keeping.others.end());
    return command;
}

int run_step(const std::vector<std::string>& shell, const std::string& step,
             const std::string& folder, const Keeping& keeping) {
    support::ChildProcess child({.command = step_command(shell, step, folder, keeping)});
    const auto end = child.wait_for_end();
    EXPECT_EQ(child.output() + child.error_output(), "");
    return end && end->exit_status ? *end->exit_status : -1;
}

int install(const std::vector<std::string>& shell, const std::string& folder,
            const Keeping& keeping) {
    const int status = run_step(shell, "put_beside", folder, keeping);
    return status != 0 ? status : run_step(shell, "move_into_place", folder, keeping);
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
