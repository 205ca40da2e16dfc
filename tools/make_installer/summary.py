"""What a maker is told of an installer that was made."""

import io
import os
import stat

import archive
import elf_facts
import executable
import floor
from wording import some_of, size, visible


def listing(members, links):
    """A line for each member, as tar lists them."""
    for path, name in members:
        status = os.lstat(path)
        if stat.S_ISDIR(status.st_mode):
            kind, length = "drwxr-xr-x", 0
        elif name in links:
            kind, length = "lrwxrwxrwx", 0
        else:
            kind = "-rwxr-xr-x" if status.st_mode & stat.S_IXUSR else "-rw-r--r--"
            length = status.st_size
        target = f" -> {visible(links[name])}" if name in links else ""
        yield f"{kind} root/root {length:>10} {visible(name)}{target}"


def links_behind(members, links):
    """The links that the first lines of a long list leave out."""
    shown = {name for _, name in members[: len(some_of(members)) - 1]}
    return [f"{visible(name)} -> {visible(links[name])}" for name in links if name not in shown]


def block(word, lines, out):
    for index, line in enumerate(lines):
        print(f"  {'' if index else word:14} {line}", file=out)


def main_places(values):
    """Where the plug-in goes by itself, for one person and for everybody."""
    if values["install_for"] != "everybody":
        yield values["person_folder"]
    if values["install_for"] != "person":
        yield values["default_install_folder"]


def item_places(values, parts):
    """Where each item goes."""
    for part in parts:
        place = f"into {part.folder}" if part.folder else "beside the plug-in"
        if part.folder and values["install_for"] != "everybody":
            place = f"into {part.person_folder}"
            place += f" or {part.folder}" if values["install_for"] == "ask" else ""
        yield f"{visible(part.contents.name)} {place}"


def plugin_block(plugin, out):
    """What the plug-in is, and what it asks of the machine by itself."""
    processors = ", ".join(plugin.processors())
    block("plug-in", [plugin.description() + (f", {processors}" if processors else "")], out)
    if not plugin.libraries:
        return
    block("plug-in needs", [" ".join(plugin.needed()) or "no other library"], out)
    newest = [
        plugin.newest_symbol(family)
        for family in ("GLIBC", "GLIBCXX")
        if plugin.newest_symbol(family)
    ]
    block("plug-in libc", newest and [", ".join(newest)], out)


def summary(values, stage, product, path, digest):
    packed, plugin = product
    facts = elf_facts.read_facts(path)
    versions = facts.highest_versions()
    out = io.StringIO()
    print(f"\n{visible(path)}", file=out)
    block("product", [f"{values['product_name']} {values['product_version']}"], out)
    block("processor", [facts.processor], out)
    block("size", [f"{os.path.getsize(path)} bytes, {stage.archive_size} of them payload"], out)
    block("installs into", [f"{place}, or where the person says" for place in main_places(values)], out)
    block("along with it", some_of(item_places(values, packed.parts[1:])), out)
    block("payload", some_of(listing(packed.members, packed.links)), out)
    if len(some_of(packed.members)) < len(packed.members):
        block("links", some_of(links_behind(packed.members, packed.links)), out)
    plugin_block(plugin, out)
    if values["compression"] == "xz":
        need = f"needs the program xz and {size(archive.DICTIONARY)} of memory where it is installed"
        block("unpacking", [need], out)
    block("needs", [" ".join(facts.needed)], out)
    block("oldest libc", [versions.get("GLIBC", "any")], out)
    block("NOT everywhere", floor.symbols_above(path), out)
    protections = executable.hardening(path)
    for present, word in ((True, "hardening"), (False, "NOT hardened")):
        names = ", ".join(name for name, there in protections.items() if there == present)
        block(word, [names] if names else [], out)
    block("sha256", [digest], out)
    return out.getvalue()
