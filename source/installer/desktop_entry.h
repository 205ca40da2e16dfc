// desktop_entry.h: the text of the desktop entry, made from the product settings. Pure.
#pragma once

#include <cstdio>

// Writes the ten lines. false when they may not all have arrived.
[[nodiscard]] bool write_desktop_entry(std::FILE* file);
