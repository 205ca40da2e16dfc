// Renaming a symbol of the machine's libX11.

#include "faults/old_xlib.h"

#include "faults/surroundings.h"
#include "support/child_process.h"
#include "support/worlds/private_world.h"

#include <regex>
#include <stdexcept>

namespace faults {

namespace {

// As it stands in the table of names, which has a zero byte before and behind each.
constexpr std::string_view young_name{"\0XSetIOErrorExitHandler\0", 24};
constexpr std::string_view other_name{"\0XSetIOErrorExitHandleX\0", 24};

std::string machines_xlib() {
    const std::string libraries = support::output_of({"ldd", ZEPH_INSTALLER});
    std::smatch found;
    if (!std::regex_search(libraries, found, std::regex("libX11\\.so\\.6 => (\\S+)"))) {
        throw std::runtime_error("the installer finds no libX11: " + libraries);
    }
    return found[1];
}

} // namespace

void install_old_xlib(const std::string& folder) {
    std::string library = text_of(machines_xlib());
    const std::size_t name = library.find(young_name);
    if (name == std::string::npos) {
        throw std::runtime_error("the machine's libX11 lacks what was to be renamed");
    }
    library.replace(name, young_name.size(), other_name);
    support::write_file(folder + "/libX11.so.6", library, 0755);
}

} // namespace faults
