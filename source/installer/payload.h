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

// With offer_default_folder: makes default_install_folder, as root, where it is missing, and goes
// there, which is where the folder browser begins. Where that is not to be had the browser begins
// in the person's home. A folder that was made stays, also when the person chooses another one.
void offer_default_folder();

// Extracts the archive into the chosen folder and installs the desktop files, as root, with the
// accepted password. 0 = done; other = failed or cancelled. With verify_installation the folder is
// then as it was, and installer.failure_reason says why.
[[nodiscard]] std::int32_t copy_files();

// Unlinks the temporary files. Always 0; errors are ignored. The second without work_lock, for an
// end that cannot wait for it.
std::int32_t remove_temporary_files();
void unlink_temporary_files();
