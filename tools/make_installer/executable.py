"""What an executable says of itself: needed libraries, symbol versions, hardening."""

import os
import re
import subprocess


def readelf(*arguments):
    environment = dict(os.environ, LC_ALL="C")
    return subprocess.run(
        ["readelf", "--wide", *arguments], env=environment, capture_output=True, text=True, check=True
    ).stdout


def needed_libraries(path):
    return re.findall(r"\(NEEDED\).*\[(.*)\]", readelf("--dynamic", path))


def highest_versions(path):
    """The highest symbol version that is needed of each family, for example GLIBC: 2.34."""
    highest = {}
    for line in readelf("--dyn-syms", path).splitlines():
        for family, version in re.findall(r"@@?([A-Z][A-Z0-9]*)_([0-9.]+)", line):
            number = tuple(int(part) for part in version.split("."))
            highest[family] = max(highest.get(family, ()), number)
    return {family: ".".join(map(str, number)) for family, number in sorted(highest.items())}


def hardening(path):
    """Name and presence of each protection."""
    segments = readelf("--segments", path)
    dynamic = readelf("--dynamic", path)
    symbols = readelf("--dyn-syms", path)
    stack = re.search(r"GNU_STACK.*?(R\S*)\s+0x", segments)
    return {
        "position independent": bool(re.search(r"FLAGS_1.*\bPIE\b", dynamic)),
        "full RELRO": "GNU_RELRO" in segments and bool(re.search(r"\bNOW\b", dynamic)),
        "no executable stack": stack is not None and "E" not in stack[1],
        "stack protector": "__stack_chk_fail" in symbols,
        "FORTIFY": bool(re.search(r"__\w+_chk@", symbols)),
    }
