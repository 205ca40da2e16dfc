// Plays the whole installation on a private screen as a throw-away account with the real sudo,
// takes a picture of every screen, and proves the installed file. zeph-tour FOLDER [DPI]
//
// FOLDER gets numbered pictures, console.txt, and installed/ with the plug-in, which is the folder
// that the person of the tour chooses (under another name). DPI is the screen's density, from 96 to
// 192 in steps of 12. Ends with status 0 when all is well.

#include "end_to_end/album.h"
#include "end_to_end/scenario.h"
#include "end_to_end/tour_proof.h"

#include <sys/mount.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace end_to_end {
namespace {

namespace files = std::filesystem;

constexpr unsigned long little_room = 256UL * 1024;

constexpr int plain_dpi = 96;

struct Tour {
    std::string folder;
    int dpi = plain_dpi;
};

ScenarioOptions with(Rights rights, const Tour& tour) {
    ScenarioOptions options;
    options.rights = rights;
    options.environment = {"LC_ALL=C.UTF-8", "ORXDPI=" + std::to_string(tour.dpi)};
    options.scale = static_cast<double>(tour.dpi) / plain_dpi;
    options.keep_visible = {tour.folder};
    return options;
}

// The chosen folder is the tour's own, mounted where a person would have it.
void mount_plugin_folder(const Scenario& scenario, const std::string& folder) {
    const std::string place = scenario.account().home + "/vst";
    files::create_directory(place);
    if (mount((folder + "/installed").c_str(), place.c_str(), nullptr, MS_BIND, nullptr) != 0) {
        throw std::runtime_error("cannot mount the folder for the plug-in");
    }
}

PluginFile install(const Tour& tour, Album& album) {
    Scenario scenario(with(Rights::sudo, tour));
    mount_plugin_folder(scenario, tour.folder);
    keep_splash(scenario, album);
    keep_wrong_password(scenario, album);
    scenario.give_password(user_password);
    scenario.reach_unpacking();
    scenario.wait_for("a third of the bar", [&] {
        return scenario.picture_of(scenario.main_window())
                   .at(scenario.device(208), scenario.device(371))
                   .red > 100;
    });
    album.keep(scenario, scenario.main_window(), "unpacking", "the right one: unpacks");
    scenario.reach_folder_browser();
    album.keep(scenario, scenario.browser_window(), "folder-browser", "asks for the folder");
    scenario.enter_folder_row(2);
    album.keep(scenario, scenario.browser_window(), "folder-chosen", "vst is entered");
    scenario.accept_folder();
    scenario.reach_copying();
    scenario.wait_for("the file",
                      [&] { return plugin_in(tour.folder + "/installed").has_value(); });
    album.keep(scenario, scenario.main_window(), "copying", "copies with root's rights");
    scenario.wait_for("cleaning up", [&] {
        return scenario.console().find("Removing Temporary Files\n") != std::string::npos;
    });
    scenario.wait_for("a full bar", [&] {
        return scenario.picture_of(scenario.main_window())
                   .at(scenario.device(560), scenario.device(368))
                   .red > 200;
    });
    album.keep(scenario, scenario.main_window(), "removing", "removes temporary files");
    scenario.reach_last_screen();
    album.keep(scenario, scenario.main_window(), "complete", "is complete");
    scenario.press_ok();
    if (scenario.finish().exit_status != 0 || !installer_files_in_tmp().empty()) {
        throw std::runtime_error("the run did not end clean\n" + scenario.report());
    }
    std::ofstream(tour.folder + "/console.txt") << scenario.console();
    say("checking the installed file");
    const PluginFile file = prove_file(scenario.account().home + "/vst");
    prove_in_hosts(scenario.account().home + "/vst");
    say("  it is the archive's, byte for byte; analyseplugin and applyplugin run it");
    return file;
}

void cancel(const Tour& tour, Album& album) {
    Scenario scenario(with(Rights::sudo, tour));
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.reach_folder_browser();
    scenario.cancel_folder();
    scenario.reach_last_screen();
    album.keep(scenario, scenario.main_window(), "cancelled", "another run, cancelled");
}

void fail_to_unpack(const Tour& tour, Album& album) {
    Scenario scenario(with(Rights::only_su, tour));
    scenario.reach_password_screen();
    album.keep(scenario, scenario.main_window(), "root-password", "without sudo: asks for root's");
    scenario.leave_room_in_tmp(little_room);
    scenario.give_password(root_password);
    scenario.reach_last_screen();
    album.keep(scenario, scenario.main_window(), "no-room", "there is no room in /tmp");
}

void meet_another_instance(const Tour& tour, Album& album) {
    Scenario scenario(with(Rights::sudo, tour));
    support::write_file(lock_path, "");
    scenario.reach_main_window();
    scenario.reach_last_screen();
    album.keep(scenario, scenario.main_window(), "another-instance", "another one is running");
}

void have_no_rights(const Tour& tour, Album& album) {
    Scenario scenario(with(Rights::none, tour));
    scenario.reach_main_window();
    scenario.wait_for("the whole text", [&] {
        return scenario.line_shown(scenario.picture_of(scenario.main_window()), 7);
    });
    album.keep(scenario, scenario.main_window(), "no-rights", "no sudo and no su");
}

int play(const Tour& tour) {
    const std::string& folder = tour.folder;
    files::remove_all(folder);
    files::create_directories(folder + "/installed");
    Album album(folder);
    say("playing the installation on a private screen");
    const PluginFile file = install(tour, album);
    say("and the screens that it did not meet");
    cancel(tour, album);
    fail_to_unpack(tour, album);
    meet_another_instance(tour, album);
    have_no_rights(tour, album);
    hand_over(folder, plugin_name);
    say("pictures and console.txt are in " + folder);
    say("installed: " + folder + "/installed/" + plugin_name + ", " + std::to_string(file.bytes) +
        " bytes, sha256 " + file.sha256);
    return 0;
}

} // namespace
} // namespace end_to_end

int main(int count, char** arguments) {
    end_to_end::Tour tour;
    if (count == 3) {
        tour.dpi = std::atoi(arguments[2]);
    }
    if (count < 2 || count > 3 || tour.dpi < 96 || tour.dpi > 192 || tour.dpi % 12 != 0) {
        std::fprintf(stderr, "usage: zeph-tour FOLDER [DPI], DPI from 96 to 192 in steps of 12\n");
        return 2;
    }
    if (const auto obstacle = support::world_obstacle()) {
        std::fprintf(stderr, "%s\n", obstacle->c_str());
        return 1;
    }
    try {
        tour.folder = std::filesystem::absolute(arguments[1]).lexically_normal();
        return end_to_end::play(tour);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "the tour failed: %s\n", error.what());
        return 1;
    }
}
