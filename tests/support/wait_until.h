// Waiting for an effect instead of sleeping: every wait in a test ends by a deadline.
//
// A predicate is asked every few milliseconds until it is true or the time is over. On time-out the
// diagnostics (what the screen, the console and the window tree look like now) go to standard
// error, so that the log of a failed run tells what was there instead.

#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace support {

// Long enough for a loaded machine under a sanitizer; a passing test never waits it out.
inline constexpr std::chrono::milliseconds default_patience{60'000};

// True as soon as predicate() is; false after patience, with the text of diagnostics() printed.
[[nodiscard]] bool wait_until(const std::function<bool()>& predicate,
                              std::chrono::milliseconds patience = default_patience,
                              const std::function<std::string()>& diagnostics = {});

// True when predicate() stays true for the whole of that time: for effects that must not happen.
[[nodiscard]] bool holds_for(const std::function<bool()>& predicate,
                             std::chrono::milliseconds time);

} // namespace support
