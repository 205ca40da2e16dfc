// installation_site.cpp: asking the environment and the file system.
#include "installer/installation_site.h"

#include "installer/desktop_folder.h"
#include "installer/disk_room.h"
#include "installer/folder_levels.h"
#include "installer/home_path.h"

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

// The places that are the person's own.
bool move_home(SiteSurvey* survey, const ProductSettings& settings) {
    const char* home = std::getenv("HOME");
    if (!path_at_home(survey->prefix, home, "~/.local") ||
        !path_at_home(survey->icons, home, person_icons) ||
        !path_at_home(survey->applications, home, "~/.local/share/applications")) {
        return false;
    }
    InstallationSite* site = &survey->site;
    site->prefix = survey->prefix;
    site->icons = survey->icons;
    site->icon_levels_missing = missing_levels(survey->icons);
    site->applications = survey->applications;
    site->application_levels_missing = missing_levels(survey->applications);
    for (std::size_t i = 0; i < items_most; ++i) {
        const char* text = settings.items[i].person_folder;
        if (text != nullptr) {
            if (!path_at_home(survey->item_folders[i], home, text)) {
                return false;
            }
            site->item_folders[i] = survey->item_folders[i];
        }
    }
    return true;
}

} // namespace

bool survey_site(SiteSurvey* survey, const ProductSettings& settings, Recipient recipient,
                 const char* folder, std::int32_t levels_made) {
    InstallationSite* site = &survey->site;
    *site = InstallationSite{};
    if (recipient == Recipient::person && !move_home(survey, settings)) {
        return false;
    }
    site->folder = folder;
    site->desktop = find_desktop(survey->desktop, settings) ? survey->desktop : nullptr;
    site->levels_made = levels_made;
    site->extra_folder_missing = !is_there(settings.extra_folder);
    for (std::size_t i = 0; i < items_most; ++i) {
        if (settings.items[i].folder != nullptr) {
            site->item_levels_missing[i] = missing_levels(item_folder(settings, *site, i));
        }
    }
    return true;
}

bool site_has_room(const ProductSettings& settings, const InstallationSite& site,
                   Recipient recipient) {
    RoomWanted wanted[items_most + 1] = {{site.folder, settings.installed_size}};
    std::size_t count = 1;
    for (std::size_t i = 0; i < items_most; ++i) {
        if (settings.items[i].name != nullptr) {
            wanted[count++] = {item_folder(settings, site, i), settings.items[i].installed_size};
        }
    }
    return has_room_for_all(wanted, count,
                            recipient == Recipient::person ? Writer::person : Writer::root);
}
