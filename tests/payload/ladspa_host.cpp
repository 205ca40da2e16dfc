// ladspa_host.cpp: dlopen, ports and blocks.
#include "ladspa_host.h"

#include <dlfcn.h>

#include <algorithm>
#include <stdexcept>

namespace {

constexpr unsigned long first_audio_port = 6;

} // namespace

LadspaHost::LadspaHost(const std::string& path, const std::string& label, unsigned long rate) {
    library_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library_ == nullptr) {
        throw std::runtime_error(dlerror());
    }
    const auto find =
        reinterpret_cast<LADSPA_Descriptor_Function>(dlsym(library_, "ladspa_descriptor"));
    for (unsigned long i = 0; find != nullptr && descriptor_ == nullptr; ++i) {
        const LADSPA_Descriptor* descriptor = find(i);
        if (descriptor == nullptr) {
            break;
        }
        if (descriptor->Label == label) {
            descriptor_ = descriptor;
        }
    }
    if (descriptor_ == nullptr) {
        dlclose(library_);
        throw std::runtime_error("no plug-in " + label);
    }
    instance_ = descriptor_->instantiate(descriptor_, rate);
    if (instance_ == nullptr) {
        dlclose(library_);
        throw std::runtime_error("no instance");
    }
    float* const controls[] = {&knobs.threshold_db, &knobs.ceiling_db, &knobs.release_ms,
                               &knobs.character,    &reduction_db,     &latency};
    for (unsigned long port = 0; port < first_audio_port; ++port) {
        descriptor_->connect_port(instance_, port, controls[port]);
    }
    descriptor_->activate(instance_);
}

LadspaHost::~LadspaHost() {
    descriptor_->cleanup(instance_);
    dlclose(library_);
}

std::vector<Channel> LadspaHost::run(const std::vector<Channel>& inputs, unsigned long block,
                                     bool in_place) {
    std::vector<Channel> sources = inputs;
    std::vector<Channel> outputs = inputs;
    const unsigned long frames = inputs.front().size();
    for (unsigned long start = 0; start < frames; start += block) {
        for (unsigned long c = 0; c < inputs.size(); ++c) {
            float* const output = outputs[c].data() + start;
            float* const input = in_place ? output : sources[c].data() + start;
            descriptor_->connect_port(instance_, first_audio_port + c, input);
            descriptor_->connect_port(instance_, first_audio_port + inputs.size() + c, output);
        }
        descriptor_->run(instance_, std::min(block, frames - start));
    }
    return outputs;
}
