// installation_plan.h: what root does for an installation, step by step, as data. Pure.
//
// The steps are made of the product settings and of what is only known where the installer runs.
// They are carried out by run_plan.
#pragma once

#include "installer/product_settings.h"
#include "privilege/privileged_plan.h"

struct InstallationSite {
    const char* folder;                // where to install, absolute
    const char* desktop;               // the folder of the person's desktop; null = not known
    std::int32_t levels_made = 0;      // so many of folder's last names have been made by this run
    bool extra_folder_missing = false; // extra_folder is not there yet
    // So many of the last names of each item's folder are not there yet.
    std::int32_t item_levels_missing[items_most] = {};

    // For one person.
    const char* item_folders[items_most] = {}; // null = as the settings say
    const char* icons = nullptr;               // the same of icon_folder
    std::int32_t icon_levels_missing = 0;
    const char* applications = "/usr/share/applications";
    std::int32_t application_levels_missing = 0;
    const char* prefix = "/usr/local"; // of the uninstaller
};

// Where an item goes; its own folder, or the chosen one.
[[nodiscard]] const char* item_folder(const ProductSettings& settings, const InstallationSite& site,
                                      std::size_t index);

// Fills the plan that makes a folder, the default one, where it is missing. Everything given must
// live as long as the plan.
void make_folder_plan(PrivilegedPlan* plan, const ProductSettings& settings, const char* folder);

// Fills the plan of the installation itself. Everything given must live as long as the plan.
void make_installation_plan(PrivilegedPlan* plan, const ProductSettings& settings,
                            const InstallationSite& site);
