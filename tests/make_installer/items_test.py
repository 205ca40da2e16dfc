"""What may be installed along with the plug-in, and what becomes of it."""

import os
import shutil
import subprocess
import tempfile
import unittest

import tool_path  # noqa: F401

import making
import plugin_facts
import product_case
import product_warnings
import staging
import summary
from new_product import TEMPLATE
from settings_file import SettingsError

BUNDLE = os.path.join(staging.REPOSITORY, "products", "lantern-tilt", "lantern-tilt.lv2")
OWN = plugin_facts.own_processor()


class Items(product_case.ProductCase):
    """A right product, to which each test adds items."""

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = os.path.join(holder.name, "product")
        shutil.copytree(TEMPLATE, self.folder)
        shutil.copytree(BUNDLE, self.path("my-plug-in.lv2"))
        self.put("manual/index.html")
        self.put("a.clap")

    def write(self, text, *changes):
        with open(os.path.join(TEMPLATE, "product.toml"), encoding="utf-8") as file:
            settings = file.read()
        for old, new in changes:
            self.assertIn(old, settings)
            settings = settings.replace(old, new)
        self.put("product.toml", (settings + text).encode())
        self.lines = settings.count("\n")

    def package(self, text, *changes):
        self.write(text, *changes)
        checker, packed = making.checked_product(self.folder)
        return checker, packed

    def refused(self, text, *changes):
        """All that is complained of, without the file's name."""
        self.write(text, *changes)
        with self.assertRaises(SettingsError) as caught:
            making.checked_product(self.folder)
        return [line.removeprefix(self.path("product.toml")) for line in caught.exception.complaints]

    def expect_refused(self, text, line, said, *changes):
        complaints = self.refused(text, *changes)
        self.assertEqual(complaints, [f":{self.lines + line}: {said}"])


class WhatIsRefused(Items):
    def test_folders_that_are_none(self):
        begin = '[[item]]\npath = "a.clap"\nfolder = '
        for folder, said in (
            ('"lib/clap"', "'lib/clap' is not absolute; begin with /"),
            ('"/usr/../clap"', "'/usr/../clap' has an empty name, . or .. in it or a / at its end; "
             "write the folder's plain path"),
            ('""', "is empty; name a folder, or leave the line out: it goes beside the plug-in then"),
            ("7", 'is not a text; write it in quotes: "..."'),
            ('"/usr/lib/lv2"', "is default_install_folder, in place of which the person may choose "
             "another one; leave the line out, and it goes wherever the plug-in goes"),
            ('"/usr/lib/lv2/my-plug-in.lv2/presets"', "/usr/lib/lv2/my-plug-in.lv2/presets is inside "
             "the plug-in, which is put in place as a whole; put it into my-plug-in.lv2"),
        ):
            self.expect_refused(begin + folder + "\n", 3, f"item 1: folder: {said}")
        odd = self.refused(begin + '"/opt/a b"\n')
        self.assertIn("item 1: folder: has the character ' '", odd[0])

    def test_one_inside_another_item(self):
        text = '[[item]]\npath = "manual"\nfolder = "/opt"\n'
        text += '[[item]]\npath = "a.clap"\nfolder = "/opt/manual/deep"\n'
        said = "/opt/manual/deep is inside item 1, which is put in place as a whole; put it into manual"
        self.expect_refused(text, 6, f"item 2: folder: {said}")

    def test_the_same_path_twice(self):
        said = "is the plug-in once more; remove one of the two"
        self.expect_refused('[[item]]\npath = "./my-plug-in.lv2"\n', 2, f"item 1: path: {said}")
        text = '[[item]]\npath = "a.clap"\n[[item]]\npath = "a.clap"\n'
        self.expect_refused(text, 4, "item 2: path: is item 1 once more; remove one of the two")

    def test_the_same_name_twice_wherever_it_goes(self):
        self.put("more/a.clap")
        text = '[[item]]\npath = "a.clap"\n[[item]]\npath = "more/a.clap"\nfolder = "/opt"\n'
        said = "has the name of item 1, and both may come into one folder; rename one of the two"
        self.expect_refused(text, 4, f"item 2: path: {said}")

    def test_paths_that_lead_to_nothing_of_ours(self):
        self.put("doc/index.html")
        for path, said in (
            ("none", "there is no .*/none; put it there or name another file or folder"),
            ("../x", r"\.\./x is not in the product folder; copy it, or make a link to it, there"),
            ("splash.png", "splash.png is the splash_picture; name its own file or folder"),
            ("doc", "/doc: a folder of that name belongs to the system; name its own folder"),
        ):
            complaints = self.refused(f'[[item]]\npath = "{path}"\n')
            self.assertEqual(len(complaints), 1, complaints)
            self.assertRegex(complaints[0], f"^:{self.lines + 2}: item 1: path: .*{said}")

    def test_no_path(self):
        said = 'item 1: has no path; add a line path = "..."'
        self.expect_refused('\n[[item]]\nfolder = "/opt"\n', 2, said)

    def test_what_is_no_list_of_items(self):
        for text in ("item = 7\n", 'item = ["a.clap"]\n', "[item]\n"):
            complaints = self.refused(text)
            self.assertIn("item: is not a list of tables; begin each with a line [[item]]", complaints[0])

    def test_settings_of_the_product_behind_an_item(self):
        text = '[[item]]\npath = "a.clap"\nmodern_input = 1\ncolour = 1\n'
        complaints = self.refused(text, ("modern_input = 1\n", ""))
        said = "stands behind [[item]], and so belongs to the item; move it above the first [[item]]"
        self.assertEqual(complaints, [
            f":{self.lines + 3}: item 1: modern_input: {said}",
            f":{self.lines + 4}: item 1: colour: there is no such setting of an item; remove it",
        ])

    def test_items_of_an_installation_that_is_not_put_in_place_as_a_whole(self):
        said = "item 1: needs verify_installation, which puts all in place as a whole; "
        said += "set verify_installation = 1, or remove it"
        off = (("verify_installation = 1\n", "verify_installation = 0\n"),)
        off += (("uninstaller = 1\n", "uninstaller = 0\n"),)
        self.expect_refused('[[item]]\npath = "a.clap"\n', 1, said, *off)

    def test_more_than_are_carried(self):
        for number in range(17):
            self.put(f"page{number}")
        text = "".join(f'[[item]]\npath = "page{number}"\n' for number in range(17))
        said = "item 17: is one too many: an installer carries at most 16 items; "
        self.expect_refused(text, 33, said + "put some of them into one folder")


class WhatIsCarried(Items):
    TEXT = '[[item]]\npath = "manual"\nfolder = "/opt/my doc"\n'.replace(" doc", "-doc")
    TEXT += '[[item]]\npath = "sub/b.clap"\n'

    def test_all_in_one_archive_under_names_of_their_own(self):
        self.put("sub/b.clap", b"x" * 5000)
        self.put("manual/index.html~")
        _, packed = self.package(self.TEXT)
        names = [name for _, name in packed.members]
        self.assertEqual(names[0], "my-plug-in.lv2")
        self.assertEqual(names[-3:], ["manual", "manual/index.html", "b.clap"])
        self.assertEqual(packed.left_out, ["manual/index.html~"])

    def test_the_settings_table_names_them(self):
        self.put("sub/b.clap", b"x" * 5000)
        checker, packed = self.package(self.TEXT)
        header = staging.header_text(checker.values, packed, 1)
        table = '    .items = {{"manual", "/opt/my-doc", nullptr, 8192}, {"b.clap", nullptr, nullptr, 8192}},\n'
        self.assertIn(table, header)
        checker, packed = self.package("")
        self.assertIn("    .items = {},\n", staging.header_text(checker.values, packed, 1))

    def test_the_summary_says_where_they_go(self):
        self.put("sub/b.clap")
        checker, packed = self.package(self.TEXT)
        places = list(summary.item_places(checker.values, packed.parts[1:]))
        self.assertEqual(places, ["manual into /opt/my-doc", "b.clap beside the plug-in"])


class ForOnePerson(Items):
    FOR_PERSON = ('install_for = "everybody"\n', 'install_for = "person"\n')

    def test_known_folders_have_one_in_the_home(self):
        text = '[[item]]\npath = "a.clap"\nfolder = "/usr/lib64/clap"\n'
        checker, packed = self.package(text, self.FOR_PERSON)
        self.assertEqual(checker.values["person_folder"], "~/.lv2")
        header = staging.header_text(checker.values, packed, 1)
        self.assertIn('    .person_folder = "~/.lv2",\n', header)
        self.assertIn("    .install_for = InstallFor::person,\n", header)
        self.assertIn('{"a.clap", "/usr/lib64/clap", "~/.clap", 8192}'.replace("8192", "4096"), header)
        self.assertEqual(list(summary.main_places(checker.values)), ["~/.lv2"])
        places = list(summary.item_places(checker.values, packed.parts[1:]))
        self.assertEqual(places, ["a.clap into ~/.clap"])

    def test_other_folders_need_to_be_named(self):
        text = '[[item]]\npath = "manual"\nfolder = "/opt/doc"\n'
        said = "item 1: person_folder: is missing, and doc is no folder that is known to stand for one "
        said += 'in the home; add a line person_folder = "~/..."'
        self.expect_refused(text, 1, said, self.FOR_PERSON)
        checker, _ = self.package(text + 'person_folder = "~/doc"\n', self.FOR_PERSON)
        self.assertEqual(checker.items[0].person_folder, "~/doc")
        self.package(text)  # for everybody none is needed

    def test_folders_that_are_not_in_the_home(self):
        for place, said in (
            ('"/opt"', "'/opt' is not in the home folder; begin with ~/"),
            ('"~/../b"', "'~/../b' has an empty name, . or .. in it or a / at its end; "
             "write the folder's plain path"),
            ("7", 'is not a text; write it in quotes: "..."'),
        ):
            text = f'[[item]]\npath = "manual"\nfolder = "/opt/doc"\nperson_folder = {place}\n'
            self.expect_refused(text, 4, f"item 1: person_folder: {said}", self.FOR_PERSON)
        text = '[[item]]\npath = "manual"\nperson_folder = "~/doc"\n'
        said = "item 1: person_folder: is there without folder; add folder, or remove it"
        self.expect_refused(text, 3, said)
        text = '[[item]]\npath = "manual"\nfolder = "/opt/doc"\nperson_folder = "~/.lv2/my-plug-in.lv2"\n'
        said = "item 1: person_folder: ~/.lv2/my-plug-in.lv2 is inside the plug-in, which is put in place "
        self.expect_refused(text, 4, said + "as a whole; put it into my-plug-in.lv2", self.FOR_PERSON)

    def test_what_takes_root_or_tells_of_no_failure(self):
        off = (("verify_installation = 1\n", "verify_installation = 0\n"),)
        off += (("uninstaller = 1\n", "uninstaller = 0\n"),)
        said = "but without root only verify_installation finds out what failed"
        self.assertIn(said, self.refused("", self.FOR_PERSON, *off)[0])
        extra = ("create_extra_folder = 0\n", "create_extra_folder = 1\n")
        complaints = self.refused("", self.FOR_PERSON, extra)
        self.assertIn("without root nobody can make extra_folder", "".join(complaints))
        complaints = self.refused("", (self.FOR_PERSON[0], 'install_for = "root"\n'))
        self.assertIn("""install_for: is 'root'; write "everybody" or "person" or "ask\"""", complaints[0])


class WhatIsWarnedOf(Items):
    def warnings(self, text):
        checker, packed = self.package(text)
        facts = [plugin_facts.inspect(part.contents.members) for part in packed.parts]
        found = product_warnings.of_package(self.folder, checker.values, packed, facts, OWN)
        return [f"{setting}: {said}" for setting, said in found if setting.startswith("item")]

    def put_library(self, name, entry):
        source = f"int {entry}(void) {{ return 0; }}\n".encode()
        command = ["cc", "-shared", "-fPIC", "-x", "c", "-", "-o", self.path(name)]
        subprocess.run(command, input=source, check=True)

    def test_nothing_of_a_manual_or_a_right_library(self):
        self.put_library("right.clap", "clap_entry")
        text = '[[item]]\npath = "manual"\nfolder = "/opt/doc"\n'
        text += '[[item]]\npath = "right.clap"\nfolder = "/usr/lib/clap"\n'
        self.assertEqual(self.warnings(text), [])

    def test_a_library_in_a_folder_of_another_format_or_for_another_processor(self):
        self.put_library("wrong.clap", "clap_entry")
        with open(self.path("wrong.clap"), "r+b") as library:
            library.seek(18)
            library.write(bytes([243, 0]))
        found = self.warnings('[[item]]\npath = "wrong.clap"\nfolder = "/usr/lib/vst3"\n')
        self.assertEqual(len(found), 2, found)
        self.assertIn(f"item 1: path: wrong.clap: for riscv64, while the installer runs on {OWN}", found[0])
        said = "item 1: folder: hosts look for VST3 plug-ins in /usr/lib/vst3, not for CLAP; write "
        self.assertEqual(found[1], said + '"/usr/lib/clap"')

    def test_what_is_no_library(self):
        found = self.warnings('[[item]]\npath = "a.clap"\nfolder = "/usr/lib/clap"\n')
        self.assertEqual(len(found), 1)
        self.assertIn("item 1: path: a.clap is not an ELF file", found[0])


if __name__ == "__main__":
    unittest.main()
