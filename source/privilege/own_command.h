// own_command.h: running single commands by the person's own rights, where root is not needed.
#pragma once

#include "privilege/privileged_command.h"
#include "privilege/privileged_runner.h"

// Runs the command with the environment, folder and terminal that root's commands get, and as
// patiently (su_run). Each of its words reaches it as it is, exact or not. Nothing is ever
// answered. Logs when there is no pseudo-terminal.
[[nodiscard]] CommandResult own_run(PrivilegedRunner* runner, const PrivilegedCommand& command);
