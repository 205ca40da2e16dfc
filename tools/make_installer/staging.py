"""Lays a product out as the build wants it: settings header, pictures, archive. Files that would
not change are left alone, so that a second build has nothing to do."""

import json
import os
import re

import archive
import contents
import pictures
import settings
from settings_file import item_setting

REPOSITORY = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
DEFAULT_HEADER = os.path.join(REPOSITORY, "source", "installer", "product_settings.h")
UNPACKING_STEPS = 130  # moves of the bar, 20 ms each, while the installer writes the archive out
SMALLEST_STEP = 8192  # bytes
BLOCK = 4096  # bytes: a file takes whole ones of the disk


def write_if_changed(path, content):
    try:
        with open(path, "rb") as file:
            if file.read() == content:
                return
    except FileNotFoundError:
        os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.write(content)


def check_files(folder, checker):
    """Complains of each file that the settings name and that is not as it must be; the Package, or None
    where there are complaints."""
    wanted = []
    if checker.values.get("plugin"):
        place = checker.values.get("default_install_folder")
        places = (place, checker.values.get("person_folder"))
        wanted.append(("plugin", "default_install_folder", places, checker.values["plugin"]))
    for item in checker.items:
        names = [item_setting(item.number, name) for name in ("path", "folder")]
        wanted.append((*names, (item.folder, item.person_folder), item.path))
    parts = []
    for setting, folder_setting, places, path in wanted:
        complaints, packed = contents.complaints_about(folder, checker.values, path)
        for wrong in complaints:
            checker.complain_as_said(setting, wrong)
        parts.append(contents.Part(setting, folder_setting, *places, packed))
    for setting, width, height, needs_rgba in settings.PICTURES:
        if not checker.values.get(setting):
            continue
        path = os.path.join(folder, checker.values[setting])
        wrong = pictures.complaint_about(path, width, height, needs_rgba)
        if wrong:
            checker.complain_as_said(setting, wrong)
    return None if checker.complaints else contents.Package(parts)


def unpacking_step(archive_size):
    """Bytes between two moves of the bar, so that the moves are as many for every archive."""
    return max(SMALLEST_STEP, -(-archive_size // UNPACKING_STEPS))


def size_on_disk(members):
    """Bytes that (path, archive name) pairs take where they are installed, in whole blocks."""
    sizes = (os.lstat(path).st_size for path, _ in members)
    return sum(-(-max(size, 1) // BLOCK) * BLOCK for size in sizes)


def literal_of(value):
    """The value as C++ has it: JSON's quoting of text without control characters is C++'s, too."""
    return "nullptr" if value is None else json.dumps(value, ensure_ascii=False)


def items_literal(parts):
    """The table of what is installed along with the plug-in."""
    rows = (
        (part.contents.name, part.folder, part.person_folder, size_on_disk(part.contents.members))
        for part in parts
    )
    return "{" + ", ".join("{" + ", ".join(map(literal_of, row)) + "}" for row in rows) + "}"


def header_text(values, packed, archive_size):
    """The settings header, with these values in place of the default product's."""
    with open(DEFAULT_HEADER, encoding="utf-8") as file:
        text = file.read()
    initialisers = {name: literal_of(values[name]) for name in settings.TEXTS + settings.SWITCHES}
    initialisers["person_folder"] = literal_of(values["person_folder"])
    initialisers["install_for"] = f"InstallFor::{values['install_for']}"
    initialisers["plugin_name"] = literal_of(packed.plugin.name)
    initialisers["installed_size"] = size_on_disk(packed.plugin.members)
    initialisers["items"] = items_literal(packed.parts[1:])
    initialisers["archive_size"] = archive_size
    initialisers["unpacking_step"] = unpacking_step(archive_size)
    for name, literal in initialisers.items():
        text, count = re.subn(
            rf"^    \.{name} = .*,$", lambda _: f"    .{name} = {literal},", text, flags=re.M
        )
        if count != 1:
            raise RuntimeError(f"product_settings.h has no line for {name}")
    return text


class Stage:
    """A product laid out in its build folder."""

    def __init__(self, folder, values, packed, build_folder, processor):
        self.processor = processor
        self.settings = os.path.join(build_folder, "settings")
        self.artwork = os.path.join(build_folder, "artwork")
        self.archive = os.path.join(build_folder, "payload.tar.gz")
        self.icon = os.path.join(self.artwork, "desktop_icon.png")
        for setting, *_ in settings.PICTURES:
            name = setting.removesuffix("_picture") + ".png"
            with open(os.path.join(folder, values[setting]), "rb") as file:
                write_if_changed(os.path.join(self.artwork, name), file.read())
        self.time = archive.newest_time(packed.members)
        archive.pack(self.archive, packed.members, self.time, values["compression"])
        self.archive_size = os.path.getsize(self.archive)
        header = os.path.join(self.settings, "installer", "product_settings.h")
        text = header_text(values, packed, self.archive_size)
        write_if_changed(header, text.encode())
