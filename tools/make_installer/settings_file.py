"""Reading product.toml: what each setting is given, and in which line."""

import os
import re
import tomllib

from wording import visible

FILE_NAME = "product.toml"
BYTE_ORDER_MARK = b"\xef\xbb\xbf"
# A line that gives a setting its value. Few values go on over lines, and none looks like this there.
SETTING_LINE = re.compile(r"""^[ \t]*(["']?)([A-Za-z0-9_-]+)\1[ \t]*=""")
# And one that begins an item, or a setting of one.
ITEM_LINE = re.compile(r"""^[ \t]*\[\[[ \t]*(["']?)item\1[ \t]*\]\]""")
PLACE = re.compile(r" \(at (?:line (\d+), column \d+|end of document)\)$")


class SettingsError(Exception):
    """One or more complaints, a line each."""

    def __init__(self, complaints):
        super().__init__("\n".join(complaints))
        self.complaints = complaints


def item_setting(number, setting=""):
    """What a setting of an item is called in complaints, or the item itself."""
    return f"item {number}: {setting}" if setting else f"item {number}"


def lines_of(text):
    """The number of the line in which each setting stands, the first where there are several."""
    lines = {}
    items = 0
    for number, line in enumerate(text.split("\n"), start=1):
        match = SETTING_LINE.match(line)
        if ITEM_LINE.match(line):
            items += 1
            lines[item_setting(items)] = number
        elif match:
            setting = item_setting(items, match[2]) if items else match[2]
            lines.setdefault(setting, number)
    return lines


def read(folder):
    """(path, values, lines) of the product in the folder; SettingsError when it cannot be read."""
    path = os.path.join(folder, FILE_NAME)
    shown = visible(path)
    try:
        with open(path, "rb") as file:
            text = file.read().removeprefix(BYTE_ORDER_MARK).decode()
        return path, tomllib.loads(text), lines_of(text)
    except FileNotFoundError:
        mend = "make one with ./make-installer --new FOLDER"
        raise SettingsError([f"{shown}: there is no settings file; {mend}"]) from None
    except OSError as error:
        mend = "make it a readable file"
        raise SettingsError([f"{shown}: cannot be read: {error.strerror}; {mend}"]) from None
    except UnicodeDecodeError:
        raise SettingsError([f"{shown}: is not UTF-8 text; save it as UTF-8"]) from None
    except tomllib.TOMLDecodeError as error:
        mend = 'write each setting on a line of its own: name = "text" or name = 1'
        place = PLACE.search(str(error))
        line = place[1] if place and place[1] else text.count("\n") + 1
        wrong = visible(PLACE.sub("", str(error)))
        raise SettingsError([f"{shown}:{line}: {wrong}; {mend}"]) from None
    except (ValueError, RecursionError):
        mend = "give each setting one short text, 0 or 1"
        raise SettingsError([f"{shown}: has a value too long or too deep to read; {mend}"]) from None
