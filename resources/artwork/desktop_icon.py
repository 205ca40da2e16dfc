#!/usr/bin/env python3
"""Makes desktop_icon.png from the picture in desktop_icon.txt.

The icon is a 48x48 RGBA PNG of exactly FILE_BYTES bytes, a size that the program knows at build
time. The picture is compressed as well as zlib can, over many choices of row filters, and a text
chunk fills the file up to its size. The result is the same bytes on every run of one zlib version.

    desktop_icon.py desktop_icon.txt desktop_icon.png
"""
import random
import re
import struct
import sys
import zlib

SIDE = 48
FILE_BYTES = 304
CHANNELS = 4
TITLE = b"Title\0"
FILLER = b"QB20 limiter: peaks held under the ceiling. "


def read_picture(path):
    """Rows of RGBA bytes. A legend line is: letter = RRGGBB alpha step-per-row r g b."""
    legend, drawing = {}, []
    for line in open(path, encoding="ascii"):
        line = line.rstrip("\n")
        entry = re.fullmatch(
            r"(\S) = ([0-9a-f]{6}) (\d+)(?: from (\d+) step (-?\d+) (-?\d+) (-?\d+))?", line)
        if entry:
            letter, colour, alpha, first, *steps = entry.groups()
            legend[letter] = (bytes.fromhex(colour), int(alpha), int(first or 0),
                              [int(step or 0) for step in steps])
        elif line and not line.startswith("#"):
            drawing.append(line)
    if len(drawing) != SIDE or any(len(line) != SIDE for line in drawing):
        sys.exit(f"{path}: the drawing must be {SIDE} rows of {SIDE} letters")
    rows = []
    for y, line in enumerate(drawing):
        row = bytearray()
        for letter in line:
            if letter not in legend:
                sys.exit(f"{path}: row {y} uses '{letter}', which the legend does not explain")
            colour, alpha, first, steps = legend[letter]
            row += bytes(max(0, min(255, value + step * (y - first)))
                         for value, step in zip(colour, steps))
            row.append(alpha)
        rows.append(bytes(row))
    return rows


def filtered(kind, row, above):
    """One row in PNG's filter of that kind, the kind byte first."""
    out = bytearray([kind])
    for x, value in enumerate(row):
        left = row[x - CHANNELS] if x >= CHANNELS else 0
        up = above[x]
        corner = above[x - CHANNELS] if x >= CHANNELS else 0
        nearest = min((left, up, corner), key=lambda near: abs(left + up - corner - near))
        out.append((value - (0, left, up, (left + up) // 2, nearest)[kind]) & 255)
    return bytes(out)


def deflate(data):
    """The shortest zlib stream of zlib's two strategies that suit pictures."""
    best = None
    for strategy in (zlib.Z_DEFAULT_STRATEGY, zlib.Z_FILTERED):
        packer = zlib.compressobj(9, zlib.DEFLATED, 15, 9, strategy)
        stream = packer.compress(data) + packer.flush()
        if best is None or len(stream) < len(best):
            best = stream
    return best


def compress(rows):
    """Tries row filters from several starts, keeping every change that makes the stream shorter."""
    blank = bytes(SIDE * CHANNELS)
    choices = [[filtered(kind, row, above) for kind in range(5)]
               for row, above in zip(rows, [blank] + rows[:-1])]
    chance = random.Random(48)
    best = None
    for start in (0, 2):  # None and Up: flat areas and even gradients start well from these
        kinds = [start] * SIDE
        current = deflate(b"".join(choices[y][kinds[y]] for y in range(SIDE)))
        order = [(y, kind) for y in range(SIDE) for kind in range(5)]
        improved = True
        while improved:
            improved = False
            chance.shuffle(order)
            for y, kind in order:
                if kinds[y] == kind:
                    continue
                trial = kinds[:y] + [kind] + kinds[y + 1:]
                stream = deflate(b"".join(choices[row][trial[row]] for row in range(SIDE)))
                if len(stream) < len(current):
                    kinds, current, improved = trial, stream, True
        if best is None or len(current) < len(best):
            best = current
    return best


def chunk(name, body):
    return struct.pack(">I", len(body)) + name + body + struct.pack(">I", zlib.crc32(name + body))


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: desktop_icon.py DRAWING.txt ICON.png")
    header = chunk(b"IHDR", struct.pack(">IIBBBBB", SIDE, SIDE, 8, 6, 0, 0, 0))
    pixels = chunk(b"IDAT", compress(read_picture(sys.argv[1])))
    signature, end = b"\x89PNG\r\n\x1a\n", chunk(b"IEND", b"")
    room = FILE_BYTES - len(signature + header + pixels + end)
    text = b""
    if room != 0:
        length = room - len(chunk(b"tEXt", TITLE))
        if length < 0:
            sys.exit(f"{sys.argv[1]}: the drawing is {-length} bytes too rich for {FILE_BYTES}; "
                     "use fewer different rows or colours")
        text = chunk(b"tEXt", TITLE + (FILLER * FILE_BYTES)[:length])
    with open(sys.argv[2], "wb") as icon:
        icon.write(signature + header + text + pixels + end)
    print(f"{sys.argv[2]}: {FILE_BYTES} bytes, {room} of them text")


main()
