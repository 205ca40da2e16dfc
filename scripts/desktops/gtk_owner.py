"""Owns the clipboard with the text of a file, as any GTK program does: gtk_owner.py FILE"""

import sys

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402

with open(sys.argv[1], encoding="utf-8") as file:
    text = file.read()
Gtk.Clipboard.get(Gdk.SELECTION_CLIPBOARD).set_text(text, -1)
Gtk.main()
