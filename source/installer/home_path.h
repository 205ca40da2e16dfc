// home_path.h: places in the person's home. Pure.
#pragma once

#include <climits>

// Writes the path that a text such as "~/.lv2" means in that home. false when home is null or not
// absolute, or the path is too long.
[[nodiscard]] bool path_at_home(char (&path)[PATH_MAX], const char* home, const char* text);
