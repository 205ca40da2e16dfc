"""Where things go when they are installed for one person, in the home folder."""

# Where hosts look in a home, by the last name of the folder in which they look for everybody's.
KNOWN = {name: f"~/.{name}" for name in ("lv2", "vst3", "clap", "ladspa", "dssi")}


def wanted(values):
    return values.get("install_for") in ("person", "ask")


def of(checker, setting, given, folder):
    """The folder in the home, as "~/.lv2": the given one, or the one that goes with the folder for
    everybody. Complains where there is none though one is wanted."""
    if given is None or given == "":
        last = folder.rsplit("/", 1)[-1] if isinstance(folder, str) else None
        if last and last not in KNOWN and wanted(checker.values):
            wrong = f"is missing, and {last} is no folder that is known to stand for one in the home"
            checker.complain(setting, wrong, f'add a line {setting.split()[-1]} = "~/..."')
        return KNOWN.get(last)
    if not checker.check_text(setting, given):
        return None
    if not given.startswith("~/"):
        checker.complain(setting, f"{given!r} is not in the home folder", "begin with ~/")
        return None
    checker.check_folder_text(setting, given, given[1:])
    return given


def check(checker):
    """The product's own, and what installing for one person asks of other settings."""
    values = checker.values
    folder = values.get("default_install_folder")
    place = of(checker, "person_folder", values.get("person_folder"), folder)
    values["person_folder"] = place or ""
    if not wanted(values):
        return
    if values.get("verify_installation") == 0:
        wrong = f"is {values['install_for']!r}, but without root only verify_installation finds out what failed"
        checker.complain("install_for", wrong, 'set verify_installation = 1 or this to "everybody"')
    if values.get("create_extra_folder") == 1:
        wrong = "is 1, but without root nobody can make extra_folder"
        checker.complain("create_extra_folder", wrong, "set it to 0, and make what goes there an [[item]]")
