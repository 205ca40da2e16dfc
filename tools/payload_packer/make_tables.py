"""The curves of the QB20 limiter: the tube's gain, the peak detector's kernels, the optical release.

The shapes here must agree with resources/payload/plugin/limiter_tables.h.
"""

import array
import math
import sys

TUBE_ROWS = 21
TUBE_POINTS = 64001
TUBE_RANGE = 4.0
PEAK_PHASES = 3
PEAK_TAPS = 32


def little_endian(values):
    if sys.byteorder != "little":
        values.byteswap()
    return values.tobytes()


def tube_gains():
    """Gain f(x) / x of each row and point, where f is a biased triode-like curve of slope 1 at 0."""
    gains = []
    for row in range(TUBE_ROWS):
        character = row / (TUBE_ROWS - 1)
        if row == 0:
            gains.extend([1.0] * TUBE_POINTS)
            continue
        steepness = 1.4 * character
        bias = 0.18 * character
        rest = math.tanh(bias)
        slope = steepness * (1.0 - rest * rest)
        for point in range(TUBE_POINTS):
            level = TUBE_RANGE * (2.0 * point / (TUBE_POINTS - 1) - 1.0)
            if level == 0.0:
                gains.append(1.0)
            else:
                gains.append((math.tanh(steepness * level + bias) - rest) / (slope * level))
    return gains


def quantised(gains, steps):
    """The gains as 32-bit floats, rounded to 1/steps. The error scales with the signal, so that it
    stays as far below a quiet note as below a loud one."""
    rounded = [math.floor(gain * steps + 0.5) / steps for gain in gains]
    return little_endian(array.array("f", rounded))


def peak_kernels():
    """Kernels that give the level at 1/4, 2/4 and 3/4 of the way between the two middle taps."""
    taps = []
    for phase in range(1, PEAK_PHASES + 1):
        centre = PEAK_TAPS / 2 - 1 + phase / (PEAK_PHASES + 1)
        kernel = []
        for tap in range(PEAK_TAPS):
            distance = tap - centre
            sinc = math.sin(math.pi * distance) / (math.pi * distance)
            window = math.cos(math.pi * distance / (PEAK_TAPS + 1)) ** 2
            kernel.append(sinc * window)
        total = sum(kernel)
        taps.extend(tap / total for tap in kernel)
    return little_endian(array.array("f", taps))


def release_rates(points):
    """The optical cell's pace: a third of the speed when it is deep, full speed near open."""
    rates = []
    for point in range(points):
        gain = point / (points - 1)
        rate = 1.0 / 3.0 + 2.0 / 3.0 * gain * gain * (3.0 - 2.0 * gain)
        rates.append(math.floor(rate * 65536.0 + 0.5) / 65536.0)
    return little_endian(array.array("d", rates))
