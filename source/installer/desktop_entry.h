// desktop_entry.h: the text of the desktop entry, made from the product settings. Pure.
#pragma once

#include "installer/product_settings.h"

#include <cstdio>

// Writes the ten lines, with the folders that program and icon are in. false when they may not all
// have arrived.
[[nodiscard]] bool write_desktop_entry(std::FILE* file,
                                       const char* program_folder = product.default_install_folder,
                                       const char* icon_folder = product.icon_folder);
