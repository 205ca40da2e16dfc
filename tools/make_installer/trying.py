"""Tries an installer out: the private tour, as a throw-away person with the real sudo."""

import os
import subprocess

import building

TARGET = "zeph-try"


class TrialError(Exception):
    """The installer did not do what it should; what went wrong has been told."""


def check_possible(values):
    """TrialError when the tour does not know the way through this product's screens."""
    if values["install_for"] != "everybody":
        wrong = f"the trial plays installations for everybody, and install_for is {values['install_for']!r}"
        raise TrialError(f'{wrong}; try it with install_for = "everybody", or leave out --try')


def built_tour(folder):
    """Builds the tour where it is not yet; its path."""
    with building.held(folder, "the trial"):
        cmake_folder = os.path.join(folder, "cmake")
        os.makedirs(cmake_folder, exist_ok=True)
        building.forget_other_place(cmake_folder)
        building.configure({"CMAKE_BUILD_TYPE": "Release", "ZEPH_TESTS": "ON"}, cmake_folder)
        return building.build_target(cmake_folder, TARGET)


def try_out(tour, values, packed, stage, installer, pictures):
    """Plays the installation; TrialError when something was not as it must be."""
    command = [
        tour,
        f"installer={os.path.abspath(installer)}",
        f"archive={os.path.abspath(stage.archive)}",
        f"title={values['folder_browser_title']}",
        f"folder={values['default_install_folder']}",
        f"offered={values['offer_default_folder']}",
        f"plugin={packed.plugin.name}",
        "items=" + "".join(f"{part.contents.name}{part.folder or '/'}\n" for part in packed.parts[1:]),
        f"pictures={os.path.abspath(pictures)}",
    ]
    if os.getuid() != 0:
        print("The private screen needs root for a throw-away account: sudo will ask.", flush=True)
        command.insert(0, "sudo")
    if subprocess.run(command, check=False).returncode != 0:
        raise TrialError("the installer was made, and failed when it was tried")
