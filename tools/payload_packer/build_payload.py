#!/usr/bin/env python3
"""Builds the QB20 plug-in from its source and packs it to the figures the product is fixed to.

    build_payload.py --work BUILD_FOLDER --output payload.tar.gz

The installer's build does not run this: it embeds the archive that is kept beside the source, so
that every machine ships the same bytes. Run it after a change to the plug-in, then replace the
archive. Whatever the compiler makes of the code, the figures come out exactly:

- the plug-in's size, by the number of points of the release curve (eight bytes each);
- the archive's size, roughly by how many of the tube's points are kept one bit finer, and the last
  few bytes by a comment in the gzip header.
"""

import argparse
import os
import shutil
import subprocess
import sys

import make_tables
import pack_archive

PLUGIN_BYTES = 5406136
TAR_BYTES = 5416960
ARCHIVE_BYTES = 1058756
MEMBER = "QB20.so"
MEMBER_MODE = 0o666
COARSE_STEPS = 2**15
FINE_STEPS = 2**16
MOST_COMMENT = 200  # bytes
COMMENT = "QB20 Vintage Marlow Limiter Plug-in "

SOURCE = os.path.join(
    os.path.dirname(os.path.abspath(__file__)), "..", "..", "resources", "payload", "plugin"
)
COMPILE = ["-std=c11", "-O2", "-fPIC", "-fvisibility=hidden", "-ffp-contract=off", "-fno-ident"]
COMPILE += ["-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Wshadow", "-Werror"]
LINK = ["-shared", "-s", "-Wl,--build-id=none,-z,noexecstack,-z,relro,-z,now,--no-undefined"]
LINK += [f"-Wl,-soname,{MEMBER}"]


class Builder:
    """The plug-in in its build folder; each change of a table links it anew."""

    def __init__(self, compiler, work):
        self.compiler = compiler
        self.work = work
        self.plugin = os.path.join(work, MEMBER)
        gains = make_tables.tube_gains()
        self.coarse = make_tables.quantised(gains, COARSE_STEPS)
        self.fine = make_tables.quantised(gains, FINE_STEPS)
        self.write("peak_kernel.bin", make_tables.peak_kernels())
        self.fine_points = 0
        self.release_points = 1024
        self.objects = []
        for name in ("qb20", "limiter"):
            self.objects.append(self.path(name + ".o"))
            source = os.path.join(SOURCE, name + ".c")
            self.run([compiler, *COMPILE, "-c", source, "-o", self.objects[-1]])

    def path(self, name):
        return os.path.join(self.work, name)

    def write(self, name, content):
        with open(self.path(name), "wb") as file:
            file.write(content)

    def run(self, command):
        subprocess.run(command, check=True)

    def link(self):
        """Links the plug-in with the present tables; its size in bytes."""
        split = 4 * self.fine_points
        self.write("tube_gain.bin", self.fine[:split] + self.coarse[split:])
        self.write("release_rate.bin", make_tables.release_rates(self.release_points))
        tables = self.path("limiter_tables.o")
        assembly = os.path.join(SOURCE, "limiter_tables.S")
        include = f"-Wa,-I,{self.work}"
        self.run([self.compiler, include, "-I", self.work, "-c", assembly, "-o", tables])
        self.run([self.compiler, *LINK, *self.objects, tables, "-o", self.plugin])
        return os.path.getsize(self.plugin)

    def fit_plugin(self):
        missing = PLUGIN_BYTES - self.link()
        self.release_points += missing // 8
        if missing % 8 != 0 or self.release_points < 16 or self.link() != PLUGIN_BYTES:
            sys.exit(f"build_payload: the plug-in cannot be brought to {PLUGIN_BYTES} bytes")

    def packed(self, fine_points):
        self.fine_points = fine_points
        self.link()
        tar = pack_archive.tar_bytes([self.plugin], MEMBER_MODE)
        if len(tar) != TAR_BYTES:
            sys.exit(f"build_payload: the tar archive has {len(tar)} bytes, not {TAR_BYTES}")
        return tar, pack_archive.gzip_bytes(tar)

    def fit_archive(self):
        """The archive, exactly to size: more fine points make it larger."""
        low, high = 0, len(self.fine) // 4
        while low <= high:
            middle = (low + high) // 2
            tar, archive = self.packed(middle)
            missing = ARCHIVE_BYTES - len(archive)
            if 0 <= missing <= MOST_COMMENT:
                comment = pack_archive.comment_of(missing, COMMENT)
                return pack_archive.gzip_bytes(tar, comment)
            if missing < 0:
                high = middle - 1
            else:
                low = middle + 1
        sys.exit(f"build_payload: the archive cannot be brought to {ARCHIVE_BYTES} bytes")


def main():
    parser = argparse.ArgumentParser(description="Builds and packs the QB20 plug-in.")
    parser.add_argument("--work", required=True, help="folder for what is made on the way")
    parser.add_argument("--output", required=True, help="the archive to write")
    parser.add_argument("--compiler", default=os.environ.get("CC", "cc"))
    arguments = parser.parse_args()
    os.makedirs(arguments.work, exist_ok=True)
    if shutil.which(arguments.compiler) is None:
        sys.exit(f"build_payload: no compiler {arguments.compiler}")
    builder = Builder(arguments.compiler, arguments.work)
    builder.fit_plugin()
    archive = builder.fit_archive()
    with open(arguments.output, "wb") as output:
        output.write(archive)
    print(
        f"{arguments.output}: {len(archive)} bytes, {MEMBER} with {builder.release_points} release"
        f" points and {builder.fine_points} fine tube points"
    )


if __name__ == "__main__":
    main()
