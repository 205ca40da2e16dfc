"""For which processor an installer is made, how that is seen, and which plug-ins are not for it."""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest

import tool_path  # noqa: F401

import making
import plugin_facts
import processors
import staging

OWN = plugin_facts.own_processor()
PRODUCT = os.path.join(staging.REPOSITORY, "products", "lantern-tilt")
MAIN = os.path.join(tool_path.TOOL, "main.py")
VALUES = {"product_short_name": "a", "product_version": "1"}


class WantedProcessor(unittest.TestCase):
    def test_is_this_machines_when_nothing_is_said(self):
        for name in (None, OWN):
            own = processors.wanted(name)
            self.assertEqual((own.name, own.toolchain, own.tools), (OWN, "", ""))
            self.assertEqual(making.executable_name(VALUES, own), "a-1-installer")

    def test_another_one_has_its_tools_its_name_and_its_folder(self):
        if OWN == "arm64":
            return
        other = processors.wanted("arm64")
        self.assertTrue(os.path.exists(os.path.join(staging.REPOSITORY, "cmake", other.toolchain)))
        self.assertEqual(making.executable_name(VALUES, other), "a-1-arm64-installer")
        own = making.build_folder_for(PRODUCT, processors.wanted(None))
        self.assertEqual(making.build_folder_for(PRODUCT, other), own + "-arm64")

    def test_an_unknown_one_is_refused(self):
        with self.assertRaises(processors.ProcessorError):
            processors.wanted("m68k")


class PluginForAnotherProcessor(unittest.TestCase):
    def test_is_refused_where_the_maker_names_a_processor(self):
        # A library for a third one is for none that an installer can be made for.
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        product = os.path.join(holder.name, "product")
        shutil.copytree(PRODUCT, product)
        with open(os.path.join(product, "lantern-tilt.lv2", "lantern-tilt.so"), "r+b") as library:
            library.seek(18)
            library.write(bytes([243, 0]))
        command = [sys.executable, "-B", MAIN, "--for", "arm64", "--build", holder.name + "/build", product]
        result = subprocess.run(command, capture_output=True, text=True, check=False)
        self.assertNotEqual(result.returncode, 0)
        said = "lantern-tilt.lv2/lantern-tilt.so: for riscv64, while the installer runs on arm64"
        self.assertIn(said, result.stderr)
        self.assertIn("pack the arm64 build", result.stderr)
        self.assertIn("nothing was built", result.stderr)


if __name__ == "__main__":
    unittest.main()
