// product_settings.h: the one table that names the product.
//
// Everything that differs between two products' installers, and nothing else, stands here as
// build-time constants. A build for another product puts a folder with its own
// installer/product_settings.h in front of this one (ZEPH_PRODUCT_SETTINGS_DIR).
#pragma once

#include <cstddef>
#include <cstdint>

// Something that is installed along with the plug-in, from the same archive.
struct ProductItem {
    const char* name;            // at the archive's top; null = there is no further item
    const char* folder;          // where it goes, made when missing; null = beside the plug-in
    const char* person_folder;   // the same for one person, as "~/.clap"
    std::int64_t installed_size; // bytes that it takes on a disk, about
};

inline constexpr std::size_t items_most = 16;

// For whom it is installed: for everybody, as root; for the person alone, in the home folder and by
// the person's own rights; or as the person says. The last two with verify_installation only.
enum class InstallFor { everybody, person, ask };

struct ProductSettings {
    const char* product_name;           // window title and console prefix
    const char* product_version;        // window title
    const char* product_short_name;     // the desktop entry's Name, and its file's name
    const char* product_executable;     // the desktop entry's Exec, in default_install_folder
    const char* product_comment;        // the desktop entry's Comment
    const char* desktop_categories;     // the desktop entry's Categories
    const char* icon_file_name;         // the installed icon's file name
    const char* icon_folder;            // the installed icon's folder
    const char* default_install_folder; // where to install when no folder was chosen
    const char* person_folder;          // the same for one person, as "~/.lv2"
    InstallFor install_for;             // for whom
    const char* folder_browser_title;   // the folder browser's title
    const char* extra_folder;           // a folder to create after copying
    std::int32_t create_extra_folder;   // 1 = create extra_folder when it does not exist
    std::int32_t install_desktop_files; // 1 = install the desktop entry and the icon
    std::int32_t find_desktop_folder;   // 1 = ask the desktop's settings where its folder is
    const char* plugin_name;            // the plug-in's name at the archive's top
    std::int64_t installed_size;        // bytes that the plug-in takes on a disk, about
    ProductItem items[items_most];      // what else is in the archive; with verify_installation
    std::int32_t archive_size;          // bytes of the embedded archive
    std::int32_t unpacking_step;        // bytes written between two moves of the bar
    std::int32_t offer_default_folder;  // 1 = the browser opens in default_install_folder
    std::int32_t verify_installation;   // 1 = put in place what is there whole, or nothing
    std::int32_t uninstaller;           // 1 = leave a list and a script that removes what it names
    std::int32_t exact_folder_names;    // 1 = each path is one word for root, whatever it holds
    std::int32_t modern_input;          // 1 = keys, paste and buttons as in today's programs
};

inline constexpr ProductSettings product = {
    .product_name = "QB20-VST",
    .product_version = "V3.0.0",
    .product_short_name = "qb20",
    .product_executable = "qb20-i686",
    .product_comment = "Vintage Marlow Limiter Plug-in",
    .desktop_categories = "AudioVideo;AudioEditing;Audio;Recorder;",
    .icon_file_name = "wmx-4c_icon_48px.png",
    .icon_folder = "/usr/share/icons",
    .default_install_folder = "/usr/lib/lv2",
    .person_folder = "",
    .install_for = InstallFor::everybody,
    .folder_browser_title = "- Select your VST plugins folder -",
    .extra_folder = "",
    .create_extra_folder = 0,
    .install_desktop_files = 0,
    .find_desktop_folder = 0,
    .plugin_name = "QB20.so",
    .installed_size = 5414912,
    .items = {},
    .archive_size = 1058756,
    .unpacking_step = 8192,
    .offer_default_folder = 0,
    .verify_installation = 0,
    .uninstaller = 0,
    .exact_folder_names = 0,
    .modern_input = 0,
};
