// temporary_file.h: files of a fixed name in a folder that everybody may write to.
//
// Somebody may have put a link, a pipe or a file of their own at the name. Nothing that exists is
// ever written to: a file is always made anew, private to the user (mode 0600).
#pragma once

#include <cstdio>

// Makes the file and opens it for binary writing, or returns null. A regular file at the name that
// is the user's own and has no other name is a leftover of an earlier run and is replaced.
[[nodiscard]] std::FILE* temporary_file_create(const char* path);

// Closes the file; false when anything written to it may not have arrived.
[[nodiscard]] bool temporary_file_close(std::FILE* file);
