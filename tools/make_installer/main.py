#!/usr/bin/env python3
"""./make-installer: from a product folder to one executable that installs the product."""

import argparse
import errno
import os
import shutil
import signal
import sys

import archive
import building
import elf_facts
import handing_out
import making
import new_product
import processors
import staging
import trying
from settings_file import SettingsError
from wording import size, some_of, visible

INTERRUPTED = 128 + signal.SIGINT
ELSEWHERE = "work elsewhere with --build DIR and --output DIR"
SCARCE = 64 * 2**20  # bytes: a build that fails with less may have failed for that

NEXT_STEPS = """{folder} is laid out. Next:
  1. put your plug-in there, a file or a folder, and its name into {folder}/product.toml
  2. change the other settings there, each of which is described beside it
  3. draw your own pictures over the PNG files, or edit the SVG files and run ./draw-pictures.sh there
  4. ./make-installer {quoted}
Your installer contains this project's program and font; INSTALLER-LICENSES.txt has their terms.
"""


def said_of(error, places):
    """A failed system call, with what helps; places is where it worked, for one that names no file."""
    wrong = f"{visible(error.filename or ' or '.join(places))}: {error.strerror or error}"
    if error.errno in (errno.ENOSPC, errno.EDQUOT):
        return f"{wrong}; make room on that disk, or {ELSEWHERE}"
    if error.errno in (errno.EROFS, errno.EACCES, errno.EPERM):
        return f"{wrong}; make it writable, or {ELSEWHERE}"
    return wrong


def said_of_build(error, places):
    """A failed command; not every tool says that a full disk is what it met."""
    for number in (errno.ENOSPC, errno.EDQUOT):
        if os.strerror(number) in str(error):
            return f"{error}\nmake-installer: {os.strerror(number)}; make room on that disk, or {ELSEWHERE}"
    for place in places:
        if not os.path.isdir(place):
            continue
        free = shutil.disk_usage(place).free
        if free < SCARCE:
            wrong = f"{visible(place)}: only {size(free)} are left on that disk"
            return f"{error}\nmake-installer: {wrong}; make room there, or {ELSEWHERE}"
    return str(error)


def terminated(*_):
    raise KeyboardInterrupt


def main():
    parser = argparse.ArgumentParser(
        prog="make-installer", description="Makes an installer out of a product folder."
    )
    parser.add_argument("--new", action="store_true", help="lay out FOLDER to start from")
    parser.add_argument(
        "--try", action="store_true", dest="tried", help="make it, play it and take its pictures"
    )
    parser.add_argument("--for", metavar="PROCESSOR", dest="asked", help="x86-64 or arm64")
    parser.add_argument("--strict", action="store_true", help="take warnings as errors")
    parser.add_argument("--build", metavar="DIR", help="where to build (default: build/products/)")
    parser.add_argument("--output", metavar="DIR", help="where the installer goes (default: dist/)")
    parser.add_argument("folder", metavar="FOLDER", help="the product folder")
    arguments = parser.parse_args()
    for stream in (sys.stdout, sys.stderr):
        stream.reconfigure(errors="backslashreplace")  # whatever the locale can show
    signal.signal(signal.SIGTERM, terminated)
    folder = arguments.folder
    places = []
    try:
        if arguments.new:
            new_product.lay_out(folder)
            quoted = f"'{folder}'" if " " in folder else folder
            print(NEXT_STEPS.format(folder=folder, quoted=quoted), end="")
            return
        processor = processors.wanted(arguments.asked)
        own = making.build_folder_for(folder, processor)
        build_folder = os.path.abspath(arguments.build or own)
        output_folder = arguments.output or os.path.join(staging.REPOSITORY, "dist")
        places = [build_folder, output_folder]
        # The tour is the same for every product: one for all, unless there is a place for this run.
        tour_folder = os.path.join(arguments.build or os.path.join(staging.REPOSITORY, "build"), "try")
        making.make(
            folder,
            build_folder,
            output_folder,
            arguments.strict,
            arguments.asked,
            os.path.abspath(tour_folder) if arguments.tried else None,
        )
    except SettingsError as error:
        for complaint in some_of(error.complaints):
            print(complaint, file=sys.stderr)
        count = len(error.complaints)
        sys.exit(f"make-installer: nothing was built; {count} thing{'s'[:count > 1]} to mend")
    except building.BuildError as error:
        sys.exit(f"make-installer: {said_of_build(error, places)}")
    except (
        archive.ArchiveError,
        elf_facts.ElfError,
        handing_out.HandingOutError,
        new_product.FolderError,
        processors.ProcessorError,
        trying.TrialError,
    ) as error:
        sys.exit(f"make-installer: {visible(error)}")
    except OSError as error:
        sys.exit(f"make-installer: {said_of(error, places)}")
    except KeyboardInterrupt:
        print("\nmake-installer: stopped", file=sys.stderr)
        sys.exit(INTERRUPTED)


if __name__ == "__main__":
    main()
