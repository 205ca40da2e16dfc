// desktop_entry.cpp: the ten lines of the desktop entry.
#include "installer/desktop_entry.h"

#include "installer/product_settings.h"

bool write_desktop_entry(std::FILE* file) {
    // Exec names the default folder whatever folder the person chose.
    const int written =
        std::fprintf(file,
                     "[Desktop Entry]\n"
                     "Encoding=UTF-8\n"
                     "Version=1.0\n"
                     "Type=Application\n"
                     "Terminal=false\n"
                     "Exec=%s/%s\n"
                     "Name=%s\n"
                     "Icon=%s/%s\n"
                     "Comment=%s\n"
                     "Categories=%s\n",
                     product.default_install_folder, product.product_executable,
                     product.product_short_name, product.icon_folder, product.icon_file_name,
                     product.product_comment, product.desktop_categories);
    return written > 0;
}
