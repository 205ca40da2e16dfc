// ladspa_host.h: a small host that runs a plug-in block by block, with any input at all.
#pragma once

#include "wav_file.h"

#include <ladspa.h>

#include <string>
#include <vector>

struct LimiterKnobs {
    float threshold_db = 0.0F;
    float ceiling_db = 0.0F;
    float release_ms = 100.0F;
    float character = 0.0F;
};

class LadspaHost {
public:
    // Throws when the file has no plug-in of that label, or it cannot be made for the rate.
    LadspaHost(const std::string& path, const std::string& label, unsigned long rate);
    ~LadspaHost();
    LadspaHost(const LadspaHost&) = delete;
    LadspaHost& operator=(const LadspaHost&) = delete;

    // Runs the channels through in blocks, in place when asked; what came out.
    [[nodiscard]] std::vector<Channel> run(const std::vector<Channel>& inputs, unsigned long block,
                                           bool in_place = false);
    void reset() const { descriptor_->activate(instance_); }

    LimiterKnobs knobs;
    float reduction_db = -1.0F;
    float latency = -1.0F;

private:
    void* library_ = nullptr;
    const LADSPA_Descriptor* descriptor_ = nullptr;
    LADSPA_Handle instance_ = nullptr;
};
