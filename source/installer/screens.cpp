// screens.cpp: the texts of the screens.
#include "installer/screens.h"

#include "privilege/auth_method.h"

#include <iterator>

namespace {

constexpr ScreenLine recipient_lines[] = {
    {2, "For whom shall it be installed?"},
    {4, "Only for me: into my home folder, without a password"},
    {5, "For everybody on this computer: with a password"},
};
constexpr ScreenLine sudo_password_lines[] = {
    {2, "To authenticate the installation"},
    {3, "please enter your user password"},
};
constexpr ScreenLine su_password_lines[] = {
    {2, "To authenticate the installation"},
    {3, "please enter the admin / root password"},
};
constexpr ScreenLine no_auth_method_lines[] = {
    {2, "** ERROR **"},
    {3, "Unable to find a working authentication method"},
    {4, "on this system.  A working sudo configuration"},
    {5, "or a root / admin user account is required"},
    {7, "The installation could not complete"},
};
constexpr ScreenLine another_instance_lines[] = {
    {2, "** ERROR **"},
    {3, "Another instance of the installer is", LineMode::left_block},
    {4, "already running or an orphan lock file", LineMode::left_block},
    {5, "has been left in /tmp.", LineMode::left_block},
    {7, "If no other instances of the installer", LineMode::left_block},
    {8, "are running, remove the", LineMode::left_block},
    {9, "zeph-installer-lock file", LineMode::left_block},
    {10, "from /tmp and restart the installer.", LineMode::left_block},
};
constexpr ScreenLine incorrect_password_lines[] = {
    {2, "** ERROR **"},
    {3, "Incorrect Password"},
    {5, "Please Try Again"},
};
constexpr ScreenLine installing_lines[] = {
    {2, "Installing..."},
};
constexpr ScreenLine unpack_failed_lines[] = {
    {2, "** FATAL ERROR **"},
    {3, "Unable to extract installer data"},
};
constexpr ScreenLine copy_failed_lines[] = {
    {2, "** FATAL ERROR **"},
    {3, "Failed to copy files"},
};
constexpr ScreenLine cancelled_lines[] = {
    {2, "** USER CANCELLED INSTALLATION **"},
    {3, "Exiting..."},
};
constexpr ScreenLine complete_lines[] = {
    {2, "Installation Complete"},
};

} // namespace

const ScreenText recipient_screen{recipient_lines, std::size(recipient_lines), false};
const ScreenText sudo_password_screen{sudo_password_lines, std::size(sudo_password_lines), false};
const ScreenText su_password_screen{su_password_lines, std::size(su_password_lines), false};
const ScreenText no_auth_method_screen{no_auth_method_lines, std::size(no_auth_method_lines),
                                       false};
const ScreenText another_instance_screen{another_instance_lines, std::size(another_instance_lines),
                                         true};
const ScreenText incorrect_password_screen{incorrect_password_lines,
                                           std::size(incorrect_password_lines), true};
const ScreenText installing_screen{installing_lines, std::size(installing_lines), false};
const ScreenText unpack_failed_screen{unpack_failed_lines, std::size(unpack_failed_lines), false};
const ScreenText copy_failed_screen{copy_failed_lines, std::size(copy_failed_lines), false};
const ScreenText cancelled_screen{cancelled_lines, std::size(cancelled_lines), false};
const ScreenText complete_screen{complete_lines, std::size(complete_lines), false};

const ScreenText& authentication_screen(std::int32_t auth_method) {
    switch (auth_method) {
    case auth_method_sudo:
        return sudo_password_screen;
    case auth_method_su:
        return su_password_screen;
    case auth_method_own:
        return installing_screen;
    default:
        return no_auth_method_screen;
    }
}
