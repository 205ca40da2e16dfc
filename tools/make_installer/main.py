#!/usr/bin/env python3
"""./make-installer: from a product folder to one executable that installs the product."""

import argparse
import hashlib
import io
import os
import re
import sys
import tarfile

import building
import elf_facts
import executable
import floor
import new_product
import settings
import staging

LISTED_MEMBERS = 20

NEXT_STEPS = """{folder} is laid out. Next:
  1. put your plug-in there, a file or a folder, and its name into {folder}/product.toml
  2. change the other settings there, each of which is described beside it
  3. draw your own pictures over the PNG files (the SVG files beside them can be edited)
  4. ./make-installer {quoted}
"""


def build_folder_for(folder):
    """A build folder of its own for each product folder, wherever that is."""
    path = os.path.realpath(folder)
    name = re.sub(r"[^A-Za-z0-9]+", "-", os.path.basename(path)).strip("-") or "product"
    digest = hashlib.sha256(path.encode(errors="surrogateescape")).hexdigest()[:8]
    return os.path.join(staging.REPOSITORY, "build", "products", f"{name}-{digest}")


def executable_name(values):
    version = re.sub(r"[^A-Za-z0-9.+-]+", "-", values["product_version"]).strip("-.") or "0"
    return f"{values['product_short_name']}-{version}-installer"


def listing(archive):
    with tarfile.open(archive) as members:
        for index, member in enumerate(members):
            if index == LISTED_MEMBERS:
                yield "..."
                return
            mode = tarfile.stat.filemode(member.mode | tarfile.stat.S_IFREG)[1:]
            kind = "d" if member.isdir() else "l" if member.issym() else "-"
            owner = f"{member.uname}/{member.gname}"
            yield f"{kind}{mode} {owner} {member.size:>10} {member.name}"


def summary(values, stage, path):
    with open(path, "rb") as file:
        content = file.read()
    facts = elf_facts.read_facts(path)
    versions = facts.highest_versions()
    out = io.StringIO()
    print(f"\n{path}", file=out)
    print(f"  product        {values['product_name']} {values['product_version']}", file=out)
    print(f"  size           {len(content)} bytes, {stage.archive_size} of them payload", file=out)
    print(f"  installs into  {values['default_install_folder']}, or where the person says", file=out)
    for index, line in enumerate(listing(stage.archive)):
        print(f"  {'payload' if index == 0 else '':14} {line}", file=out)
    print(f"  needs          {' '.join(facts.needed)}", file=out)
    print(f"  oldest libc    {versions.get('GLIBC', 'any')}", file=out)
    for symbol in floor.symbols_above(path):
        print(f"  NOT everywhere {symbol}", file=out)
    protections = executable.hardening(path)
    for present, word in ((True, "hardening"), (False, "NOT hardened")):
        names = ", ".join(name for name, there in protections.items() if there == present)
        if names:
            print(f"  {word:14} {names}", file=out)
    print(f"  sha256         {hashlib.sha256(content).hexdigest()}", file=out)
    return out.getvalue()


def make(folder, build_folder, output_folder):
    values = settings.read_settings(folder)
    staging.check_files(folder, values)
    print(f"Packing {values['product_name']} {values['product_version']}", flush=True)
    stage = staging.Stage(folder, values, build_folder)
    built = building.build(stage, os.path.join(build_folder, "cmake"))
    path = os.path.join(output_folder, executable_name(values))
    building.strip(built, path)
    print(summary(values, stage, path), end="")


def main():
    parser = argparse.ArgumentParser(
        prog="make-installer", description="Makes an installer out of a product folder."
    )
    parser.add_argument("--new", action="store_true", help="lay out FOLDER to start from")
    parser.add_argument("--build", metavar="DIR", help="where to build (default: build/products/)")
    parser.add_argument("--output", metavar="DIR", help="where the installer goes (default: dist/)")
    parser.add_argument("folder", metavar="FOLDER", help="the product folder")
    arguments = parser.parse_args()
    folder = arguments.folder
    try:
        if arguments.new:
            new_product.lay_out(folder)
            quoted = f"'{folder}'" if " " in folder else folder
            print(NEXT_STEPS.format(folder=folder, quoted=quoted), end="")
            return
        build_folder = os.path.abspath(arguments.build or build_folder_for(folder))
        output_folder = arguments.output or os.path.join(staging.REPOSITORY, "dist")
        make(folder, build_folder, output_folder)
    except settings.SettingsError as error:
        for complaint in error.complaints:
            print(complaint, file=sys.stderr)
        count = len(error.complaints)
        sys.exit(f"make-installer: nothing was built; {count} thing{'s'[:count > 1]} to mend")
    except (building.BuildError, new_product.FolderError) as error:
        sys.exit(f"make-installer: {error}")
    except OSError as error:
        sys.exit(f"make-installer: {error.filename}: {error.strerror}")
    except KeyboardInterrupt:
        sys.exit("make-installer: stopped")


if __name__ == "__main__":
    main()
