// su_command.h: checking root's password and running single commands through su.
//
// su takes a command line for root's shell. Whatever it prompts with is answered, once; a second
// prompt is a refusal, and su is hung up on.
//
// All calls block, run on one thread, use runner->su_path, and log "failed to fork pty for su" when
// there is no pseudo-terminal. No zombie is left by any of them. Each leaves the master side of its
// terminal open until the process ends, unless su was hung up on: whatever the command has left
// running keeps its terminal. Passwords are borrowed, zero-terminated, and never copied.
#pragma once

#include "privilege/privileged_command.h"
#include "privilege/privileged_runner.h"

// Whether su accepts the password: true when its exit status is 0. Cancelling breaks it off at
// once: false.
[[nodiscard]] bool su_check_password(PrivilegedRunner* runner, const char* password);

// Runs the command, a line for root's shell. It has succeeded when its exit status is 0. When
// cancelling is asked for it is let finish for up to 30 seconds; it is carried out also when that
// was asked for before the call.
[[nodiscard]] CommandResult su_run(PrivilegedRunner* runner, const PrivilegedCommand& command,
                                   const char* password);
