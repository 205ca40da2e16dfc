// installation_site.cpp: asking the environment and the file system.
#include "installer/installation_site.h"

#include "installer/desktop_folder.h"
#include "installer/disk_room.h"
#include "installer/folder_levels.h"

#include <sys/stat.h>

#include <cstdlib>

namespace {

// false when HOME is not known.
bool find_desktop(char (&folder)[PATH_MAX], const ProductSettings& settings) {
    const char* home = std::getenv("HOME");
    if (home == nullptr) {
        return false;
    }
    return settings.find_desktop_folder == 1 ? find_desktop_folder(folder, home)
                                             : default_desktop_folder(folder, home);
}

bool is_there(const char* path) {
    struct stat status {};
    return stat(path, &status) == 0;
}

} // namespace

void survey_site(SiteSurvey* survey, const ProductSettings& settings, const char* folder,
                 std::int32_t levels_made) {
    InstallationSite* site = &survey->site;
    *site = InstallationSite{};
    site->folder = folder;
    site->desktop = find_desktop(survey->desktop, settings) ? survey->desktop : nullptr;
    site->levels_made = levels_made;
    site->extra_folder_missing = !is_there(settings.extra_folder);
    for (std::size_t i = 0; i < items_most; ++i) {
        const char* item_folder = settings.items[i].folder;
        site->item_levels_missing[i] = item_folder != nullptr ? missing_levels(item_folder) : 0;
    }
}

bool site_has_room(const ProductSettings& settings, const InstallationSite& site) {
    RoomWanted wanted[items_most + 1] = {{site.folder, settings.installed_size}};
    std::size_t count = 1;
    for (const ProductItem& item : settings.items) {
        if (item.name != nullptr) {
            wanted[count++] = {item.folder != nullptr ? item.folder : site.folder,
                               item.installed_size};
        }
    }
    return has_room_for_all(wanted, count, Writer::root);
}
