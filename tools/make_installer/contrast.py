"""Whether white text can be read on a background picture, as the build has converted it."""

import struct

HEADER = struct.Struct(">4sIIIII")  # magic, length, type, bytes a row, width, height
LEAST = 4.5  # to 1: what accessibility guidelines ask of text of this size
LINES = 12
FIRST_BASELINE = 24  # rows of the picture
LINE_STEP = 16
INK = 12  # rows that a line's letters take above and below its baseline
BELOW = 3
MARGIN = 10  # columns at either side that text keeps off
CELL = 20  # columns: about the width of two letters


def linear(level):
    part = level / 255
    return part / 12.92 if part <= 0.04045 else ((part + 0.055) / 1.055) ** 2.4


LINEAR = [linear(level) for level in range(256)]


def contrast_with_white(luminance):
    return 1.05 / (luminance + 0.05)


def cells(blob):
    """(line, column, luminance) of each small area that letters may stand on."""
    _, _, _, row_bytes, width, _ = HEADER.unpack_from(blob)
    pixels = memoryview(blob)[HEADER.size :]
    for line in range(LINES):
        top = FIRST_BASELINE + line * LINE_STEP + BELOW - INK
        for left in range(MARGIN, width - MARGIN - CELL + 1, CELL):
            total = [0.0, 0.0, 0.0]
            for row in range(top, top + INK):
                begin = row * row_bytes + 4 * left
                piece = pixels[begin : begin + 4 * CELL]
                for channel in range(3):
                    total[channel] += sum(LINEAR[level] for level in piece[channel::4])
            red, green, blue = (value / (INK * CELL) for value in total)
            yield line, left, 0.2126 * red + 0.7152 * green + 0.0722 * blue


def worst_place(path):
    """(contrast, row, column) where white text is hardest to read, in the converted picture."""
    with open(path, "rb") as file:
        blob = file.read()
    line, left, luminance = max(cells(blob), key=lambda cell: cell[2])
    row = FIRST_BASELINE + line * LINE_STEP
    return contrast_with_white(luminance), row, left + CELL // 2


def complaint_about(path):
    """What is wrong with the picture and what mends it, or None."""
    contrast, row, column = worst_place(path)
    if contrast >= LEAST:
        return None
    wrong = f"white text on it has a contrast of {contrast:.1f} to 1 at row {row}, column {column}"
    return f"{wrong}; make its upper 210 rows darker, for {LEAST} to 1"
