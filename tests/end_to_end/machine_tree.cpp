// Listing and comparing.

#include "end_to_end/machine_tree.h"

#include "support/child_process.h"
#include "support/text_lines.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace end_to_end {

namespace {

constexpr std::chrono::minutes patience{5};
constexpr std::size_t lines_told = 12;

constexpr const char* listing = R"(
kept=$1
shift
set -- "$@" --
prune="-path /tmp/.*"
for folder in $kept; do prune="$prune -o -path $folder"; done
set -f
find /etc /home /tmp /usr \( $prune \) -prune -o \
    -type d -printf '%y %m %U:%G %p\n' -o -printf '%y %m %U:%G %s %T@ %p %l\n'
while [ "$1" != -- ]; do
    [ ! -d "$1" ] || find "$1" -type f -exec sha256sum {} +
    shift
done
)";

std::vector<std::string> sorted_lines(const std::string& text) {
    std::vector<std::string> lines = support::lines_of(text);
    std::sort(lines.begin(), lines.end());
    return lines;
}

void tell(std::string& told, const char* mark, const std::vector<std::string>& some,
          const std::vector<std::string>& others) {
    std::vector<std::string> only;
    std::set_difference(some.begin(), some.end(), others.begin(), others.end(),
                        std::back_inserter(only));
    for (std::size_t i = 0; i < std::min(only.size(), lines_told); ++i) {
        told += mark + only[i] + "\n";
    }
}

} // namespace

std::string machine_tree(const std::vector<std::string>& hashed,
                         const std::vector<std::string>& kept) {
    std::string folders;
    for (const std::string& folder : kept) {
        folders += folder + " ";
    }
    std::vector<std::string> command = {"env", "LC_ALL=C", "sh", "-c", listing, "sh", folders};
    command.insert(command.end(), hashed.begin(), hashed.end());
    return support::output_of(command, patience);
}

void expect_same_tree(const std::string& before, const std::string& after) {
    const std::vector<std::string> old_lines = sorted_lines(before);
    const std::vector<std::string> new_lines = sorted_lines(after);
    std::string told;
    tell(told, "- ", old_lines, new_lines);
    tell(told, "+ ", new_lines, old_lines);
    if (!told.empty()) {
        throw std::runtime_error("the trees differ:\n" + told);
    }
}

} // namespace end_to_end
