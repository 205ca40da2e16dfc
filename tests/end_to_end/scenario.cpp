// Arranging a world with an account and an installer in it.

#include "end_to_end/scenario.h"

#include <sys/mount.h>
#include <sys/statvfs.h>

#include <filesystem>
#include <stdexcept>

namespace end_to_end {

namespace {

std::string folder_of(const std::string& path) {
    return std::filesystem::path(path).parent_path().string();
}

support::WorldOptions world_of(const ScenarioOptions& options) {
    support::WorldOptions world{.keep_visible = options.keep_visible};
    world.keep_visible.push_back(folder_of(options.installer));
    world.keep_visible.push_back(options.pictures);
    return world;
}

void arrange_rights(Rights rights) {
    if (rights == Rights::su || rights == Rights::only_su) {
        support::set_root_password(root_password);
    } else {
        support::lock_root();
    }
    if (rights == Rights::only_su || rights == Rights::none) {
        support::hide_program("/usr/bin/sudo");
    }
    if (rights == Rights::none) {
        support::hide_program("/usr/bin/su");
        support::hide_program("/bin/su");
    }
}

SittingOptions sitting_of(const ScenarioOptions& options) {
    return {.manager = options.manager,
            .scale = options.scale,
            .screen = options.screen,
            .browser_title = options.browser_title,
            .line = options.line,
            .pictures = options.pictures,
            .locked = [] { return std::filesystem::exists(lock_path); },
            .patience = options.patience};
}

} // namespace

ScenarioWorld::ScenarioWorld(const ScenarioOptions& options)
    : world(std::make_unique<support::PrivateWorld>(world_of(options))) {
    account = support::add_account("musician", options.password,
                                   options.rights == Rights::sudo ? "ALL=(ALL:ALL) ALL" : "");
    arrange_rights(options.rights);
    std::filesystem::create_directories(default_folder);
    // Every desktop has these; a bare machine that only runs the tests need not.
    std::filesystem::create_directories("/usr/share/icons");
    std::filesystem::create_directories("/usr/share/applications");
    // The build folder may be closed to other accounts; a download lies in the person's own folder.
    program = account.home + "/.zeph-installer";
    std::filesystem::copy_file(options.installer, program);
    support::give_to(account, program);
}

Scenario::Scenario(const ScenarioOptions& options)
    : ScenarioWorld(options), Sitting(sitting_of(options)), environment_(options.environment) {}

void Scenario::start(const std::vector<std::string>& more) {
    std::vector<std::string> environment = {"DISPLAY=" + display_name()};
    environment.insert(environment.end(), environment_.begin(), environment_.end());
    environment.insert(environment.end(), more.begin(), more.end());
    start_program(support::run_as(account(), {program}, environment));
}

void Scenario::reach_splash() {
    start();
    await_splash();
}

void Scenario::reach_main_window() {
    reach_splash();
    reach_main_window_from_splash();
}

void Scenario::reach_password_screen() {
    reach_main_window();
    reach_password_screen_from_main_window();
}

void Scenario::leave_room_in_tmp(unsigned long bytes) {
    struct statvfs status {};
    const bool known = statvfs("/tmp", &status) == 0;
    const unsigned long used = (status.f_blocks - status.f_bfree) * status.f_frsize;
    const std::string size = "size=" + std::to_string(used + bytes);
    if (!known || mount(nullptr, "/tmp", nullptr, MS_REMOUNT, size.c_str()) != 0) {
        throw std::runtime_error("cannot make /tmp smaller");
    }
}

} // namespace end_to_end
