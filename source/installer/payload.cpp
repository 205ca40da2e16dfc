// payload.cpp: unpack, remove.
#include "installer/payload.h"

#include "installer/console_log.h"
#include "installer/copy_failure.h"
#include "installer/desktop_entry.h"
#include "installer/disk_room.h"
#include "installer/embedded_payload.h"
#include "installer/flow_timing.h"
#include "installer/home_path.h"
#include "installer/installation.h"
#include "installer/installation_site.h"
#include "installer/installer_state.h"
#include "installer/main_window.h"
#include "installer/product_settings.h"
#include "installer/temporary_file.h"
#include "installer/temporary_paths.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

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

std::int32_t fail_unpacking() {
    const bool full = product.verify_installation == 1 &&
                      (!has_room("/tmp", 1, Writer::person) || !has_room_for_a_file("/tmp"));
    return fail_for("Unable to extract installer data", full ? no_room_in_tmp_text : nullptr);
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
