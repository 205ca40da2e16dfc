// The ways in which a person may install, and how each comes from the main window to the archive's
// unpacking.

#pragma once

#include "end_to_end/scenario.h"

#include <string>

namespace end_to_end {

enum class Way {
    sudo,
    su,     // sudo is not there
    person, // for one person, by their own rights; neither sudo nor su is there
};

// By its name above. Throws std::runtime_error when there is none of that name.
[[nodiscard]] Way way_named(const std::string& name);
[[nodiscard]] Rights rights_of(Way way);

// Where the product asks for whom it is installed: waits for the two buttons, then clicks one.
void await_choice(Sitting& sitting);
void choose_recipient(Sitting& sitting, Way way);

// The right one; nobody asks for that of Way::person.
[[nodiscard]] const char* password_of(Way way);

// Types it where it is asked for.
void authenticate(Sitting& sitting, Way way);

} // namespace end_to_end
