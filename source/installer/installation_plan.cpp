// installation_plan.cpp: the steps of an installation.
#include "installer/installation_plan.h"

#include "installer/install_steps.h"
#include "installer/temporary_paths.h"

namespace {

bool exact(const ProductSettings& settings) {
    return settings.exact_folder_names == 1;
}

void plan_extraction(PrivilegedPlan* plan, const ProductSettings& settings, const char* folder) {
    plan_add_step(plan, {.words = {"tar", "-xf", archive_path, "-C", folder},
                         .exact = exact(settings),
                         .cancel_wait = true});
}

// A step of install_steps.h. A shell's text is in one piece whatever folder names are.
PlanStep careful_step(const ProductSettings& settings, const char* step, const char* folder) {
    return {.words = {"sh", "-c", zeph_install_steps, "install", step, settings.product_short_name,
                      archive_path, folder, settings.plugin_name},
            .exact = true,
            .failure = StepFailure::ends_plan};
}

// A cancel, or whatever else keeps the new files from their place, leaves the old ones.
void plan_careful_extraction(PrivilegedPlan* plan, const ProductSettings& settings,
                             const char* folder) {
    PlanStep put_beside = careful_step(settings, "put_beside", folder);
    put_beside.cancel_wait = true;
    put_beside.keeps_undo = true;
    plan_add_step(plan, put_beside);
    plan_add_step(plan, careful_step(settings, "move_into_place", folder));
    plan->undo = careful_step(settings, "abandon", folder);
}

// false when the rest cannot be planned.
bool plan_desktop_files(PrivilegedPlan* plan, const ProductSettings& settings,
                        const char* desktop) {
    const char* name = settings.product_short_name;
    const char* icon = plan_text(plan, "%s/%s", settings.icon_folder, settings.icon_file_name);
    const char* entry = plan_text(plan, "/usr/share/applications/%s.desktop", name);
    if (icon == nullptr || entry == nullptr) {
        return false;
    }
    plan_add_step(plan, {.words = {"cp", "-f", icon_path, icon}, .exact = exact(settings)});
    plan_add_step(plan, {.words = {"cp", "-f", entry_path, entry}, .exact = exact(settings)});
    const char* shown =
        desktop != nullptr ? plan_text(plan, "%s/%s.desktop", desktop, name) : nullptr;
    if (shown == nullptr) {
        return false;
    }
    plan_add_step(plan, {.words = {"cp", "-f", entry_path, shown},
                         .exact = exact(settings),
                         .link_removed = shown});
    plan_add_step(
        plan, {.words = {"chmod", "777", shown}, .exact = exact(settings), .link_removed = shown});
    return true;
}

} // namespace

void make_folder_plan(PrivilegedPlan* plan, const ProductSettings& settings) {
    *plan = PrivilegedPlan{};
    plan_add_step(plan, {.words = {"mkdir", "-p", "-m", "755", settings.default_install_folder},
                         .exact = exact(settings),
                         .failure = StepFailure::ends_plan,
                         .unless_there = settings.default_install_folder});
}

void make_installation_plan(PrivilegedPlan* plan, const ProductSettings& settings,
                            const InstallationSite& site) {
    *plan = PrivilegedPlan{};
    if (settings.verify_installation == 1) {
        plan_careful_extraction(plan, settings, site.folder);
    } else {
        plan_extraction(plan, settings, site.folder);
    }
    if (settings.install_desktop_files == 0) {
        return;
    }
    if (!plan_desktop_files(plan, settings, site.desktop)) {
        plan->falls_short = true;
        return;
    }
    if (settings.create_extra_folder == 1) {
        plan_add_step(plan, {.words = {"mkdir", "-m", "777", settings.extra_folder},
                             .exact = exact(settings),
                             .unless_there = settings.extra_folder});
    }
}
