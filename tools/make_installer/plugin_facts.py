"""What a plug-in is and what it needs, by the tools that its world uses: readelf for the libraries,
serdi and lv2ls for LV2 bundles. Nothing of it is loaded or run."""

import dataclasses
import os
import platform
import re
import shutil
import stat
import subprocess
import tempfile
import urllib.parse

import elf_facts

LV2, VST3, CLAP, LADSPA, DSSI = "LV2", "VST3", "CLAP", "LADSPA", "DSSI"
# What a library exports to be found, by format. DSSI's and LADSPA's may both be there: DSSI then.
ENTRIES = (
    (DSSI, "dssi_descriptor"),
    (DSSI, "dssi_configure"),
    (LV2, "lv2_descriptor"),
    (LV2, "lv2_lib_descriptor"),
    (CLAP, "clap_entry"),
    (VST3, "GetPluginFactory"),
    (LADSPA, "ladspa_descriptor"),
)
LIBRARY_ENDINGS = (".so", ".clap")
PROCESSOR_NAMES = {"x86_64": "x86-64", "aarch64": "arm64", "i686": "i386", "armv7l": "arm"}
VST3_FOLDER = re.compile(r"(?:^|/)Contents/([A-Za-z0-9_]+)-linux/[^/]+$")
TRIPLE = re.compile(r"^(<[^>]*>|_:\S+) <([^>]*)> (.*) \.$")
FILE_PREDICATE = re.compile(r"#(?:binary|seeAlso|ui|resource)$|/(?:binary|seeAlso)$")


@dataclasses.dataclass
class Library:
    """An ELF file of the plug-in."""

    name: str  # in the archive
    facts: elf_facts.ElfFacts

    def format(self):
        """The plug-in format that it is found by, or None."""
        return next((kind for kind, entry in ENTRIES if entry in self.facts.exported), None)


@dataclasses.dataclass
class Lv2Bundle:
    """A folder with a manifest.ttl, as LV2 hosts read it."""

    name: str  # in the archive
    absent: list  # files that the manifest names and that are not there
    broken: str  # what is wrong with the manifest's text, or ""
    seen: list  # names of the plug-ins that hosts find in it; None where that was not asked


@dataclasses.dataclass
class PluginFacts:
    libraries: list = dataclasses.field(default_factory=list)  # shared objects
    programs: list = dataclasses.field(default_factory=list)  # other ELF files
    unreadable: list = dataclasses.field(default_factory=list)  # (name, why it is no library)
    bundles: list = dataclasses.field(default_factory=list)  # LV2
    missing_tools: list = dataclasses.field(default_factory=list)

    def formats(self):
        """The formats found, the most frequent first."""
        found = [library.format() for library in self.libraries]
        found = [LV2] * len(self.bundles) + [kind for kind in found if kind and kind != LV2]
        return sorted(set(found), key=lambda kind: (-found.count(kind), kind))

    def processors(self):
        return sorted({each.facts.processor for each in self.libraries + self.programs})

    def needed(self):
        """Libraries that it asks the person's machine for, those it brings itself left out."""
        own = {os.path.basename(library.name) for library in self.libraries}
        asked = {name for each in self.libraries + self.programs for name in each.facts.needed}
        return sorted(asked - own)

    def newest(self, family):
        """The newest symbol version of that family that any of its files needs, or None."""
        found = [each.facts.highest_versions().get(family) for each in self.libraries + self.programs]
        found = [version for version in found if version]
        return max(found, key=lambda text: tuple(map(int, text.split("."))), default=None)

    def newest_symbol(self, family):
        """A symbol of that newest version, as name@FAMILY_VERSION, or None."""
        ending = f"@{family}_{self.newest(family)}"
        wanted = {
            symbol
            for each in self.libraries + self.programs
            for symbol in each.facts.imported
            if symbol.replace("@@", "@").endswith(ending)
        }
        return min(wanted, default=None)

    def description(self):
        """What it is, in a few words."""
        bundles = [bundle.name for bundle in self.bundles]
        vst3 = [each for each in self.libraries if VST3_FOLDER.search(each.name)]
        words = []
        for kind in self.formats():
            count = len(bundles) if kind == LV2 else len(
                [each for each in self.libraries if each.format() == kind]
            )
            noun = "bundle" if kind == LV2 or (kind == VST3 and vst3) else "library"
            plural = {"bundle": "bundles", "library": "libraries"}[noun]
            words.append(f"{kind} {noun}" if count == 1 else f"{count} {kind} {plural}")
        if not words:
            words = ["a library of no known format" if self.libraries else "other files"]
        return ", ".join(words)


def own_processor():
    """The processor that the installer is built for."""
    return PROCESSOR_NAMES.get(platform.machine(), platform.machine())


def quiet_run(command, **environment):
    return subprocess.run(
        command,
        env=dict(os.environ, LC_ALL="C.UTF-8", **environment),
        capture_output=True,
        text=True,
        errors="replace",
        check=False,
    )


def files_named(manifest):
    """(paths of files that a bundle's manifest says are in the bundle, what is wrong with it)."""
    folder = os.path.dirname(manifest)
    # Names with blanks and the like are escaped in the base as they are in what comes of it.
    base = "file:///bundle/"
    result = quiet_run(["serdi", "-q", "-i", "turtle", "-o", "ntriples", manifest, base])
    named = []
    for line in result.stdout.splitlines():
        triple = TRIPLE.match(line)
        if triple and FILE_PREDICATE.search(triple[2]) and triple[3].startswith(f"<{base}"):
            named.append(triple[3][len(base) + 1 : -1])
    wrong = "" if result.returncode == 0 else first_line(result.stderr, "it cannot be read")
    paths = [
        os.path.join(folder, urllib.parse.unquote(name.split("#")[0], errors="surrogateescape"))
        for name in named
    ]
    return paths, wrong.replace(manifest, os.path.basename(manifest))


def first_line(text, otherwise):
    lines = text.strip().splitlines()
    return lines[0] if lines else otherwise


def seen_by_hosts(folder):
    """Names of the plug-ins that LV2 hosts find in a bundle."""
    with tempfile.TemporaryDirectory() as path:
        os.symlink(os.path.abspath(folder), os.path.join(path, "bundle.lv2"))
        result = quiet_run(["lv2ls", "-n"], LV2_PATH=path)
        return [line for line in result.stdout.splitlines() if line]


class Inspection:
    """Goes through a plug-in's members and notes what they are."""

    def __init__(self, members):
        self.facts = PluginFacts()
        for tool, package in (("serdi", "serdi"), ("lv2ls", "lilv-utils")):
            if shutil.which(tool) is None:
                self.facts.missing_tools.append((tool, package))
        for path, name in members:
            status = os.lstat(path)
            if stat.S_ISREG(status.st_mode):
                self.look_at_file(path, name)
        if not self.facts.bundles:
            self.facts.missing_tools = []

    def look_at_file(self, path, name):
        if os.path.basename(name) == "manifest.ttl":
            self.look_at_bundle(os.path.dirname(path), os.path.dirname(name))
        elif elf_facts.is_elf(path):
            self.look_at_elf(path, name)
        elif name.endswith(LIBRARY_ENDINGS):
            what = "is empty" if os.path.getsize(path) == 0 else "is not an ELF file"
            self.facts.unreadable.append((name, what))

    def look_at_elf(self, path, name):
        try:
            found = Library(name, elf_facts.read_facts(path))
        except elf_facts.ElfError as error:
            self.facts.unreadable.append((name, f"cannot be read ({error})"))
            return
        if found.facts.kind == "shared object":
            self.facts.libraries.append(found)
        elif name.endswith(LIBRARY_ENDINGS):
            self.facts.unreadable.append((name, f"is a {found.facts.kind.lower()}"))
        else:
            self.facts.programs.append(found)

    def look_at_bundle(self, folder, name):
        bundle = Lv2Bundle(name, [], "", None)
        tools = {tool for tool, _ in self.facts.missing_tools}
        if "serdi" not in tools:
            paths, bundle.broken = files_named(os.path.join(folder, "manifest.ttl"))
            bundle.absent = sorted({
                os.path.relpath(path, folder) for path in paths if not os.path.exists(path)
            })
        if "lv2ls" not in tools:
            bundle.seen = seen_by_hosts(folder)
        self.facts.bundles.append(bundle)


def together(facts):
    """The PluginFacts of several things as one."""
    whole = PluginFacts()
    for each in facts:
        for field in dataclasses.fields(PluginFacts):
            getattr(whole, field.name).extend(getattr(each, field.name))
    return whole


def inspect(members):
    """The facts of (path, archive name) pairs."""
    return Inspection(members).facts
