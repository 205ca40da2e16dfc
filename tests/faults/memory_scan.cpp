// Reading /proc/ID/mem along /proc/ID/maps, and searching.

#include "faults/memory_scan.h"

#include "faults/surroundings.h"

#include <fcntl.h>
#include <unistd.h>

#include <bitset>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <set>
#include <sstream>
#include <string_view>

namespace faults {

namespace files = std::filesystem;

namespace {

constexpr std::size_t context_bytes = 24;
constexpr std::size_t most_reported = 20;

// What a piece begins with, as an index: a megabyte is asked about each of its positions.
std::size_t first_two(const char* piece) {
    std::uint16_t number = 0;
    std::memcpy(&number, piece, sizeof number);
    return number;
}

// Every piece of a secret that tells of it.
class Pieces {
public:
    explicit Pieces(const std::string& secret) {
        for (std::size_t at = 0; at + telling_length <= secret.size(); ++at) {
            pieces_.insert(secret.substr(at, telling_length));
            begins_.set(first_two(&secret[at]));
        }
    }
    // Where in these bytes one of them is, in ascending order.
    [[nodiscard]] std::vector<std::size_t> positions_in(std::string_view bytes) const {
        std::vector<std::size_t> found;
        for (std::size_t at = 0; at + telling_length <= bytes.size(); ++at) {
            if (begins_[first_two(&bytes[at])] &&
                pieces_.contains(bytes.substr(at, telling_length))) {
                found.push_back(at);
            }
        }
        return found;
    }

private:
    std::set<std::string, std::less<>> pieces_;
    std::bitset<0x10000> begins_;
};

std::string printable(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
        text += std::isprint(static_cast<unsigned char>(byte)) != 0 ? byte : '.';
    }
    return text;
}

// Where a copy begins: pieces that overlap are of the same one.
std::vector<std::size_t> copies_in(const std::string& bytes, const Pieces& pieces) {
    std::vector<std::size_t> copies;
    std::size_t last = 0;
    for (const std::size_t at : pieces.positions_in(bytes)) {
        if (copies.empty() || at - last > telling_length) {
            copies.push_back(at);
        }
        last = at;
    }
    return copies;
}

std::string bytes_of(int memory, std::uint64_t begin, std::uint64_t end) {
    std::string bytes(end - begin, '\0');
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t count = pread(memory, bytes.data() + filled, bytes.size() - filled,
                                    static_cast<off_t>(begin + filled));
        if (count <= 0) {
            break;
        }
        filled += static_cast<std::size_t>(count);
    }
    bytes.resize(filled);
    return bytes;
}

// Whether the pages at that address are locked into memory.
bool is_locked(pid_t process, std::uint64_t address) {
    std::istringstream maps(text_of("/proc/" + std::to_string(process) + "/smaps"));
    bool here = false;
    for (std::string line; std::getline(maps, line);) {
        std::uint64_t begin = 0;
        std::uint64_t end = 0;
        if (std::sscanf(line.c_str(), "%lx-%lx ", &begin, &end) == 2) {
            here = begin <= address && address < end;
        } else if (here && line.starts_with("VmFlags:")) {
            return (line + " ").find(" lo ") != std::string::npos;
        }
    }
    return false;
}

} // namespace

std::vector<std::string> swappable_copies(pid_t process, const std::string& secret) {
    std::vector<std::string> swappable;
    for (const std::string& copy : copies_in_memory(process, secret)) {
        if (!is_locked(process, std::stoull(copy, nullptr, 16))) {
            swappable.push_back(copy);
        }
    }
    return swappable;
}

std::vector<std::string> copies_in_memory(pid_t process, const std::string& secret) {
    const std::string folder = "/proc/" + std::to_string(process);
    const Pieces pieces(secret);
    const int memory = open((folder + "/mem").c_str(), O_RDONLY | O_CLOEXEC);
    std::vector<std::string> copies;
    if (memory < 0) {
        copies.push_back("the memory cannot be read");
        return copies;
    }
    std::istringstream maps(text_of(folder + "/maps"));
    for (std::string line; std::getline(maps, line) && copies.size() < most_reported;) {
        std::uint64_t begin = 0;
        std::uint64_t end = 0;
        char rights[5] = {};
        if (std::sscanf(line.c_str(), "%lx-%lx %4s", &begin, &end, rights) != 3 ||
            rights[0] != 'r' || rights[1] != 'w') {
            continue;
        }
        const std::string bytes = bytes_of(memory, begin, end);
        for (const std::size_t at : copies_in(bytes, pieces)) {
            const std::size_t from = at > context_bytes ? at - context_bytes : 0;
            char address[32];
            std::snprintf(address, sizeof address, "%lx", begin + at);
            copies.push_back(std::string(address) + " " + line + ": " +
                             printable(bytes.substr(from, 3 * context_bytes)));
        }
    }
    close(memory);
    return copies;
}

std::vector<std::string> processes_that_show(const std::string& secret) {
    std::vector<std::string> showing;
    for (const auto& entry : files::directory_iterator("/proc")) {
        const std::string id = entry.path().filename().string();
        if (id.find_first_not_of("0123456789") != std::string::npos) {
            continue;
        }
        const std::string arguments = text_of("/proc/" + id + "/cmdline");
        if (shows_piece_of(arguments, secret) ||
            shows_piece_of(text_of("/proc/" + id + "/environ"), secret)) {
            showing.push_back(id + " " + printable(arguments));
        }
    }
    return showing;
}

std::vector<std::string> files_that_hold(const std::string& folder, const std::string& secret) {
    std::vector<std::string> holding;
    std::error_code failure;
    for (const auto& entry : files::recursive_directory_iterator(
             folder, files::directory_options::skip_permission_denied, failure)) {
        const std::string path = entry.path().string();
        if (entry.is_regular_file(failure) && !entry.is_symlink(failure) &&
            shows_piece_of(text_of(path), secret)) {
            holding.push_back(path);
        }
    }
    return holding;
}

bool shows_piece_of(const std::string& text, const std::string& secret) {
    return !Pieces(secret).positions_in(text).empty();
}

} // namespace faults
