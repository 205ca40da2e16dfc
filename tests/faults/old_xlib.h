// A libX11 as it was before 1.7, without the function by which a program outlives a lost display.
//
// It is this machine's own, in which that function's name is spelt otherwise, so that no program
// finds it; everything else is as new as the machine.

#pragma once

#include <string>

namespace faults {

// Puts the library into the folder, which is made. A program that is started with LD_LIBRARY_PATH
// naming that folder uses it. In a private world only. Throws std::runtime_error when the machine's
// libX11 is not found, or has no such name.
void install_old_xlib(const std::string& folder);

} // namespace faults
