// A display at the far end of a slow line, in front of an X server that is here.
//
// Clients that connect to display_name() reach the server through a relay. Everything arrives later
// by the delay, in each direction and in order, as over a long line; what a client sends may end at
// a given byte, as when the line breaks in the middle of drawing. Clients share the line's budget.

#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <string>
#include <thread>

namespace support {

struct DistantDisplayOptions {
    std::chrono::milliseconds delay{0}; // one way
    // All connections are cut once so many bytes have gone from clients to the server; 0 is never.
    std::size_t cut_after = 0;
};

class DistantDisplay {
public:
    // server is the display's name as ":7". Throws std::runtime_error when the relay cannot listen.
    DistantDisplay(const std::string& server, const DistantDisplayOptions& options);
    ~DistantDisplay();
    DistantDisplay(const DistantDisplay&) = delete;
    DistantDisplay& operator=(const DistantDisplay&) = delete;

    // The value for DISPLAY.
    [[nodiscard]] const std::string& display_name() const { return display_name_; }
    // From clients to the server, so far.
    [[nodiscard]] std::size_t bytes_sent() const { return bytes_sent_; }
    [[nodiscard]] bool cut() const { return cut_; }

private:
    void relay(int listener, const std::string& server);

    DistantDisplayOptions options_;
    std::string display_name_;
    std::atomic<std::size_t> bytes_sent_ = 0;
    std::atomic<bool> cut_ = false;
    std::atomic<bool> ending_ = false;
    std::thread thread_;
};

} // namespace support
