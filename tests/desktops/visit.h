// A visit of a desktop: what a person meets there from the splash to the installed file, each thing
// looked at by itself, so that one that is amiss does not hide the others.

#pragma once

#include "end_to_end/sitting.h"
#include "support/worlds/accounts.h"

#include <functional>
#include <string>
#include <vector>

namespace desktops {

struct Finding {
    std::string thing;   // "splash in the middle", "browser above", ...
    std::string trouble; // empty when all is well; else what was there instead
};

struct VisitOptions {
    // What the desktop can.
    bool can_minimise = true;
    bool keeps_owned_above = true; // also of an owner that is called up
    // Keeps a picture of the screen under that name ("main", "browser", "last").
    std::function<void(const std::string& name)> keep_picture = [](const std::string&) {};
};

// The whole installation, with the password typed without a click where the keyboard is the
// window's. The main window is covered, minimised and brought back, and moved half off the screen
// and back on the way; the browser meets the main window being called up. The account's installer
// has been started. Throws when the installation cannot go on.
[[nodiscard]] std::vector<Finding> visit(end_to_end::Sitting& sitting,
                                         const support::Account& account,
                                         const VisitOptions& options = {});

// Another run, which ends at the password screen by the close button of the window's frame.
[[nodiscard]] Finding visit_and_close(end_to_end::Sitting& sitting);

} // namespace desktops
