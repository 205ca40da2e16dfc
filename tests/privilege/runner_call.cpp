// Starting runner_tool as an account, and reading what it tells.

#include "privilege/runner_call.h"

#include "support/worlds/private_world.h"

#include <filesystem>
#include <sstream>

namespace support {

namespace {

constexpr const char* installed_tool = "/usr/local/bin/runner_tool";

} // namespace

RunningCall::RunningCall(const Account& account, const RunnerCall& call) {
    if (!std::filesystem::exists(installed_tool)) {
        install_program(installed_tool, RUNNER_TOOL); // where every account can reach it
    }
    static int number = 0;
    const std::string password_file = account.home + "/secret" + std::to_string(++number);
    write_file(password_file, call.password, 0600);
    give_to(account, password_file);
    std::vector<std::string> command = {installed_tool, "password=" + password_file};
    command.insert(command.end(), call.settings.begin(), call.settings.end());
    command.push_back(call.entry);
    command.push_back(call.argument);
    child_ = std::make_unique<ChildProcess>(run_as(account, command, call.environment));
}

RunnerOutcome RunningCall::outcome(std::chrono::milliseconds patience) {
    RunnerOutcome outcome;
    const auto end = child_->wait_for_end(patience);
    outcome.text = child_->output() + child_->error_output();
    outcome.ended = end && end->exit_status == 0;
    std::istringstream lines(outcome.text);
    std::map<std::string, std::string> values;
    for (std::string line; std::getline(lines, line);) {
        const auto sign = line.find('=');
        if (sign != std::string::npos) {
            values[line.substr(0, sign)] = line.substr(sign + 1);
        }
    }
    if (outcome.ended && values.contains("result")) {
        outcome.result = std::stoi(values["result"]);
        outcome.time_ms = std::stoi(values["time"]);
        outcome.descriptors = values["descriptors"];
        outcome.children = values["children"];
        outcome.copies = std::stoi(values["copies"]);
        outcome.sudo_path = values["sudo_path"];
        outcome.su_path = values["su_path"];
    }
    return outcome;
}

RunnerOutcome call_runner(const Account& account, const RunnerCall& call,
                          std::chrono::milliseconds patience) {
    return RunningCall(account, call).outcome(patience);
}

std::string install_stand_in(const std::string& name, const std::vector<std::string>& settings) {
    const std::string path = "/usr/local/lib/stand-in/" + name;
    install_program(path, STAND_IN);
    std::string play;
    for (const std::string& setting : settings) {
        play += setting + "\n";
    }
    write_file(path + ".play", play);
    return path;
}

} // namespace support
