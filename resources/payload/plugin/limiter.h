/* limiter.h: a look-ahead limiter behind a tube stage and in front of an optical release.
 *
 * The way of a sample: input gain, tube curve, delay line, gain, ceiling. The gain is found from
 * the delay line's newest sample (and the level between samples): the smallest gain asked for in
 * the look-ahead is held, let go at the optical cell's pace, and averaged over the look-ahead, so
 * that it has fully arrived when the peak leaves the delay line. No sample that leaves is above
 * the ceiling, whatever came in: infinities are clipped, and what is not a number is silence. */
#ifndef LIMITER_H
#define LIMITER_H

enum { limiter_max_channels = 2 };

typedef struct Limiter Limiter;

typedef struct LimiterSettings {
    double threshold_db; /* -30 to 0: this level in becomes the ceiling out */
    double ceiling_db;   /* -24 to 0: the level that no sample exceeds */
    double release_ms;   /* 5 to 2000: time in which the open cell recovers two thirds */
    double character;    /* 0 to 1: from a straight wire to a hot tube */
} LimiterSettings;

/* Null when there is no memory, or for a rate outside 1,000 to 1,000,000 Hz or a number of
   channels outside 1 to 2. Freed with limiter_free, which ignores null. */
Limiter* limiter_new(unsigned channels, unsigned long sample_rate);
void limiter_free(Limiter* limiter);

/* Forgets all sound heard so far; the next settings apply at once instead of gliding in. */
void limiter_reset(Limiter* limiter);

/* Settings out of range are moved into it. Inputs are only read; an output may be the same buffer
   as its input. */
void limiter_run(Limiter* limiter, const LimiterSettings* settings, float* const inputs[],
                 float* const outputs[], unsigned long frames);

/* The deepest gain reduction of the last limiter_run, in decibels, 0 or above. */
float limiter_reduction_db(const Limiter* limiter);

/* Frames by which the output is later than the input. */
unsigned limiter_latency(const Limiter* limiter);

#endif
