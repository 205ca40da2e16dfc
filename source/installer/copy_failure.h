// copy_failure.h: why an installation did not go on, in the person's words. Pure.
#pragma once

#include "privilege/privileged_plan.h"

#include <cstdint>

inline constexpr const char* no_room_in_tmp_text = "There is no room left in /tmp";
inline constexpr const char* no_home_text = "The home folder is not known (HOME)";
inline constexpr const char* no_room_text = "There is no room left on the disk";

// What the end of a plan of install_steps.h means, in one line for the screen and the console; null
// when there is nothing to say.
[[nodiscard]] const char* copy_failure_text(const PlanResult& result, std::int32_t auth_method);
