// sudo_command.h: checking the user's password and running single commands through sudo.
//
// sudo is told to prompt with the one word "password", and is made to forget earlier passwords
// before every use, so that each child asks anew. Nothing is typed unless it asks. When the
// password is wrong sudo is hung up on at its complaint, or at its second prompt.
//
// All calls block, run on one thread, use runner->sudo_path, and log "failed to fork pty for sudo"
// when there is no pseudo-terminal. No descriptor and no zombie is left by any of them. Passwords
// are borrowed, zero-terminated, and never copied.
#pragma once

#include "privilege/privileged_command.h"
#include "privilege/privileged_runner.h"

#include <cstdint>

// sudo -k: 1 when it exited with status 0, else 0.
[[nodiscard]] std::int32_t sudo_forget(PrivilegedRunner* runner);

// Whether sudo accepts the password, asked afresh. Cancelling breaks it off at once, the forgetting
// included: false.
[[nodiscard]] bool sudo_check_password(PrivilegedRunner* runner, const char* password);

// sudo_forget, then the command. It has succeeded when the password was accepted, or none asked
// for, and its exit status is 0. When cancelling is asked for, it is let finish for up to 30
// seconds; it is carried out also when that was asked for before the call.
[[nodiscard]] CommandResult sudo_run_fresh(PrivilegedRunner* runner,
                                           const PrivilegedCommand& command, const char* password);

// Whether the rules let the user run commands: sudo as the user himself, which needs no password
// and is given none. 1 when the exit status is 0, else 0. It waits until sudo ends; a sudo that
// asks all the same is hung up on after ten seconds. But sudo-rs asks only people whom its rules
// let run commands, and asks nearly all of them: as soon as it does, it is hung up on, and the
// result is 1.
[[nodiscard]] std::int32_t sudo_probe(PrivilegedRunner* runner, const char* user);
