// Checking the installed file by its bytes and by its sound.

#include "end_to_end/tour_proof.h"

#include "payload/wav_file.h"
#include "support/child_process.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <stdexcept>
#include <vector>

namespace end_to_end {

namespace {

constexpr unsigned rate = 44100;
constexpr const char* label = "qb20_limiter";
constexpr const char* ceiling_db = "-6";
constexpr float ceiling = 0.5012F; // -6 dB
constexpr float half_a_step = 0.5F / 32767.0F;

Channel noise() {
    std::minstd_rand random(20);
    std::uniform_real_distribution<float> level(-1.0F, 1.0F);
    Channel channel(rate);
    std::generate(channel.begin(), channel.end(), [&] { return level(random); });
    return channel;
}

} // namespace

PluginFile prove_file(const std::string& folder) {
    const std::optional<PluginFile> installed = plugin_in(folder);
    if (!installed) {
        throw std::runtime_error(std::string("there is no ") + plugin_name + " in " + folder);
    }
    if (installed != plugin_of_archive()) {
        throw std::runtime_error("the installed file differs from the archive's, its sha256 is " +
                                 installed->sha256);
    }
    return *installed;
}

void prove_in_hosts(const std::string& folder) {
    const std::string plugin = folder + "/" + plugin_name;
    if (support::output_of({"analyseplugin", plugin}).find(label) == std::string::npos) {
        throw std::runtime_error("analyseplugin does not list the plug-in");
    }
    write_wav("/tmp/loud.wav", {noise(), noise()}, rate);
    (void)support::output_of({"applyplugin", "/tmp/loud.wav", "/tmp/limited.wav", plugin, label,
                              "-12", ceiling_db, "100", "0.5"});
    for (const Channel& channel : read_wav("/tmp/limited.wav")) {
        const float peak = peak_of(channel);
        if (peak > ceiling + half_a_step || peak < ceiling / 4) {
            throw std::runtime_error("applyplugin's sound peaks at " + std::to_string(peak));
        }
    }
}

} // namespace end_to_end
