"""What would make an installer that works of no use to its person: each with its mend. With --strict
they are errors."""

import filecmp
import os
import re
import stat

import archive
import plugin_facts
import settings
from new_product import TEMPLATE
from wording import some_of, visible

# Where hosts look, by the last name of the folder.
FOLDERS = {
    "lv2": plugin_facts.LV2,
    "vst3": plugin_facts.VST3,
    "clap": plugin_facts.CLAP,
    "ladspa": plugin_facts.LADSPA,
    "dssi": plugin_facts.DSSI,
}
# Hosts look into folders below only for these.
LOOKED_FOR_BELOW = {plugin_facts.VST3, plugin_facts.CLAP}
VST3_PROCESSORS = {"x86_64": "x86-64", "aarch64": "arm64", "i386": "i386", "i686": "i386",
                   "armv7l": "arm"}


def several(names, longest=5):
    return ", ".join(visible(name) for name in some_of(names, longest))


def about_unreadable(facts):
    for name, what in some_of(facts.unreadable):
        yield "plugin", f"{visible(name)} {what}, so no host can load it; put the built library there"


def about_libraries(facts):
    yield from about_unreadable(facts)
    if not facts.libraries and not facts.unreadable:
        wrong = "there is no shared object in it, so no host can load it"
        yield "plugin", f"{wrong}; put the built plug-in there"


def about_processor(facts, own):
    """What the machines with that processor, which the installer is for, cannot load."""
    others = []
    in_vst3 = {}
    for library in facts.libraries:
        place = plugin_facts.VST3_FOLDER.search(library.name)
        if not place:
            if library.facts.processor != own:
                others.append(library)
            continue
        bundle = library.name[: place.start()]
        processor = VST3_PROCESSORS.get(place[1], place[1])
        in_vst3.setdefault(bundle, set()).add(processor)
        if processor != library.facts.processor:
            wrong = f"{visible(library.name)} is for {library.facts.processor}, not {place[1]}"
            yield "plugin", f"{wrong}; put each library into its processor's folder"
    if others:
        names = several(library.name for library in others)
        kinds = ", ".join(sorted({library.facts.processor for library in others}))
        wrong = f"{names}: for {kinds}, while the installer runs on {own}"
        yield "plugin", f"{wrong}; pack the {own} build"
    for bundle, processors in in_vst3.items():
        if own not in processors:
            kinds = ", ".join(sorted(processors))
            wrong = f"{visible(bundle)} is for {kinds} only, while the installer runs on {own}"
            yield "plugin", f"{wrong}; pack the {own} build"


def about_processors(packed, facts, own):
    """The same of each part of a Package."""
    for part, found in zip(packed.parts, facts):
        for _, said in about_processor(found, own):
            yield part.setting, said


def about_folder(facts, folder):
    looked_for = FOLDERS.get(os.path.basename(folder))
    formats = facts.formats()
    if not formats or looked_for is None or looked_for in formats:
        return
    right = folder[: -len(os.path.basename(folder))] + formats[0].lower()
    wrong = f"hosts look for {looked_for} plug-ins in {folder}, not for {formats[0]}"
    yield "default_install_folder", f'{wrong}; write "{right}"'


def about_depth(facts, top):
    """Bundles and libraries that hosts would see only directly in the folder."""
    deep = [bundle.name for bundle in facts.bundles if bundle.name != top]
    if deep and len(deep) == len(facts.bundles):
        wrong = f"hosts do not look into {visible(top)}/ and see none of {several(deep)}"
        yield "plugin", f"{wrong}; name one bundle as the plug-in, and make each other one an [[item]]"
    deep = [
        library.name
        for library in facts.libraries
        if library.format() in (plugin_facts.LADSPA, plugin_facts.DSSI) and "/" in library.name
    ]
    # DSSI hosts look into a folder of the library's name for its window only.
    if deep and not facts.bundles:
        wrong = f"hosts do not look into {visible(top)}/ and do not see {several(deep)}"
        yield "plugin", f"{wrong}; name the library itself as the plug-in"


def about_bundle(bundle, has_plugin):
    """What is wrong with an LV2 bundle and the mend, or None."""
    name = f"{visible(bundle.name)}/manifest.ttl"
    if bundle.broken:
        return f"{name}: {visible(bundle.broken)}; mend it as Turtle"
    if bundle.absent:
        wrong = f"{name} names what is not there: {several(bundle.absent)}"
        return f"{wrong}; put it there or take it out of the manifest"
    if has_plugin and bundle.seen == []:
        wrong = f"{visible(bundle.name)}: LV2 hosts find no plug-in in it"
        return f"{wrong}; see what lv2ls and lv2info say of it"
    return None


def about_manifests(facts, has_plugins):
    for tool, package in facts.missing_tools:
        wrong = f"the LV2 bundle was not looked at by {tool}, which is not here"
        yield "plugin", f"{wrong}; install the package {package}"
    for bundle in facts.bundles:
        said = about_bundle(bundle, has_plugins)
        if said:
            yield "plugin", said


def runs(path):
    """Whether the system can start the file."""
    with open(path, "rb") as file:
        return file.read(4).startswith((b"\x7fELF", b"#!"))


def about_executable(packed, values):
    if values["install_desktop_files"] != 1:
        return
    wanted = values["product_executable"]
    path = {name: path for path, name in packed.members}.get(wanted)
    wrong = mend = None
    if path is None:
        wrong, mend = "is not in what is packed", "name a file of the plug-in's folder"
    elif not stat.S_ISREG(os.stat(path).st_mode):
        wrong, mend = "is a folder", "name a program"
    elif not os.stat(path).st_mode & stat.S_IXUSR:
        wrong, mend = "has no x bit", f"chmod +x {visible(path)}"
    elif not runs(path):
        wrong, mend = "is neither a program nor a script", "begin a script with #!/bin/sh"
    if wrong:
        said = f"{visible(wanted)} {wrong}, so the desktop entry starts nothing"
        yield "product_executable", f"{said}; {mend}"


def about_template(folder, values):
    with open(os.path.join(TEMPLATE, settings.FILE_NAME), encoding="utf-8") as file:
        template = file.read()
    for setting in ("product_name", "product_short_name"):
        if re.search(rf'^{setting} = "{re.escape(values[setting])}"$', template, re.M):
            yield setting, f"is still the template's {values[setting]!r}; give it your product's"
    for setting, *_ in settings.PICTURES:
        path = os.path.join(folder, values[setting])
        original = os.path.join(TEMPLATE, setting.removesuffix("_picture") + ".png")
        if setting == "desktop_icon_picture" and values["install_desktop_files"] != 1:
            continue
        if filecmp.cmp(path, original, shallow=False):
            yield setting, f"{visible(values[setting])} is still the template's; draw your own over it"


def about_compression(values):
    if values["compression"] == "xz" and values["verify_installation"] != 1:
        wrong = "is xz, and without verify_installation a machine without it ends at success"
        yield "compression", f"{wrong}; set verify_installation = 1"


def about_time(packed):
    if archive.lies_ahead(archive.newest_time(packed.members)):
        wrong = "its newest file has a time that lies ahead, of which tar would complain"
        yield "plugin", f"{wrong}; set the clock, and the file's time with touch"


def of_product(folder, values, packed, facts, processor):
    """(setting, what is wrong and the mend) of all that can be seen before the build."""
    yield from about_libraries(facts)
    yield from about_processor(facts, processor)
    yield from about_folder(facts, values["default_install_folder"])
    yield from about_depth(facts, packed.name)
    yield from about_manifests(facts, True)
    yield from about_executable(packed, values)
    yield from about_template(folder, values)
    yield from about_compression(values)
    yield from about_time(packed)


def of_item(part, facts, processor):
    """The same of what is installed along with the plug-in. It need not be a plug-in; a bundle without
    a library has presets in it."""
    found = [*about_unreadable(facts), *about_processor(facts, processor)]
    if part.folder is not None:
        found += about_folder(facts, part.folder)
    found += [*about_depth(facts, part.contents.name), *about_manifests(facts, bool(facts.libraries))]
    found += about_time(part.contents)
    names = {"plugin": part.setting, "default_install_folder": part.folder_setting}
    for setting, said in found:
        yield names[setting], said


def of_package(folder, values, packed, facts, processor):
    """The same of all that is packed; facts are those of each part."""
    yield from of_product(folder, values, packed.plugin, facts[0], processor)
    for part, found in zip(packed.parts[1:], facts[1:]):
        yield from of_item(part, found, processor)
