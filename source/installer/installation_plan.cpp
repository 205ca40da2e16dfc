// installation_plan.cpp: the steps of an installation.
#include "installer/installation_plan.h"

#include "installer/folder_levels.h"
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
                           const InstallationSite& site) {
    const char* name = settings.product_short_name;
    const char* icons = site.icons != nullptr ? site.icons : settings.icon_folder;
    return {
        .icon = plan_text(plan, "%s/%s", icons, settings.icon_file_name),
        .entry = plan_text(plan, "%s/%s.desktop", site.applications, name),
        .shown = site.desktop != nullptr ? plan_text(plan, "%s/%s.desktop", site.desktop, name)
                                         : nullptr,
    };
}

// The words of a step, one behind the other.
struct WordList {
    PrivilegedPlan* plan;
    PlanStep* step;
    std::size_t count;
    bool full;
};

void add_word(WordList* list, const char* word) {
    list->full = list->full || list->count == privileged_words_most;
    if (!list->full) {
        list->step->words[list->count++] = word;
    }
}

void add_pair(WordList* list, const char* first, const char* second) {
    add_word(list, first);
    add_word(list, second);
}

// The last names of a folder, so many of them, from the topmost folder on.
void add_levels(WordList* list, const char* kind, const char* folder, std::int32_t levels) {
    for (std::int32_t below = levels - 1; below >= 0; --below) {
        const char* path =
            plan_text(list->plan, "%.*s", length_without_levels(folder, below), folder);
        list->full = list->full || path == nullptr;
        add_pair(list, kind, path);
    }
}

void add_members(WordList* list, const ProductSettings& settings, const InstallationSite& site) {
    add_pair(list, site.folder, settings.plugin_name);
    for (std::size_t i = 0; i < items_most; ++i) {
        if (settings.items[i].name != nullptr) {
            add_pair(list, item_folder(settings, site, i), settings.items[i].name);
        }
    }
}

void add_new_folders(WordList* list, const ProductSettings& settings,
                     const InstallationSite& site) {
    for (std::size_t i = 0; i < items_most; ++i) {
        if (settings.items[i].name != nullptr) {
            add_levels(list, "new-folder", item_folder(settings, site, i),
                       site.item_levels_missing[i]);
        }
    }
    if (settings.install_desktop_files == 1 && site.icons != nullptr) {
        add_levels(list, "new-folder", site.icons, site.icon_levels_missing);
        add_levels(list, "new-folder", site.applications, site.application_levels_missing);
    }
}

struct CopiedFile {
    const char* source;
    const char* target; // null = it has no place
};

// What other steps make, and the uninstaller is to know of.
void add_others(WordList* list, const ProductSettings& settings, const InstallationSite& site,
                const DesktopFiles& files) {
    add_levels(list, "folder", site.folder, site.levels_made);
    if (settings.install_desktop_files == 0) {
        return;
    }
    const CopiedFile copied[] = {
        {icon_path, files.icon}, {entry_path, files.entry}, {entry_path, files.shown}};
    for (const CopiedFile& file : copied) {
        if (file.target != nullptr) {
            add_pair(list, file.source, file.target);
        }
    }
    if (settings.create_extra_folder == 1 && site.extra_folder_missing) {
        add_pair(list, "folder", settings.extra_folder);
    }
}

// A step of install_steps.h. A shell's text is in one piece whatever folder names are.
PlanStep careful_step(const ProductSettings& settings, const InstallationSite& site,
                      const char* name) {
    const bool listed = settings.uninstaller == 1;
    return {.words = {"sh", "-c", zeph_install_steps, "install", name, settings.product_short_name,
                      archive_path, listed ? site.prefix : "", listed ? zeph_uninstaller : ""},
            .exact = true,
            .failure = StepFailure::ends_plan};
}

constexpr std::size_t step_name_word = 4;
constexpr std::size_t careful_words = 9;

// A cancel, or whatever else keeps the new files from their place, leaves the old ones. false when
// that cannot be planned.
bool plan_careful_extraction(PrivilegedPlan* plan, const ProductSettings& settings,
                             const InstallationSite& site, const DesktopFiles& files) {
    PlanStep step = careful_step(settings, site, "put_beside");
    WordList list{plan, &step, careful_words, false};
    add_members(&list, settings, site);
    add_word(&list, "--");
    add_new_folders(&list, settings, site);
    if (settings.uninstaller == 1) {
        add_others(&list, settings, site, files);
    }
    if (list.full) {
        return false;
    }
    PlanStep put_beside = step;
    put_beside.cancel_wait = true;
    put_beside.keeps_undo = true;
    plan_add_step(plan, put_beside);
    step.words[step_name_word] = "move_into_place";
    plan_add_step(plan, step);
    step.words[step_name_word] = "abandon";
    plan->undo = step;
    return true;
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

const char* item_folder(const ProductSettings& settings, const InstallationSite& site,
                        std::size_t index) {
    if (site.item_folders[index] != nullptr) {
        return site.item_folders[index];
    }
    const char* folder = settings.items[index].folder;
    return folder != nullptr ? folder : site.folder;
}

void make_folder_plan(PrivilegedPlan* plan, const ProductSettings& settings, const char* folder) {
    *plan = PrivilegedPlan{};
    plan_add_step(plan, {.words = {"mkdir", "-p", "-m", "755", folder},
                         .exact = exact(settings),
                         .failure = StepFailure::ends_plan,
                         .unless_there = folder});
}

void make_installation_plan(PrivilegedPlan* plan, const ProductSettings& settings,
                            const InstallationSite& site) {
    *plan = PrivilegedPlan{};
    const DesktopFiles files = desktop_files(plan, settings, site);
    if (settings.verify_installation == 0) {
        plan_extraction(plan, settings, site.folder);
    } else if (!plan_careful_extraction(plan, settings, site, files)) {
        plan->falls_short = true;
        return;
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
