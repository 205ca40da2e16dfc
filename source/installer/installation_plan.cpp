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

struct DesktopFiles {
    const char* icon;
    const char* entry;
    const char* shown; // the entry on the person's desktop; null = it has no place
};

DesktopFiles desktop_files(PrivilegedPlan* plan, const ProductSettings& settings,
                           const char* desktop) {
    const char* name = settings.product_short_name;
    return {
        .icon = plan_text(plan, "%s/%s", settings.icon_folder, settings.icon_file_name),
        .entry = plan_text(plan, "/usr/share/applications/%s.desktop", name),
        .shown = desktop != nullptr ? plan_text(plan, "%s/%s.desktop", desktop, name) : nullptr,
    };
}

// The words of a step, one behind the other.
struct WordList {
    PlanStep* step;
    std::size_t count;
};

void add_pair(WordList* list, const char* first, const char* second) {
    if (second != nullptr && list->count + 2 <= privileged_words_most) {
        list->step->words[list->count++] = first;
        list->step->words[list->count++] = second;
    }
}

// What other steps make, and the uninstaller is to know of.
void add_others(WordList* list, const ProductSettings& settings, const InstallationSite& site,
                const DesktopFiles& files) {
    if (site.folder_made) {
        add_pair(list, "folder", site.folder);
    }
    if (settings.install_desktop_files == 0) {
        return;
    }
    add_pair(list, icon_path, files.icon);
    add_pair(list, entry_path, files.entry);
    add_pair(list, entry_path, files.shown);
    if (settings.create_extra_folder == 1 && site.extra_folder_missing) {
        add_pair(list, "folder", settings.extra_folder);
    }
}

// A step of install_steps.h. A shell's text is in one piece whatever folder names are.
PlanStep careful_step(const ProductSettings& settings, const InstallationSite& site,
                      const DesktopFiles& files, const char* name) {
    const bool listed = settings.uninstaller == 1;
    PlanStep step{.words = {"sh", "-c", zeph_install_steps, "install", name,
                            settings.product_short_name, archive_path, listed ? "/usr/local" : "",
                            listed ? zeph_uninstaller : "", site.folder, settings.plugin_name,
                            "--"},
                  .exact = true,
                  .failure = StepFailure::ends_plan};
    if (listed) {
        WordList list{&step, 12};
        add_others(&list, settings, site, files);
    }
    return step;
}

// A cancel, or whatever else keeps the new files from their place, leaves the old ones.
void plan_careful_extraction(PrivilegedPlan* plan, const ProductSettings& settings,
                             const InstallationSite& site, const DesktopFiles& files) {
    PlanStep put_beside = careful_step(settings, site, files, "put_beside");
    put_beside.cancel_wait = true;
    put_beside.keeps_undo = true;
    plan_add_step(plan, put_beside);
    plan_add_step(plan, careful_step(settings, site, files, "move_into_place"));
    plan->undo = careful_step(settings, site, files, "abandon");
}

// false when the rest cannot be planned.
bool plan_desktop_files(PrivilegedPlan* plan, const ProductSettings& settings,
                        const DesktopFiles& files) {
    if (files.icon == nullptr || files.entry == nullptr) {
        return false;
    }
    plan_add_step(plan, {.words = {"cp", "-f", icon_path, files.icon}, .exact = exact(settings)});
    plan_add_step(plan, {.words = {"cp", "-f", entry_path, files.entry}, .exact = exact(settings)});
    if (files.shown == nullptr) {
        return false;
    }
    plan_add_step(plan, {.words = {"cp", "-f", entry_path, files.shown},
                         .exact = exact(settings),
                         .link_removed = files.shown});
    plan_add_step(plan, {.words = {"chmod", "777", files.shown},
                         .exact = exact(settings),
                         .link_removed = files.shown});
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
    const DesktopFiles files = desktop_files(plan, settings, site.desktop);
    if (settings.verify_installation == 1) {
        plan_careful_extraction(plan, settings, site, files);
    } else {
        plan_extraction(plan, settings, site.folder);
    }
    if (settings.install_desktop_files == 0) {
        return;
    }
    if (!plan_desktop_files(plan, settings, files)) {
        plan->falls_short = true;
        return;
    }
    if (settings.create_extra_folder == 1) {
        plan_add_step(plan, {.words = {"mkdir", "-m", "777", settings.extra_folder},
                             .exact = exact(settings),
                             .unless_there = settings.extra_folder});
    }
}
