// step_run.h: a shell with the text of the installation's steps, and what it leaves behind.
#pragma once

#include "support/child_process.h"

#include <string>
#include <vector>

namespace steps {

// The shells that /bin/sh is somewhere.
inline const std::vector<std::vector<std::string>> all_shells = {
    {"dash"}, {"bash", "--posix"}, {"busybox", "sh"}};

// What a step ends with; see resources/steps/install.sh.
inline constexpr int no_room = 71;
inline constexpr int read_only = 72;
inline constexpr int in_the_way = 73;
inline constexpr int not_whole = 74;
inline constexpr int no_folder = 75;
inline constexpr int not_allowed = 76;
inline constexpr int interrupted = 77;

inline constexpr const char* archive = "/tmp/archive.tar.gz";
inline constexpr const char* bundle = "tilt.lv2";

// What is kept beside the installation.
struct Keeping {
    std::string prefix = {};              // where the list and the uninstaller go; empty = neither
    std::vector<std::string> others = {}; // pairs of SOURCE and TARGET
    std::vector<std::string> items = {};  // pairs of FOLDER and MEMBER, beside the bundle's
};

// The command of a step of the product "tilt": its bundle goes into the folder.
[[nodiscard]] std::vector<std::string> step_command(const std::vector<std::string>& shell,
                                                    const std::string& step,
                                                    const std::string& folder,
                                                    const Keeping& keeping = {});

// Runs it to its end; the exit status.
int run_step(const std::vector<std::string>& shell, const std::string& step,
             const std::string& folder, const Keeping& keeping = {});

// Both steps of an installation, as far as they go; the exit status of the last.
int install(const std::vector<std::string>& shell, const std::string& folder,
            const Keeping& keeping = {});

// Everything in the folder, a line each: kind, mode, owner, name, link's target, content.
[[nodiscard]] std::string tree_of(const std::string& folder);

// Runs a line of shell; throws when it fails.
void prepare(const std::string& line);

} // namespace steps
