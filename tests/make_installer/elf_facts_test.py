"""What the tool reads from ELF files, held against files whose facts are known."""

import os
import struct
import subprocess
import tempfile
import unittest

import tool_path  # noqa: F401

import elf_facts
import staging

BUNDLE = os.path.join(staging.REPOSITORY, "products", "lantern-tilt", "lantern-tilt.lv2")
SOURCE = "#include <math.h>\ndouble shown(double x) { return pow(x, x); }\n"
SOURCE += "static double own(double x) { return x; }\ndouble (*use)(double) = own;\n"


class ElfFacts(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def file(self, name, content=b""):
        path = os.path.join(self.folder.name, name)
        with open(path, "wb") as file:
            file.write(content)
        return path

    def library(self):
        source, path = self.file("a.c", SOURCE.encode()), self.file("-a [b].so")
        command = ["cc", "-shared", "-fPIC", "-o", path, source, "-lm"]
        subprocess.run(command, check=True)
        return path

    def test_a_library_says_what_it_gives_and_needs(self):
        facts = elf_facts.read_facts(self.library())
        self.assertEqual(facts.kind, "shared object")
        self.assertIn("libm.so.6", facts.needed)
        self.assertIn("shown", facts.exported)
        self.assertNotIn("own", facts.exported)
        self.assertTrue(any(name.startswith("pow@GLIBC_") for name in facts.imported))
        self.assertRegex(facts.highest_versions()["GLIBC"], r"^2\.\d+$")

    def test_the_kept_plugin_is_for_its_processor(self):
        facts = elf_facts.read_facts(os.path.join(BUNDLE, "lantern-tilt.so"))
        self.assertEqual(facts.processor, "x86-64")
        self.assertEqual(facts.exported, {"lv2_descriptor"})
        self.assertEqual(facts.highest_versions(), {"GLIBC": "2.29"})

    def test_a_program_is_told_from_a_library(self):
        self.assertEqual(elf_facts.read_facts("/bin/sh").kind, "program")

    def test_the_processor_is_read_from_the_header(self):
        with open(self.library(), "rb") as file:
            whole = file.read()
        for machine, name in ((183, "arm64"), (243, "riscv64")):
            changed = whole[:18] + struct.pack("<H", machine) + whole[20:]
            self.assertEqual(elf_facts.read_facts(self.file("b.so", changed)).processor, name)

    def test_what_is_none_is_refused(self):
        for content in (b"", b"#!/bin/sh\n", elf_facts.MAGIC, elf_facts.MAGIC + b"\2\1\1" * 30):
            with self.assertRaises(elf_facts.ElfError):
                elf_facts.read_facts(self.file("c.so", content))


class UnpackingStep(unittest.TestCase):
    def test_the_bar_moves_as_often_for_every_size(self):
        for size in (130 * 8192 + 1, 62 * 2**20, 2**30, 2**31 - 1):
            step = staging.unpacking_step(size)
            self.assertLessEqual(-(-size // step), 130)
            self.assertGreaterEqual(-(-size // step), 129)

    def test_a_step_is_never_smaller_than_8192_bytes(self):
        for size in (1, 117_000, 1058756):
            self.assertEqual(staging.unpacking_step(size), 8192)


if __name__ == "__main__":
    unittest.main()
