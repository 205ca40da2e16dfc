"""Each warning about a product that would be of no use, and that a right one has none."""

import os
import shutil
import struct
import subprocess
import tempfile
import time
import unittest

import tool_path  # noqa: F401

import contents
import contrast
import making
import plugin_facts
import product_case
import product_warnings
import staging
from new_product import TEMPLATE

BUNDLE = os.path.join(staging.REPOSITORY, "products", "lantern-tilt", "lantern-tilt.lv2")
OWN = plugin_facts.own_processor()
LIBRARIES = {
    "ladspa.so": "ladspa_descriptor",
    "dssi.so": "dssi_descriptor",
    "plain.so": "something",
    "a.clap": "clap_entry",
    "vst3.so": "GetPluginFactory",
    "lv2.so": "lv2_descriptor",
}


def setUpModule():
    global folder, libraries
    folder = tempfile.TemporaryDirectory()
    libraries = {}
    for name, entry in LIBRARIES.items():
        libraries[name] = os.path.join(folder.name, name)
        source = f"#include <math.h>\ndouble {entry}(double x) {{ return pow(x, x); }}\n".encode()
        command = ["cc", "-shared", "-fPIC", "-x", "c", "-", "-o", libraries[name], "-lm"]
        subprocess.run(command, input=source, check=True)


def tearDownModule():
    folder.cleanup()


class Product(product_case.ProductCase):
    """A product whose plug-in each test lays out."""

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = holder.name
        for name in os.listdir(TEMPLATE):
            shutil.copy(os.path.join(TEMPLATE, name), self.folder)
        for name in os.listdir(self.folder):
            if name.endswith(".png"):  # drawn over: another file, if hardly another picture
                with open(self.path(name), "ab") as file:
                    file.write(b"\0")
        self.values = {
            "product_name": "Mine",
            "product_short_name": "mine",
            "plugin": "a.lv2",
            "default_install_folder": "/usr/lib/lv2",
            "install_desktop_files": 0,
            "product_executable": "",
            "verify_installation": 1,
            "compression": "gzip",
            "splash_picture": "splash.png",
            "background_picture": "background.png",
            "window_icon_picture": "window_icon.png",
            "folder_icon_picture": "folder_icon.png",
            "desktop_icon_picture": "desktop_icon.png",
        }

    def put_library(self, name, library):
        os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        shutil.copy(libraries[library], self.path(name))

    def put_bundle(self, name):
        shutil.copytree(BUNDLE, self.path(name))

    def facts(self):
        complaints, self.packed = contents.complaints_about(self.folder, self.values)
        self.assertEqual(complaints, [])
        return plugin_facts.inspect(self.packed.members)

    def warnings(self):
        facts = self.facts()
        found = product_warnings.of_product(self.folder, self.values, self.packed, facts, OWN)
        return [f"{setting}: {said}" for setting, said in found]

    def expect(self, *patterns):
        found = self.warnings()
        self.assertEqual(len(found), len(patterns), found)
        for said, pattern in zip(found, patterns):
            self.assertRegex(said, pattern)
            self.assertIn("; ", said)  # the mend


class RightOnes(Product):
    def test_each_format_in_its_folder(self):
        self.put_bundle("a.lv2")
        for plugin, folder_name, library in (
            ("a.lv2", "lv2", None),
            ("a.so", "ladspa", "ladspa.so"),
            ("a.so", "dssi", "dssi.so"),
            ("a.clap", "clap", "a.clap"),
            (f"a.vst3/Contents/{os.uname().machine}-linux/a.so", "vst3", "vst3.so"),
        ):
            if library:
                self.put_library(plugin, library)
            self.values["plugin"] = plugin.split("/")[0]
            self.values["default_install_folder"] = "/usr/lib/" + folder_name
            self.expect()

    def test_what_it_is_and_what_it_needs(self):
        self.put_bundle("a.lv2")
        facts = self.facts()
        self.assertEqual(facts.description(), "LV2 bundle")
        self.assertEqual(facts.processors(), ["x86-64"])
        self.assertEqual(facts.needed(), ["libc.so.6", "libm.so.6"])
        self.assertEqual(facts.newest("GLIBC"), "2.29")
        self.assertEqual(facts.newest_symbol("GLIBC"), "exp@GLIBC_2.29")
        self.assertEqual(facts.bundles[0].seen, ["Lantern Tilt"])
        for name, what in (("ladspa.so", "LADSPA"), ("a.clap", "CLAP"), ("dssi.so", "DSSI")):
            self.put_library(name, name)
            self.values["plugin"] = name
            self.assertEqual(self.facts().description(), what + " library")
        self.put_library("plain.so", "plain.so")
        self.values["plugin"] = "plain.so"
        self.assertEqual(self.facts().description(), "a library of no known format")

    def test_the_example_products(self):
        for name in ("lantern-tilt", "lantern-set", "lantern-solo", "lantern-choice"):
            folder = os.path.join(staging.REPOSITORY, "products", name)
            checker, packed = making.checked_product(folder)
            facts = [plugin_facts.inspect(part.contents.members) for part in packed.parts]
            found = product_warnings.of_package(folder, checker.values, packed, facts, OWN)
            self.assertEqual(list(found), [])

    def test_a_library_that_it_brings_is_none_that_it_needs(self):
        self.put_library("a.lv2/libm.so.6", "plain.so")
        self.put_library("a.lv2/a.so", "lv2.so")
        self.assertNotIn("libm.so.6", self.facts().needed())


class Libraries(Product):
    def test_no_shared_object_at_all(self):
        self.put("a.lv2/readme")
        self.expect("plugin: there is no shared object in it.*; put the built plug-in there")

    def test_a_library_that_is_none(self):
        self.put_library("a.lv2/lv2.so", "lv2.so")
        self.put("a.lv2/a.so", b"<html>")
        self.put("a.lv2/b.so", b"")
        shutil.copy("/bin/sh", self.path("a.lv2/c.so"))
        self.put("a.lv2/d.so", b"\x7fELF\2\1\1")
        self.expect("a.so is not an ELF", "b.so is empty", "c.so is a program", "d.so cannot be read")

    def changed_machine(self, name):
        with open(libraries[name], "rb") as file:
            whole = file.read()
        return whole[:18] + struct.pack("<H", 243) + whole[20:]

    def test_another_processor(self):
        self.put("a.so", self.changed_machine("plain.so"))
        self.values["plugin"] = "a.so"
        self.expect(f"a.so: for riscv64, while the installer runs on {OWN}; pack the {OWN} build")

    def test_vst3_folders_of_processors(self):
        own = f"a.vst3/Contents/{os.uname().machine}-linux/a.so"
        self.values.update(plugin="a.vst3", default_install_folder="/usr/lib/vst3")
        self.put("a.vst3/Contents/riscv64-linux/a.so", self.changed_machine("vst3.so"))
        self.expect(f"a.vst3 is for riscv64 only, while the installer runs on {OWN}")
        self.put_library(own, "vst3.so")
        self.expect()
        self.put(own, self.changed_machine("vst3.so"))
        self.expect("a.so is for riscv64, not .*; put each library into its processor's folder")


class Places(Product):
    def test_a_format_in_another_ones_folder(self):
        self.put_library("a.clap", "a.clap")
        self.values["plugin"] = "a.clap"
        self.expect('default_install_folder: .*LV2 plug-ins in /usr/lib/lv2.*CLAP; write "/usr/lib/clap"')
        self.put_bundle("a.lv2")
        self.values.update(plugin="a.lv2", default_install_folder="/usr/local/lib/vst3")
        self.expect('VST3 plug-ins in .*, not for LV2; write "/usr/local/lib/lv2"')

    def test_bundles_one_level_too_deep(self):
        self.values["plugin"] = "suite"
        for number in range(8):
            self.put_bundle(f"suite/{number}.lv2")
        self.expect("hosts do not look into suite/ and see none of .*4.lv2, and 3 more; name one bundle")

    def test_ladspa_libraries_one_level_too_deep(self):
        self.values.update(plugin="suite", default_install_folder="/usr/lib/ladspa")
        self.put_library("suite/ladspa.so", "ladspa.so")
        self.expect("do not see suite/ladspa.so; name the library itself")


class Manifests(Product):
    def test_one_that_names_what_is_not_there(self):
        self.put_bundle("a.lv2")
        os.unlink(self.path("a.lv2/lantern-tilt.ttl"))
        self.expect("a.lv2/manifest.ttl names what is not there: lantern-tilt.ttl; put it there")
        os.unlink(self.path("a.lv2/lantern-tilt.so"))
        self.expect("there is no shared object", "not there: lantern-tilt.so, lantern-tilt.ttl")

    def test_names_with_blanks_and_umlauts_are_found(self):
        self.put_bundle("a.lv2")
        os.rename(self.path("a.lv2/lantern-tilt.so"), self.path("a.lv2/a ü.so"))
        with open(self.path("a.lv2/manifest.ttl"), encoding="utf-8") as file:
            text = file.read()
        self.put("a.lv2/manifest.ttl", text.replace("lantern-tilt.so", "a%20%C3%BC.so").encode())
        self.expect()

    def test_one_that_is_no_turtle_and_one_that_says_nothing(self):
        self.put_bundle("a.lv2")
        self.put("a.lv2/manifest.ttl", b"@prefix lv2: <http")
        self.expect("a.lv2/manifest.ttl: .*; mend it as Turtle")
        self.put("a.lv2/manifest.ttl", b"# nothing\n")
        self.expect("a.lv2: LV2 hosts find no plug-in in it; see")

    def test_a_tool_that_is_not_here_is_named_with_its_package(self):
        self.put_bundle("a.lv2")
        path = os.environ["PATH"]
        self.addCleanup(os.environ.update, PATH=path)
        with tempfile.TemporaryDirectory() as tools:
            os.symlink(shutil.which("readelf"), os.path.join(tools, "readelf"))
            os.environ["PATH"] = tools
            self.expect("by serdi, which is not here; install the package serdi", "package lilv-utils")


class TheRest(Product):
    def test_an_executable_that_cannot_be_executed(self):
        self.put_bundle("a.lv2")
        self.values["install_desktop_files"] = 1
        for wanted, wrong in (
            ("a.lv2/nothing", "is not in what is packed"),
            ("a.lv2", "is a folder"),
            ("a.lv2/manual.html", "has no x bit, .*; chmod \\+x"),
            ("a.lv2/LICENSE", "is neither a program nor a script"),
        ):
            if wanted.endswith("LICENSE"):
                os.chmod(self.path(wanted), 0o755)
            self.values["product_executable"] = wanted
            self.expect(f"product_executable: {wanted} {wrong}")
        self.values["product_executable"] = "a.lv2/open-manual"
        self.expect()

    def test_what_is_still_the_templates(self):
        self.put_bundle("a.lv2")
        self.values.update(product_name="My Plug-in", product_short_name="my-plug-in")
        shutil.copy(os.path.join(TEMPLATE, "splash.png"), self.folder)
        shutil.copy(os.path.join(TEMPLATE, "desktop_icon.png"), self.folder)  # not used
        self.expect(
            "product_name: is still the template's 'My Plug-in'",
            "product_short_name: is still",
            "splash_picture: splash.png is still the template's; draw",
        )

    def test_xz_that_nobody_would_miss(self):
        self.put_bundle("a.lv2")
        self.values.update(compression="xz", verify_installation=0)
        self.expect("compression: .*; set verify_installation = 1")

    def test_a_file_of_tomorrow(self):
        self.put_bundle("a.lv2")
        tomorrow = time.time() + 86400
        os.utime(self.path("a.lv2/LICENSE"), (tomorrow, tomorrow))
        self.expect("lies ahead, of which tar would complain; set the clock")


class Contrast(unittest.TestCase):
    def complaint(self, paint):
        """What is said of a picture that paint(column, row) gives the colours of."""
        pixels = bytearray()
        for row in range(336):
            for column in range(600):
                pixels += bytes(paint(column, row)) + b"\xff"
        with tempfile.NamedTemporaryFile() as file:
            file.write(contrast.HEADER.pack(b"GdkP", 0, 0, 2400, 600, 336) + pixels)
            file.flush()
            return contrast.complaint_about(file.name)

    def test_white_on_light_is_told_with_its_place(self):
        said = self.complaint(lambda x, y: (200, 200, 200) if 300 < x < 350 and y < 40 else (0, 0, 0))
        self.assertRegex(said, r"contrast of 1\.\d to 1 at row (24|40), column 3\d\d; make .* darker")

    def test_below_the_lines_and_in_the_margin_all_is_good(self):
        self.assertIsNone(self.complaint(lambda x, y: (255,) * 3 if y > 212 or x < 8 else (90, 0, 90)))

    def test_the_limit_is_four_and_a_half(self):
        self.assertIsNone(self.complaint(lambda x, y: (118, 118, 118)))
        self.assertIsNotNone(self.complaint(lambda x, y: (120, 120, 120)))


if __name__ == "__main__":
    unittest.main()
