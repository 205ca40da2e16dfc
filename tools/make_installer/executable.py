"""How the finished executable is hardened."""

import re

from elf_facts import readelf


def hardening(path):
    """Name and presence of each protection."""
    segments = readelf(path, "--segments")
    dynamic = readelf(path, "--dynamic")
    symbols = readelf(path, "--dyn-syms")
    stack = re.search(r"GNU_STACK.*?(R\S*)\s+0x", segments)
    return {
        "position independent": bool(re.search(r"FLAGS_1.*\bPIE\b", dynamic)),
        "full RELRO": "GNU_RELRO" in segments and bool(re.search(r"\bNOW\b", dynamic)),
        "no executable stack": stack is not None and "E" not in stack[1],
        "stack protector": "__stack_chk_fail" in symbols,
        "FORTIFY": bool(re.search(r"__\w+_chk@", symbols)),
    }
