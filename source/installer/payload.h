// payload.h: writing the embedded files out, putting them in place as root, cleaning up.
//
// All of these run on the main thread.
#pragma once

#include <cstdint>

// Writes the plug-in archive (and the desktop files, where the product has them) to /tmp, with
// the progress bar following. 0 = written; 1 = a file could not be made or written in full, or
// the installation was cancelled; what is there is left for remove_temporary_files. With
// verify_installation room in /tmp is looked at first.
[[nodiscard]] std::int32_t unpack_payload();

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

// Unlinks the temporary files. Always 0; errors are ignored. The second without work_lock, for an
// end that cannot wait for it.
std::int32_t remove_temporary_files();
void unlink_temporary_files();
