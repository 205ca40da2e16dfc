// limiter_test.cpp: the limiter of the archive, with sounds that no host should send and some do.
#include "ladspa_host.h"
#include "scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace {

constexpr const char* stereo = "qb20_limiter";
constexpr const char* mono = "qb20_limiter_mono";

float gain_of(float decibels) {
    return std::pow(10.0F, decibels / 20.0F);
}

Channel noise(unsigned seed, std::size_t frames, float level) {
    std::minstd_rand random(seed);
    std::uniform_real_distribution<float> value(-level, level);
    Channel channel(frames);
    std::generate(channel.begin(), channel.end(), [&] { return value(random); });
    return channel;
}

class LimiterTest : public testing::Test {
protected:
    ScratchFolder folder_;
    std::string plugin_ = unpack_plugin(folder_);
};

} // namespace

TEST_F(LimiterTest, NoSampleExceedsTheCeilingAtAnyRateOrSetting) {
    std::minstd_rand random(std::random_device{}());
    const unsigned seed = static_cast<unsigned>(random());
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    random.seed(seed);
    std::uniform_real_distribution<float> share(0.0F, 1.0F);
    for (const unsigned long rate : {1000UL, 8000UL, 44100UL, 48000UL, 192000UL, 1000000UL}) {
        LadspaHost host(plugin_, stereo, rate);
        for (int round = 0; round < 6; ++round) {
            host.knobs = {-30.0F * share(random), -24.0F * share(random),
                          5.0F + 1995.0F * share(random), share(random)};
            const std::vector<Channel> out =
                host.run({noise(seed + 1U, 8000, 4.0F), noise(seed + 2U, 8000, 0.5F)}, 256);
            const float ceiling = gain_of(host.knobs.ceiling_db);
            EXPECT_LE(std::max(peak_of(out[0]), peak_of(out[1])), ceiling * 1.000001F) << rate;
            EXPECT_GE(host.reduction_db, 0.0F);
        }
    }
}

TEST_F(LimiterTest, ASingleFullPeakIsCaughtBeforeItLeaves) {
    LadspaHost host(plugin_, mono, 48000);
    Channel click(4000, 0.1F);
    click[2000] = 4.0F;
    const Channel out = host.run({click}, 4000)[0];
    EXPECT_LE(peak_of(out), 1.0F);
    const std::size_t peak = 2000 + static_cast<std::size_t>(host.latency);
    EXPECT_NEAR(out[peak], 1.0F, 0.1F);          // it leaves where the latency says, at the ceiling
    EXPECT_NEAR(out[peak - 100], 0.1F, 1e-6F);   // untouched before the look-ahead
    EXPECT_LT(out[peak - 1], 0.05F);             // pulled down right before it: no clipping
    EXPECT_NEAR(host.reduction_db, 12.0F, 1.0F); // 4.0 down to 1.0
}

TEST_F(LimiterTest, GainComesBackAfterTheReleaseTime) {
    const auto recovered = [this](float release_ms) {
        LadspaHost host(plugin_, mono, 48000);
        host.knobs.release_ms = release_ms;
        Channel sound(48000, 0.1F);
        std::fill_n(sound.begin(), 4800, 2.0F);
        const Channel out = host.run({sound}, 512)[0];
        return out[4800 + 9600] / 0.1F; // 200 ms later
    };
    EXPECT_GT(recovered(20.0F), 0.999F);
    EXPECT_LT(recovered(2000.0F), 0.6F);
    EXPECT_GT(recovered(2000.0F), 0.45F);
}

TEST_F(LimiterTest, ThresholdLiftsQuietSoundToTheCeiling) {
    LadspaHost host(plugin_, mono, 48000);
    host.knobs.threshold_db = -12.0F;
    host.knobs.ceiling_db = -3.0F;
    const Channel out = host.run({Channel(2000, 0.1F)}, 100)[0];
    EXPECT_NEAR(out.back(), 0.1F * gain_of(12.0F) * gain_of(-3.0F), 1e-4F);
}

TEST_F(LimiterTest, CharacterAddsEvenAndOddHarmonics) {
    const auto levels = [this](float character) {
        LadspaHost host(plugin_, mono, 48000);
        host.knobs.character = character;
        Channel tone(48000);
        for (std::size_t i = 0; i < tone.size(); ++i) {
            tone[i] =
                0.7F * static_cast<float>(std::sin(2.0 * M_PI * static_cast<double>(i) / 48.0));
        }
        const Channel out = host.run({tone}, 480)[0];
        std::vector<double> harmonics;
        for (const int harmonic : {1, 2, 3}) {
            double real = 0.0;
            double imaginary = 0.0;
            for (std::size_t i = 4800; i < 48000; ++i) {
                const double angle = 2.0 * M_PI * harmonic * static_cast<double>(i) / 48.0;
                real += static_cast<double>(out[i]) * std::cos(angle);
                imaginary += static_cast<double>(out[i]) * std::sin(angle);
            }
            harmonics.push_back(std::hypot(real, imaginary) / 21600.0);
        }
        return harmonics;
    };
    const std::vector<double> wire = levels(0.0F);
    EXPECT_NEAR(wire[0], 0.7, 1e-3);
    EXPECT_LT(wire[1], 1e-5);
    EXPECT_LT(wire[2], 1e-5);
    const std::vector<double> tube = levels(1.0F);
    EXPECT_GT(tube[1], 0.005);
    EXPECT_GT(tube[2], 0.02);
}

TEST_F(LimiterTest, BothChannelsAreTurnedDownTogether) {
    LadspaHost host(plugin_, stereo, 48000);
    const std::vector<Channel> out = host.run({Channel(4000, 2.0F), Channel(4000, 0.5F)}, 4000);
    EXPECT_NEAR(out[1].back() / out[0].back(), 0.25F, 1e-5F);
}

TEST_F(LimiterTest, WhatIsNotANumberBecomesSilenceAndLeavesNoTrace) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    constexpr float infinity = std::numeric_limits<float>::infinity();
    LadspaHost host(plugin_, mono, 48000);
    host.knobs.character = 0.7F;
    Channel sound(48000, 0.1F);
    sound[100] = nan;
    sound[200] = infinity;
    sound[300] = -infinity;
    sound[400] = std::numeric_limits<float>::max();
    const Channel out = host.run({sound}, 64)[0];
    for (const float sample : out) {
        ASSERT_TRUE(std::isfinite(sample));
        ASSERT_LE(std::abs(sample), 1.0F);
    }
    EXPECT_EQ(out[100 + static_cast<std::size_t>(host.latency)], 0.0F);
    LadspaHost clean(plugin_, mono, 48000);
    clean.knobs.character = 0.7F;
    EXPECT_NEAR(out.back(), clean.run({Channel(48000, 0.1F)}, 64)[0].back(), 1e-4F);
}

TEST_F(LimiterTest, KnobsThatAreNoNumbersCountAsTheirLowest) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    LadspaHost host(plugin_, mono, 48000);
    host.knobs = {nan, nan, nan, nan};
    const Channel out = host.run({noise(3, 4000, 2.0F)}, 128)[0];
    EXPECT_LE(peak_of(out), gain_of(-24.0F) * 1.000001F);
    EXPECT_GT(peak_of(out), 0.01F);
}

TEST_F(LimiterTest, TinyNumbersDieOutAsPlainZero) {
    LadspaHost host(plugin_, mono, 48000);
    const Channel out = host.run({Channel(4000, 1e-40F)}, 128)[0];
    EXPECT_EQ(peak_of(out), 0.0F);
}

TEST_F(LimiterTest, BlocksOfAnySizeAndInPlaceGiveTheSameSound) {
    const std::vector<Channel> in = {noise(11, 6000, 2.0F), noise(12, 6000, 1.0F)};
    LadspaHost host(plugin_, stereo, 44100);
    host.knobs = {-6.0F, -2.0F, 30.0F, 0.4F};
    const std::vector<Channel> whole = host.run(in, 6000);
    for (const unsigned long block : {1UL, 7UL, 64UL, 5999UL}) {
        host.reset();
        EXPECT_EQ(host.run(in, block), whole) << block;
        host.reset();
        EXPECT_EQ(host.run(in, block, true), whole) << block << " in place";
    }
}

TEST_F(LimiterTest, ALowerCeilingHoldsFromTheFirstSample) {
    LadspaHost host(plugin_, mono, 48000);
    (void)host.run({Channel(4000, 2.0F)}, 1000);
    host.knobs.ceiling_db = -12.0F;
    EXPECT_LE(peak_of(host.run({Channel(1000, 2.0F)}, 1000)[0]), gain_of(-12.0F) * 1.000001F);
}

TEST_F(LimiterTest, AnEmptyBlockIsNothing) {
    LadspaHost host(plugin_, mono, 48000);
    (void)host.run({Channel(100, 2.0F)}, 100);
    EXPECT_TRUE(host.run({Channel()}, 16)[0].empty());
}

TEST_F(LimiterTest, ImpossibleRatesAreRefused) {
    EXPECT_THROW(LadspaHost(plugin_, mono, 0), std::runtime_error);
    EXPECT_THROW(LadspaHost(plugin_, stereo, 2000000), std::runtime_error);
}
