// rebuild_test.cpp: the archive that is kept is what its source builds.
#include "ladspa_host.h"
#include "scratch_folder.h"
#include "support/child_process.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

TEST(Rebuild, TheSourceGivesTheSameFiguresAndTheSameSound) {
    const ScratchFolder folder;
    const std::string archive = folder.file("payload.tar.gz");
    (void)support::output_of({"python3", "-B", "tools/payload_packer/build_payload.py", "--work",
                              folder.file("work"), "--output", archive},
                             std::chrono::minutes(4));
    EXPECT_EQ(std::filesystem::file_size(archive), 1058756U);
    EXPECT_EQ(support::output_of({"tar", "-tvzf", archive, "--utc"}),
              support::output_of({"tar", "-tvzf", payload_archive, "--utc"}));

    const std::string built = folder.file("work/QB20.so");
    EXPECT_EQ(std::filesystem::file_size(built), 5406136U);
    std::minstd_rand random(5);
    std::uniform_real_distribution<float> value(-3.0F, 3.0F);
    Channel sound(20000);
    for (float& sample : sound) {
        sample = value(random);
    }
    LadspaHost kept_host(unpack_plugin(folder), "qb20_limiter", 48000);
    LadspaHost built_host(built, "qb20_limiter", 48000);
    kept_host.knobs = built_host.knobs = {-9.0F, -1.0F, 60.0F, 0.6F};
    const std::vector<Channel> kept = kept_host.run({sound, sound}, 512);
    const std::vector<Channel> fresh = built_host.run({sound, sound}, 512);
    for (std::size_t i = 0; i < sound.size(); ++i) {
        ASSERT_NEAR(kept[0][i], fresh[0][i], 1e-4F) << "at " << i; // compilers may round apart
    }
}
