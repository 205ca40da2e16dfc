// installation_site.h: what an installation has to know of the machine that it runs on.
#pragma once

#include "installer/installation_plan.h"
#include "installer/product_settings.h"

#include <climits>

// A site, and the texts that it points to.
struct SiteSurvey {
    InstallationSite site;
    char desktop[PATH_MAX];
};

// Looks for the person's desktop and for folders that are still to be made. folder is the chosen
// one, absolute, and must live as long as the survey; levels_made as in InstallationSite.
void survey_site(SiteSurvey* survey, const ProductSettings& settings, const char* folder,
                 std::int32_t levels_made);

// Whether all that is to be installed fits where it goes, and true when that cannot be told.
[[nodiscard]] bool site_has_room(const ProductSettings& settings, const InstallationSite& site);
