/* qb20.c: the limiter as LADSPA plug-ins, one for stereo and one for mono. */
#include "limiter.h"

#include <ladspa.h>
#include <stdlib.h>

/* Ports: the controls and meters first, then the inputs, then the outputs. */
enum {
    port_threshold,
    port_ceiling,
    port_release,
    port_character,
    port_reduction,
    port_latency,
    port_audio,
    most_ports = port_audio + 2 * limiter_max_channels,
};

typedef struct Instance {
    Limiter* limiter;
    unsigned channels;
    LADSPA_Data* ports[most_ports];
} Instance;

static const LADSPA_PortDescriptor stereo_kinds[] = {
    LADSPA_PORT_INPUT | LADSPA_PORT_CONTROL,  LADSPA_PORT_INPUT | LADSPA_PORT_CONTROL,
    LADSPA_PORT_INPUT | LADSPA_PORT_CONTROL,  LADSPA_PORT_INPUT | LADSPA_PORT_CONTROL,
    LADSPA_PORT_OUTPUT | LADSPA_PORT_CONTROL, LADSPA_PORT_OUTPUT | LADSPA_PORT_CONTROL,
    LADSPA_PORT_INPUT | LADSPA_PORT_AUDIO,    LADSPA_PORT_INPUT | LADSPA_PORT_AUDIO,
    LADSPA_PORT_OUTPUT | LADSPA_PORT_AUDIO,   LADSPA_PORT_OUTPUT | LADSPA_PORT_AUDIO,
};
static const LADSPA_PortDescriptor mono_kinds[] = {
    LADSPA_PORT_INPUT | LADSPA_PORT_CONTROL,  LADSPA_PORT_INPUT | LADSPA_PORT_CONTROL,
    LADSPA_PORT_INPUT | LADSPA_PORT_CONTROL,  LADSPA_PORT_INPUT | LADSPA_PORT_CONTROL,
    LADSPA_PORT_OUTPUT | LADSPA_PORT_CONTROL, LADSPA_PORT_OUTPUT | LADSPA_PORT_CONTROL,
    LADSPA_PORT_INPUT | LADSPA_PORT_AUDIO,    LADSPA_PORT_OUTPUT | LADSPA_PORT_AUDIO,
};

static const char* const stereo_names[] = {
    "Threshold (dB)", "Ceiling (dB)", "Release (ms)", "Character",   "Gain Reduction (dB)",
    "latency",        "Input Left",   "Input Right",  "Output Left", "Output Right",
};
static const char* const mono_names[] = {
    "Threshold (dB)",      "Ceiling (dB)", "Release (ms)", "Character",
    "Gain Reduction (dB)", "latency",      "Input",        "Output",
};

static const LADSPA_PortRangeHint hints[most_ports] = {
    [port_threshold] = {LADSPA_HINT_BOUNDED_BELOW | LADSPA_HINT_BOUNDED_ABOVE |
                            LADSPA_HINT_DEFAULT_MAXIMUM,
                        -30.0F, 0.0F},
    [port_ceiling] = {LADSPA_HINT_BOUNDED_BELOW | LADSPA_HINT_BOUNDED_ABOVE |
                          LADSPA_HINT_DEFAULT_MAXIMUM,
                      -24.0F, 0.0F},
    [port_release] = {LADSPA_HINT_BOUNDED_BELOW | LADSPA_HINT_BOUNDED_ABOVE |
                          LADSPA_HINT_LOGARITHMIC | LADSPA_HINT_DEFAULT_MIDDLE,
                      5.0F, 2000.0F},
    [port_character] = {LADSPA_HINT_BOUNDED_BELOW | LADSPA_HINT_BOUNDED_ABOVE |
                            LADSPA_HINT_DEFAULT_LOW,
                        0.0F, 1.0F},
};

static void give(LADSPA_Data* port, float value) {
    if (port != NULL) {
        *port = value;
    }
}

static LADSPA_Handle instantiate(const LADSPA_Descriptor* descriptor, unsigned long sample_rate) {
    Instance* instance = calloc(1, sizeof *instance);
    if (instance == NULL) {
        return NULL;
    }
    instance->channels = (unsigned)((descriptor->PortCount - port_audio) / 2);
    instance->limiter = limiter_new(instance->channels, sample_rate);
    if (instance->limiter == NULL) {
        free(instance);
        return NULL;
    }
    return instance;
}

static void connect_port(LADSPA_Handle handle, unsigned long port, LADSPA_Data* location) {
    Instance* instance = handle;
    if (port < most_ports) {
        instance->ports[port] = location;
    }
}

static void activate(LADSPA_Handle handle) {
    const Instance* instance = handle;
    limiter_reset(instance->limiter);
}

static void run(LADSPA_Handle handle, unsigned long frames) {
    const Instance* instance = handle;
    LADSPA_Data* const* ports = instance->ports;
    const LimiterSettings settings = {
        .threshold_db = (double)*ports[port_threshold],
        .ceiling_db = (double)*ports[port_ceiling],
        .release_ms = (double)*ports[port_release],
        .character = (double)*ports[port_character],
    };
    LADSPA_Data* const* inputs = ports + port_audio;
    LADSPA_Data* const* outputs = inputs + instance->channels;
    limiter_run(instance->limiter, &settings, inputs, outputs, frames);
    give(ports[port_reduction], limiter_reduction_db(instance->limiter));
    give(ports[port_latency], (float)limiter_latency(instance->limiter));
}

static void cleanup(LADSPA_Handle handle) {
    Instance* instance = handle;
    limiter_free(instance->limiter);
    free(instance);
}

#define QB20_DESCRIPTOR(identifier, label, name, kinds, names)                                     \
    {                                                                                              \
        .UniqueID = (identifier), .Label = (label), .Properties = LADSPA_PROPERTY_HARD_RT_CAPABLE, \
        .Name = (name), .Maker = "the QB20 makers", .Copyright = "None",                           \
        .PortCount = sizeof(kinds) / sizeof *(kinds), .PortDescriptors = (kinds),                  \
        .PortNames = (names), .PortRangeHints = hints, .instantiate = instantiate,                 \
        .connect_port = connect_port, .activate = activate, .run = run, .cleanup = cleanup,        \
    }

static const LADSPA_Descriptor descriptors[] = {
    QB20_DESCRIPTOR(920, "qb20_limiter", "QB20 Vintage Limiter", stereo_kinds, stereo_names),
    QB20_DESCRIPTOR(921, "qb20_limiter_mono", "QB20 Vintage Limiter (Mono)", mono_kinds,
                    mono_names),
};

__attribute__((visibility("default"))) const LADSPA_Descriptor*
ladspa_descriptor(unsigned long index) {
    return index < sizeof descriptors / sizeof *descriptors ? &descriptors[index] : NULL;
}
