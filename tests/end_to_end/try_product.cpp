// Plays the installation of a maker's own product on a private screen, as a throw-away account with
// the real sudo or su, takes a picture of every screen, and compares what was installed with the
// archive. What ./make-installer --try runs. zeph-try NAME=VALUE..., all of:
//
//   by         sudo, su or person: by whose rights
//   asked      1 when the installer asks for whom
//   installer  the executable
//   archive    the archive that it carries
//   title      the folder browser's
//   folder     the default one for this way
//   offered    1 when the browser begins there
//   plugin     its name in the archive
//   items      a line NAME/FOLDER for whatever else is in it; FOLDER empty = where the plug-in goes
//   pictures   the folder for pictures, console.txt, tree
//
// Ends with status 0 when all is well.

#include "end_to_end/album.h"
#include "end_to_end/installed_file.h"
#include "end_to_end/installed_tree.h"
#include "end_to_end/trial_words.h"
#include "end_to_end/ways.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace end_to_end {
namespace {

namespace files = std::filesystem;

constexpr const char* chosen_name = "plug-ins"; // in the home of the tour's person
constexpr const char* tree_name = "installed";
constexpr int first_folder_row = 2;             // behind "." and ".."
constexpr std::uintmax_t slow_disk = 5'000'000; // bytes a second

ScenarioOptions options_of(const Words& words) {
    ScenarioOptions options;
    options.rights = rights_of(way_named(words.at("by")));
    options.environment = {"LC_ALL=C.UTF-8", "ORXDPI=96"};
    options.browser_title = words.at("title").c_str();
    options.keep_visible = {words.at("pictures"), files::path(words.at("archive")).parent_path()};
    options.installer = words.at("installer");
    options.pictures = words.at("pictures");
    options.patience += std::chrono::seconds{files::file_size(words.at("archive")) / slow_disk};
    return options;
}

// Chooses what a person would and gives the folder.
std::string choose_folder(Scenario& scenario, Album& album, const Words& words) {
    if (words.at("offered") == "1") {
        scenario.accept_folder();
        return place_of(words.at("folder"), scenario.account());
    }
    scenario.enter_folder_row(first_folder_row);
    album.keep(scenario, scenario.browser_window(), "folder-chosen", "a folder is entered");
    scenario.accept_folder();
    return scenario.account().home + "/" + chosen_name;
}

void prove(const Words& words, const Item& item, const support::Account& account) {
    const std::string owner = words.at("by") == "person" ? account.name : "";
    const TreeFigures tree = prove_tree(words.at("archive"), item.folder, {item.name}, owner);
    say("  installed into " + item.folder + ": " + tree.tops + ", " + std::to_string(tree.members) +
        " files, folders and links, each as it is carried");
}

void keep_tree(const Words& words, const std::string& folder, const std::string& tops) {
    const std::string place = words.at("pictures") + "/" + tree_name;
    files::create_directories(place);
    (void)support::output_of(
        {"sh", "-c", "cd \"$1\" && exec cp -a -- \"$2\" \"$3\"", "sh", folder, tops, place},
        std::chrono::minutes{10});
}

// Up to the right password, or up to where one person needs none.
void keep_first_screens(Scenario& scenario, Album& album, const Words& words) {
    const Way way = way_named(words.at("by"));
    keep_splash(scenario, album);
    if (words.at("asked") == "1") {
        await_choice(scenario);
        album.keep(scenario, scenario.main_window(), "choice", "asks for whom it is");
        choose_recipient(scenario, way);
    }
    if (way != Way::person) {
        keep_wrong_password(scenario, album);
    }
}

void install(const Words& words, Album& album) {
    const Way way = way_named(words.at("by"));
    Scenario scenario(options_of(words));
    const std::string choice = scenario.account().home + "/" + chosen_name;
    files::create_directory(choice);
    support::give_to(scenario.account(), choice);
    keep_first_screens(scenario, album, words);
    const auto start = std::chrono::steady_clock::now();
    if (way != Way::person) {
        scenario.give_password(password_of(way));
    }
    scenario.reach_unpacking();
    album.keep(scenario, scenario.main_window(), "unpacking",
               way == Way::person ? "unpacks" : "the right one: unpacks");
    scenario.reach_folder_browser();
    album.keep(scenario, scenario.browser_window(), "folder-browser", "asks for the folder");
    const std::string folder = choose_folder(scenario, album, words);
    scenario.reach_copying();
    scenario.reach_last_screen();
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    album.keep(scenario, scenario.main_window(), "complete", "the last screen");
    std::ofstream(words.at("pictures") + "/console.txt") << scenario.console();
    if (scenario.console().find("Installation Complete") == std::string::npos) {
        throw std::runtime_error("the installation did not succeed\n" + scenario.report());
    }
    scenario.press_ok();
    if (scenario.finish().exit_status != 0 || !installer_files_in_tmp().empty()) {
        throw std::runtime_error("the run did not end clean\n" + scenario.report());
    }
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%.1f", took.count());
    say("  from the " + std::string(way == Way::person ? "first screen" : "password") +
        " to the last screen: " + seconds + " seconds");
    std::vector<Item> all = items_of(words.at("items"), folder, scenario.account());
    all.insert(all.begin(), {words.at("plugin"), folder});
    for (const Item& item : all) {
        prove(words, item, scenario.account());
        keep_tree(words, item.folder, item.name);
    }
}

void cancel(const Words& words, Album& album) {
    const Way way = way_named(words.at("by"));
    Scenario scenario(options_of(words));
    scenario.reach_main_window();
    if (words.at("asked") == "1") {
        choose_recipient(scenario, way);
    }
    authenticate(scenario, way);
    scenario.reach_folder_browser();
    scenario.cancel_folder();
    scenario.reach_last_screen();
    album.keep(scenario, scenario.main_window(), "cancelled", "another run, cancelled");
}

void play(const Words& words) {
    const std::string& pictures = words.at("pictures");
    files::remove_all(pictures);
    files::create_directories(pictures);
    Album album(pictures);
    say("Trying it on a private screen");
    install(words, album);
    cancel(words, album);
    hand_over(pictures, ""); // the tree, too: whoever made it can remove it
    say("Pictures, console.txt and what was installed are in " + pictures);
}

} // namespace
} // namespace end_to_end

int main(int count, char** arguments) {
    return end_to_end::play_with_words(count, arguments,
                                       {"by", "asked", "installer", "archive", "title", "folder",
                                        "offered", "plugin", "items", "pictures"},
                                       end_to_end::play);
}
