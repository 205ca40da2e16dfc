"""Runs the build of one product and leaves the stripped executable where the maker asked for it."""

import contextlib
import fcntl
import os
import re
import shutil
import signal
import subprocess

from progress import Progress
from staging import REPOSITORY

TARGET = "zeph-installer"
STEP = re.compile(r"\[(\d+)/(\d+)\] ")


class BuildError(Exception):
    """A command failed; the text is its output."""


@contextlib.contextmanager
def held(build_folder, what="this product"):
    """One run at a time in a build folder; the other waits."""
    os.makedirs(build_folder, exist_ok=True)
    with open(os.path.join(build_folder, "lock"), "w", encoding="ascii") as lock:
        try:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            print(f"Another run makes {what}; waiting for it", flush=True)
            fcntl.flock(lock, fcntl.LOCK_EX)
        yield


def run(command):
    """Runs a command to its end; BuildError with its complaints when it fails."""
    result = subprocess.run(command, capture_output=True, text=True, errors="replace", check=False)
    if result.returncode != 0:
        raise BuildError(f"{command[0]} failed:\n{result.stderr or result.stdout}")


def forget_other_place(build_folder):
    """CMake refuses a build folder that was copied, or whose sources moved; all in it is made anew."""
    try:
        with open(os.path.join(build_folder, "CMakeCache.txt"), encoding="utf-8") as file:
            places = dict(re.findall(r"^(CMAKE_\w+_(?:DIR|DIRECTORY)):\w+=(.*)$", file.read(), re.M))
    except FileNotFoundError:
        return
    wanted = {"CMAKE_CACHEFILE_DIR": build_folder, "CMAKE_HOME_DIRECTORY": REPOSITORY}
    if any(
        os.path.realpath(places.get(name, "")) != os.path.realpath(place)
        for name, place in wanted.items()
    ):
        print("The build folder was made in another place and is made anew", flush=True)
        shutil.rmtree(build_folder)
        os.makedirs(build_folder)


def configure(definitions, build_folder):
    """Runs CMake with these definitions, unless it has been."""
    command = ["cmake", "-G", "Ninja", "-S", REPOSITORY, "-B", build_folder]
    if shutil.which("ccache"):
        for language in ("C", "CXX"):
            definitions = {**definitions, f"CMAKE_{language}_COMPILER_LAUNCHER": "ccache"}
    marker = os.path.join(build_folder, "configured")
    wanted = "\n".join(f"{name}={value}" for name, value in definitions.items())
    if os.path.exists(marker):
        with open(marker, encoding="utf-8") as file:
            if file.read() == wanted:
                return
    run(command + [f"-D{name}={value}" for name, value in definitions.items()])
    with open(marker, "w", encoding="utf-8") as file:
        file.write(wanted)


def build(stage, build_folder):
    """Configures where needed and builds; the path of the executable, not yet stripped."""
    os.makedirs(build_folder, exist_ok=True)
    forget_other_place(build_folder)
    definitions = {
        "CMAKE_BUILD_TYPE": "Release",
        "ZEPH_TESTS": "OFF",
        "ZEPH_PRODUCT_SETTINGS_DIR": stage.settings,
        "ZEPH_PRODUCT_ARTWORK": stage.artwork,
        "ZEPH_PAYLOAD_ARCHIVE": stage.archive,
        "ZEPH_PAYLOAD_ICON": stage.icon,
    }
    if stage.processor.toolchain:
        definitions["CMAKE_TOOLCHAIN_FILE"] = os.path.join(REPOSITORY, "cmake", stage.processor.toolchain)
    configure(definitions, build_folder)
    return build_target(build_folder, TARGET)


def build_target(build_folder, target):
    """Builds it; its path."""
    command = ["cmake", "--build", build_folder, "--target", target]
    # In a session of its own, so that all of it can be stopped, and nothing else.
    process = subprocess.Popen(
        command,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
        errors="replace",
        start_new_session=True,
    )
    progress = Progress("Building", "steps")
    said = []
    try:
        for line in process.stdout:
            match = STEP.match(line)
            if match:
                progress.step(int(match[1]), int(match[2]))
            else:
                said.append(line)
        status = process.wait()
    except BaseException:
        os.killpg(process.pid, signal.SIGTERM)
        process.wait()
        raise
    finally:
        progress.end()
    if status != 0:
        raise BuildError("the build failed:\n" + "".join(said))
    return os.path.join(build_folder, target)


def converted_background(built):
    """The background picture as the build has taken it in."""
    return os.path.join(os.path.dirname(built), "resources", "artwork", "background.blob")


def strip(executable, output, processor):
    """Leaves a stripped copy at output."""
    run([processor.tools + "strip", "--strip-all", "-o", output, executable])
