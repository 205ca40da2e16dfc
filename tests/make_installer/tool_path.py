"""Lets a test import the modules of ./make-installer."""

import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
TOOL = os.path.join(HERE, "..", "..", "tools", "make_installer")
sys.dont_write_bytecode = True
sys.path.insert(0, os.path.normpath(TOOL))
