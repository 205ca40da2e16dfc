"""From a product folder to the files that its maker hands out."""

import hashlib
import json
import os
import re
import sys

import building
import contrast
import handing_out
import plugin_facts
import processors
import product_warnings
import settings
import staging
import trying
from settings_file import SettingsError
from summary import summary
from wording import some_of, visible


def build_folder_for(folder, processor):
    """A build folder of its own for each product folder, wherever that is, and each processor."""
    path = os.path.realpath(folder)
    name = re.sub(r"[^A-Za-z0-9]+", "-", os.path.basename(path)).strip("-") or "product"
    digest = hashlib.sha256(path.encode(errors="surrogateescape")).hexdigest()[:8]
    name = "-".join([name, digest, *processor.mark()])
    return os.path.join(staging.REPOSITORY, "build", "products", name)


def executable_name(values, processor):
    version = re.sub(r"[^A-Za-z0-9.+-]+", "-", values["product_version"]).strip("-.") or "0"
    return "-".join([values["product_short_name"], version, *processor.mark(), "installer"])


def state_of(path):
    """What changes when a file does, or None when there is none."""
    try:
        status = os.stat(path)
    except OSError:
        return None
    return [status.st_size, status.st_mtime_ns, status.st_ino]


def tool_digest():
    """Changes with this tool, whose words are kept with what was made."""
    digest = hashlib.sha256()
    folder = os.path.dirname(os.path.abspath(__file__))
    for name in sorted(os.listdir(folder)):
        if name.endswith(".py"):
            digest.update(handing_out.sum_of(os.path.join(folder, name)).encode())
    return digest.hexdigest()


def hand_out_if_changed(values, stage, product, built, build_folder, output_folder):
    """Leaves what is handed out, unless just that lies there; the path of the executable, and what to
    tell of it."""
    name = executable_name(values, stage.processor)
    places = [os.path.join(output_folder, each) for each in handing_out.names_of(name)]
    record = os.path.join(build_folder, "handed-out.json")
    made_of = [tool_digest(), state_of(built), stage.time, stage.archive_size, values]
    try:
        with open(record, encoding="utf-8") as file:
            old = json.load(file)
        if old["made_of"] == made_of and old["places"] == places:
            if old["states"] == [state_of(place) for place in places]:
                return places[0], "\nNothing changed since it was made." + old["summary"]
    except (OSError, ValueError, KeyError, TypeError):
        pass
    path, digest = handing_out.hand_out(built, output_folder, name, stage)
    told = summary(values, stage, product, path, digest)
    states = [state_of(place) for place in places]
    new = {"made_of": made_of, "places": places, "states": states, "summary": told}
    with open(record, "w", encoding="utf-8") as file:
        json.dump(new, file)
    return path, told


def checked_product(folder):
    """The settings and the Package; SettingsError with all that is wrong with either."""
    checker = settings.check_settings(folder)
    packed = staging.check_files(folder, checker)
    if checker.complaints:
        raise SettingsError(checker.complaints)
    return checker, packed


def warn(checker, found, strict):
    """Tells of what was found; SettingsError with it where the maker is strict."""
    lines = [
        f"{checker.place_of(setting)}: {setting}: {'' if strict else 'warning: '}{said}"
        for setting, said in found
    ]
    if lines and strict:
        raise SettingsError(lines)
    for line in some_of(lines):
        print(line, file=sys.stderr, flush=True)


def make(folder, build_folder, output_folder, strict=False, asked=None, tour_folder=None):
    """Makes what is handed out, and tries it with a tour that is built in tour_folder where that is wanted.
    asked is a processor's name: then a plug-in for other ones is an error."""
    processor = processors.wanted(asked)
    if tour_folder and processor.toolchain:
        wrong = f"an installer for {processor.name} cannot be tried on this machine"
        raise processors.ProcessorError(f"{wrong}; leave out --try")
    checker, packed = checked_product(folder)
    values = checker.values
    handing_out.check_place(output_folder, executable_name(values, processor), values["product_name"])
    print(f"Packing {values['product_name']} {values['product_version']}", flush=True)
    for line in some_of(f"Left out: {visible(name)}" for name in packed.left_out):
        print(line)
    facts = [plugin_facts.inspect(part.contents.members) for part in packed.parts]
    if asked:
        warn(checker, product_warnings.about_processors(packed, facts, processor.name), True)
    found = product_warnings.of_package(folder, values, packed, facts, processor.name)
    warn(checker, found, strict)
    with building.held(build_folder):
        stage = staging.Stage(folder, values, packed, build_folder, processor)
        built = building.build(stage, os.path.join(build_folder, "cmake"))
        unreadable = contrast.complaint_about(building.converted_background(built))
        warn(checker, [("background_picture", unreadable)] if unreadable else [], strict)
        product = (packed, plugin_facts.together(facts))
        path, told = hand_out_if_changed(values, stage, product, built, build_folder, output_folder)
        print(told, end="", flush=True)
        if tour_folder:
            tour = trying.built_tour(tour_folder)
            trying.try_out(tour, values, packed, stage, path, os.path.join(build_folder, "tour"))
