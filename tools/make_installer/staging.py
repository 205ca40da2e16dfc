"""Lays a product out as the build wants it: settings header, pictures, archive. Files that would
not change are left alone, so that a second build has nothing to do."""

import json
import os
import re
import stat
import sys

REPOSITORY = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path.insert(0, os.path.join(REPOSITORY, "tools", "payload_packer"))

import pack_archive  # noqa: E402
import pictures  # noqa: E402
import settings  # noqa: E402

DEFAULT_HEADER = os.path.join(REPOSITORY, "source", "installer", "product_settings.h")
LARGEST_ARCHIVE = 2**31 - 1
UNPACKING_STEPS = 130  # moves of the bar, 20 ms each, while the installer writes the archive out
SMALLEST_STEP = 8192  # bytes
# A member of one of these names, unpacked into its parent, would be a folder of the system's.
SYSTEM_NAMES = frozenset(
    "bin boot clap dev dssi etc games home include ladspa lib lib32 lib64 libexec local lv2 opt"
    " plugins root run sbin share src srv sys tmp usr var vst vst3".split()
)


def write_if_changed(path, content):
    try:
        with open(path, "rb") as file:
            if file.read() == content:
                return
    except FileNotFoundError:
        os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.write(content)


def plugin_complaint(path):
    """What is wrong with the plug-in's file or folder, or None."""
    if not os.path.lexists(path):
        return f"there is no {path}; put the plug-in there or name another file or folder"
    name = os.path.basename(os.path.abspath(path))
    if name in SYSTEM_NAMES:
        return f"{path}: a folder of that name belongs to the system; name the plug-in's own folder"
    files = []
    for member, _ in pack_archive.members_of(path, name):
        status = os.lstat(member)
        if stat.S_ISLNK(status.st_mode):
            target = os.path.realpath(member)
            if not target.startswith(os.path.realpath(path) + os.sep):
                return f"{member} is a link that leads out of the plug-in; put the file there itself"
            if not os.path.exists(member):
                return f"{member} is a link to nothing; remove it or put the file there itself"
        elif stat.S_ISREG(status.st_mode):
            files.append(status.st_size)
            if not os.access(member, os.R_OK):
                return f"{member} cannot be read; make it readable: chmod u+r"
        elif not stat.S_ISDIR(status.st_mode):
            return f"{member} is neither a file nor a folder nor a link; remove it"
    if sum(files) == 0:
        what = "is an empty file" if files else "has no files in it"
        return f"{path} {what}; put the built plug-in there"
    return None


def check_files(folder, values):
    """SettingsError when a file that the settings name is not as it must be."""
    complaints = []
    wrong = plugin_complaint(os.path.join(folder, values["plugin"]))
    if wrong:
        complaints.append(f"plugin: {wrong}")
    for setting, width, height, needs_rgba in settings.PICTURES:
        path = os.path.join(folder, values[setting])
        wrong = pictures.complaint_about(path, width, height, needs_rgba)
        if wrong:
            complaints.append(f"{setting}: {wrong}")
    if complaints:
        path = os.path.join(folder, settings.FILE_NAME)
        raise settings.SettingsError([f"{path}: {complaint}" for complaint in complaints])


def unpacking_step(archive_size):
    """Bytes between two moves of the bar, so that the moves are as many for every archive."""
    return max(SMALLEST_STEP, -(-archive_size // UNPACKING_STEPS))


def header_text(values, archive_size):
    """The settings header, with these values in place of the default product's."""
    with open(DEFAULT_HEADER, encoding="utf-8") as file:
        text = file.read()
    initialisers = {name: values[name] for name in settings.TEXTS + settings.SWITCHES}
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

    def __init__(self, folder, values, build_folder):
        self.settings = os.path.join(build_folder, "settings")
        self.artwork = os.path.join(build_folder, "artwork")
        self.archive = os.path.join(build_folder, "payload.tar.gz")
        self.icon = os.path.join(self.artwork, "desktop_icon.png")
        for setting, *_ in settings.PICTURES:
            name = setting.removesuffix("_picture") + ".png"
            with open(os.path.join(folder, values[setting]), "rb") as file:
                write_if_changed(os.path.join(self.artwork, name), file.read())
        tar = pack_archive.tar_bytes([os.path.join(folder, values["plugin"])])
        archive = pack_archive.gzip_bytes(tar)
        if len(archive) > LARGEST_ARCHIVE:
            raise settings.SettingsError(["plugin: the packed plug-in is larger than 2 GiB"])
        write_if_changed(self.archive, archive)
        self.archive_size = len(archive)
        header = os.path.join(self.settings, "installer", "product_settings.h")
        write_if_changed(header, header_text(values, len(archive)).encode())
