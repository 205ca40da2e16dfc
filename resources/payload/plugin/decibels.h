/* decibels.h: decibels to gain and back, without the mathematics library, so that the plug-in
   needs nothing of its host but the C library. */
#ifndef DECIBELS_H
#define DECIBELS_H

/* For -200 to 200 dB, good to 1e-12. */
static inline double gain_of_decibels(double decibels) {
    /* e^x by its series for a small fraction of x, then squared back up. */
    const double x = decibels * 0.11512925464970228 / 256.0;
    double gain = 1.0 + x * (1.0 + x / 2.0 * (1.0 + x / 3.0 * (1.0 + x / 4.0 * (1.0 + x / 5.0))));
    for (int squaring = 0; squaring < 8; ++squaring) {
        gain *= gain;
    }
    return gain;
}

/* For gains in (0, 1], good to 1e-6 dB; anything smaller than 1e-10 counts as -200 dB. */
static inline double decibels_of_gain(double gain) {
    if (!(gain > 1e-10)) {
        return -200.0;
    }
    double decibels = 0.0;
    while (gain < 0.70710678118654752) {
        gain *= 2.0;
        decibels -= 6.0205999132796239;
    }
    /* ln g = 2 artanh((g - 1) / (g + 1)) */
    const double t = (gain - 1.0) / (gain + 1.0);
    const double s = t * t;
    const double series = 1.0 + s * (1.0 / 3.0 + s * (1.0 / 5.0 + s * (1.0 / 7.0 + s / 9.0)));
    return decibels + 2.0 * t * series * 8.6858896380650366;
}

#endif
