"""What of a plug-in's file or folder is packed, under which names, and whether it may be."""

import dataclasses
import fnmatch
import os
import stat

import packer_path  # noqa: F401
import pack_archive
from wording import some_of, visible

# A member of one of these names, unpacked into its parent, would be a folder of the system's.
SYSTEM_NAMES = frozenset(
    "applications bin boot clap dev doc dssi etc fonts games home icons include info ladspa lib lib32"
    " lib64 libexec local locale lv2 man mime opt pixmaps plugins root run sbin share sounds src srv sys"
    " themes tmp usr var vst vst3".split()
)
# What version control, editors and desktops leave in folders.
LEFT_OUT = (
    ".git .gitignore .gitattributes .gitmodules .gitkeep .hg .hgignore .svn .bzr CVS _darcs .fslckout"
    " *~ *.bak *.orig *.swp *.swo .*.sw? #*# .#* .DS_Store ._* __MACOSX .directory Thumbs.db"
    " desktop.ini __pycache__ .vscode .idea"
).split()
MOST_LINKS = 40  # on the way from a link to what it leads to


def is_left_out(name):
    return any(fnmatch.fnmatchcase(name, pattern) for pattern in LEFT_OUT)


class Escapes(Exception):
    """A link leads out of what is packed."""


def led_to(name, links):
    """The archive name that a link leads to, once unpacked, whichever folder that was in; links holds
    the target of each link by its archive name. Escapes when it leads out, or round in circles."""
    left = name.split("/")
    at = []
    followed = 0
    while left:
        word = left.pop(0)
        if word in ("", "."):
            continue
        if word == "..":
            if not at:
                raise Escapes
            at.pop()
            continue
        at.append(word)
        target = links.get("/".join(at))
        if target is not None:
            followed += 1
            if target.startswith("/") or followed > MOST_LINKS:
                raise Escapes
            at.pop()
            left = target.split("/") + left
    return "/".join(at)


class Contents:
    """The plug-in's files as they go into the archive.

    members: (path, archive name) of each, in the archive's order. left_out: archive names of what is
    not packed. links: target of each link by archive name. complaints: what forbids packing.
    """

    def __init__(self, path):
        self.path = path
        self.name = os.path.basename(os.path.abspath(path))
        self.members = []
        self.left_out = []
        self.links = {}
        self.bytes = 0
        self.complaints = []
        try:
            self.gather(self.start())
        except OSError as error:
            where = visible(error.filename or path)
            self.complaints.append(f"{where} cannot be read: {error.strerror}; make it readable")
        if not self.complaints:
            self.check_links()
            self.check_size()

    def start(self):
        """Where the files are: a link that is itself the plug-in stands for what it leads to."""
        return os.path.realpath(self.path) if os.path.islink(self.path) else self.path

    def gather(self, start):
        for path, name in pack_archive.members_of(start, self.name, is_left_out):
            status = os.lstat(path)
            self.members.append((path, name))
            if stat.S_ISLNK(status.st_mode):
                self.links[name] = os.readlink(path)
            elif stat.S_ISREG(status.st_mode):
                self.bytes += status.st_size
                if not os.access(path, os.R_OK):
                    mend = "make it readable: chmod u+r"
                    self.complaints.append(f"{visible(path)} cannot be read; {mend}")
            elif stat.S_ISDIR(status.st_mode):
                names = filter(is_left_out, sorted(os.listdir(path), key=os.fsencode))
                self.left_out += [f"{name}/{entry}" for entry in names]
            else:
                wrong = "is neither a file nor a folder nor a link"
                self.complaints.append(f"{visible(path)} {wrong}; remove it")

    def check_links(self):
        """Each link must work wherever the archive is unpacked."""
        names = {name for _, name in self.members}
        for path, name in self.members:
            target = self.links.get(name)
            if target is None:
                continue
            if target.startswith("/"):
                wrong = f"is a link to {visible(target)}, which is another place on other machines"
                mend = "make it a link inside the plug-in's folder: ln -sr"
            else:
                try:
                    if led_to(name, self.links) in names:
                        continue
                    wrong = f"is a link to nothing that is packed ({visible(target)})"
                    mend = "remove it or put the file there itself"
                except Escapes:
                    wrong = f"is a link that leads out of the plug-in ({visible(target)})"
                    mend = "put the file there itself"
            self.complaints.append(f"{visible(path)} {wrong}; {mend}")

    def check_size(self):
        if self.bytes > 0:
            return
        files = any(stat.S_ISREG(os.lstat(path).st_mode) for path, _ in self.members)
        what = "is an empty file" if files else "has no files in it"
        if len(self.members) > 1 and files:
            what = "has only empty files in it"
        self.complaints.append(f"{visible(self.path)} {what}; put the built plug-in there")


@dataclasses.dataclass
class Part:
    """The plug-in, or an item that is installed along with it."""

    setting: str  # which names it, as complaints call it
    folder_setting: str
    folder: str  # where it goes; None = beside the plug-in
    person_folder: str  # the same for one person
    contents: Contents


class Package:
    """All that goes into the archive: the plug-in, then the items."""

    def __init__(self, parts):
        self.parts = parts
        self.plugin = parts[0].contents
        self.members = [member for part in parts for member in part.contents.members]
        self.left_out = [name for part in parts for name in part.contents.left_out]
        self.links = {name: to for part in parts for name, to in part.contents.links.items()}


def place_complaint(folder, values, given):
    """What is wrong with where the plug-in, or an item, is given to be, or None."""
    folder = os.path.abspath(folder)
    path = os.path.abspath(os.path.join(folder, given))
    shown = visible(given)
    it, its = ("the plug-in", "the plug-in's") if given == values["plugin"] else ("it", "its")
    own = f"name {its} own file or folder"
    if path == folder:
        return f"{shown} is the product folder itself; {own} in it"
    if not path.startswith(folder.rstrip(os.sep) + os.sep):
        return f"{shown} is not in the product folder; copy {it}, or make a link to it, there"
    if path == os.path.join(folder, "product.toml"):
        return f"{shown} is the settings file; {own}"
    for setting, value in values.items():
        if setting.endswith("_picture") and os.path.abspath(os.path.join(folder, value)) == path:
            return f"{shown} is the {setting}; {own}"
    if os.path.islink(path) and not os.path.exists(path):
        return f"{visible(path)} is a link to nothing; link or copy {it} there"
    if not os.path.exists(path):
        return f"there is no {visible(path)}; put {it} there or name another file or folder"
    if os.path.basename(path) in SYSTEM_NAMES:
        wrong = "a folder of that name belongs to the system"
        return f"{visible(path)}: {wrong}; name {its} own folder"
    return None


def complaints_about(folder, values, given=None):
    """(what is wrong with the plug-in, or the item at that path, its Contents when nothing is)."""
    given = given or values["plugin"]
    wrong = place_complaint(folder, values, given)
    if wrong:
        return [wrong], None
    contents = Contents(os.path.join(folder, given))
    return some_of(contents.complaints), contents
