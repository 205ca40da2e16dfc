// What goes wrong around an installer: how it is started, what /tmp is like, and what is left of
// it.

#pragma once

#include "end_to_end/scenario.h"

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

namespace faults {

// Lets the scenario's next start go through a shell: prepare is one line of bash, run first;
// then the shell becomes the installer, with the same process id, by `exec WRAP PROGRAM REST`.
void start_through_shell(const end_to_end::Scenario& scenario, const std::string& prepare,
                         const std::string& wrap = {}, const std::string& rest = {});

// How long a run that is to end at once may take, whatever hangs.
#ifdef ZEPH_SANITIZED
inline constexpr std::chrono::milliseconds at_once{
    6'000}; // the thread sanitizer itself sleeps for one second
#else
inline constexpr std::chrono::milliseconds at_once{2'000};
#endif

// Changes the world's /tmp as `mount -o remount` does; flags are those of mount(2), data such as
// "size=512k".
void remount_tmp(unsigned long flags, const std::string& data = {});

// Gives the world so many pseudo-terminals and no more. They are new ones: none is taken yet.
void allow_terminals(int count);

// The file's whole text; empty when it cannot be read.
[[nodiscard]] std::string text_of(const std::string& path);

// Processes whose parent is that one, zombies included.
[[nodiscard]] std::vector<pid_t> children_of(pid_t parent);

// Processes that belong to the account, as "ID NAME".
[[nodiscard]] std::vector<std::string> processes_of(const support::Account& account);

// Those that are still there after a moment: what an ended program had started may take one to end.
[[nodiscard]] std::vector<std::string> processes_left(const support::Account& account);

// The letter of the process's state: R, S, T (stopped), Z (zombie); a blank when it is not there.
[[nodiscard]] char state_of(pid_t process);

// From the password screen through the whole installation; ends at the last screen.
void install_from_password_screen(end_to_end::Scenario& scenario, const std::string& password);

} // namespace faults
