// wav_file.h: 16-bit WAV files, written and read as hosts do.
#pragma once

#include <string>
#include <vector>

// One channel's samples, -1 to 1.
using Channel = std::vector<float>;

void write_wav(const std::string& path, const std::vector<Channel>& channels, unsigned rate);
// Throws when the file is no 16-bit WAV file.
[[nodiscard]] std::vector<Channel> read_wav(const std::string& path);

[[nodiscard]] float peak_of(const Channel& channel);
