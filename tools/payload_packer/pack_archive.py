#!/usr/bin/env python3
"""Packs files and folders into the gzip'd tar archive that an installer carries.

The same input gives the same bytes: names are sorted, the owner is root/root, all have one time
and modes are set here, whatever they are on the maker's disk. Each file or folder given becomes a
top-level member; nothing above it is recorded, so that unpacking never touches the folder it is
unpacked into.

    pack_archive.py --output payload.tar.gz [--file-mode 0644] FILE_OR_FOLDER...
"""

import argparse
import io
import os
import stat
import struct
import sys
import tarfile
import zlib

MEMBER_TIME = 1704067200  # 2024-01-01: no clock is so far behind that tar complains of the future


class PackingError(Exception):
    """The input cannot be packed; the text says which file and why."""


def members_of(path, name, left_out=lambda name: False):
    """(path, archive name) of a file, or of a folder and all that is in it, in sorted order; without
    what left_out says of the bare name of."""
    yield path, name
    if os.path.isdir(path) and not os.path.islink(path):
        for entry in sorted(os.listdir(path), key=os.fsencode):
            if not left_out(entry):
                yield from members_of(os.path.join(path, entry), f"{name}/{entry}", left_out)


def top_members(paths):
    """The members of several files and folders, each at the top."""
    for top in sorted(paths, key=lambda path: os.path.basename(os.path.abspath(path))):
        yield from members_of(top, os.path.basename(os.path.abspath(top)))


def member_header(path, name, file_mode, time):
    status = os.lstat(path)
    member = tarfile.TarInfo(name)
    member.mtime = time
    member.uname = member.gname = "root"
    if stat.S_ISDIR(status.st_mode):
        member.type = tarfile.DIRTYPE
        member.mode = 0o755
    elif stat.S_ISREG(status.st_mode):
        member.size = status.st_size
        executable = bool(status.st_mode & stat.S_IXUSR)
        member.mode = file_mode if file_mode is not None else 0o755 if executable else 0o644
    elif stat.S_ISLNK(status.st_mode):
        member.type = tarfile.SYMTYPE
        member.linkname = os.readlink(path)
        member.mode = 0o777
    else:
        raise PackingError(f"{path}: neither a file nor a folder nor a link")
    return member


class CountedReader:
    """A file that tells how many bytes were read from it."""

    def __init__(self, file, tell):
        self.file = file
        self.tell = tell

    def read(self, size=-1):
        data = self.file.read(size)
        self.tell(len(data))
        return data


def write_tar(output, members, file_mode=None, time=MEMBER_TIME, tell=lambda count: None):
    """Writes the archive of (path, archive name) pairs, blocked to 10,240 bytes as tar does by
    itself. Nothing is kept in memory; tell gets the counts of bytes as they are read."""
    with tarfile.open(
        fileobj=output, mode="w|", format=tarfile.GNU_FORMAT, bufsize=tarfile.RECORDSIZE
    ) as archive:
        for path, name in members:
            member = member_header(path, name, file_mode, time)
            if not member.isreg():
                archive.addfile(member)
                continue
            with open(path, "rb") as content:
                if os.fstat(content.fileno()).st_size != member.size:
                    raise PackingError(f"{path}: changed while it was packed")
                try:
                    archive.addfile(member, CountedReader(content, tell))
                except OSError as error:
                    if error.errno is not None:
                        raise
                    raise PackingError(f"{path}: changed while it was packed") from None


class GzipWriter:
    """Writes one gzip member without name or time. The comment, if any, ends with a zero."""

    def __init__(self, output, comment=b"", level=9):
        self.output = output
        self.deflater = zlib.compressobj(level, zlib.DEFLATED, -zlib.MAX_WBITS, 9)
        self.checksum = 0
        self.length = 0
        flags = 0x10 if comment else 0
        output.write(struct.pack("<BBBBIBB", 0x1F, 0x8B, 8, flags, 0, 2, 3) + comment)

    def write(self, data):
        self.checksum = zlib.crc32(data, self.checksum)
        self.length += len(data)
        self.output.write(self.deflater.compress(data))

    def close(self):
        tail = struct.pack("<II", self.checksum, self.length & 0xFFFFFFFF)
        self.output.write(self.deflater.flush() + tail)


def tar_bytes(paths, file_mode=None):
    """The archive of the files and folders as bytes."""
    buffer = io.BytesIO()
    write_tar(buffer, top_members(paths), file_mode)
    return buffer.getvalue()


def gzip_bytes(data, comment=b""):
    """The data in one gzip member."""
    buffer = io.BytesIO()
    writer = GzipWriter(buffer, comment)
    writer.write(data)
    writer.close()
    return buffer.getvalue()


def comment_of(length, text):
    """A gzip comment that takes exactly this many bytes: the text, padded or cut, and a zero."""
    if length == 0:
        return b""
    return text.encode("ascii").ljust(length - 1, b".")[: length - 1] + b"\0"


def main():
    parser = argparse.ArgumentParser(description="Packs the archive that an installer carries.")
    parser.add_argument("--output", required=True)
    parser.add_argument("--file-mode", type=lambda text: int(text, 8), default=None)
    parser.add_argument("paths", nargs="+")
    arguments = parser.parse_args()
    try:
        with open(arguments.output, "wb") as output:
            packed = GzipWriter(output)
            write_tar(packed, top_members(arguments.paths), arguments.file_mode)
            packed.close()
    except (OSError, PackingError) as error:
        sys.exit(f"pack_archive: {error}")


if __name__ == "__main__":
    main()
