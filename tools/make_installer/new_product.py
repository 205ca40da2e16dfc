"""Lays out a folder to start a product of one's own from."""

import contextlib
import os
import shutil

HERE = os.path.dirname(os.path.abspath(__file__))
REPOSITORY = os.path.normpath(os.path.join(HERE, "..", ".."))
TEMPLATE = os.path.join(HERE, "template")
LICENCES = "INSTALLER-LICENSES.txt"
CONTAINED = (
    ("the installer program", "LICENSE"),
    ("its font", os.path.join("resources", "font", "LICENSE.txt")),
)


class FolderError(Exception):
    """The folder cannot be laid out; the text says why and what helps."""


def licences():
    """What a maker has to pass on with an installer."""
    text = "Beside your plug-in and your pictures, your installer contains the following. Pass these\n"
    text += "texts on with it, for example in the plug-in's folder or on the download page.\n"
    for what, name in CONTAINED:
        with open(os.path.join(REPOSITORY, name), encoding="utf-8") as file:
            text += f"\n---- Your installer contains {what} ----\n\n{file.read()}"
    return text


def lay_out(folder):
    """Copies the template; never over anything that is there. Where it fails an empty folder may stay."""
    made = []
    try:
        os.makedirs(folder, exist_ok=True)
        if os.listdir(folder):
            raise FolderError(f"{folder} is not empty; name a folder that is not there yet")
        for name in sorted(os.listdir(TEMPLATE)):
            made.append(os.path.join(folder, name))
            shutil.copy(os.path.join(TEMPLATE, name), folder)
        made.append(os.path.join(folder, LICENCES))
        with open(made[-1], "w", encoding="utf-8") as file:
            file.write(licences())
    except OSError as error:
        for path in made:
            with contextlib.suppress(OSError):
                os.unlink(path)
        mend = "name another one; it can be anywhere"
        raise FolderError(f"{folder} cannot be made: {error.strerror}; {mend}") from None
