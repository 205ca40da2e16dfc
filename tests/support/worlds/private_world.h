// A machine of a test's own: accounts, sudo rules, programs and temporary files that nobody else
// sees and that are gone when the test is.
//
// Entering gives the calling process a network of its own, without any other machine in it (the
// display numbers are its own, too), and a private mount namespace, in which
//   /etc, /usr and /var   are the machine's, but everything written to them goes to memory,
//   /tmp, /run, /home, /opt  are empty,
//   sudo                  knows a plain set of rules (root and group sudo may do everything, in
//                         use since long: env_reset, secure_path), and no mailer is found.
// What the test itself runs from (its working folder, its executable's folder, those in
// keep_visible) stays in view where it would be covered. Programs started while the world is
// entered, X servers included, live in it; leaving (the destructor) goes back to the real machine.
// Tests do not see each other's worlds, so they can run side by side.
//
// Needs root. Without it world_obstacle() says so, and the constructor throws.

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace support {

// Why no world can be entered, in one sentence for the test's output; nothing when one can.
[[nodiscard]] std::optional<std::string> world_obstacle();

struct WorldOptions {
    std::vector<std::string> keep_visible; // absolute folders
};

class PrivateWorld {
public:
    // Throws std::runtime_error when a step is refused by the system.
    explicit PrivateWorld(const WorldOptions& options = {});
    ~PrivateWorld();
    PrivateWorld(const PrivateWorld&) = delete;
    PrivateWorld& operator=(const PrivateWorld&) = delete;

private:
    int machine_mounts_ = -1;
    int machine_network_ = -1;
    int working_folder_ = -1;
};

// All of these change the entered world only; none may be called outside of one. They throw
// std::runtime_error when they fail.

// Takes a program away; every name of the same file in /usr/bin and /usr/sbin goes with it when
// both are the same folder. A program that is not there stays away.
void hide_program(const std::string& path);

// Puts a copy of an executable file in a program's place, owned by root. mode 04755 runs as root.
void install_program(const std::string& path, const std::string& executable, unsigned mode = 0755);

// The same with a script's text.
void install_script(const std::string& path, const std::string& text, unsigned mode = 0755);

// Writes a file of root's, making its folder; mode as for chmod.
void write_file(const std::string& path, const std::string& text, unsigned mode = 0644);

// Adds a file of sudo rules, checked by visudo.
void add_sudo_rules(const std::string& name, const std::string& rules);

// Makes a locale such as "de_DE" in UTF-8 available as "de_DE.UTF-8".
void make_locale(const std::string& language);

} // namespace support
