// How long a program takes from its start to its first picture on the screen.

#pragma once

#include "support/child_process.h"
#include "support/x_server.h"

#include <vector>

namespace start_up {

struct FirstPicture {
    double mapped_ms;  // from just before the fork until the server shows the window
    double painted_ms; // and until two opposite corners of it are no longer white
};

// Starts the program on a screen without windows and a window manager, watches, and ends it by its
// id; the screen is empty again on return. Throws std::runtime_error when nothing comes.
[[nodiscard]] FirstPicture time_first_picture(const support::XServer& server,
                                              const support::ChildOptions& program);

// The median of a list that is not empty.
[[nodiscard]] double median(std::vector<double> values);

} // namespace start_up
