// auth_method.h: how this user can become root on this machine, found out before any window opens.
//
// sudo with the user's own password is tried first; su with root's password is the way out when
// sudo is missing or does not let this user do anything.
#pragma once

#include "privilege/privileged_runner.h"

#include <cstdint>

enum AuthMethod : std::int32_t {
    auth_method_sudo = 0,
    auth_method_su = 1,
    auth_method_own = 2, // none: all is done by the person's own rights
    auth_method_none = 255,
};

// Looks for sudo, leaves the path tried last in sudo_path, and asks it (sudo_probe) whether the
// calling user may run commands. 1 = usable, and the log says so; 0 = not there, not allowed, or
// the calling user has no login name.
[[nodiscard]] std::int32_t find_sudo(PrivilegedRunner* runner);

// Looks for su and leaves the path tried last in su_path; su is not run. 1 = there, and the log
// says so; 0 = not.
[[nodiscard]] std::int32_t find_su(PrivilegedRunner* runner);
