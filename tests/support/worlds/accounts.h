// Throw-away accounts, in a private world only, and programs that run under them.

#pragma once

#include "support/child_process.h"

#include <sys/types.h>

#include <string>
#include <vector>

namespace support {

struct Account {
    std::string name;
    std::string password;
    std::string home; // exists, private to the account
    uid_t uid;
    gid_t gid; // of a group of the account's own
};

// Makes an account with that password. sudo_rule is what follows the name in a line of sudo's
// rules, such as "ALL=(ALL:ALL) ALL"; without one the account may do nothing.
[[nodiscard]] Account add_account(const std::string& name, const std::string& password,
                                  const std::string& sudo_rule = {});

// root's password, and root without one, as on a machine where only sudo is used.
void set_root_password(const std::string& password);
void lock_root();

// The environment of a fresh login, without a display; more are NAME=value texts that are added.
[[nodiscard]] std::vector<std::string> login_environment(const Account& account,
                                                         const std::vector<std::string>& more = {});

// A program that runs as the account, in its home, with its login environment and more.
[[nodiscard]] ChildOptions run_as(const Account& account, const std::vector<std::string>& command,
                                  const std::vector<std::string>& more_environment = {});

// Gives a file or folder to the account.
void give_to(const Account& account, const std::string& path);

} // namespace support
