/* limiter.c: tube, peak detection, look-ahead gain and ceiling. */
#include "limiter.h"

#include "decibels.h"
#include "limiter_tables.h"

#include <stdint.h>
#include <stdlib.h>

enum {
    look_ahead_microseconds = 1500,
    detector_delay = peak_taps / 2, /* frames until the kernels see both sides of a sample */
};

/* Gains are averaged as whole numbers, so that the running sum never drifts. */
static const double gain_unit = 1073741824.0; /* 2^30 */

/* A gain that was asked for, and when. The queue's gains rise from its front to its back, so that
   the front is always the smallest of the look-ahead. */
typedef struct AskedGain {
    double gain;
    uint64_t frame;
} AskedGain;

/* What glides from one run's settings to the next's. */
typedef struct Controls {
    double input_gain;
    double tube_row;
    double ceiling;
} Controls;

typedef struct Channel {
    float history[2 * peak_taps]; /* the newest samples, twice, so that a window never wraps */
    float between;                /* the level between the detector's sample and the one before */
    float* delay;                 /* latency + 1 frames */
} Channel;

struct Limiter {
    unsigned channel_count;
    unsigned look_ahead; /* frames */
    unsigned latency;    /* frames */
    double frames_per_ms;
    Channel channels[limiter_max_channels];
    uint64_t frame; /* frames heard since the reset */
    AskedGain* queue;
    unsigned queue_front;
    unsigned queue_length;
    double cell;       /* the optical cell's gain */
    uint32_t* average; /* the cell's gain over the look-ahead, in gain units */
    unsigned average_next;
    uint64_t average_sum;
    Controls controls;
    int settled; /* 0 = controls are still to be set */
    float reduction_db;
};

static double within(double value, double low, double high) {
    /* Also true of what is not a number. */
    if (!(value > low)) {
        return low;
    }
    return value < high ? value : high;
}

static float magnitude(float value) {
    return value < 0.0F ? -value : value;
}

static unsigned queue_capacity(const Limiter* limiter) {
    return limiter->look_ahead + 2;
}

Limiter* limiter_new(unsigned channels, unsigned long sample_rate) {
    if (channels < 1 || channels > limiter_max_channels || sample_rate < 1000 ||
        sample_rate > 1000000) {
        return NULL;
    }
    Limiter* limiter = calloc(1, sizeof *limiter);
    if (limiter == NULL) {
        return NULL;
    }
    limiter->channel_count = channels;
    limiter->look_ahead = (unsigned)(sample_rate * look_ahead_microseconds / 1000000);
    limiter->latency = limiter->look_ahead + detector_delay;
    limiter->frames_per_ms = (double)sample_rate / 1000.0;
    limiter->queue = calloc(queue_capacity(limiter), sizeof *limiter->queue);
    limiter->average = calloc(limiter->look_ahead + 1, sizeof *limiter->average);
    int complete = limiter->queue != NULL && limiter->average != NULL;
    for (unsigned c = 0; c < channels; ++c) {
        limiter->channels[c].delay = calloc(limiter->latency + 1, sizeof(float));
        complete = complete && limiter->channels[c].delay != NULL;
    }
    if (!complete) {
        limiter_free(limiter);
        return NULL;
    }
    limiter_reset(limiter);
    return limiter;
}

void limiter_free(Limiter* limiter) {
    if (limiter == NULL) {
        return;
    }
    for (unsigned c = 0; c < limiter->channel_count; ++c) {
        free(limiter->channels[c].delay);
    }
    free(limiter->average);
    free(limiter->queue);
    free(limiter);
}

void limiter_reset(Limiter* limiter) {
    for (unsigned c = 0; c < limiter->channel_count; ++c) {
        Channel* channel = &limiter->channels[c];
        for (unsigned i = 0; i < 2 * peak_taps; ++i) {
            channel->history[i] = 0.0F;
        }
        for (unsigned i = 0; i <= limiter->latency; ++i) {
            channel->delay[i] = 0.0F;
        }
        channel->between = 0.0F;
    }
    limiter->frame = 0;
    limiter->queue_front = 0;
    limiter->queue_length = 0;
    limiter->cell = 1.0;
    limiter->average_next = 0;
    limiter->average_sum = 0;
    for (unsigned i = 0; i <= limiter->look_ahead; ++i) {
        limiter->average[i] = (uint32_t)gain_unit;
        limiter->average_sum += limiter->average[i];
    }
    limiter->settled = 0;
    limiter->reduction_db = 0.0F;
}

/* The tube curve at level x, read between the four nearest points of the table. */
static float tube(double row, double x) {
    const int is_number = x == x;
    const float level = is_number ? (float)within(x, -tube_range, tube_range) : 0.0F;
    const float position = (level + tube_range) * ((float)(tube_points - 1) / (2.0F * tube_range));
    unsigned point = (unsigned)position;
    if (point > tube_points - 2) {
        point = tube_points - 2;
    }
    unsigned lower = (unsigned)row;
    if (lower > tube_rows - 2) {
        lower = tube_rows - 2;
    }
    const float across = position - (float)point;
    const float down = (float)(row - lower);
    const float* a = &tube_gain[lower][point];
    const float* b = &tube_gain[lower + 1][point];
    const float gain_a = a[0] + across * (a[1] - a[0]);
    const float gain_b = b[0] + across * (b[1] - b[0]);
    const float shaped = level * (gain_a + down * (gain_b - gain_a));
    /* Below -300 dB is silence: no denormal number goes round in the filters. */
    return magnitude(shaped) < 1e-15F ? 0.0F : shaped;
}

/* Takes a sample in; the highest level at and around the sample detector_delay frames back. */
static float detect(Channel* channel, uint64_t frame, float sample) {
    const unsigned slot = (unsigned)(frame % peak_taps);
    channel->history[slot] = sample;
    channel->history[slot + peak_taps] = sample;
    const float* window = &channel->history[slot + 1]; /* oldest to newest */
    float after = 0.0F;
    for (unsigned phase = 0; phase < peak_phases; ++phase) {
        float level = 0.0F;
        for (unsigned tap = 0; tap < peak_taps; ++tap) {
            level += window[tap] * peak_kernel[phase][tap];
        }
        level = magnitude(level);
        after = level > after ? level : after;
    }
    float peak = magnitude(window[peak_taps - 1 - detector_delay]);
    peak = after > peak ? after : peak;
    peak = channel->between > peak ? channel->between : peak;
    channel->between = after;
    return peak;
}

/* The smallest gain asked for in the last look_ahead + 1 frames, this one included. */
static double held_gain(Limiter* limiter, double asked) {
    const unsigned capacity = queue_capacity(limiter);
    AskedGain* queue = limiter->queue;
    while (limiter->queue_length > 0) {
        const unsigned back = (limiter->queue_front + limiter->queue_length - 1) % capacity;
        if (queue[back].gain < asked) {
            break;
        }
        --limiter->queue_length;
    }
    const unsigned next = (limiter->queue_front + limiter->queue_length) % capacity;
    queue[next] = (AskedGain){asked, limiter->frame};
    ++limiter->queue_length;
    if (queue[limiter->queue_front].frame + limiter->look_ahead < limiter->frame) {
        limiter->queue_front = (limiter->queue_front + 1) % capacity;
        --limiter->queue_length;
    }
    return queue[limiter->queue_front].gain;
}

/* The cell closes at once and opens slowly, the slower the deeper it was closed. */
static void move_cell(Limiter* limiter, double held, double release_frames) {
    if (held <= limiter->cell) {
        limiter->cell = held;
        return;
    }
    const size_t last = release_points() - 1;
    const double position = limiter->cell * (double)last;
    size_t point = (size_t)position;
    if (point > last - 1) {
        point = last - 1;
    }
    const double across = position - (double)point;
    const double rate =
        release_rate[point] + across * (release_rate[point + 1] - release_rate[point]);
    limiter->cell += within(rate / release_frames, 0.0, 1.0) * (held - limiter->cell);
}

static double averaged_gain(Limiter* limiter) {
    const uint32_t units = (uint32_t)(limiter->cell * gain_unit);
    limiter->average_sum += units;
    limiter->average_sum -= limiter->average[limiter->average_next];
    limiter->average[limiter->average_next] = units;
    limiter->average_next = (limiter->average_next + 1) % (limiter->look_ahead + 1);
    return (double)limiter->average_sum / ((double)(limiter->look_ahead + 1) * gain_unit);
}

static Controls controls_of(const LimiterSettings* settings) {
    return (Controls){
        .input_gain = gain_of_decibels(-within(settings->threshold_db, -30.0, 0.0)),
        .tube_row = within(settings->character, 0.0, 1.0) * (tube_rows - 1),
        .ceiling = gain_of_decibels(within(settings->ceiling_db, -24.0, 0.0)),
    };
}

void limiter_run(Limiter* limiter, const LimiterSettings* settings, float* const inputs[],
                 float* const outputs[], unsigned long frames) {
    const Controls target = controls_of(settings);
    const double release_frames =
        within(settings->release_ms, 5.0, 2000.0) * limiter->frames_per_ms;
    if (!limiter->settled) {
        limiter->controls = target;
        limiter->settled = 1;
    }
    const Controls start = limiter->controls;
    double deepest = 1.0;
    for (unsigned long i = 0; i < frames; ++i) {
        const double way = (double)(i + 1) / (double)frames;
        const double input_gain = start.input_gain + way * (target.input_gain - start.input_gain);
        const double row = start.tube_row + way * (target.tube_row - start.tube_row);
        /* A ceiling comes down at once: it is a promise. It goes up gliding. */
        const double ceiling = target.ceiling < start.ceiling
                                   ? target.ceiling
                                   : start.ceiling + way * (target.ceiling - start.ceiling);
        const unsigned length = limiter->latency + 1;
        const unsigned newest = (unsigned)(limiter->frame % length);
        const unsigned oldest = (unsigned)((limiter->frame + 1) % length);
        float peak = 0.0F;
        for (unsigned c = 0; c < limiter->channel_count; ++c) {
            Channel* channel = &limiter->channels[c];
            const float shaped = tube(row, (double)inputs[c][i] * input_gain);
            channel->delay[newest] = shaped;
            const float level = detect(channel, limiter->frame, shaped);
            peak = level > peak ? level : peak;
        }
        const double held = held_gain(limiter, peak > 1.0F ? 1.0 / (double)peak : 1.0);
        move_cell(limiter, held, release_frames);
        const double gain = averaged_gain(limiter);
        deepest = gain < deepest ? gain : deepest;
        const double edge = (double)(float)ceiling;
        for (unsigned c = 0; c < limiter->channel_count; ++c) {
            const double level = (double)limiter->channels[c].delay[oldest] * gain * ceiling;
            outputs[c][i] = (float)within(level, -edge, edge);
        }
        ++limiter->frame;
    }
    limiter->controls = target;
    limiter->reduction_db = (float)-decibels_of_gain(deepest);
}

float limiter_reduction_db(const Limiter* limiter) {
    return limiter->reduction_db;
}

unsigned limiter_latency(const Limiter* limiter) {
    return limiter->latency;
}
