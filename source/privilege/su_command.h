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

#include "privilege/privileged_runner.h"

#include <cstdint>

// Whether su accepts the password: true when its exit status is 0. Cancelling breaks it off at
// once: false.
[[nodiscard]] bool su_check_password(PrivilegedRunner* runner, const char* password);

// Runs command, a shell command line. 1 only when there was no pseudo-terminal; else 0, whatever
// became of the command. When cancelling is asked for it is let finish for up to 30 seconds.
[[nodiscard]] std::int32_t su_run(PrivilegedRunner* runner, const char* command,
                                  const char* password);

// Extracts the archive into folder, as root, and then waits five seconds for a cancel. 1 when
// cancelled, without a pseudo-terminal or memory, or when the plain command for that folder would
// be cut; else 0, whatever became of the extraction. It is carried out also when cancelling was
// asked for before the call.
[[nodiscard]] std::int32_t su_extract(PrivilegedRunner* runner, const char* folder,
                                      const char* password);

// Whether what stands in folder is what the archive holds: tar's own comparison, as root. Goes by
// exact_folder_names as su_extract does.
[[nodiscard]] bool su_verify(PrivilegedRunner* runner, const char* folder, const char* password);
