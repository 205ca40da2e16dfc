/* lantern_tilt.c: a stereo tilt equaliser as an LV2 plug-in.
 *
 * One knob tips the spectrum round a pivot: above it the level rises by the tilt, below it falls by
 * as much. Each channel is split by a one-pole filter at the pivot; the two halves are weighted and
 * added, so that a tilt of 0 dB gives back the input. */
#include <lv2/core/lv2.h>

#include <math.h>
#include <stdlib.h>

#define LANTERN_URI "urn:lantern:tilt"

enum { channel_count = 2 };

typedef enum Port {
    port_tilt,  /* dB, -9 to 9 */
    port_pivot, /* Hz, 200 to 4000 */
    port_level, /* dB, -24 to 12 */
    port_inputs,
    port_outputs = port_inputs + channel_count,
    port_count = port_outputs + channel_count,
} Port;

typedef struct Tilt {
    float* ports[port_count];
    double rate;
    double low[channel_count]; /* what the one-pole filter holds */
    double low_gain;           /* gliding towards the knobs */
    double high_gain;
    int settled; /* 0 = the gains are still to be set */
} Tilt;

static double within(double value, double low, double high) {
    if (!(value > low)) {
        return low; /* also what is not a number */
    }
    return value < high ? value : high;
}

static double gain_of(double decibels) {
    return pow(10.0, decibels / 20.0);
}

static LV2_Handle instantiate(const LV2_Descriptor* descriptor, double rate,
                              const char* bundle_path, const LV2_Feature* const* features) {
    (void)descriptor;
    (void)bundle_path;
    (void)features;
    if (!(rate >= 1000.0)) {
        return NULL;
    }
    Tilt* tilt = calloc(1, sizeof *tilt);
    if (tilt != NULL) {
        tilt->rate = rate;
    }
    return tilt;
}

static void connect_port(LV2_Handle handle, uint32_t port, void* data) {
    Tilt* tilt = handle;
    if (port < port_count) {
        tilt->ports[port] = data;
    }
}

static void activate(LV2_Handle handle) {
    Tilt* tilt = handle;
    for (int channel = 0; channel < channel_count; ++channel) {
        tilt->low[channel] = 0.0;
    }
    tilt->settled = 0;
}

static void run(LV2_Handle handle, uint32_t frames) {
    Tilt* tilt = handle;
    const double amount = within((double)*tilt->ports[port_tilt], -9.0, 9.0);
    const double pivot = within((double)*tilt->ports[port_pivot], 200.0, 4000.0);
    const double level = within((double)*tilt->ports[port_level], -24.0, 12.0);
    const double low_target = gain_of(level - amount);
    const double high_target = gain_of(level + amount);
    if (!tilt->settled) {
        tilt->low_gain = low_target;
        tilt->high_gain = high_target;
        tilt->settled = 1;
    }
    const double follow = 1.0 - exp(-6.283185307179586 * pivot / tilt->rate);
    const double glide = 1.0 - exp(-1.0 / (0.01 * tilt->rate)); /* knobs move in 10 ms */
    for (uint32_t i = 0; i < frames; ++i) {
        tilt->low_gain += glide * (low_target - tilt->low_gain);
        tilt->high_gain += glide * (high_target - tilt->high_gain);
        for (int channel = 0; channel < channel_count; ++channel) {
            const double sample = (double)tilt->ports[port_inputs + channel][i];
            const double in = isfinite(sample) ? sample : 0.0;
            double low = tilt->low[channel] + follow * (in - tilt->low[channel]);
            low = fabs(low) < 1e-20 ? 0.0 : low; /* no denormal numbers */
            tilt->low[channel] = low;
            const double out = tilt->low_gain * low + tilt->high_gain * (in - low);
            tilt->ports[port_outputs + channel][i] = (float)out;
        }
    }
}

static void cleanup(LV2_Handle handle) {
    free(handle);
}

static const LV2_Descriptor tilt_descriptor = {
    .URI = LANTERN_URI,
    .instantiate = instantiate,
    .connect_port = connect_port,
    .activate = activate,
    .run = run,
    .cleanup = cleanup,
};

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(uint32_t index) {
    return index == 0 ? &tilt_descriptor : NULL;
}
