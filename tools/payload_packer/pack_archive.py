#!/usr/bin/env python3
"""Packs files and folders into the gzip'd tar archive that an installer carries.

The same input gives the same bytes: names are sorted, the owner is root/root, the time is fixed
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


def members_of(path, name):
    """(path, archive name) of a file, or of a folder and all that is in it, in sorted order."""
    yield path, name
    if os.path.isdir(path) and not os.path.islink(path):
        for entry in sorted(os.listdir(path)):
            yield from members_of(os.path.join(path, entry), f"{name}/{entry}")


def member_header(path, name, file_mode):
    status = os.lstat(path)
    member = tarfile.TarInfo(name)
    member.mtime = MEMBER_TIME
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


def tar_bytes(paths, file_mode=None):
    """The archive of the files and folders, blocked to 10,240 bytes as tar does by itself."""
    buffer = io.BytesIO()
    with tarfile.open(fileobj=buffer, mode="w", format=tarfile.GNU_FORMAT) as archive:
        for top in sorted(paths, key=lambda path: os.path.basename(os.path.abspath(path))):
            for path, name in members_of(top, os.path.basename(os.path.abspath(top))):
                member = member_header(path, name, file_mode)
                if member.isreg():
                    with open(path, "rb") as content:
                        archive.addfile(member, content)
                else:
                    archive.addfile(member)
    return buffer.getvalue()


def gzip_bytes(data, comment=b""):
    """The data in one gzip member without name or time. The comment, if any, ends with a zero."""
    deflater = zlib.compressobj(9, zlib.DEFLATED, -zlib.MAX_WBITS, 9)
    deflated = deflater.compress(data) + deflater.flush()
    flags = 0x10 if comment else 0
    header = struct.pack("<BBBBIBB", 0x1F, 0x8B, 8, flags, 0, 2, 3)
    return header + comment + deflated + struct.pack("<II", zlib.crc32(data), len(data) & 0xFFFFFFFF)


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
        packed = gzip_bytes(tar_bytes(arguments.paths, arguments.file_mode))
        with open(arguments.output, "wb") as output:
            output.write(packed)
    except (OSError, PackingError) as error:
        sys.exit(f"pack_archive: {error}")


if __name__ == "__main__":
    main()
