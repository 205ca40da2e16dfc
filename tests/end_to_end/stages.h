// The screens at which an installation can be broken off, and the console lines up to each.

#pragma once

#include "end_to_end/scenario.h"

#include <ostream>
#include <string>
#include <vector>

namespace end_to_end {

enum class Stage {
    password,
    wrong_password,
    unpacking,
    browser,
    copying,
    removing,
    complete,
};

[[nodiscard]] const char* stage_name(Stage stage);

inline std::ostream& operator<<(std::ostream& stream, Stage stage) {
    return stream << stage_name(stage);
}

// Acts as the person would, up to that screen; installs into the account's home.
void reach(Scenario& scenario, Stage stage);

// What the console has said of the installation when the screen is there.
[[nodiscard]] std::vector<std::string> lines_before(const Scenario& scenario, Stage stage);

} // namespace end_to_end
