// payload.cpp: unpack, copy, remove.
#include "installer/payload.h"

#include "installer/console_log.h"
#include "installer/copy_failure.h"
#include "installer/desktop_entry.h"
#include "installer/disk_room.h"
#include "installer/embedded_payload.h"
#include "installer/flow_timing.h"
#include "installer/folder_levels.h"
#include "installer/home_path.h"
#include "installer/installation_plan.h"
#include "installer/installation_site.h"
#include "installer/installer_state.h"
#include "installer/main_window.h"
#include "installer/product_settings.h"
#include "installer/temporary_file.h"
#include "installer/temporary_paths.h"
#include "privilege/auth_method.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// Bytes between two moves of the bar.
constexpr auto progress_step = static_cast<std::uint32_t>(product.unpacking_step);
constexpr std::int32_t progress_pause_ms = 20; // so that the person sees the bar move
constexpr mode_t shared_mode = 0644; // root's copies take it from what they are copied from

bool write_bytes(std::FILE* file, const unsigned char* begin, const unsigned char* end) {
    for (const unsigned char* byte = begin; byte != end; ++byte) {
        if (std::fputc(*byte, file) == EOF) {
            return false;
        }
    }
    return true;
}

std::FILE* create(const char* path) {
    const WorkLock lock(installer.work_lock);
    return temporary_file_create(path);
}

Recipient recipient() {
    return installer.auth_method == auth_method_own ? Recipient::person : Recipient::everybody;
}

bool write_entry_for_recipient(std::FILE* entry) {
    char icons[PATH_MAX];
    if (recipient() == Recipient::everybody) {
        return write_desktop_entry(entry);
    }
    return path_at_home(icons, std::getenv("HOME"), person_icons) &&
           write_desktop_entry(entry, installer.default_folder, icons);
}

bool unpack_desktop_files() {
    std::FILE* icon = create(icon_path);
    std::FILE* entry = create(entry_path);
    bool written = icon != nullptr && entry != nullptr && fchmod(fileno(icon), shared_mode) == 0 &&
                   fchmod(fileno(entry), shared_mode) == 0;
    if (entry != nullptr) {
        written = write_entry_for_recipient(entry) && written;
        written = temporary_file_close(entry) && written;
    }
    if (icon != nullptr) {
        written = write_bytes(icon, zeph_payload_icon, zeph_payload_end) && written;
        written = temporary_file_close(icon) && written;
    }
    return written;
}

void show_progress(float fraction) {
    main_window_set_progress(fraction);
    sleep_milliseconds(progress_pause_ms);
}

// Byte by byte, so that a cancel stops it within one byte.
bool unpack_archive(std::FILE* file) {
    std::uint32_t counter = 0;
    for (const unsigned char* byte = zeph_payload_archive; byte != zeph_payload_icon; ++byte) {
        if (installer.cancel_requested != 0 || std::fputc(*byte, file) == EOF) {
            return false;
        }
        if (counter % progress_step == 0) {
            show_progress(static_cast<float>(counter) / static_cast<float>(product.archive_size));
        }
        ++counter;
    }
    return true;
}

// With verify_installation the person is told why.
std::int32_t fail_for(const char* what, const char* reason) {
    if (product.verify_installation == 1 && reason != nullptr && installer.cancel_requested == 0) {
        log_print("** ERROR ** %s: %s - %s\n", installer.title, what, reason);
        installer.failure_reason = reason;
    }
    return 1;
}

std::int32_t fail_unpacking() {
    const bool full = product.verify_installation == 1 && !has_room("/tmp", 1, Writer::person);
    return fail_for("Unable to extract installer data", full ? no_room_in_tmp_text : nullptr);
}

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

std::int32_t unpack_payload() {
    if (product.verify_installation == 1 &&
        !has_room("/tmp", product.archive_size, Writer::person)) {
        return fail_for("Unable to extract installer data", no_room_in_tmp_text);
    }
    if (product.install_desktop_files == 1 && !unpack_desktop_files()) {
        return fail_unpacking();
    }
    log_print("** INFO ** %s: Unpacking Files - %08X Bytes\n", installer.title,
              static_cast<unsigned int>(product.archive_size));
    std::FILE* file = create(archive_path);
    if (file == nullptr) {
        return fail_unpacking();
    }
    const bool unpacked = unpack_archive(file);
    const bool closed = temporary_file_close(file);
    if (installer.cancel_requested != 0 || !unpacked || !closed) {
        return fail_unpacking();
    }
    show_progress(1.0F);
    return 0;
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

std::int32_t remove_temporary_files() {
    const WorkLock lock(installer.work_lock);
    unlink_temporary_files();
    return 0;
}

void unlink_temporary_files() {
    unlink(archive_path);
    if (product.install_desktop_files == 1) {
        unlink(icon_path);
        unlink(entry_path);
    }
}
