// desktop_folder.h: where the person's desktop is.
//
// Desktops in other languages call the folder otherwise ("Schreibtisch", "Bureau") and say so in
// user-dirs.dirs, a file of shell assignments in the folder of the person's settings.
#pragma once

#include <climits>

// Takes the desktop's folder from one line of user-dirs.dirs. false, and folder as it was, when
// the line is about something else, names HOME itself (which means that there is no desktop
// folder), or is not as it must be. Pure.
[[nodiscard]] bool desktop_folder_of_line(char (&folder)[PATH_MAX], const char* line,
                                          const char* home);

// Writes HOME/Desktop. false when the path is too long.
[[nodiscard]] bool default_desktop_folder(char (&folder)[PATH_MAX], const char* home);

// Writes the folder that user-dirs.dirs names, when that is a folder, else HOME/Desktop. false when
// the path is too long.
[[nodiscard]] bool find_desktop_folder(char (&folder)[PATH_MAX], const char* home);
