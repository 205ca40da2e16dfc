/* limiter_tables.h: the limiter's precomputed curves, linked in as raw data (see make_tables.py).
 */
#ifndef LIMITER_TABLES_H
#define LIMITER_TABLES_H

#include <stddef.h>

/* Gain of the tube stage, f(x) / x, by position of the character control and by input level.
   Row 0 is a straight wire, the last row a hot valve. Levels go from -tube_range to tube_range. */
enum { tube_rows = 21, tube_points = 64001 };
#define tube_range 4.0F
extern const float tube_gain[tube_rows][tube_points];

/* Windowed-sinc kernels that find the level between two samples, at 1/4, 2/4 and 3/4 of the way. */
enum { peak_phases = 3, peak_taps = 32 };
extern const float peak_kernel[peak_phases][peak_taps];

/* How fast the optical cell lets go, relative to the release control, by the gain it stands at
   (0 = all closed, 1 = open). Any number of points of at least 2: the reader interpolates. */
extern const double release_rate[];
extern const double release_rate_end[];

static inline size_t release_points(void) {
    return (size_t)(release_rate_end - release_rate);
}

#endif
