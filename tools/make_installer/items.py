"""What is installed along with the plug-in: the rules that each [[item]] of the settings must keep."""

import dataclasses
import os

import person_folders
from settings_file import item_setting
from wording import visible

MOST = 16  # as in product_settings.h
SETTINGS = ("path", "folder", "person_folder")


@dataclasses.dataclass
class Item:
    """An [[item]] that keeps the rules."""

    number: int  # from 1, in the order of the file
    path: str  # in the product folder
    folder: str  # where it goes; None = beside the plug-in
    person_folder: str  # the same for one person

    def name(self):
        """Its name at the archive's top, and where it is installed."""
        return name_of(self.path)


def name_of(path):
    return os.path.basename(os.path.abspath(path))


def swallowed(values):
    """Settings that stand behind an [[item]] and so are taken for its own."""
    given = values.get("item")
    tables = given if isinstance(given, list) else [given]
    return {name for table in tables if isinstance(table, dict) for name in table}


class ItemChecker:
    """Goes through the items; checker collects the complaints."""

    def __init__(self, checker, known):
        self.checker = checker
        self.known = known  # the product's settings
        self.items = []
        given = checker.values.setdefault("item", [])
        if not isinstance(given, list) or not all(isinstance(table, dict) for table in given):
            checker.complain("item", "is not a list of tables", "begin each with a line [[item]]")
            return
        if len(given) > MOST:
            wrong = f"is one too many: an installer carries at most {MOST} items"
            checker.complain(item_setting(MOST + 1), wrong, "put some of them into one folder")
            return
        for number, table in enumerate(given, start=1):
            self.check_names(number, table)
            places = (self.folder(number, table), self.person_folder(number, table))
            item = Item(number, self.path(number, table), *places)
            if item.path:
                self.check_place(item)
                self.check_name(item)
                self.items.append(item)

    def check_names(self, number, table):
        for setting in table:
            if setting in SETTINGS:
                continue
            wrong, mend = "there is no such setting of an item", "remove it"
            if setting in self.known:
                wrong = "stands behind [[item]], and so belongs to the item"
                mend = "move it above the first [[item]]"
            self.checker.complain(item_setting(number, setting), wrong, mend)

    def path(self, number, table):
        setting = item_setting(number, "path")
        value = table.get("path")
        if value is None:
            self.checker.complain(item_setting(number), "has no path", 'add a line path = "..."')
        elif self.checker.check_text(setting, value) and not value:
            self.checker.complain(setting, "is empty", "give it a text")
        elif isinstance(value, str):
            return value
        return None

    def folder(self, number, table):
        setting = item_setting(number, "folder")
        value = table.get("folder")
        if value is not None and self.checker.check_text(setting, value):
            if value:
                self.checker.check_folder_text(setting, value)
                return value
            mend = "name a folder, or leave the line out: it goes beside the plug-in then"
            self.checker.complain(setting, "is empty", mend)
        return None

    def person_folder(self, number, table):
        setting = item_setting(number, "person_folder")
        if table.get("folder") is None:
            if "person_folder" in table:
                self.checker.complain(setting, "is there without folder", "add folder, or remove it")
            return None
        return person_folders.of(self.checker, setting, table.get("person_folder"), table["folder"])

    def others(self):
        """What it is called, path, and folders by setting, of what came before."""
        values = self.checker.values
        if isinstance(values.get("plugin"), str) and values["plugin"]:
            folders = (values.get("default_install_folder"), values.get("person_folder"))
            yield "the plug-in", values["plugin"], folders
        for item in self.items:
            yield item_setting(item.number), item.path, (item.folder, item.person_folder)

    def check_place(self, item):
        own = (item.folder, item.person_folder)
        mains = ("default_install_folder", "person_folder")
        for kind, (name, place) in enumerate(zip(("folder", "person_folder"), own)):
            if not place or (name == "person_folder" and not person_folders.wanted(self.checker.values)):
                continue
            setting = item_setting(item.number, name)
            if place == self.checker.values.get(mains[kind]):
                wrong = f"is {mains[kind]}, in place of which the person may choose another one"
                mend = "leave the line out, and it goes wherever the plug-in goes"
                self.checker.complain(setting, wrong, mend)
                return
            for what, path, folders in self.others():
                if folders[kind] and f"{place}/".startswith(f"{folders[kind]}/{name_of(path)}/"):
                    wrong = f"{visible(place)} is inside {what}, which is put in place as a whole"
                    self.checker.complain(setting, wrong, f"put it into {visible(path)}")

    def check_name(self, item):
        setting = item_setting(item.number, "path")
        for what, path, _ in self.others():
            if os.path.abspath(path) == os.path.abspath(item.path):
                self.checker.complain(setting, f"is {what} once more", "remove one of the two")
            elif name_of(path) == item.name():
                wrong = f"has the name of {what}, and both may come into one folder"
                self.checker.complain(setting, wrong, "rename one of the two")


def check_items(checker, known):
    """The Items of the settings, with a complaint for each rule that is not kept."""
    items = ItemChecker(checker, known).items
    if items and checker.values.get("verify_installation") == 0:
        wrong = "needs verify_installation, which puts all in place as a whole"
        mend = "set verify_installation = 1, or remove it"
        checker.complain(item_setting(items[0].number), wrong, mend)
    return items
