// Whether what was installed is what an archive holds, by the system's own tar and find.

#pragma once

#include <string>
#include <vector>

namespace end_to_end {

struct TreeFigures {
    std::size_t members = 0; // files, folders and links
    std::string tops;        // names of the topmost ones, with blanks between
};

// Compares each member with what is in the folder (content, mode, owner, time, link target), and
// sees to it that below the topmost members there is nothing else. Throws std::runtime_error with
// the first differences. With tops it is about these topmost members alone; with owner they belong
// to that account, and not to whom the archive says.
[[nodiscard]] TreeFigures prove_tree(const std::string& archive, const std::string& folder,
                                     const std::vector<std::string>& tops = {},
                                     const std::string& owner = {});

} // namespace end_to_end
