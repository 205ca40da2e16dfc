"""A product's settings: every rule that a setting must keep.

Nothing here touches the machine beyond reading that one file. Each complaint names the file, the
line, the setting, what is wrong and what mends it.
"""

import difflib
import re

import items
import person_folders
import screen_text
import settings_file
from settings_file import FILE_NAME, SettingsError
from wording import visible

SWITCHES = (
    "create_extra_folder",
    "install_desktop_files",
    "find_desktop_folder",
    "offer_default_folder",
    "verify_installation",
    "uninstaller",
    "exact_folder_names",
    "modern_input",
)
TEXTS = (
    "product_name",
    "product_version",
    "product_short_name",
    "product_executable",
    "product_comment",
    "desktop_categories",
    "icon_file_name",
    "icon_folder",
    "default_install_folder",
    "folder_browser_title",
    "extra_folder",
)
# Setting, width, height, whether it must have transparency.
PICTURES = (
    ("splash_picture", 600, 400, False),
    ("background_picture", 600, 336, False),
    ("window_icon_picture", 64, 64, False),
    ("folder_icon_picture", 64, 64, False),
    ("desktop_icon_picture", 48, 48, True),
)
FILES = ("plugin",) + tuple(picture[0] for picture in PICTURES)
# Those that need not be there: what each may say, the first being what it is without.
CHOICES = {
    "compression": ("gzip", "xz"),
    "install_for": ("everybody", "person", "ask"),
}
# And a text that follows from others.
DERIVED = ("person_folder",)

# What a shell, and a split at blanks, leave in one piece. No "%": desktop entries read codes in it.
PLAIN = re.compile(r"[A-Za-z0-9._+@:,=/-]*")
MAIN_CATEGORIES = frozenset(
    "AudioVideo Audio Video Development Education Game Graphics Network Office Science Settings"
    " System Utility".split()
)
LONGEST_NAME = 64  # bytes
LONGEST_FOLDER = 255
LONGEST_COMMENT = 255


class Checker:
    """Collects complaints, so that a maker sees all of them at once."""

    def __init__(self, path, values, lines):
        self.path = path
        self.values = values
        self.lines = lines
        self.complaints = []
        self.items = []

    def complain(self, setting, wrong, mend):
        self.complain_as_said(setting, f"{wrong}; {mend}")

    def complain_as_said(self, setting, said):
        """Of a setting, with the mend in what is said."""
        self.complaints.append(f"{self.place_of(setting)}: {visible(setting)}: {said}")

    def place_of(self, setting):
        """The file, and the line if there is one."""
        line = self.lines.get(setting) or self.lines.get(setting.split(":")[0])  # or its item's
        return visible(self.path) + (f":{line}" if line else "")

    def check_names(self):
        required = TEXTS + SWITCHES + FILES
        known = required + tuple(CHOICES) + DERIVED + ("item",)
        meant = items.swallowed(self.values)
        for setting in self.values:
            if setting not in known:
                near = difflib.get_close_matches(setting, known, n=1)
                meant.update(near)
                mend = f"did you mean {near[0]}?" if near else "remove it"
                self.complain(setting, "there is no such setting", mend)
        for setting in required:
            if setting not in self.values and setting not in meant:
                example = "0" if setting in SWITCHES else '"..."'
                self.complain(setting, "is missing", f"add a line {setting} = {example}")

    def check_choices(self):
        for setting, choices in CHOICES.items():
            value = self.values.setdefault(setting, choices[0])
            if value not in choices:
                mend = "write " + " or ".join(f'"{choice}"' for choice in choices)
                self.complain(setting, f"is {value!r}", mend)

    def check_types(self):
        for setting, value in list(self.values.items()):
            if setting in SWITCHES:
                if type(value) is not int or value not in (0, 1):
                    self.complain(setting, f"is {value!r}", "write 0 (off) or 1 (on)")
                    del self.values[setting]
            elif setting != "item" and not self.check_text(setting, value):
                del self.values[setting]

    def check_text(self, setting, value):
        if not isinstance(value, str):
            self.complain(setting, "is not a text", 'write it in quotes: "..."')
        elif any(ord(character) < 32 or ord(character) == 127 for character in value):
            self.complain(setting, "has a line break or control character", "remove it")
        else:
            return True
        return False

    def text(self, setting, needed=True):
        """The setting's text, or None when there is nothing (more) to check."""
        value = self.values.get(setting)
        if value == "" and needed:
            self.complain(setting, "is empty", "give it a text")
        return value or None

    def check_titles(self):
        titles = [self.text("product_name"), self.text("product_version")]
        for setting, value in zip(("product_name", "product_version"), titles):
            unknown = screen_text.unknown_character(value or "")
            if unknown:
                wrong = f"has the character {unknown!r}, which the installer's font does not have"
                self.complain(setting, wrong, "use letters of Western European languages")
                return
        if None in titles:
            return
        line = f"- {titles[0]} {titles[1]} Installer -"
        too_long = len(line.encode()) - screen_text.LONGEST_LINE
        if too_long > 0:
            wrong = f'with product_version makes the screen line "{line}" {too_long} bytes too long'
            self.complain("product_name", wrong, "shorten one of the two")
        elif screen_text.width(line) > screen_text.WIDEST_LINE:
            too_wide = screen_text.width(line) - screen_text.WIDEST_LINE
            wrong = f'with product_version makes the screen line "{line}" {too_wide} pixels too wide'
            self.complain("product_name", wrong, "shorten one of the two")

    def check_browser_title(self):
        setting = "folder_browser_title"
        value = self.text(setting)
        unknown = screen_text.unknown_character(value or "")
        if unknown:
            wrong = f"has the character {unknown!r}, which the installer's font does not have"
            self.complain(setting, wrong, "use letters of Western European languages")
        elif value and screen_text.width(value) > screen_text.WIDEST_TITLE:
            too_wide = screen_text.width(value) - screen_text.WIDEST_TITLE
            self.complain(setting, f"is {too_wide} pixels too wide", "shorten it")

    def check_plain(self, setting, value, longest):
        odd = PLAIN.sub("", value)
        if odd:
            wrong = f"has the character {odd[0]!r}, which the commands run as root would take apart"
            mend = "use letters, digits and . _ + @ : , = - only"
            self.complain(setting, wrong, mend)
            return False
        if len(value) > longest:
            self.complain(setting, f"is longer than {longest} bytes", "shorten it")
            return False
        return True

    def check_file_name(self, setting, needed=True):
        value = self.text(setting, needed)
        if value is None or not self.check_plain(setting, value, LONGEST_NAME):
            return
        if "/" in value:
            self.complain(setting, "has a / in it", "give a file name without folders")
        elif value[0] in "-.":
            self.complain(setting, f"begins with {value[0]!r}", "begin with a letter or digit")

    def check_folder(self, setting, needed=True):
        value = self.text(setting, needed)
        if value is not None:
            self.check_folder_text(setting, value)

    def check_folder_text(self, setting, shown, value=None):
        value = value or shown
        if not self.check_plain(setting, value, LONGEST_FOLDER):
            return
        if not value.startswith("/"):
            self.complain(setting, f"{value!r} is not absolute", "begin with /")
        elif any(name in ("", ".", "..") for name in value[1:].split("/")):
            wrong = f"{shown!r} has an empty name, . or .. in it or a / at its end"
            self.complain(setting, wrong, "write the folder's plain path")

    def check_executable(self, needed):
        setting = "product_executable"
        value = self.text(setting, needed)
        if value is None or not self.check_plain(setting, value, LONGEST_FOLDER):
            return
        if any(name in ("", ".", "..") for name in value.split("/")):
            wrong = f"{value!r} is not a path inside default_install_folder"
            self.complain(setting, wrong, "give a file name, or folders and a file name")

    def check_desktop_entry(self, needed):
        comment = self.text("product_comment", needed)
        if comment and len(comment.encode()) > LONGEST_COMMENT:
            self.complain("product_comment", f"is longer than {LONGEST_COMMENT} bytes", "shorten it")
        if comment and "\\" in comment:
            self.complain("product_comment", "has a backslash in it", "write it without")
        categories = self.text("desktop_categories", needed)
        if categories is None:
            return
        if not re.fullmatch(r"([A-Za-z0-9-]+;)+", categories):
            wrong = f"{categories!r} is not a list of names, each followed by ;"
            self.complain("desktop_categories", wrong, 'write it like "AudioVideo;Audio;"')
        elif not MAIN_CATEGORIES.intersection(categories.split(";")):
            wrong = "names no main category, so no menu would show the entry"
            self.complain("desktop_categories", wrong, 'add one, for example "AudioVideo;"')

    def check_uninstaller(self):
        if self.values.get("uninstaller") == 1 and self.values.get("verify_installation") == 0:
            wrong = "is 1, but only what is put in place as a whole can be listed"
            self.complain("uninstaller", wrong, "set verify_installation = 1 or this to 0")

    def check_switches(self):
        if self.values.get("create_extra_folder") != 1:
            return
        if self.values.get("install_desktop_files") == 0:
            wrong = "is 1, but the folder is made with the desktop files only"
            self.complain("create_extra_folder", wrong, "set install_desktop_files = 1 or this to 0")
        if self.values.get("extra_folder") == "":
            mend = "name the folder or set create_extra_folder = 0"
            self.complain("extra_folder", "is empty, but create_extra_folder is 1", mend)

    def check_icon_name(self):
        icon = self.values.get("icon_file_name")
        if icon and not icon.endswith(".png"):
            self.complain("icon_file_name", f"{icon!r} does not end in .png", "end it in .png")

    def check_all(self):
        self.check_names()
        self.check_types()
        desktop = self.values.get("install_desktop_files") == 1
        self.check_titles()
        self.check_browser_title()
        self.check_file_name("product_short_name")
        self.check_executable(desktop)
        self.check_desktop_entry(desktop)
        self.check_file_name("icon_file_name", desktop)
        self.check_icon_name()
        self.check_folder("icon_folder", desktop)
        self.check_folder("default_install_folder")
        self.check_folder("extra_folder", needed=False)
        self.check_switches()
        self.check_choices()
        self.check_uninstaller()
        for setting in FILES:
            self.text(setting)
        person_folders.check(self)
        known = TEXTS + SWITCHES + FILES + tuple(CHOICES) + DERIVED
        self.items = items.check_items(self, known)


def check_settings(folder):
    """A Checker with the settings of the product in the folder and what is wrong with them;
    SettingsError when the file cannot be read at all."""
    path, values, lines = settings_file.read(folder)
    checker = Checker(path, values, lines)
    checker.check_all()
    return checker


def read_settings(folder):
    """The settings of the product in the folder, all rules kept, or SettingsError."""
    checker = check_settings(folder)
    if checker.complaints:
        raise SettingsError(checker.complaints)
    return checker.values
