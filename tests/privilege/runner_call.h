// Calls of the privileged runner, each in a process of its own under an ordinary account, and what
// they came to. In a private world only.

#pragma once

#include "support/worlds/accounts.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace support {

struct RunnerCall {
    std::string entry;                    // such as "sudo_check_password"
    std::string argument;                 // command, folder or user
    std::string password;                 //
    std::vector<std::string> settings;    // NAME=VALUE of runner_tool
    std::vector<std::string> environment; // NAME=VALUE
};

struct RunnerOutcome {
    bool ended = false;
    int result = -1;
    int time_ms = -1;
    std::string descriptors; // "none", or what they are
    std::string children;    // "none", "running" or "zombie"
    int copies = -1;         // of the password, in the runner's memory
    std::string sudo_path;
    std::string su_path;
    std::string text; // everything that was printed
};

class RunningCall {
public:
    RunningCall(const Account& account, const RunnerCall& call);
    [[nodiscard]] bool running() { return child_->running(); }
    // How it went; ended is false after patience.
    [[nodiscard]] RunnerOutcome outcome(std::chrono::milliseconds patience);

private:
    std::unique_ptr<ChildProcess> child_;
};

// Starts a call and waits for its outcome.
[[nodiscard]] RunnerOutcome
call_runner(const Account& account, const RunnerCall& call,
            std::chrono::milliseconds patience = std::chrono::seconds(120));

// Installs a program that plays a sudo or su, from NAME=VALUE settings; gives its path.
[[nodiscard]] std::string install_stand_in(const std::string& name,
                                           const std::vector<std::string>& settings);

} // namespace support
