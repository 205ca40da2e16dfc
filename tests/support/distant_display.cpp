// The relay in front of an X server: one thread, one queue for each direction.

#include "support/distant_display.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <deque>
#include <list>
#include <stdexcept>
#include <vector>

namespace support {

namespace {

using Clock = std::chrono::steady_clock;

// Far from the numbers that servers choose for themselves.
constexpr int first_relay_number = 20'000;
constexpr std::size_t block_size = std::size_t{64} * 1024;

// Clients try the socket without a file first.
sockaddr_un socket_address(int display_number, socklen_t& length) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string name = "/tmp/.X11-unix/X" + std::to_string(display_number);
    std::memcpy(address.sun_path + 1, name.data(), name.size());
    length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    return address;
}

int connect_to(int display_number) {
    const int file = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    socklen_t length = 0;
    const sockaddr_un address = socket_address(display_number, length);
    if (connect(file, reinterpret_cast<const sockaddr*>(&address), length) != 0) {
        close(file);
        return -1;
    }
    return file;
}

struct Parcel {
    Clock::time_point due;
    std::vector<char> bytes;
};

struct Direction {
    int from;
    int to;
    std::deque<Parcel> under_way = {};
    bool at_end = false; // nothing more comes from this side
};

struct Line {
    Direction requests;
    Direction answers;
};

void close_line(const Line& line) {
    close(line.requests.from);
    close(line.requests.to);
}

// Takes what has come; false at the end.
bool take(Direction& direction, Clock::time_point due) {
    std::vector<char> block(block_size);
    const ssize_t count = read(direction.from, block.data(), block.size());
    if (count <= 0) {
        return false;
    }
    block.resize(static_cast<std::size_t>(count));
    direction.under_way.push_back({due, std::move(block)});
    return true;
}

bool pass_on(int to, const char* bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t sent = send(to, bytes, count, MSG_NOSIGNAL);
        if (sent <= 0) {
            return false;
        }
        bytes += sent;
        count -= static_cast<std::size_t>(sent);
    }
    return true;
}

} // namespace

DistantDisplay::DistantDisplay(const std::string& server, const DistantDisplayOptions& options)
    : options_(options) {
    const int number = first_relay_number + std::stoi(server.substr(1));
    display_name_ = ":" + std::to_string(number);
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    socklen_t length = 0;
    const sockaddr_un address = socket_address(number, length);
    if (bind(listener, reinterpret_cast<const sockaddr*>(&address), length) != 0 ||
        listen(listener, 8) != 0) {
        close(listener);
        throw std::runtime_error("the relay cannot listen");
    }
    thread_ = std::thread([this, listener, server] { relay(listener, server); });
}

DistantDisplay::~DistantDisplay() {
    ending_ = true;
    thread_.join();
}

void DistantDisplay::relay(int listener, const std::string& server) {
    std::list<Line> lines;
    const int server_number = std::stoi(server.substr(1));
    while (!ending_) {
        std::vector<pollfd> waiting{{listener, POLLIN, 0}};
        for (const Line& line : lines) {
            waiting.push_back({line.requests.at_end ? -1 : line.requests.from, POLLIN, 0});
            waiting.push_back({line.answers.at_end ? -1 : line.answers.from, POLLIN, 0});
        }
        poll(waiting.data(), waiting.size(), 1);
        const Clock::time_point now = Clock::now();
        std::size_t place = 1;
        for (auto line = lines.begin(); line != lines.end();) {
            bool stands = !cut_;
            for (Direction* direction : {&line->requests, &line->answers}) {
                if ((waiting[place].revents & (POLLIN | POLLHUP | POLLERR)) != 0) {
                    direction->at_end = !take(*direction, now + options_.delay);
                }
                ++place;
                while (stands && !direction->under_way.empty() &&
                       direction->under_way.front().due <= now) {
                    const std::vector<char>& bytes = direction->under_way.front().bytes;
                    std::size_t count = bytes.size();
                    if (direction == &line->requests) {
                        if (options_.cut_after > 0 && bytes_sent_ + count >= options_.cut_after) {
                            count = options_.cut_after - bytes_sent_;
                            cut_ = true;
                        }
                        bytes_sent_ += count;
                    }
                    stands = pass_on(direction->to, bytes.data(), count) && !cut_;
                    direction->under_way.pop_front();
                }
                stands = stands && !(direction->at_end && direction->under_way.empty());
            }
            if (stands) {
                ++line;
            } else {
                close_line(*line);
                line = lines.erase(line);
            }
        }
        if ((waiting[0].revents & POLLIN) != 0) {
            const int client = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
            const int here = cut_ ? -1 : connect_to(server_number);
            if (client >= 0 && here >= 0) {
                lines.push_back({.requests = {client, here}, .answers = {here, client}});
            } else {
                close(client);
                close(here);
            }
        }
    }
    for (const Line& line : lines) {
        close_line(line);
    }
    close(listener);
}

} // namespace support
