// Plays the installation of a maker's own product on a private screen, as a throw-away account with
// the real sudo, takes a picture of every screen, and compares what was installed with the archive.
// What ./make-installer --try runs. zeph-try NAME=VALUE..., all of:
//
//   installer  the executable                     archive  the archive that it carries
//   title      the folder browser's               folder   default_install_folder
//   offered    1 when the browser begins there    pictures the folder for pictures, console.txt,
//   tree
//   plugin     its name in the archive            items    a line NAME/FOLDER for whatever else is
//   in it; FOLDER empty = where the plug-in goes
//
// Ends with status 0 when all is well.

#include "end_to_end/album.h"
#include "end_to_end/installed_file.h"
#include "end_to_end/installed_tree.h"
#include "end_to_end/scenario.h"

#include <sys/mount.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>

namespace end_to_end {
namespace {

namespace files = std::filesystem;

constexpr const char* chosen_name = "plug-ins"; // in the home of the tour's person
constexpr const char* tree_name = "installed";
constexpr int first_folder_row = 2;             // behind "." and ".."
constexpr std::uintmax_t slow_disk = 5'000'000; // bytes a second

using Words = std::map<std::string, std::string>;

ScenarioOptions options_of(const Words& words) {
    ScenarioOptions options;
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
        return words.at("folder");
    }
    scenario.enter_folder_row(first_folder_row);
    album.keep(scenario, scenario.browser_window(), "folder-chosen", "a folder is entered");
    scenario.accept_folder();
    return scenario.account().home + "/" + chosen_name;
}

// A topmost member of the archive, and where it goes.
struct Item {
    std::string name;
    std::string folder;
};

std::vector<Item> items_of(const Words& words, const std::string& chosen) {
    std::vector<Item> items;
    std::istringstream lines(words.at("items"));
    for (std::string line; std::getline(lines, line);) {
        const std::size_t slash = line.find('/');
        const std::string folder = line.substr(slash);
        items.push_back({line.substr(0, slash), folder == "/" ? chosen : folder});
    }
    return items;
}

void prove(const Words& words, const Item& item) {
    const TreeFigures tree = prove_tree(words.at("archive"), item.folder, {item.name});
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

void install(const Words& words, Album& album) {
    Scenario scenario(options_of(words));
    const std::string choice = scenario.account().home + "/" + chosen_name;
    files::create_directory(choice);
    support::give_to(scenario.account(), choice);
    keep_screens_up_to_a_wrong_password(scenario, album);
    const auto start = std::chrono::steady_clock::now();
    scenario.give_password(user_password);
    scenario.reach_unpacking();
    album.keep(scenario, scenario.main_window(), "unpacking", "the right one: unpacks");
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
    say("  from the password to the last screen: " + std::string(seconds) + " seconds");
    std::vector<Item> all = items_of(words, folder);
    all.insert(all.begin(), {words.at("plugin"), folder});
    for (const Item& item : all) {
        prove(words, item);
        keep_tree(words, item.folder, item.name);
    }
}

void cancel(const Words& words, Album& album) {
    Scenario scenario(options_of(words));
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.reach_folder_browser();
    scenario.cancel_folder();
    scenario.reach_last_screen();
    album.keep(scenario, scenario.main_window(), "cancelled", "another run, cancelled");
}

int play(const Words& words) {
    const std::string& pictures = words.at("pictures");
    files::remove_all(pictures);
    files::create_directories(pictures);
    Album album(pictures);
    say("Trying it on a private screen");
    install(words, album);
    cancel(words, album);
    hand_over(pictures, ""); // the tree, too: whoever made it can remove it
    say("Pictures, console.txt and what was installed are in " + pictures);
    return 0;
}

} // namespace
} // namespace end_to_end

int main(int count, char** arguments) {
    end_to_end::Words words;
    for (int i = 1; i < count; ++i) {
        const std::string word = arguments[i];
        const std::size_t equals = word.find('=');
        words[word.substr(0, equals)] = equals == std::string::npos ? "" : word.substr(equals + 1);
    }
    for (const char* name :
         {"installer", "archive", "title", "folder", "offered", "pictures", "plugin", "items"}) {
        if (!words.contains(name)) {
            std::fprintf(stderr, "zeph-try: %s=... is missing\n", name);
            return 2;
        }
    }
    if (const auto obstacle = support::world_obstacle()) {
        std::fprintf(stderr, "%s\n", obstacle->c_str());
        return 1;
    }
    try {
        return end_to_end::play(words);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "the trial failed: %s\n", error.what());
        return 1;
    }
}
