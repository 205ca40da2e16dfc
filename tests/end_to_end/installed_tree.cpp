// Comparing trees.

#include "end_to_end/installed_tree.h"

#include "support/child_process.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace end_to_end {

namespace {

constexpr std::chrono::minutes patience{10}; // with gigabytes

std::vector<std::string> command_of(std::vector<std::string> words,
                                    const std::vector<std::string>& tops) {
    if (!tops.empty()) {
        words.emplace_back("--");
        words.insert(words.end(), tops.begin(), tops.end());
    }
    return words;
}

// In tar's spelling, in which each name is one line; folders without the slash at their end.
std::set<std::string> names_of(const std::string& archive, const std::vector<std::string>& tops) {
    std::istringstream list(
        support::output_of(command_of({"tar", "-tf", archive}, tops), patience));
    std::set<std::string> names;
    for (std::string name; std::getline(list, name);) {
        names.insert(name.ends_with('/') ? name.substr(0, name.size() - 1) : name);
    }
    return names;
}

// The same of what is there, packed once more only to be spelt alike.
std::set<std::string> names_below(const std::string& folder, const std::set<std::string>& tops) {
    std::vector<std::string> command = {
        "sh", "-c", "folder=$1; shift; tar -cf - -C \"$folder\" -- \"$@\" | tar -tf -", "sh",
        folder};
    command.insert(command.end(), tops.begin(), tops.end());
    std::istringstream list(support::output_of(command, patience));
    std::set<std::string> names;
    for (std::string name; std::getline(list, name);) {
        names.insert(name.ends_with('/') ? name.substr(0, name.size() - 1) : name);
    }
    return names;
}

// What tar says of differences, but for those of owners when they are another's.
std::string differences(const std::string& archive, const std::string& folder,
                        const std::vector<std::string>& only, bool other_owner) {
    support::ChildProcess compare(
        {.command = command_of({"tar", "-df", archive, "-C", folder}, only)});
    const auto end = compare.wait_for_end(patience);
    if (!end || !end->exit_status) {
        return "tar does not end";
    }
    std::istringstream lines(compare.output());
    std::string told = compare.error_output();
    for (std::string line; std::getline(lines, line);) {
        if (!other_owner || !(line.ends_with(": Uid differs") || line.ends_with(": Gid differs"))) {
            told += line + "\n";
        }
    }
    return told;
}

void prove_owner(const std::string& folder, const std::set<std::string>& tops,
                 const std::string& owner) {
    std::vector<std::string> command = {"find"};
    for (const std::string& top : tops) {
        command.push_back((std::filesystem::path(folder) / top).string());
    }
    command.insert(command.end(), {"!", "-user", owner});
    const std::string others = support::output_of(command, patience);
    if (!others.empty()) {
        throw std::runtime_error("not of " + owner + ":\n" + others);
    }
}

} // namespace

TreeFigures prove_tree(const std::string& archive, const std::string& folder,
                       const std::vector<std::string>& only, const std::string& owner) {
    const std::string different = differences(archive, folder, only, !owner.empty());
    if (!different.empty()) {
        throw std::runtime_error("what was installed differs from what is carried:\n" + different);
    }
    const std::set<std::string> carried = names_of(archive, only);
    TreeFigures figures{carried.size(), ""};
    std::set<std::string> tops;
    for (const std::string& name : carried) {
        if (name.find('/') == std::string::npos) {
            tops.insert(name);
            figures.tops += (figures.tops.empty() ? "" : " ") + name;
        }
    }
    if (!owner.empty()) {
        prove_owner(folder, tops, owner);
    }
    const std::set<std::string> there = names_below(folder, tops);
    std::vector<std::string> more;
    std::set_difference(there.begin(), there.end(), carried.begin(), carried.end(),
                        std::back_inserter(more));
    if (!more.empty()) {
        throw std::runtime_error("there is more than is carried, for example " + more.front());
    }
    return figures;
}

} // namespace end_to_end
