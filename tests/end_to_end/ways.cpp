// From the main window to the archive's unpacking.

#include "end_to_end/ways.h"

#include <stdexcept>

namespace end_to_end {

namespace {

// Within the buttons, in design pixels.
constexpr int for_me = 200;
constexpr int for_everybody = 400;
constexpr int button_row = 366;

} // namespace

Way way_named(const std::string& name) {
    if (name == "sudo") {
        return Way::sudo;
    }
    if (name == "su") {
        return Way::su;
    }
    if (name == "person") {
        return Way::person;
    }
    throw std::runtime_error("\"" + name + "\" is no way to install");
}

Rights rights_of(Way way) {
    switch (way) {
    case Way::sudo:
        return Rights::sudo;
    case Way::su:
        return Rights::only_su;
    default:
        return Rights::none;
    }
}

void await_choice(Sitting& sitting) {
    sitting.wait_for("the question for whom", [&] {
        return sitting.lines_shown(sitting.picture_of(sitting.main_window())) == "0 2 4 5";
    });
}

void choose_recipient(Sitting& sitting, Way way) {
    await_choice(sitting);
    sitting.click(sitting.main_window(), way == Way::person ? for_me : for_everybody, button_row);
}

const char* password_of(Way way) {
    return way == Way::su ? root_password : user_password;
}

void authenticate(Sitting& sitting, Way way) {
    if (way != Way::person) {
        sitting.reach_password_screen_from_main_window();
        sitting.give_password(password_of(way));
    }
}

} // namespace end_to_end
