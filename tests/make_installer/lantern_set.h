// lantern_set.h: an installation of Lantern Set with sudo or with su.
#pragma once

#include "end_to_end/scenario.h"

namespace lantern_set {

inline constexpr const char* folder = "/usr/local/lib/lv2"; // which is offered

[[nodiscard]] inline end_to_end::ScenarioOptions options(end_to_end::Rights rights) {
    return {.rights = rights,
            .browser_title = "- Select your LV2 plug-in folder -",
            .keep_visible = {ZEPH_SOURCE}};
}

// Up to the folder browser, in which the offered folder is taken.
inline void choose_offered_folder(end_to_end::Scenario& scenario, end_to_end::Rights rights) {
    scenario.reach_password_screen();
    scenario.give_password(rights == end_to_end::Rights::sudo ? end_to_end::user_password
                                                              : end_to_end::root_password);
    scenario.reach_folder_browser();
    scenario.accept_folder();
}

} // namespace lantern_set
