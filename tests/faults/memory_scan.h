// Looking for a secret: in a running process's memory, in what anybody may read about processes,
// and in files.

#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace faults {

// So many bytes of a secret in a row count as a copy of it: a buffer that was wiped only in part
// is found, and chance is not.
inline constexpr std::size_t telling_length = 8;

// Places in the process's readable memory that hold a piece of the secret, as
// "ADDRESS MAPPING: TEXT AROUND". Needs root; the process is not stopped.
[[nodiscard]] std::vector<std::string> copies_in_memory(pid_t process, const std::string& secret);

// Those of them that the system may write to its swap space.
[[nodiscard]] std::vector<std::string> swappable_copies(pid_t process, const std::string& secret);

// Processes whose arguments or environment hold a piece of the secret, as "ID ARGUMENTS".
[[nodiscard]] std::vector<std::string> processes_that_show(const std::string& secret);

// Files below the folder that hold a piece of the secret.
[[nodiscard]] std::vector<std::string> files_that_hold(const std::string& folder,
                                                       const std::string& secret);

// Whether the text holds a piece of the secret.
[[nodiscard]] bool shows_piece_of(const std::string& text, const std::string& secret);

} // namespace faults
