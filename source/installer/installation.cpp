// installation.cpp: finding the folder, carrying the plan out, telling how it went.
#include "installer/installation.h"

#include "installer/console_log.h"
#include "installer/copy_failure.h"
#include "installer/folder_levels.h"
#include "installer/home_path.h"
#include "installer/installation_plan.h"
#include "installer/installer_state.h"
#include "installer/product_settings.h"
#include "privilege/auth_method.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

void tell_path(const char* kind, const char* what, const char* path) {
    char* visible = visible_copy(path);
    log_print("%s %s: %s - %s\n", kind, installer.title, what, visible != nullptr ? visible : "");
    std::free(visible);
}

// Those that are not the chosen one, of which the person has been told.
void tell_item_folders(const InstallationSite& site) {
    for (std::size_t i = 0; i < items_most; ++i) {
        if (product.items[i].name != nullptr && product.items[i].folder != nullptr) {
            tell_path("** INFO **", "Installing to", item_folder(product, site, i));
        }
    }
}

PlanResult carry_out(const PrivilegedPlan& plan) {
    const WorkLock lock(installer.work_lock);
    return run_plan(&installer.runner, installer.auth_method, plan, installer.password);
}

} // namespace

Recipient recipient() {
    return installer.auth_method == auth_method_own ? Recipient::person : Recipient::everybody;
}

std::int32_t fail_for(const char* what, const char* reason) {
    if (product.verify_installation == 1 && reason != nullptr && installer.cancel_requested == 0) {
        log_print("** ERROR ** %s: %s - %s\n", installer.title, what, reason);
        installer.failure_reason = reason;
    }
    return 1;
}

bool find_default_folder() {
    if (recipient() == Recipient::everybody) {
        installer.default_folder = product.default_install_folder;
        return true;
    }
    if (!path_at_home(installer.home_folder, std::getenv("HOME"), product.person_folder)) {
        return fail_for("Failed to copy files", no_home_text) == 0;
    }
    installer.default_folder = installer.home_folder;
    return true;
}

void offer_default_folder() {
    if (product.offer_default_folder == 0 || installer.cancel_requested != 0) {
        return;
    }
    PrivilegedPlan plan;
    make_folder_plan(&plan, product, installer.default_folder);
    const std::int32_t missing = missing_levels(installer.default_folder);
    if (carry_out(plan).status != 0 || chdir(installer.default_folder) != 0) {
        tell_path("** ERROR **", "Unable to open folder", installer.default_folder);
        return;
    }
    installer.default_folder_levels_made = missing;
}

std::int32_t copy_files() {
    log_print("** INFO ** %s: Copying Files\n", installer.title);
    if (installer.auth_method == auth_method_none) {
        return 1;
    }
    const char* chosen = installer.install_folder;
    const char* folder = chosen != nullptr ? chosen : installer.default_folder;
    const bool offered = std::strcmp(folder, installer.default_folder) == 0;
    SiteSurvey survey;
    if (!survey_site(&survey, product, recipient(), folder,
                     offered ? installer.default_folder_levels_made : 0)) {
        return fail_for("Failed to copy files", no_home_text);
    }
    if (product.verify_installation == 1 && !site_has_room(product, survey.site, recipient())) {
        return fail_for("Failed to copy files", no_room_text);
    }
    tell_item_folders(survey.site);
    PrivilegedPlan plan;
    make_installation_plan(&plan, product, survey.site);
    const PlanResult result = carry_out(plan);
    return result.status == 0
               ? 0
               : fail_for("Failed to copy files", copy_failure_text(result, installer.auth_method));
}

const char* tell_uninstaller() {
    char text[PATH_MAX];
    char path[PATH_MAX];
    (void)std::snprintf(text, sizeof text, "~/.local/bin/uninstall-%s", product.product_short_name);
    if (product.uninstaller == 0 || recipient() == Recipient::everybody ||
        !path_at_home(path, std::getenv("HOME"), text)) {
        return nullptr;
    }
    tell_path("** INFO **", "To remove it", path);
    char(&line)[panel_line_size] = installer.uninstaller_line;
    const int length = std::snprintf(line, sizeof line, "To remove it: %s", text);
    return length > 0 && static_cast<std::size_t>(length) < sizeof line ? line : nullptr;
}
