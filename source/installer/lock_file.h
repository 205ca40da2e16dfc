// lock_file.h: the file in /tmp that keeps two installers from running at once.
//
// The lock is advisory: its existence alone decides.
#pragma once

#include <cstdint>

inline constexpr const char* lock_file_path = "/tmp/zeph-installer-lock";

// 1 = another instance runs, or left its lock (said on the console; nothing written). 0 = go on:
// the lock file is written, or could not be made.
[[nodiscard]] std::int32_t check_lock_file();

// Removes the lock file. Errors are ignored. The second without work_lock, for an end that cannot
// wait for it.
void remove_lock_file();
void unlink_lock_file();
