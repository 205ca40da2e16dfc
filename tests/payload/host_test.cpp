// host_test.cpp: hosts that nobody here wrote find the plug-in and run sound through it.
#include "scratch_folder.h"
#include "support/child_process.h"
#include "wav_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

constexpr unsigned rate = 44100;

// A quiet tone, then a loud one; and noise that comes and goes.
std::vector<Channel> loud_music() {
    std::minstd_rand random(7);
    std::uniform_real_distribution<float> noise(-1.0F, 1.0F);
    std::vector<Channel> channels(2);
    for (int frame = 0; frame < 2 * static_cast<int>(rate); ++frame) {
        const float level = frame < 20000 ? 0.2F : 1.0F;
        channels[0].push_back(level * std::sin(0.05F * static_cast<float>(frame)));
        channels[1].push_back(frame % 5000 > 2500 ? noise(random) : 0.0F);
    }
    return channels;
}

std::vector<Channel> applied(const std::string& plugin, const ScratchFolder& folder,
                             const std::vector<std::string>& knobs) {
    std::vector<std::string> command = {"applyplugin", folder.file("in.wav"),
                                        folder.file("out.wav"), plugin, "qb20_limiter"};
    command.insert(command.end(), knobs.begin(), knobs.end());
    (void)support::output_of(command);
    return read_wav(folder.file("out.wav"));
}

float decibels(float gain) {
    return 20.0F * std::log10(gain);
}

} // namespace

TEST(PluginInRealHosts, AnalysepluginListsBothLimiters) {
    const ScratchFolder folder;
    const std::string text = support::output_of({"analyseplugin", unpack_plugin(folder)});
    for (const char* line :
         {"Plugin Label: \"qb20_limiter\"\n", "Plugin Label: \"qb20_limiter_mono\"\n",
          "\"Threshold (dB)\" input, control, -30 to 0, default 0\n",
          "\"Ceiling (dB)\" input, control, -24 to 0, default 0\n",
          "\"Release (ms)\" input, control, 5 to 2000, default 100, logarithmic\n",
          "\"Character\" input, control, 0 to 1, default 0.25\n",
          "\"Gain Reduction (dB)\" output, control\n", "\"Output Right\" output, audio\n"}) {
        EXPECT_NE(text.find(line), std::string::npos) << line << "\n" << text;
    }
}

TEST(PluginInRealHosts, ApplypluginKeepsMusicUnderTheCeiling) {
    const ScratchFolder folder;
    const std::string plugin = unpack_plugin(folder);
    write_wav(folder.file("in.wav"), loud_music(), rate);
    struct Case {
        std::vector<std::string> knobs; // threshold, ceiling, release, character
        float ceiling_db;
    };
    for (const Case& test :
         {Case{{"0", "-1", "50", "0"}, -1.0F}, Case{{"-20", "-6", "100", "1"}, -6.0F},
          Case{{"-30", "-0.3", "5", "0.5"}, -0.3F}, Case{{"-10", "-24", "2000", "0.2"}, -24.0F}}) {
        const std::vector<Channel> out = applied(plugin, folder, test.knobs);
        ASSERT_EQ(out.size(), 2U);
        const float ceiling = std::pow(10.0F, test.ceiling_db / 20.0F);
        const float half_step = 0.5F / 32767.0F + 1e-6F;
        const float peak = std::max(peak_of(out[0]), peak_of(out[1]));
        EXPECT_LE(peak, ceiling + half_step) << test.knobs[0] << " " << test.knobs[1];
        // And it limits, it does not mute.
        EXPECT_GT(decibels(peak), test.ceiling_db - 6.0F) << test.knobs[0] << " " << test.knobs[1];
    }
}

TEST(PluginInRealHosts, ApplypluginLeavesQuietMusicAlone) {
    const ScratchFolder folder;
    const std::string plugin = unpack_plugin(folder);
    std::vector<Channel> quiet = loud_music();
    for (Channel& channel : quiet) {
        for (float& sample : channel) {
            sample *= 0.25F;
        }
    }
    write_wav(folder.file("in.wav"), quiet, rate);
    const std::vector<Channel> in = read_wav(folder.file("in.wav"));
    const std::vector<Channel> out = applied(plugin, folder, {"0", "0", "100", "0"});
    constexpr std::size_t latency = 66 + 16; // 1.5 ms of look-ahead and half a kernel
    for (std::size_t channel = 0; channel < 2; ++channel) {
        ASSERT_EQ(out[channel].size(), in[channel].size());
        for (std::size_t i = latency; i < out[channel].size(); ++i) {
            ASSERT_NEAR(out[channel][i], in[channel][i - latency], 1.01F / 32767.0F) << i;
        }
    }
}
