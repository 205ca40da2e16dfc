// installation_site.h: what an installation has to know of the machine that it runs on.
#pragma once

#include "installer/installation_plan.h"
#include "installer/product_settings.h"

#include <climits>

// A site, and the texts that it points to.
struct SiteSurvey {
    InstallationSite site;
    char desktop[PATH_MAX];
    char prefix[PATH_MAX];
    char icons[PATH_MAX];
    char applications[PATH_MAX];
    char item_folders[items_most][PATH_MAX];
};

// Where a desktop looks for icons and for entries of the applications menu in a home.
inline constexpr const char* person_icons = "~/.local/share/icons";

// For whom.
enum class Recipient { everybody, person };

// Looks for the person's desktop and for folders that are still to be made. folder is the chosen
// one, absolute, and must live as long as the survey; levels_made as in InstallationSite. false
// when it is for a person whose home is not known, or a path is too long.
[[nodiscard]] bool survey_site(SiteSurvey* survey, const ProductSettings& settings,
                               Recipient recipient, const char* folder, std::int32_t levels_made);

// Whether all that is to be installed fits where it goes, and true when that cannot be told.
[[nodiscard]] bool site_has_room(const ProductSettings& settings, const InstallationSite& site,
                                 Recipient recipient);
