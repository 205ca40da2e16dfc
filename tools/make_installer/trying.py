"""Tries an installer out: the private tour, as a throw-away person with the real sudo."""

import os
import subprocess

import building

TARGET = "zeph-try"


class TrialError(Exception):
    """The installer did not do what it should; what went wrong has been told."""


def built_tour(folder):
    """Builds the tour where it is not yet; its path."""
    with building.held(folder, "the trial"):
        cmake_folder = os.path.join(folder, "cmake")
        os.makedirs(cmake_folder, exist_ok=True)
        building.forget_other_place(cmake_folder)
        building.configure({"CMAKE_BUILD_TYPE": "Release", "ZEPH_TESTS": "ON"}, cmake_folder)
        return building.build_target(cmake_folder, TARGET)


def ways_of(values):
    """By whose rights it can be installed, in zeph-try's words."""
    return {"everybody": ("sudo",), "person": ("person",), "ask": ("sudo", "person")}[values["install_for"]]


def words_for(way, values, packed):
    """What zeph-try is to know of the product for that way."""
    own = way == "person"
    places = [(part.contents.name, part.person_folder if own else part.folder) for part in packed.parts[1:]]
    return [
        f"by={way}",
        f"asked={int(values['install_for'] == 'ask')}",
        f"title={values['folder_browser_title']}",
        f"folder={values['person_folder'] if own else values['default_install_folder']}",
        f"offered={values['offer_default_folder']}",
        f"plugin={packed.plugin.name}",
        "items=" + "".join(f"{name}/{(folder or '').removeprefix('/')}\n" for name, folder in places),
    ]


def try_out(tour, values, packed, stage, installer, pictures):
    """Plays each way to install it; TrialError when something was not as it must be. The pictures of
    the second one are in a folder of its own beside those of the first."""
    as_root = []
    if os.getuid() != 0:
        print("The private screen needs root for a throw-away account: sudo will ask.", flush=True)
        as_root = ["sudo"]
    for way in ways_of(values):
        place = pictures if way == ways_of(values)[0] else f"{pictures}-{way}"
        command = [
            *as_root,
            tour,
            f"installer={os.path.abspath(installer)}",
            f"archive={os.path.abspath(stage.archive)}",
            f"pictures={os.path.abspath(place)}",
            *words_for(way, values, packed),
        ]
        if subprocess.run(command, check=False).returncode != 0:
            raise TrialError("the installer was made, and failed when it was tried")
