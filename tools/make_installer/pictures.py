"""Checks of a product's pictures before anything is built. The build's converter decodes them with
a full PNG library; this finds at once what a maker gets wrong: the format, the size, a broken file.
"""

import struct
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"
CHANNELS = {0: 1, 2: 3, 3: 1, 4: 2, 6: 4}  # by colour type
RGBA = 6


def chunks(data):
    """(kind, content) of each chunk; ValueError when one is cut off or damaged."""
    at = len(SIGNATURE)
    while at < len(data):
        if at + 12 > len(data):
            raise ValueError("it ends in the middle")
        length, kind = struct.unpack_from(">I4s", data, at)
        content = data[at + 8 : at + 8 + length]
        if at + 12 + length > len(data):
            raise ValueError("it ends in the middle")
        (checksum,) = struct.unpack_from(">I", data, at + 8 + length)
        if zlib.crc32(kind + content) != checksum:
            raise ValueError("a checksum is wrong")
        yield kind, content
        at += 12 + length
        if kind == b"IEND":
            return
    raise ValueError("it ends in the middle")


def complaint_about(path, width, height, needs_rgba):
    """What is wrong with the picture and what mends it, or None."""
    try:
        with open(path, "rb") as file:
            data = file.read()
    except FileNotFoundError:
        return f"there is no {path}; put the picture there or name another file"
    except OSError as error:
        return f"{path} cannot be read: {error.strerror}; name a readable PNG file"
    if not data.startswith(SIGNATURE):
        return f"{path} is not a PNG file; save the picture as an 8-bit RGB or RGBA PNG"
    try:
        parts = list(chunks(data))
        if not parts or parts[0][0] != b"IHDR" or len(parts[0][1]) != 13:
            raise ValueError("it has no header")
        columns, rows, depth, colour, _, _, interlaced = struct.unpack(">IIBBBBB", parts[0][1])
        if colour not in CHANNELS:
            raise ValueError("its header makes no sense")
        if (columns, rows) != (width, height):
            wrong = f"{path} is {columns}x{rows} pixels, but must be {width}x{height}"
            return f"{wrong}; scale or crop the picture to that size"
        if depth == 16:
            return f"{path} has 16 bits a channel; save the picture with 8 bits a channel"
        if needs_rgba and (colour != RGBA or depth != 8):
            return f"{path} is not RGBA; save the picture as an 8-bit PNG with transparency"
        pixels = zlib.decompress(b"".join(content for kind, content in parts if kind == b"IDAT"))
        bytes_a_row = (columns * CHANNELS[colour] * depth + 7) // 8
        if not interlaced and len(pixels) < rows * (bytes_a_row + 1):
            raise ValueError("rows are missing")
    except (ValueError, zlib.error, struct.error) as error:
        return f"{path} is a broken PNG ({error}); save the picture anew"
    return None
