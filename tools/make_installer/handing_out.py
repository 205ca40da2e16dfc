"""What a maker hands out: the executable, a .tar.gz of it, which keeps the x bit where a browser
does not, and a file of SHA-256 sums of both for sha256sum -c."""

import errno
import hashlib
import mmap
import os

import building
import packer_path  # noqa: F401
import pack_archive
from progress import BytesProgress

LARGE = 16 * 2**20  # bytes: what is carried is packed already, and packing it again takes long
EVERYBODY_RUNS = 0o755


class HandingOutError(Exception):
    """A file is in the way; the text says which and what mends it."""


def names_of(name):
    """The files that go out: executable, archive, sums."""
    return name, f"{name}.tar.gz", f"{name}.sha256"


def is_of(path, product_name):
    """Whether the file is an installer of that product: its name is in there as a whole text."""
    if os.path.getsize(path) == 0:
        return False
    with open(path, "rb") as file, mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ) as content:
        return content[:4] == b"\x7fELF" and content.find(product_name.encode() + b"\0") >= 0


def check_writable(folder):
    """OSError when nothing can be left in the folder, or it cannot be made: known before a long build."""
    there = os.path.abspath(folder)
    while not os.path.lexists(there):
        there = os.path.dirname(there)
    if not os.path.isdir(there):
        raise OSError(errno.ENOTDIR, os.strerror(errno.ENOTDIR), there)
    if not os.access(there, os.W_OK | os.X_OK):
        read_only = os.statvfs(there).f_flag & os.ST_RDONLY
        number = errno.EROFS if read_only else errno.EACCES
        raise OSError(number, os.strerror(number), there)


def check_place(folder, name, product_name):
    """HandingOutError when what lies there is not an earlier installer of this product; OSError when
    nothing can be left there."""
    check_writable(folder)
    path = os.path.join(folder, name)
    if not os.path.lexists(path):
        return
    if not os.path.isfile(path) or not is_of(path, product_name):
        mend = "remove it, or choose another product_short_name or --output"
        raise HandingOutError(f"{path} is there and is no installer of {product_name}; {mend}")


def sum_of(path):
    digest = hashlib.sha256()
    with open(path, "rb") as file:
        while piece := file.read(2**20):
            digest.update(piece)
    return digest.hexdigest()


def pack(executable, name, path, time):
    """Leaves a .tar.gz of the executable, under that name, at path."""
    size = os.path.getsize(executable)
    progress = BytesProgress("Packing it for the download", size)
    try:
        with open(path, "wb") as file:
            packed = pack_archive.GzipWriter(file, level=1 if size > LARGE else 9)
            pack_archive.write_tar(packed, [(executable, name)], EVERYBODY_RUNS, time, progress.count)
            packed.close()
    finally:
        progress.end()


def hand_out(built, folder, name, stage):
    """Leaves the three files in the folder, all whole or none; the executable's path and sum."""
    os.makedirs(folder, exist_ok=True)
    places = [os.path.join(folder, each) for each in names_of(name)]
    unfinished = [place + ".unfinished" for place in places]
    try:
        building.strip(built, unfinished[0], stage.processor)
        pack(unfinished[0], name, unfinished[1], stage.time)
        sums = [sum_of(path) for path in unfinished[:2]]
        with open(unfinished[2], "w", encoding="utf-8") as file:
            for each, digest in zip(names_of(name), sums):
                file.write(f"{digest}  {each}\n")
        for path, place in zip(unfinished, places):
            os.replace(path, place)
    finally:
        for path in unfinished:
            if os.path.exists(path):
                os.unlink(path)
    return places[0], sums[0]
