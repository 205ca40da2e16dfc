"""A product's settings: reading product.toml, and every rule that a setting must keep.

Nothing here touches the machine beyond reading that one file. Each complaint names the setting,
what is wrong and what mends it.
"""

import os
import re
import tomllib

import screen_text

FILE_NAME = "product.toml"

SWITCHES = (
    "create_extra_folder",
    "install_desktop_files",
    "find_desktop_folder",
    "offer_default_folder",
    "verify_installation",
    "exact_folder_names",
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

# What a shell, and a split at blanks, leave in one piece. No "%": desktop entries read codes in it.
PLAIN = re.compile(r"[A-Za-z0-9._+@:,=/-]*")
MAIN_CATEGORIES = frozenset(
    "AudioVideo Audio Video Development Education Game Graphics Network Office Science Settings"
    " System Utility".split()
)
LONGEST_NAME = 64  # bytes
LONGEST_FOLDER = 255
LONGEST_COMMENT = 255


class SettingsError(Exception):
    """One or more complaints, a line each."""

    def __init__(self, complaints):
        super().__init__("\n".join(complaints))
        self.complaints = complaints


class Checker:
    """Collects complaints, so that a maker sees all of them at once."""

    def __init__(self, values):
        self.values = values
        self.complaints = []

    def complain(self, setting, wrong, mend):
        self.complaints.append(f"{setting}: {wrong}; {mend}")

    def check_names(self):
        known = TEXTS + SWITCHES + FILES
        for setting in self.values:
            if setting not in known:
                near = [name for name in known if name.startswith(setting[:6])]
                mend = f"did you mean {near[0]}?" if near else "remove it"
                self.complain(setting, "there is no such setting", mend)
        for setting in known:
            if setting not in self.values:
                example = "0" if setting in SWITCHES else '"..."'
                self.complain(setting, "is missing", f"add a line {setting} = {example}")

    def check_types(self):
        for setting, value in list(self.values.items()):
            if setting in SWITCHES:
                if type(value) is not int or value not in (0, 1):
                    self.complain(setting, f"is {value!r}", "write 0 (off) or 1 (on)")
                    del self.values[setting]
            elif not isinstance(value, str):
                self.complain(setting, "is not a text", 'write it in quotes: "..."')
                del self.values[setting]
            elif any(ord(character) < 32 or ord(character) == 127 for character in value):
                self.complain(setting, "has a line break or control character", "remove it")
                del self.values[setting]

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
        if value is None or not self.check_plain(setting, value, LONGEST_FOLDER):
            return
        if not value.startswith("/"):
            self.complain(setting, f"{value!r} is not absolute", "begin with /")
        elif any(name in ("", ".", "..") for name in value[1:].split("/")):
            wrong = f"{value!r} has an empty name, . or .. in it or a / at its end"
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
        for setting in FILES:
            self.text(setting)


def read_settings(folder):
    """The settings of the product in the folder, all rules kept, or SettingsError."""
    path = os.path.join(folder, FILE_NAME)
    try:
        with open(path, "rb") as file:
            values = tomllib.load(file)
    except FileNotFoundError:
        mend = "make one with ./make-installer --new FOLDER"
        raise SettingsError([f"{path}: there is no settings file; {mend}"]) from None
    except OSError as error:
        raise SettingsError([f"{path}: cannot be read: {error.strerror}"]) from None
    except UnicodeDecodeError:
        raise SettingsError([f"{path}: is not UTF-8 text; save it as UTF-8"]) from None
    except tomllib.TOMLDecodeError as error:
        mend = 'write each setting on a line of its own: name = "text" or name = 1'
        raise SettingsError([f"{path}: {error}; {mend}"]) from None
    except (ValueError, RecursionError):
        mend = "give each setting one short text, 0 or 1"
        raise SettingsError([f"{path}: has a value too long or too deep to read; {mend}"]) from None
    checker = Checker(dict(values))
    checker.check_all()
    if checker.complaints:
        raise SettingsError([f"{path}: {complaint}" for complaint in checker.complaints])
    return values
