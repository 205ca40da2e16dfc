// wav_file.cpp: the RIFF header and interleaved samples.
#include "wav_file.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

struct WavHeader {
    char riff[4] = {'R', 'I', 'F', 'F'};
    std::uint32_t riff_size = 0;
    char wave[4] = {'W', 'A', 'V', 'E'};
    char format[4] = {'f', 'm', 't', ' '};
    std::uint32_t format_size = 16;
    std::uint16_t encoding = 1; // PCM
    std::uint16_t channels = 0;
    std::uint32_t rate = 0;
    std::uint32_t byte_rate = 0;
    std::uint16_t frame_size = 0;
    std::uint16_t bits = 16;
    char data[4] = {'d', 'a', 't', 'a'};
    std::uint32_t data_size = 0;
};
static_assert(sizeof(WavHeader) == 44 && std::endian::native == std::endian::little);

} // namespace

void write_wav(const std::string& path, const std::vector<Channel>& channels, unsigned rate) {
    std::vector<std::int16_t> samples;
    for (std::size_t frame = 0; frame < channels.front().size(); ++frame) {
        for (const Channel& channel : channels) {
            const float clipped = std::clamp(channel[frame], -1.0F, 1.0F);
            samples.push_back(static_cast<std::int16_t>(std::lround(clipped * 32767.0F)));
        }
    }
    WavHeader header;
    header.channels = static_cast<std::uint16_t>(channels.size());
    header.rate = rate;
    header.frame_size = static_cast<std::uint16_t>(2 * channels.size());
    header.byte_rate = rate * header.frame_size;
    header.data_size = static_cast<std::uint32_t>(2 * samples.size());
    header.riff_size = header.data_size + 36;
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(&header), sizeof header);
    file.write(reinterpret_cast<const char*>(samples.data()), header.data_size);
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + path);
    }
}

std::vector<Channel> read_wav(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    WavHeader header;
    if (bytes.size() < sizeof header) {
        throw std::runtime_error("no WAV file: " + path);
    }
    std::memcpy(&header, bytes.data(), sizeof header);
    if (std::memcmp(header.wave, "WAVE", 4) != 0 || header.bits != 16 || header.channels == 0) {
        throw std::runtime_error("no 16-bit WAV file: " + path);
    }
    std::vector<Channel> channels(header.channels);
    const std::size_t count = (bytes.size() - sizeof header) / 2;
    for (std::size_t i = 0; i < count; ++i) {
        std::int16_t sample = 0;
        std::memcpy(&sample, bytes.data() + sizeof header + 2 * i, 2);
        channels[i % header.channels].push_back(static_cast<float>(sample) / 32767.0F);
    }
    return channels;
}

float peak_of(const Channel& channel) {
    float peak = 0.0F;
    for (const float sample : channel) {
        peak = std::max(peak, std::abs(sample));
    }
    return peak;
}
