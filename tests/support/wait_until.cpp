// Polling with a deadline.

#include "support/wait_until.h"

#include <algorithm>
#include <cstdio>
#include <thread>

namespace support {

namespace {

constexpr std::chrono::milliseconds poll_step{10};
// Looking may cost a picture of a window: what takes long is looked for less often.
constexpr std::chrono::milliseconds longest_step{40};

} // namespace

bool wait_until(const std::function<bool()>& predicate, std::chrono::milliseconds patience,
                const std::function<std::string()>& diagnostics) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    for (auto step = poll_step;; step = std::min(step + step / 4, longest_step)) {
        if (predicate()) {
            return true;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            break;
        }
        std::this_thread::sleep_for(step);
    }
    if (diagnostics) {
        std::fprintf(stderr, "nothing came within %lld ms:\n%s\n",
                     static_cast<long long>(patience.count()), diagnostics().c_str());
    }
    return false;
}

bool holds_for(const std::function<bool()>& predicate, std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) {
        if (!predicate()) {
            return false;
        }
        std::this_thread::sleep_for(poll_step);
    }
    return true;
}

} // namespace support
