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

#include "privilege/privileged_runner.h"

#include <cstdint>

// sudo -k: 1 when it exited with status 0, else 0.
[[nodiscard]] std::int32_t sudo_forget(PrivilegedRunner* runner);

// Runs the words of command_line (at most six of 253 bytes, split at single blanks). 1 when the
// password was accepted, or none asked for, and the command's exit status is 0; else 0. When
// cancelling is asked for, the command is let finish for up to 30 seconds.
[[nodiscard]] std::int32_t sudo_run(PrivilegedRunner* runner, const char* command_line,
                                    const char* password);

// Whether sudo accepts the password, asked afresh. Cancelling breaks it off at once: false.
[[nodiscard]] bool sudo_check_password(PrivilegedRunner* runner, const char* password);

// sudo_forget, then sudo_run. Always 0.
std::int32_t sudo_run_fresh(PrivilegedRunner* runner, const char* command, const char* password);

// Extracts the archive into folder, as root, and then waits five seconds for a cancel. 1 when
// cancelled, or when the plain command for that folder would be cut; else 0, whatever became of
// the extraction. It is carried out also when cancelling was asked for before the call.
[[nodiscard]] std::int32_t sudo_extract(PrivilegedRunner* runner, const char* folder,
                                        const char* password);

// Whether what stands in folder is what the archive holds: tar's own comparison, as root. Goes by
// exact_folder_names as sudo_extract does.
[[nodiscard]] bool sudo_verify(PrivilegedRunner* runner, const char* folder, const char* password);

// Whether the rules let the user run commands: sudo as the user himself, which needs no password
// and is given none. 1 when the exit status is 0, else 0. It waits until sudo ends; a sudo that
// asks all the same is hung up on after ten seconds.
[[nodiscard]] std::int32_t sudo_probe(PrivilegedRunner* runner, const char* user);
