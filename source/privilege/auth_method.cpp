// auth_method.cpp: looking for sudo and su.
#include "privilege/auth_method.h"

#include "privilege/sudo_command.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>

namespace {

constexpr const char* sudo_places[] = {
    "/usr/bin/sudo",
    "/usr/local/bin/sudo",
    "/usr/sbin/sudo",
    "/bin/sudo",
};

constexpr const char* su_places[] = {
    "/bin/su",
    "/usr/bin/su",
    "/usr/local/bin/su",
    "/usr/sbin/su",
};

// Existence decides; a tool that cannot be executed fails later, where its outcome is defined.
template <std::size_t path_size, std::size_t place_count>
bool find_tool(char (&path)[path_size], const char* const (&places)[place_count]) {
    for (const char* place : places) {
        std::snprintf(path, path_size, "%s", place);
        struct stat found;
        if (stat(path, &found) == 0) {
            return true;
        }
    }
    return false;
}

} // namespace

std::int32_t find_sudo(PrivilegedRunner* runner) {
    if (!find_tool(runner->sudo_path, sudo_places)) {
        return 0;
    }
    const passwd* user = getpwuid(getuid());
    if (user == nullptr || sudo_probe(runner, user->pw_name) != 1) {
        return 0;
    }
    runner->log("** INFO ** %s: Using 'sudo' for authentication\n", runner->title);
    return 1;
}

std::int32_t find_su(PrivilegedRunner* runner) {
    if (!find_tool(runner->su_path, su_places)) {
        return 0;
    }
    runner->log("** INFO ** %s: Using 'su' for authentication\n", runner->title);
    return 1;
}
