// payload.cpp: unpack, copy, remove.
#include "installer/payload.h"

#include "installer/console_log.h"
#include "installer/desktop_entry.h"
#include "installer/embedded_payload.h"
#include "installer/flow_timing.h"
#include "installer/installer_state.h"
#include "installer/main_window.h"
#include "installer/product_settings.h"
#include "installer/temporary_file.h"
#include "privilege/auth_method.h"
#include "privilege/su_command.h"
#include "privilege/sudo_command.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr const char* archive_path = "/tmp/zeph-installer-data.tar.gz";
constexpr const char* icon_path = "/tmp/zeph-installer-desktop-icon.png";
constexpr const char* entry_path = "/tmp/zeph-installer-desktop-file.desktop";

// Bytes between two moves of the bar.
constexpr auto progress_step = static_cast<std::uint32_t>(product.unpacking_step);
constexpr std::int32_t progress_pause_ms = 20; // so that the person sees the bar move
constexpr std::size_t command_size = 1024;
constexpr mode_t installed_mode = 0644;

bool write_bytes(std::FILE* file, const unsigned char* begin, const unsigned char* end) {
    for (const unsigned char* byte = begin; byte != end; ++byte) {
        if (std::fputc(*byte, file) == EOF) {
            return false;
        }
    }
    return true;
}

bool unpack_desktop_files() {
    std::FILE* icon = temporary_file_create(icon_path);
    std::FILE* entry = temporary_file_create(entry_path);
    bool written = icon != nullptr && entry != nullptr;
    if (entry != nullptr) {
        written = write_desktop_entry(entry) && written;
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

// Runs one command as root. 0 = go on with the next.
std::int32_t run_privileged(const char* command) {
    if (installer.auth_method == auth_method_sudo) {
        return sudo_run_fresh(&installer.runner, command, installer.password);
    }
    return su_run(&installer.runner, command, installer.password);
}

std::int32_t extract_archive(const char* folder) {
    if (installer.auth_method == auth_method_sudo) {
        return sudo_extract(&installer.runner, folder, installer.password);
    }
    return su_extract(&installer.runner, folder, installer.password);
}

// What stands in the folder must be what the archive holds.
bool installation_is_complete(const char* folder) {
    if (installer.auth_method == auth_method_sudo) {
        return sudo_verify(&installer.runner, folder, installer.password);
    }
    return su_verify(&installer.runner, folder, installer.password);
}

// Formats a command and runs it; a command that does not fit is not run.
[[gnu::format(printf, 1, 2)]] std::int32_t run_formatted(const char* format, ...) {
    char command[command_size];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(command, sizeof command, format, arguments);
    va_end(arguments);
    if (length < 0 || static_cast<std::size_t>(length) >= sizeof command) {
        return 1;
    }
    return run_privileged(command);
}

std::int32_t install_desktop_icon_and_entry() {
    // The copies that root makes take the mode of what they are copied from.
    if (chmod(icon_path, installed_mode) != 0 || chmod(entry_path, installed_mode) != 0) {
        return 1;
    }
    std::int32_t result =
        run_formatted("cp -f %s %s/%s", icon_path, product.icon_folder, product.icon_file_name);
    if (result != 0) {
        return result;
    }
    result = run_formatted("cp -f %s /usr/share/applications/%s.desktop", entry_path,
                           product.product_short_name);
    if (result != 0) {
        return result;
    }
    const char* home = std::getenv("HOME");
    if (home == nullptr) {
        return 1;
    }
    result = run_formatted("cp -f %s %s/Desktop/%s.desktop", entry_path, home,
                           product.product_short_name);
    if (result != 0) {
        return result;
    }
    return run_formatted("chmod 777 %s/Desktop/%s.desktop", home, product.product_short_name);
}

} // namespace

std::int32_t unpack_payload() {
    if (product.install_desktop_files == 1 && !unpack_desktop_files()) {
        return 1;
    }
    log_print("** INFO ** %s: Unpacking Files - %08X Bytes\n", installer.title,
              static_cast<unsigned int>(product.archive_size));
    std::FILE* file = temporary_file_create(archive_path);
    if (file == nullptr) {
        return 1;
    }
    const bool unpacked = unpack_archive(file);
    const bool closed = temporary_file_close(file);
    if (installer.cancel_requested != 0 || !unpacked || !closed) {
        return 1;
    }
    show_progress(1.0F);
    return 0;
}

std::int32_t copy_files() {
    log_print("** INFO ** %s: Copying Files\n", installer.title);
    if (installer.auth_method == auth_method_none) {
        return 1;
    }
    const char* chosen = installer.install_folder;
    const char* folder = chosen != nullptr ? chosen : product.default_install_folder;
    std::int32_t result = extract_archive(folder);
    if (result != 0) {
        return result;
    }
    if (product.verify_installation == 1 && !installation_is_complete(folder)) {
        return 1;
    }
    if (product.install_desktop_files == 0) {
        return 0;
    }
    result = install_desktop_icon_and_entry();
    if (result != 0) {
        return result;
    }
    struct stat status {};
    if (product.create_extra_folder == 1 && stat(product.extra_folder, &status) != 0) {
        result = run_formatted("mkdir -m 777 %s", product.extra_folder);
    }
    return result;
}

std::int32_t remove_temporary_files() {
    unlink(archive_path);
    if (product.install_desktop_files == 1) {
        unlink(icon_path);
        unlink(entry_path);
    }
    return 0;
}
