// installation.h: putting what has been unpacked in place, as root or by the person's own rights.
//
// All of it runs on the main thread.
#pragma once

#include "installer/installation_site.h"

#include <cstdint>

// For whom it is installed: by auth_method.
[[nodiscard]] Recipient recipient();

// Finds the default folder: default_install_folder, or the person's own one when it is installed
// for one person (auth_method_own). false, with installer.failure_reason, when that has no place.
[[nodiscard]] bool find_default_folder();

// With offer_default_folder: makes the default folder, as root, where it is missing, and goes
// there, which is where the folder browser begins. Where that is not to be had the browser begins
// in the person's home. A folder that was made stays, also when the person chooses another one.
void offer_default_folder();

// Extracts the archive into the chosen folder and installs the desktop files, as root, with the
// accepted password, or by the person's own rights. 0 = done; other = failed or cancelled. With
// verify_installation the folder is then as it was, and installer.failure_reason says why.
[[nodiscard]] std::int32_t copy_files();

// Tells the console of the uninstaller that one person finds in the home folder. What the screen
// says of it, null when there is nothing to say or no room for it.
[[nodiscard]] const char* tell_uninstaller();

// Ends what was to be done with 1. With verify_installation console and last screen say why, unless
// reason is null or it is a cancel.
std::int32_t fail_for(const char* what, const char* reason);
