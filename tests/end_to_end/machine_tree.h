// What is on the machine: a line for each file, folder and link, to be compared with what was there
// before.

#pragma once

#include <string>
#include <vector>

namespace end_to_end {

// Kind, mode, owner and path of everything in /etc, /home, /tmp and /usr, size and time of files,
// where links lead, and the SHA-256 of files in the folders named, which need not be there. Hidden
// names in /tmp are the screens' own and left out, and so is whatever is below kept.
[[nodiscard]] std::string machine_tree(const std::vector<std::string>& hashed,
                                       const std::vector<std::string>& kept);

// Throws std::runtime_error with the first lines that only one of them has.
void expect_same_tree(const std::string& before, const std::string& after);

} // namespace end_to_end
