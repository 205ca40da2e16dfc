"""Runs the build of one product and leaves the stripped executable where the maker asked for it."""

import os
import re
import shutil
import subprocess
import sys

from staging import REPOSITORY

TARGET = "zeph-installer"
STEP = re.compile(r"\[(\d+)/(\d+)\] ")


class BuildError(Exception):
    """A command failed; the text is its output."""


class Progress:
    """A count of steps, on one line of a terminal, or now and then a line elsewhere."""

    def __init__(self):
        self.on_terminal = sys.stdout.isatty()
        self.shown = -1

    def step(self, done, total):
        tenths = 10 * done // total
        if self.on_terminal:
            print(f"\rBuilding: {done} of {total} steps", end="", flush=True)
        elif tenths != self.shown:
            print(f"Building: {done} of {total} steps", flush=True)
        self.shown = tenths

    def end(self):
        if self.on_terminal and self.shown >= 0:
            print()


def run(command):
    """Runs a command to its end; BuildError with its complaints when it fails."""
    result = subprocess.run(command, capture_output=True, text=True, errors="replace", check=False)
    if result.returncode != 0:
        raise BuildError(f"{command[0]} failed:\n{result.stderr or result.stdout}")


def configure(stage, build_folder):
    command = ["cmake", "-G", "Ninja", "-S", REPOSITORY, "-B", build_folder]
    definitions = {
        "CMAKE_BUILD_TYPE": "Release",
        "ZEPH_TESTS": "OFF",
        "ZEPH_PRODUCT_SETTINGS_DIR": stage.settings,
        "ZEPH_PRODUCT_ARTWORK": stage.artwork,
        "ZEPH_PAYLOAD_ARCHIVE": stage.archive,
        "ZEPH_PAYLOAD_ICON": stage.icon,
    }
    if shutil.which("ccache"):
        definitions["CMAKE_C_COMPILER_LAUNCHER"] = "ccache"
        definitions["CMAKE_CXX_COMPILER_LAUNCHER"] = "ccache"
    marker = os.path.join(build_folder, "configured")
    wanted = "\n".join(f"{name}={value}" for name, value in definitions.items())
    if os.path.exists(marker) and open(marker, encoding="utf-8").read() == wanted:
        return
    run(command + [f"-D{name}={value}" for name, value in definitions.items()])
    with open(marker, "w", encoding="utf-8") as file:
        file.write(wanted)


def build(stage, build_folder):
    """Configures where needed and builds; the path of the executable, not yet stripped."""
    os.makedirs(build_folder, exist_ok=True)
    configure(stage, build_folder)
    command = ["cmake", "--build", build_folder, "--target", TARGET]
    process = subprocess.Popen(
        command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace"
    )
    progress = Progress()
    said = []
    for line in process.stdout:
        match = STEP.match(line)
        if match:
            progress.step(int(match[1]), int(match[2]))
        else:
            said.append(line)
    progress.end()
    if process.wait() != 0:
        raise BuildError("the build failed:\n" + "".join(said))
    return os.path.join(build_folder, TARGET)


def strip(executable, output):
    """Leaves a stripped copy at output, which appears whole or not at all."""
    os.makedirs(os.path.dirname(output), exist_ok=True)
    unfinished = output + ".unfinished"
    run(["strip", "--strip-all", "-o", unfinished, executable])
    os.replace(unfinished, output)
