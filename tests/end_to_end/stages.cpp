// Coming to each screen.

#include "end_to_end/stages.h"

#include "end_to_end/expectations.h"

#include <filesystem>

namespace end_to_end {

const char* stage_name(Stage stage) {
    switch (stage) {
    case Stage::password:
        return "Password";
    case Stage::wrong_password:
        return "WrongPassword";
    case Stage::unpacking:
        return "Unpacking";
    case Stage::browser:
        return "Browser";
    case Stage::copying:
        return "Copying";
    case Stage::removing:
        return "Removing";
    case Stage::complete:
        return "Complete";
    }
    return "";
}

void reach(Scenario& scenario, Stage stage) {
    scenario.reach_password_screen();
    if (stage == Stage::password) {
        return;
    }
    if (stage == Stage::wrong_password) {
        scenario.give_password("not it");
        scenario.reach_wrong_password_screen();
        return;
    }
    scenario.give_password(user_password);
    scenario.reach_unpacking();
    scenario.wait_for("the archive", [] { return std::filesystem::exists(archive_path); });
    if (stage == Stage::unpacking) {
        return;
    }
    scenario.reach_folder_browser();
    if (stage == Stage::browser) {
        return;
    }
    scenario.accept_folder();
    scenario.reach_copying();
    if (stage == Stage::copying) {
        return;
    }
    scenario.wait_for("the end of copying", [&] {
        return scenario.console().find("Removing Temporary Files\n") != std::string::npos;
    });
    if (stage == Stage::removing) {
        return;
    }
    scenario.reach_last_screen();
}

std::vector<std::string> lines_before(const Scenario& scenario, Stage stage) {
    if (stage <= Stage::wrong_password) {
        return {};
    }
    std::vector<std::string> lines = {info("Password OK"),
                                      info("Unpacking Files - 001027C4 Bytes")};
    if (stage >= Stage::copying) {
        lines.push_back(info("Installing to - " + scenario.account().home));
        lines.push_back(info("Copying Files"));
    }
    if (stage >= Stage::removing) {
        lines.push_back(info("Removing Temporary Files"));
    }
    if (stage == Stage::complete) {
        lines.push_back(info("Installation Complete"));
    }
    return lines;
}

} // namespace end_to_end
