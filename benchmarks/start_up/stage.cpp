// Arranging the world, and the way to the password screen.

#include "start_up/stage.h"

#include "support/display_view.h"
#include "support/person.h"

#include <filesystem>
#include <stdexcept>

namespace start_up {

namespace {

constexpr const char* lock_path = "/tmp/zeph-installer-lock";

std::string folder_of(const char* path) {
    return std::filesystem::path(path).parent_path();
}

// The build folder may be closed to other accounts.
support::ChildOptions in_home(const support::Account& account, const char* program,
                              const std::string& display_name) {
    const std::string copy =
        account.home + "/" + std::filesystem::path(program).filename().string();
    std::filesystem::copy_file(program, copy);
    support::give_to(account, copy);
    return support::run_as(account, {copy}, {"DISPLAY=" + display_name, "LC_ALL=C", "ORXDPI=96"});
}

} // namespace

Stage::Stage(bool with_sudo)
    : world({.keep_visible = {folder_of(ZEPH_INSTALLER), folder_of(ZEPH_PLAIN_WINDOW)}}),
      account(support::add_account("musician", "Marlow-7", "ALL=(ALL:ALL) ALL")),
      plain_window(in_home(account, ZEPH_PLAIN_WINDOW, server.display_name())),
      installer(in_home(account, ZEPH_INSTALLER, server.display_name())) {
    if (!with_sudo) {
        support::hide_program("/usr/bin/sudo");
        support::hide_program("/usr/bin/su");
        support::hide_program("/bin/su");
    }
}

void reach_password_screen(const Stage& stage, support::ChildProcess& installer) {
    const support::DisplayView view(stage.server.display_name());
    support::Person person(stage.server.display_name());
    const support::Place splash = view.place_on_root(view.wait_for_class("zeph-inst-splash"));
    const bool there = support::wait_until([&] {
        person.click_at(splash.x + splash.width / 2, splash.y + splash.height / 2);
        return view.find_class("zeph-installer").has_value();
    });
    // The lock is written when the main window stands, just before the password is asked for.
    if (!there || !support::wait_until([] { return std::filesystem::exists(lock_path); })) {
        throw std::runtime_error("no password screen came:\n" + installer.output());
    }
}

} // namespace start_up
