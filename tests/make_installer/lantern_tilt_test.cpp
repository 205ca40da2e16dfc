// lantern_tilt_test.cpp: the second product's plug-in, by LV2 tools that nobody here wrote.
#include "payload/scratch_folder.h"
#include "payload/wav_file.h"
#include "support/child_process.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

constexpr const char* uri = "urn:lantern:tilt";
constexpr const char* source_folder = "products/lantern-tilt";
constexpr unsigned rate = 48000;

// The bundle alone in a folder that LV2_PATH names.
class LanternTilt : public testing::Test {
protected:
    void SetUp() override {
        fs::create_directory(scratch_.file("lv2"));
        fs::copy(std::string(source_folder) + "/lantern-tilt.lv2",
                 scratch_.file("lv2/lantern-tilt.lv2"), fs::copy_options::recursive);
    }

    [[nodiscard]] std::string run(const std::vector<std::string>& command) const {
        std::vector<std::string> whole = {"env", "LV2_PATH=" + scratch_.file("lv2")};
        whole.insert(whole.end(), command.begin(), command.end());
        return support::output_of(whole);
    }

    // Gain in dB of a tone of that frequency, on the left and right.
    [[nodiscard]] std::vector<double> gains(double frequency,
                                            const std::vector<std::string>& knobs) const {
        Channel tone(rate);
        for (std::size_t i = 0; i < tone.size(); ++i) {
            tone[i] = 0.25F * static_cast<float>(
                                  std::sin(2.0 * M_PI * frequency * static_cast<double>(i) / rate));
        }
        write_wav(scratch_.file("in.wav"), {tone, tone}, rate);
        std::vector<std::string> command = {"lv2apply", "-i", scratch_.file("in.wav"), "-o",
                                            scratch_.file("out.wav")};
        command.insert(command.end(), knobs.begin(), knobs.end());
        command.emplace_back(uri);
        (void)run(command);
        std::vector<double> result;
        for (const Channel& channel : read_wav(scratch_.file("out.wav"))) {
            const Channel settled(channel.begin() + rate / 2, channel.end());
            result.push_back(20.0 * std::log10(static_cast<double>(peak_of(settled)) / 0.25));
        }
        return result;
    }

    ScratchFolder scratch_;
};

} // namespace

TEST_F(LanternTilt, IsListedAndDescribed) {
    EXPECT_EQ(run({"lv2ls"}), std::string(uri) + "\n");
    const std::string text = run({"lv2info", uri});
    for (const char* line : {"Lantern Tilt", "Symbol:      tilt", "Symbol:      pivot",
                             "Symbol:      out_right", "Maximum:     9.000000"}) {
        EXPECT_NE(text.find(line), std::string::npos) << line << "\n" << text;
    }
}

TEST_F(LanternTilt, LeavesSoundAloneAtZero) {
    for (const double frequency : {50.0, 800.0, 12000.0}) {
        for (const double gain : gains(frequency, {})) {
            EXPECT_NEAR(gain, 0.0, 0.01) << frequency;
        }
    }
}

TEST_F(LanternTilt, TipsTheSpectrumRoundThePivot) {
    const std::vector<std::string> bright = {"-c", "tilt", "6", "-c", "pivot", "800"};
    for (const double gain : gains(30.0, bright)) {
        EXPECT_NEAR(gain, -6.0, 0.3);
    }
    for (const double gain : gains(12000.0, bright)) {
        EXPECT_NEAR(gain, 6.0, 0.5);
    }
    for (const double gain : gains(30.0, {"-c", "tilt", "-6", "-c", "level", "-3"})) {
        EXPECT_NEAR(gain, 3.0, 0.3);
    }
}

TEST_F(LanternTilt, IsWhatItsSourceBuilds) {
    const std::string fresh = scratch_.file("fresh");
    fs::create_directories(fresh);
    (void)support::output_of({std::string(source_folder) + "/source/build.sh", fresh});
    const std::vector<double> kept = gains(3000.0, {"-c", "tilt", "4"});
    fs::copy_file(fresh + "/lantern-tilt.so", scratch_.file("lv2/lantern-tilt.lv2/lantern-tilt.so"),
                  fs::copy_options::overwrite_existing);
    const std::vector<double> built = gains(3000.0, {"-c", "tilt", "4"});
    ASSERT_EQ(kept.size(), 2U);
    EXPECT_NEAR(kept[0], built[0], 1e-3);
    EXPECT_GT(kept[0], 2.0);
}
