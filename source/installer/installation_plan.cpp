// installation_plan.cpp: the steps of an installation.
#include "installer/installation_plan.h"

#include "installer/temporary_paths.h"

namespace {

void plan_extraction(PrivilegedPlan* plan, const ProductSettings& settings, const char* folder) {
    const bool exact = settings.exact_folder_names == 1;
    plan_add_step(plan, {.words = {"tar", "-xf", archive_path, "-C", folder},
                         .exact = exact,
                         .failure = StepFailure::ignored,
                         .cancel_wait = true,
                         .unless_there = nullptr});
    if (settings.verify_installation == 1) {
        plan_add_step(plan, {.words = {"tar", "-df", archive_path, "-C", folder},
                             .exact = exact,
                             .failure = StepFailure::ends_plan,
                             .cancel_wait = false,
                             .unless_there = nullptr});
    }
}

void plan_command(PrivilegedPlan* plan, const char* program, const char* option, const char* first,
                  const char* second = nullptr) {
    plan_add_step(plan, {.words = {program, option, first, second},
                         .exact = false,
                         .failure = StepFailure::ignored,
                         .cancel_wait = false,
                         .unless_there = nullptr});
}

// false when the rest cannot be planned.
bool plan_desktop_files(PrivilegedPlan* plan, const ProductSettings& settings, const char* home) {
    const char* name = settings.product_short_name;
    const char* icon = plan_text(plan, "%s/%s", settings.icon_folder, settings.icon_file_name);
    const char* entry = plan_text(plan, "/usr/share/applications/%s.desktop", name);
    if (icon == nullptr || entry == nullptr) {
        return false;
    }
    plan_command(plan, "cp", "-f", icon_path, icon);
    plan_command(plan, "cp", "-f", entry_path, entry);
    const char* on_desktop =
        home != nullptr ? plan_text(plan, "%s/Desktop/%s.desktop", home, name) : nullptr;
    if (on_desktop == nullptr) {
        return false;
    }
    plan_command(plan, "cp", "-f", entry_path, on_desktop);
    plan_command(plan, "chmod", "777", on_desktop);
    return true;
}

} // namespace

void make_installation_plan(PrivilegedPlan* plan, const ProductSettings& settings,
                            const InstallationSite& site) {
    *plan = PrivilegedPlan{};
    plan_extraction(plan, settings, site.folder);
    if (settings.install_desktop_files == 0) {
        return;
    }
    if (!plan_desktop_files(plan, settings, site.home)) {
        plan->falls_short = true;
        return;
    }
    if (settings.create_extra_folder == 1) {
        plan_add_step(plan, {.words = {"mkdir", "-m", "777", settings.extra_folder},
                             .exact = false,
                             .failure = StepFailure::ignored,
                             .cancel_wait = false,
                             .unless_there = settings.extra_folder});
    }
}
