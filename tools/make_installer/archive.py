"""Packs the archive that an installer carries, as a stream, and only when something changed."""

import hashlib
import lzma
import os
import stat
import time

import packer_path  # noqa: F401
import pack_archive
from progress import BytesProgress

# The program's addresses end at 2 GiB, and it has more to hold than the archive.
LARGEST = 2**31 - 2**26  # bytes
COMPRESSIONS = ("gzip", "xz")
DICTIONARY = 64 * 2**20  # bytes: what unpacking xz takes of the person's memory


class ArchiveError(Exception):
    """The archive cannot be made; the text says why and what mends it."""


class XzWriter:
    """Writes an xz file with the best ratio that the person's memory allows."""

    def __init__(self, output):
        self.output = output
        self.compressor = lzma.LZMACompressor(
            format=lzma.FORMAT_XZ, filters=[{"id": lzma.FILTER_LZMA2, "preset": 9, "dict_size": DICTIONARY}]
        )

    def write(self, data):
        self.output.write(self.compressor.compress(data))

    def close(self):
        self.output.write(self.compressor.flush())


class BoundedFile:
    """A file that refuses to become larger than an installer can carry."""

    def __init__(self, file):
        self.file = file
        self.written = 0

    def write(self, data):
        self.written += len(data)
        if self.written > LARGEST:
            limit = "an installer carries at most 1.9 GB"
            raise ArchiveError(f"the packed plug-in is too large: {limit}; ship the rest by itself")
        self.file.write(data)


def newest_time(members):
    """The time that all members get: SOURCE_DATE_EPOCH, or that of the newest file."""
    given = os.environ.get("SOURCE_DATE_EPOCH")
    if given:
        if not given.isascii() or not given.isdigit() or len(given) > 11:
            mend = "set it to seconds since 1970, or not at all"
            raise ArchiveError(f"SOURCE_DATE_EPOCH is {given!r}; {mend}")
        return int(given)
    times = [int(status.st_mtime) for status in map(os.lstat, (path for path, _ in members))
             if not stat.S_ISDIR(status.st_mode)]
    return max([0, *times])


def lies_ahead(seconds):
    """Whether a time is one that tar would complain of."""
    return seconds > time.time() + 60


def fingerprint(members, member_time, compression):
    """Changes whenever the archive could."""
    digest = hashlib.sha256()
    for module in (pack_archive.__file__, __file__):
        with open(module, "rb") as file:
            digest.update(file.read())
    digest.update(f"{member_time} {compression}\n".encode())
    for path, name in members:
        status = os.lstat(path)
        target = os.readlink(path) if stat.S_ISLNK(status.st_mode) else ""
        facts = (status.st_mode, status.st_dev, status.st_ino)
        # A folder's times and size change with what is left out of it.
        if not stat.S_ISDIR(status.st_mode):
            facts += (status.st_size, status.st_mtime_ns, status.st_ctime_ns)
        digest.update(repr((os.fsencode(name), facts, os.fsencode(target))).encode())
    return digest.hexdigest()


def recorded(path):
    try:
        with open(path + ".key", encoding="ascii") as file:
            key, length = file.read().split()
        return key if os.path.getsize(path) == int(length) else None
    except (OSError, ValueError):
        return None


def same_bytes(one, other):
    """Whether both files are there and alike, without a word of either being kept."""
    try:
        if os.path.getsize(one) != os.path.getsize(other):
            return False
        with open(one, "rb") as first, open(other, "rb") as second:
            while True:
                piece = first.read(2**20)
                if piece != second.read(2**20):
                    return False
                if not piece:
                    return True
    except FileNotFoundError:
        return False


def pack(path, members, member_time, compression):
    """Makes the archive of (path, archive name) pairs at path, and nothing when it is there already;
    whether it was made. It appears whole or not at all, and keeps its time where its bytes stay."""
    key = fingerprint(members, member_time, compression)
    if recorded(path) == key:
        return False
    os.makedirs(os.path.dirname(path), exist_ok=True)
    unfinished = path + ".unfinished"
    total = sum(
        status.st_size
        for status in (os.lstat(source) for source, _ in members)
        if stat.S_ISREG(status.st_mode)
    )
    progress = BytesProgress("Packing", total)
    try:
        with open(unfinished, "wb") as file:
            output = BoundedFile(file)
            packed = XzWriter(output) if compression == "xz" else pack_archive.GzipWriter(output)
            pack_archive.write_tar(packed, members, time=member_time, tell=progress.count)
            packed.close()
        if same_bytes(unfinished, path):
            os.unlink(unfinished)
        else:
            os.replace(unfinished, path)
    except pack_archive.PackingError as error:
        raise ArchiveError(f"{error}; try again when nothing writes to it") from None
    finally:
        progress.end()
        if os.path.exists(unfinished):
            os.unlink(unfinished)
    with open(path + ".key", "w", encoding="ascii") as file:
        file.write(f"{key} {os.path.getsize(path)}\n")
    return True
