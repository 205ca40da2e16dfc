// temporary_paths.h: where the embedded files are written to before root puts them in place.
#pragma once

inline constexpr const char* archive_path = "/tmp/zeph-installer-data.tar.gz";
inline constexpr const char* icon_path = "/tmp/zeph-installer-desktop-icon.png";
inline constexpr const char* entry_path = "/tmp/zeph-installer-desktop-file.desktop";
