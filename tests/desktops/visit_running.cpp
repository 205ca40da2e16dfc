// Visits the desktop that DISPLAY names, as an account of this machine.
//
//   zeph-desktop-visit INSTALLER ACCOUNT PASSWORD FOLDER
//
// As root. The installer is copied to the account's home, and started there. Prints one line:
// "well", or what was amiss. FOLDER gets pictures of the screen; where the screen cannot be asked
// for one, the command in ZEPH_LOOK is, with the file's name added. ZEPH_NO_MINIMISE says that the
// desktop cannot. Ends with status 0 when all is well, 1 when something is amiss, 2 when nothing
// could be seen.

#include "desktops/visit.h"

#include <pwd.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <thread>

namespace {

namespace files = std::filesystem;

support::Account account_of(const char* name, const char* password) {
    const passwd* entry = getpwnam(name);
    if (entry == nullptr) {
        throw std::runtime_error(std::string("there is no account ") + name);
    }
    return {name, password, entry->pw_dir, entry->pw_uid, entry->pw_gid};
}

// Once two looks in a row are the same: desktops let windows fade in.
void keep_picture(end_to_end::Sitting& sitting, const std::string& file) {
    support::Picture last;
    const auto quiet = [&] {
        support::Picture now = sitting.picture_of(sitting.view().root());
        const bool same = count_differences(last, now) == 0;
        last = std::move(now);
        return same;
    };
    constexpr std::chrono::milliseconds between_looks{500};
    for (int looks = 0; looks < 8 && !quiet(); ++looks) {
        std::this_thread::sleep_for(between_looks);
    }
    if (const char* look = std::getenv("ZEPH_LOOK")) {
        (void)!std::system((std::string(look) + " " + file).c_str());
    } else if (last.width > 0) {
        save_png(last, file);
    } else { // an X server inside another desktop has windows only
        const support::XWindow browser = sitting.browser_window();
        save_png(
            sitting.picture_of(sitting.view().viewable(browser) ? browser : sitting.main_window()),
            file);
    }
}

// Keyboard and input method of the session go along.
std::vector<std::string> session_environment() {
    std::vector<std::string> environment = {"ORXDPI=96"};
    for (const char* name : {"DISPLAY", "LC_ALL", "XMODIFIERS", "XAUTHORITY"}) {
        if (const char* value = std::getenv(name)) {
            environment.push_back(std::string(name) + "=" + value);
        }
    }
    return environment;
}

int run(char** arguments) {
    const support::Account account = account_of(arguments[2], arguments[3]);
    const std::string folder = arguments[4];
    files::create_directories(folder);
    const std::string installer = account.home + "/.zeph-installer";
    files::copy_file(arguments[1], installer, files::copy_options::overwrite_existing);
    support::give_to(account, installer);
    const support::ChildOptions program =
        support::run_as(account, {installer}, session_environment());
    const char* display = std::getenv("DISPLAY");
    const end_to_end::SittingOptions options{
        .manager = support::WindowManagerKind::none, // nothing is known of it
        .running_desktop = display == nullptr ? ":0" : display,
        .pictures = folder,
        .locked = [] { return files::exists("/tmp/zeph-installer-lock"); }};
    desktops::VisitOptions visit;
    visit.can_minimise = std::getenv("ZEPH_NO_MINIMISE") == nullptr;
    visit.keeps_owned_above = std::getenv("ZEPH_OWNER_ABOVE") == nullptr;
    std::vector<desktops::Finding> findings;
    {
        end_to_end::Sitting sitting(options);
        visit.keep_picture = [&](const std::string& name) {
            keep_picture(sitting, folder + "/" + name + ".png");
        };
        sitting.start_program(program);
        findings = desktops::visit(sitting, account, visit);
    }
    end_to_end::Sitting second(options);
    second.start_program(program);
    findings.push_back(desktops::visit_and_close(second));
    std::string line;
    for (const desktops::Finding& finding : findings) {
        if (!finding.trouble.empty()) {
            line += (line.empty() ? "" : "; ") + finding.thing + ": " + finding.trouble;
        }
    }
    std::printf("%s\n", line.empty() ? "well" : line.c_str());
    return line.empty() ? 0 : 1;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 5) {
        std::fprintf(stderr, "usage: zeph-desktop-visit INSTALLER ACCOUNT PASSWORD FOLDER\n");
        return 2;
    }
    try {
        return run(arguments);
    } catch (const std::exception& error) {
        std::printf("no visit: %s\n", error.what());
        return 2;
    }
}
