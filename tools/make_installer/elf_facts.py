"""What ELF files say of themselves, as readelf reads them: the one place that reads its output."""

import dataclasses
import os
import re
import subprocess

MAGIC = b"\x7fELF"

# readelf's name of a processor, and the class of its ELF files, to the name that people use.
PROCESSORS = {
    ("Advanced Micro Devices X86-64", "ELF64"): "x86-64",
    ("Advanced Micro Devices X86-64", "ELF32"): "x32",
    ("Intel 80386", "ELF32"): "i386",
    ("AArch64", "ELF64"): "arm64",
    ("ARM", "ELF32"): "arm",
    ("RISC-V", "ELF64"): "riscv64",
    ("PowerPC64", "ELF64"): "ppc64",
}

HEADER_LINE = re.compile(r"^  (Class|Type|Machine): +(.*)$", re.M)
SYMBOL_LINE = re.compile(r"^ +\d+: [0-9a-f]+ +\S+ +\w+ +(\w+) +(\w+) .*?(\S+) (\S+)(?: \(\d+\))?$", re.M)
VERSION = re.compile(r"@@?([A-Z][A-Z0-9]*)_([0-9.]+)")


class ElfError(Exception):
    """The file begins like an ELF file but cannot be read as one."""


@dataclasses.dataclass(frozen=True)
class ElfFacts:
    """What is asked of an ELF file."""

    kind: str  # "shared object", "program", or what readelf calls it, as in "REL"
    processor: str  # one of PROCESSORS' names, or readelf's own
    needed: tuple  # file names of the libraries that it asks the loader for
    exported: frozenset  # names of the dynamic symbols that it defines, without versions
    imported: frozenset  # names of the ones that it lacks, with versions: "pow@GLIBC_2.29"

    def highest_versions(self):
        """The highest symbol version that it needs of each family, for example GLIBC: 2.34."""
        highest = {}
        for symbol in self.imported:
            for family, version in VERSION.findall(symbol):
                number = tuple(int(part) for part in version.split(".") if part)
                highest[family] = max(highest.get(family, ()), number)
        return {family: ".".join(map(str, number)) for family, number in sorted(highest.items())}


def readelf(path, *arguments):
    """readelf's output, in English whatever the maker's language is."""
    environment = dict(os.environ, LC_ALL="C")
    command = ["readelf", "--wide", *arguments, "--", os.path.abspath(path)]
    result = subprocess.run(
        command, env=environment, capture_output=True, text=True, errors="replace", check=False
    )
    # Of a file that is cut off or damaged it may print what it can, complain, and end with status 0.
    complaints = [line for line in result.stderr.splitlines() if "Error: " in line]
    if result.returncode != 0 or complaints:
        complaint = (complaints or result.stderr.strip().splitlines() or ["readelf cannot read it"])[0]
        raise ElfError(complaint.removeprefix("readelf: "))
    return result.stdout


def is_elf(path):
    """Whether the file begins as an ELF file does."""
    with open(path, "rb") as file:
        return file.read(len(MAGIC)) == MAGIC


def kind_of(header, dynamic):
    word = header.get("Type", "").split(" ")[0]
    if word == "EXEC" or (word == "DYN" and re.search(r"\(FLAGS_1\).*\bPIE\b", dynamic)):
        return "program"
    return "shared object" if word == "DYN" else word


def read_facts(path):
    """The facts of an ELF file; ElfError when it is none or is damaged, OSError when unreadable."""
    if not is_elf(path):
        raise ElfError("it is not an ELF file")
    text = readelf(path, "--file-header", "--dynamic", "--dyn-syms")
    header = {}
    for name, value in HEADER_LINE.findall(text):
        header.setdefault(name, value.strip())
    if not {"Class", "Type", "Machine"} <= header.keys():
        raise ElfError("its header is damaged")
    exported, imported = set(), set()
    for binding, visibility, section, symbol in SYMBOL_LINE.findall(text):
        if section == "UND":
            imported.add(symbol)
        elif binding != "LOCAL" and visibility in ("DEFAULT", "PROTECTED"):
            exported.add(symbol.split("@")[0])
    return ElfFacts(
        kind=kind_of(header, text),
        processor=PROCESSORS.get((header["Machine"], header["Class"]), header["Machine"]),
        needed=tuple(re.findall(r"\(NEEDED\).*\[(.*)\]", text)),
        exported=frozenset(exported),
        imported=frozenset(imported),
    )
