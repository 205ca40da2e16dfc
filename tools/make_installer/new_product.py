"""Lays out a folder to start a product of one's own from."""

import os
import shutil

TEMPLATE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "template")


class FolderError(Exception):
    """The folder cannot be laid out; the text says why and what helps."""


def lay_out(folder):
    """Copies the template; never over anything that is there."""
    try:
        os.makedirs(folder, exist_ok=True)
        if os.listdir(folder):
            raise FolderError(f"{folder} is not empty; name a folder that is not there yet")
        for name in sorted(os.listdir(TEMPLATE)):
            shutil.copyfile(os.path.join(TEMPLATE, name), os.path.join(folder, name))
    except OSError as error:
        raise FolderError(f"{folder} cannot be made: {error.strerror}") from None
