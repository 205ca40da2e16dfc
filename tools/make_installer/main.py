#!/usr/bin/env python3
"""./make-installer: from a product folder to one executable that installs the product."""

import argparse
import errno
import os
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
from wording import some_of, visible

INTERRUPTED = 128 + signal.SIGINT
ELSEWHERE = "work elsewhere with --build DIR and --output DIR"

NEXT_STEPS = """{folder} is laid out. Next:
  1. put your plug-in there, a file or a folder, and its name into {folder}/product.toml
  2. change the other settings there, each of which is described beside it
  3. draw your own pictures over the PNG files, or edit the SVG files and run ./draw-pictures.sh there
  4. ./make-installer {quoted}
Your installer contains this project's program and font; INSTALLER-LICENSES.txt has their terms.
"""


def said_of(error):
    """A failed system call, with what helps."""
    wrong = f"{visible(error.filename)}: {error.strerror}" if error.filename else str(error)
    if error.errno in (errno.ENOSPC, errno.EDQUOT):
        return f"{wrong}; make room on that disk, or {ELSEWHERE}"
    if error.errno in (errno.EROFS, errno.EACCES, errno.EPERM):
        return f"{wrong}; make it writable, or {ELSEWHERE}"
    return wrong


def said_of_build(error):
    full = os.strerror(errno.ENOSPC)
    if full in str(error):
        return f"{error}\nmake-installer: {full}; make room on that disk, or {ELSEWHERE}"
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
        making.make(
            folder, build_folder, output_folder, arguments.strict, arguments.asked, arguments.tried
        )
    except SettingsError as error:
        for complaint in some_of(error.complaints):
            print(complaint, file=sys.stderr)
        count = len(error.complaints)
        sys.exit(f"make-installer: nothing was built; {count} thing{'s'[:count > 1]} to mend")
    except building.BuildError as error:
        sys.exit(f"make-installer: {said_of_build(error)}")
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
        sys.exit(f"make-installer: {said_of(error)}")
    except KeyboardInterrupt:
        print("\nmake-installer: stopped", file=sys.stderr)
        sys.exit(INTERRUPTED)


if __name__ == "__main__":
    main()
