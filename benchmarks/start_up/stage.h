// A private world with an ordinary user, a screen without a window manager, and the programs that
// are compared, in the user's home.

#pragma once

#include "support/child_process.h"
#include "support/worlds/accounts.h"
#include "support/worlds/private_world.h"
#include "support/x_server.h"

#include <sys/types.h>

namespace start_up {

struct Stage {
    // with_sudo: sudo and su as on most machines; otherwise neither is there.
    explicit Stage(bool with_sudo);

    support::PrivateWorld world;
    support::Account account;
    support::XServer server;
    support::ChildOptions plain_window; // ready to be started
    support::ChildOptions installer;
};

// Clicks the splash away and returns when the password screen is there. Throws std::runtime_error
// when it does not come.
void reach_password_screen(const Stage& stage, support::ChildProcess& installer);

} // namespace start_up
