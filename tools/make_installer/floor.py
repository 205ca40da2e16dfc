#!/usr/bin/env python3
"""Which symbols keep an executable from the oldest distributions that installers are made for.

floor.py EXECUTABLE prints each of them and ends with status 1 when there are any.
"""

import re
import sys

import elf_facts

OLDEST_GLIBC = (2, 17)

# libX11 has no symbol versions; these are younger than 1.6.
YOUNGER_IN_X11 = {"XSetIOErrorExitHandler": "1.7", "XFreeThreads": "1.8.3"}


def is_old_enough(version):
    match = re.fullmatch(r"GLIBC_(\d+(?:\.\d+)*)", version)
    return match is not None and tuple(map(int, match[1].split("."))) <= OLDEST_GLIBC


def symbols_above(path):
    """Names of symbols, such as pthread_create@GLIBC_2.34, and of versions that no symbol has."""
    text = elf_facts.readelf(path, "--dyn-syms", "--version-info")
    found = set()
    named = set()
    for binding, _, section, symbol in elf_facts.SYMBOL_LINE.findall(text):
        name, _, version = symbol.partition("@")
        if section != "UND":
            continue
        if version and not is_old_enough(version):
            found.add(symbol)
            named.add(version)
        elif name in YOUNGER_IN_X11 and binding != "WEAK":
            found.add(f"{name}, libX11 {YOUNGER_IN_X11[name]}")
    versions = re.findall(r"Name: (\S+)\s+Flags:", text)
    found.update(v for v in versions if not is_old_enough(v) and v not in named)
    return sorted(found)


def main():
    above = symbols_above(sys.argv[1])
    for symbol in above:
        print(symbol)
    sys.exit(1 if above else 0)


if __name__ == "__main__":
    main()
