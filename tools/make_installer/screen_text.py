"""How wide a text is on the installer's screens, in design pixels, by the font's own metrics."""

import functools
import os

LONGEST_LINE = 62  # bytes of a line on the message panel
WIDEST_TITLE = 540  # pixels: the folder browser has 640, and a box stands around its title
WIDEST_LINE = 580  # pixels: the panel has 600, and text keeps off its edges

METRICS = os.path.join(
    os.path.dirname(os.path.abspath(__file__)), "..", "..", "resources", "font", "font_metrics.txt"
)


@functools.lru_cache(maxsize=1)
def advances():
    """Advance of each printable character of the font."""
    found = {}
    with open(METRICS, encoding="utf-8") as file:
        for line in file:
            words = line.split("  #")[0].split()
            if len(words) == 6 and words[0].isdigit():
                found[int(words[0])] = int(words[3])
    return found


def unknown_character(text):
    """The first character that the font cannot show, or None."""
    for character in text:
        code = ord(character)
        if not (32 <= code < 127 or 160 <= code < 256):
            return character
    return None


def width(text):
    return sum(advances().get(ord(character), 0) for character in text)
