// payload.h: writing the embedded files out, and cleaning up.
//
// All of it runs on the main thread.
#pragma once

#include <cstdint>

// Writes the plug-in archive (and the desktop files, where the product has them) to /tmp, with
// the progress bar following. 0 = written; 1 = a file could not be made or written in full, or
// the installation was cancelled; what is there is left for remove_temporary_files. With
// verify_installation room in /tmp is looked at first.
[[nodiscard]] std::int32_t unpack_payload();

// Unlinks the temporary files. Always 0; errors are ignored. The second without work_lock, for an
// end that cannot wait for it.
std::int32_t remove_temporary_files();
void unlink_temporary_files();
