// Plays the life of a product on one machine: its first version is installed and opened by hosts,
// the second one fails to take its place on each disk that fills up, then takes it, and is removed
// by the uninstaller. What is on the machine is compared before and after each. zeph-life
// NAME=VALUE..., all of:
//
//   by           sudo, su or person: by whose rights
//   title        the folder browser's, which begins in the plug-in's folder
//   installer1   the first version's executable; installer2 the second's
//   archive1     what it carries; archive2
//   members1     a line NAME/FOLDER for each thing at the archive's top; members2
//   uninstaller  where the uninstaller is left
//   full         a line for each folder whose disk fills up
//   hosts        a shell's text that is given the paths of all members and prints what plug-ins
//   hosts
//                find there, a line each
//   pictures     a folder for pictures of the last screens; nothing in /etc, /home, /tmp or /usr
//
// The first member of the first version is the plug-in. Prints a line for each step, its parts
// parted by "|". Ends with status 0 when all is well.

#include "end_to_end/album.h"
#include "end_to_end/installed_tree.h"
#include "end_to_end/machine_tree.h"
#include "end_to_end/trial_words.h"
#include "end_to_end/ways.h"
#include "support/text_lines.h"
#include "support/worlds/small_disk.h"

#include <sys/statvfs.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <stdexcept>

namespace end_to_end {
namespace {

namespace files = std::filesystem;

constexpr const char* hosts_cache = "/run/hosts";
constexpr const char* saved = "/run/saved.tar";
constexpr const char* failures[] = {"Failed to copy files - ",
                                    "Unable to extract installer data - "};
constexpr unsigned long files_most = 40; // no upgrade here makes more of them on one disk

struct Version {
    std::string program;
    std::string archive;
    std::vector<Item> members;
};

struct Outcome {
    bool complete;
    std::string told;
};

// When something happens to the machine.
enum class Moment { before, unpacking, copying };

using Course = std::function<void(Sitting&, Moment)>;

ScenarioOptions options_of(const Words& words) {
    ScenarioOptions options;
    options.rights = rights_of(way_named(words.at("by")));
    options.installer = words.at("installer1");
    options.pictures = words.at("pictures");
    for (const char* name : {"installer2", "archive1", "archive2"}) {
        options.keep_visible.push_back(files::path(words.at(name)).parent_path());
    }
    return options;
}

// Or cannot be made, in which case the installer goes on without.
bool lock_is_tried() {
    struct statvfs disk {};
    return files::exists(lock_path) || (statvfs("/tmp", &disk) == 0 && disk.f_ffree == 0);
}

// Each once, and none that lies in another one.
std::vector<std::string> outermost(std::vector<std::string> folders) {
    std::sort(folders.begin(), folders.end());
    std::vector<std::string> kept;
    for (const std::string& folder : folders) {
        if (kept.empty() || !(folder + "/").starts_with(kept.back() + "/")) {
            kept.push_back(folder);
        }
    }
    return kept;
}

class Life {
public:
    explicit Life(const Words& words);
    void play();

private:
    [[nodiscard]] Version version(const std::string& program, const std::string& number) const;
    [[nodiscard]] std::string tree() const;
    void tell(const std::string& step, const std::string& outcome,
              const std::string& machine) const;
    Outcome run(const Version& version, const Course& course) const;
    void install(const Version& version, const std::string& name);
    void use(const Version& version) const;
    void fill_up(const std::string& folder);
    bool upgrade_fails(const std::string& folder, const std::string& state,
                       const std::function<void(const support::SmallDisk&)>& limit, Moment moment);
    void await_beginning(Sitting& sitting, Moment moment) const;
    void save() const;
    void restore() const;
    void remove() const;

    const Words& words_;
    Way way_;
    ScenarioWorld world_;
    const support::Account& account_ = world_.account;
    std::string uninstaller_;
    Version first_;
    Version second_;
    std::vector<std::string> places_; // that are written to
    std::string installed_;           // the machine with the first version
};

Life::Life(const Words& words)
    : words_(words), way_(way_named(words.at("by"))), world_(options_of(words)),
      uninstaller_(place_of(words.at("uninstaller"), account_)),
      first_(version(world_.program, "1")), second_(version(world_.program + "-2", "2")) {
    files::copy_file(words.at("installer2"), second_.program);
    support::give_to(account_, second_.program);
    for (const Item& member : first_.members) {
        files::remove_all(member.folder); // with what others have there
        places_.push_back(member.folder);
    }
    places_.push_back(files::path(uninstaller_).parent_path());
    places_.push_back(files::path(uninstaller_).parent_path().parent_path() / "share");
    places_ = outermost(way_ == Way::person ? std::vector{account_.home} : places_);
}

Version Life::version(const std::string& program, const std::string& number) const {
    return {program, words_.at("archive" + number),
            items_of(words_.at("members" + number), "", account_)};
}

std::string Life::tree() const {
    return machine_tree(places_, {words_.at("pictures")});
}

void Life::tell(const std::string& step, const std::string& outcome,
                const std::string& machine) const {
    say(words_.at("by") + "|" + step + "|" + outcome + "|" + machine);
}

void Life::play() {
    const std::string bare = tree();
    install(first_, "the first version");
    installed_ = tree();
    save();
    for (const std::string& line : support::lines_of(words_.at("full"))) {
        fill_up(place_of(line, account_));
    }
    install(second_, "the second version");
    remove();
    expect_same_tree(bare, tree());
    tell("the uninstaller", "removed", "as before the first version");
}

// A screen of its own for each run, as a person comes back another day.
Outcome Life::run(const Version& version, const Course& course) const {
    Sitting sitting({.browser_title = words_.at("title"),
                     .pictures = words_.at("pictures"),
                     .locked = lock_is_tried});
    course(sitting, Moment::before);
    sitting.start_program(
        support::run_as(account_, {version.program},
                        {"DISPLAY=" + sitting.display_name(), "LC_ALL=C.UTF-8", "ORXDPI=96"}));
    sitting.await_splash();
    sitting.reach_main_window_from_splash();
    authenticate(sitting, way_);
    course(sitting, Moment::unpacking);
    bool asks = false;
    sitting.wait_for("the folder browser, or the end", [&] {
        asks = sitting.view().find_title(words_.at("title")).has_value();
        return asks || sitting.button_shown(sitting.picture_of(sitting.main_window()));
    });
    if (asks) {
        sitting.reach_folder_browser();
        sitting.accept_folder();
        course(sitting, Moment::copying);
    }
    sitting.reach_last_screen();
    const std::string console = sitting.console();
    save_png(sitting.picture_of(sitting.main_window()),
             words_.at("pictures") + "/" + words_.at("by") + "-last.png");
    sitting.press_ok();
    if (sitting.finish().exit_status != 0) {
        throw std::runtime_error("the run did not end clean\n" + sitting.report());
    }
    for (const char* failure : failures) {
        const std::size_t at = console.find(failure);
        if (at != std::string::npos) {
            const std::size_t reason = at + std::string(failure).size();
            return {false, console.substr(reason, console.find('\n', at) - reason)};
        }
    }
    if (console.find("Installation Complete\n") == std::string::npos) {
        throw std::runtime_error("neither complete nor told why\n" + console);
    }
    return {true, "complete"};
}

void Life::install(const Version& version, const std::string& name) {
    const Outcome outcome = run(version, [](Sitting& /*sitting*/, Moment /*moment*/) {});
    if (!outcome.complete) {
        throw std::runtime_error(name + ": " + outcome.told);
    }
    use(version);
    tell(name, outcome.told, "each file as it is carried");
}

void Life::use(const Version& version) const {
    std::vector<std::string> command = {"sh", "-c", words_.at("hosts"), "hosts"};
    for (const Item& member : version.members) {
        (void)prove_tree(version.archive, member.folder, {member.name},
                         way_ == Way::person ? account_.name : "");
        command.push_back(member.folder + "/" + member.name);
    }
    for (const Item& member : first_.members) {
        const std::string path = member.folder + "/" + member.name;
        if (files::exists(path) &&
            std::find(command.begin(), command.end(), path) == command.end()) {
            throw std::runtime_error(path + " is still there");
        }
    }
    files::create_directories(hosts_cache); // which is none of the product's doing
    support::give_to(account_, hosts_cache);
    support::ChildProcess hosts(
        support::run_as(account_, command, {std::string("XDG_CACHE_HOME=") + hosts_cache}));
    const auto end = hosts.wait_for_end(std::chrono::minutes{5});
    if (!end || end->exit_status != 0) {
        throw std::runtime_error("hosts do not find it:\n" + hosts.output() + hosts.error_output());
    }
    std::string found;
    for (const std::string& line : support::lines_of(hosts.output())) {
        found += (found.empty() ? "" : ", ") + line;
    }
    tell("  hosts find", found, "");
}

// The disk of that folder, with less room than an upgrade takes.
void Life::fill_up(const std::string& folder) {
    const auto leave_no_room = [](const support::SmallDisk& disk) { disk.leave_no_room(); };
    if (!upgrade_fails(folder, "is full", leave_no_room, Moment::before)) {
        throw std::runtime_error("an upgrade without room in " + folder);
    }
    (void)upgrade_fails(folder, "fills up meanwhile", leave_no_room,
                        folder == "/tmp" ? Moment::unpacking : Moment::copying);
    for (unsigned long count = 0; count < files_most; ++count) {
        const auto leave_little = [=](const support::SmallDisk& disk) {
            disk.leave_room_for_files(count);
        };
        const std::string state = "takes " + std::to_string(count) + " more files";
        if (!upgrade_fails(folder, state, leave_little, Moment::before)) {
            return;
        }
    }
    throw std::runtime_error("room for so many files is not enough in " + folder);
}

// The machine is as it was, or otherwise has the second version, and is then brought back to the
// first.
bool Life::upgrade_fails(const std::string& folder, const std::string& state,
                         const std::function<void(const support::SmallDisk&)>& limit,
                         Moment moment) {
    const std::string step = folder + " " + state;
    {
        const support::SmallDisk disk(folder);
        Outcome outcome;
        try {
            outcome = run(second_, [&](Sitting& sitting, Moment now) {
                if (now == moment) {
                    await_beginning(sitting, moment);
                    limit(disk);
                }
            });
            if (!outcome.complete) {
                expect_same_tree(installed_, tree());
            }
        } catch (const std::exception& error) {
            throw std::runtime_error(step + ": " + error.what());
        }
        if (!outcome.complete) {
            tell(step, outcome.told, "as before");
            return true;
        }
        use(second_);
        tell(step, outcome.told, "each file as it is carried");
    }
    restore();
    return false;
}

// Something has been written by then.
void Life::await_beginning(Sitting& sitting, Moment moment) const {
    if (moment == Moment::before) {
        return;
    }
    const std::string name = files::path(uninstaller_).filename();
    const std::string beside = first_.members.front().folder + "/." +
                               name.substr(std::string("uninstall-").size()) + "-new";
    const std::string path = moment == Moment::copying ? beside : archive_path;
    sitting.wait_for("the beginning", [&] { return files::exists(path); });
}

void Life::save() const {
    std::vector<std::string> command = {"tar", "--format=posix", "-Pcf", saved};
    command.insert(command.end(), places_.begin(), places_.end());
    (void)support::output_of(command);
}

void Life::restore() const {
    std::vector<std::string> command = {"sh", "-c", "rm -rf \"$@\" && tar -Pxpf \"$0\"", saved};
    command.insert(command.end(), places_.begin(), places_.end());
    (void)support::output_of(command);
}

void Life::remove() const {
    std::vector<std::string> command = {uninstaller_};
    if (way_ == Way::sudo) {
        command = {"sudo", uninstaller_};
    } else if (way_ == Way::su) {
        command = {"su", "-c", uninstaller_};
    }
    support::ChildOptions options = support::run_as(account_, command);
    options.terminal = true;
    support::ChildProcess removal(options);
    if (way_ != Way::person) {
        if (!removal.wait_for_output("assword")) {
            throw std::runtime_error("no password is asked for");
        }
        removal.type_on_terminal(std::string(password_of(way_)) + "\n");
    }
    const auto end = removal.wait_for_end();
    if (!end || end->exit_status != 0) {
        throw std::runtime_error("the uninstaller failed:\n" + removal.output());
    }
}

} // namespace
} // namespace end_to_end

int main(int count, char** arguments) {
    return end_to_end::play_with_words(
        count, arguments,
        {"by", "title", "installer1", "installer2", "archive1", "archive2", "members1", "members2",
         "uninstaller", "full", "hosts", "pictures"},
        [](const end_to_end::Words& words) { end_to_end::Life(words).play(); });
}
