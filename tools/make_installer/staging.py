"""Lays a product out as the build wants it: settings header, pictures, archive. Files that would
not change are left alone, so that a second build has nothing to do."""

import json
import os
import re

import archive
import contents
import pictures
import settings

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
    """Complains of each file that the settings name and that is not as it must be; the plug-in's
    Contents, or None where it cannot be packed."""
    packed = None
    if checker.values.get("plugin"):
        complaints, packed = contents.complaints_about(folder, checker.values)
        for wrong in complaints:
            checker.complain_as_said("plugin", wrong)
    for setting, width, height, needs_rgba in settings.PICTURES:
        if not checker.values.get(setting):
            continue
        path = os.path.join(folder, checker.values[setting])
        wrong = pictures.complaint_about(path, width, height, needs_rgba)
        if wrong:
            checker.complain_as_said(setting, wrong)
    return packed


def unpacking_step(archive_size):
    """Bytes between two moves of the bar, so that the moves are as many for every archive."""
    return max(SMALLEST_STEP, -(-archive_size // UNPACKING_STEPS))


def plugin_name(values):
    """The plug-in's name at the archive's top."""
    return os.path.basename(os.path.abspath(values["plugin"]))


def size_on_disk(members):
    """Bytes that (path, archive name) pairs take where they are installed, in whole blocks."""
    sizes = (os.lstat(path).st_size for path, _ in members)
    return sum(-(-max(size, 1) // BLOCK) * BLOCK for size in sizes)


def header_text(values, archive_size, installed_size):
    """The settings header, with these values in place of the default product's."""
    with open(DEFAULT_HEADER, encoding="utf-8") as file:
        text = file.read()
    initialisers = {name: values[name] for name in settings.TEXTS + settings.SWITCHES}
    initialisers["plugin_name"] = plugin_name(values)
    initialisers["installed_size"] = installed_size
    initialisers["archive_size"] = archive_size
    initialisers["unpacking_step"] = unpacking_step(archive_size)
    for name, value in initialisers.items():
        # JSON's quoting of text without control characters is C++'s too.
        literal = json.dumps(value, ensure_ascii=False)
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
        text = header_text(values, self.archive_size, size_on_disk(packed.members))
        write_if_changed(header, text.encode())
