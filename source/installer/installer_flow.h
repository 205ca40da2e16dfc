// installer_flow.h: the script of the installer's screens.
#pragma once

// Runs the installation from the splash to the last screen's OK, on the main thread. Returns when
// the person dismisses the last screen, on a cancel, or on an early failure, each of which it has
// reported. Temporary files are gone by then and the password is wiped.
void run_installer_flow();
