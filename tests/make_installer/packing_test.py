"""What goes into the archive and what does not, and how it is packed."""

import os
import signal
import subprocess
import sys
import tarfile
import tempfile
import unittest

import tool_path  # noqa: F401

import archive
import contents

OCTOBER = 1_700_000_000
PACK = """
import sys
sys.path.insert(0, sys.argv[1])
import archive, contents
try:
    found = contents.Contents(sys.argv[2])
    archive.pack(sys.argv[3], found.members, 0, sys.argv[4])
except KeyboardInterrupt:
    sys.exit(130)
import resource
print(resource.getrusage(resource.RUSAGE_SELF).ru_maxrss // 1024)
"""


class Folder(unittest.TestCase):
    """A product folder with a plug-in in it."""

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = holder.name
        self.values = {"plugin": "a.lv2", "splash_picture": "splash.png"}
        self.put("a.lv2/a.so", b"plug-in")
        self.put("splash.png")
        self.archive = self.path("build/payload.tar.gz")

    def path(self, name):
        return os.path.join(self.folder, name)

    def put(self, name, content=b"", time=OCTOBER):
        os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        with open(self.path(name), "wb") as file:
            file.write(content)
        os.utime(self.path(name), (time, time))

    def contents(self):
        complaints, found = contents.complaints_about(self.folder, self.values)
        self.assertEqual(complaints, [])
        return found

    def complaint(self):
        complaints, _ = contents.complaints_about(self.folder, self.values)
        self.assertEqual(len(complaints), 1, complaints)
        return complaints[0]

    def pack(self, compression="gzip"):
        members = self.contents().members
        return archive.pack(self.archive, members, archive.newest_time(members), compression)

    def packed(self):
        with tarfile.open(self.archive) as members:
            return {member.name: member for member in members}

    def bytes(self):
        with open(self.archive, "rb") as file:
            return file.read()


class WhatIsRefused(Folder):
    def test_an_absolute_link_even_into_the_bundle(self):
        os.symlink(self.path("a.lv2/a.so"), self.path("a.lv2/b.so"))
        self.assertRegex(self.complaint(), "b.so is a link to /.*another place.*; make it a link inside")

    def test_links_that_would_work_on_this_machine_only(self):
        for target in ("../../" + os.path.basename(self.folder) + "/a.lv2/a.so", "../splash.png"):
            link = self.path("a.lv2/b.so")
            os.symlink(target, link)
            self.assertRegex(self.complaint(), "b.so is a link")
            os.unlink(link)

    def test_links_in_circles_and_to_what_is_left_out(self):
        os.symlink("b.so", self.path("a.lv2/b.so"))
        self.assertRegex(self.complaint(), "b.so is a link that leads out")
        os.unlink(self.path("a.lv2/b.so"))
        self.put("a.lv2/a.so~")
        os.symlink("a.so~", self.path("a.lv2/b.so"))
        self.assertRegex(self.complaint(), "b.so is a link to nothing that is packed")

    def test_every_wrong_file_at_once_and_how_many_more(self):
        for number in range(30):
            os.symlink("nothing", self.path(f"a.lv2/{number:02}"))
        complaints, _ = contents.complaints_about(self.folder, self.values)
        self.assertEqual(len(complaints), 21)
        self.assertEqual(complaints[-1], "and 10 more")

    def test_the_product_folder_its_pictures_its_settings_and_what_is_outside(self):
        self.put("product.toml", b"#")
        wrong = {
            ".": "product folder itself",
            "a.lv2/..": "product folder itself",
            "splash.png": "is the splash_picture",
            "product.toml": "is the settings file",
            "..": "not in the product folder",
            "/usr/lib": "not in the product folder",
            "../other.lv2": "not in the product folder",
            "b.lv2": "there is no",
        }
        for plugin, said in wrong.items():
            self.values["plugin"] = plugin
            self.assertIn(said, self.complaint())

    def test_control_characters_of_names_are_made_visible(self):
        os.mkfifo(self.path("a.lv2/\x1b[31m\n"))
        self.assertIn("\\x1b[31m\\n is neither a file", self.complaint())
        os.unlink(self.path("a.lv2/\x1b[31m\n"))
        os.mkfifo(os.fsencode(self.path("a.lv2/")) + b"\xff")
        self.assertIn("a.lv2/\\xff is neither a file", self.complaint())


class WhatIsPacked(Folder):
    def test_links_inside_work_and_are_kept(self):
        self.put("a.lv2/x86/real.so", b"1")
        os.symlink("x86", self.path("a.lv2/arch"))
        os.symlink("arch/../x86/real.so", self.path("a.lv2/b.so"))
        os.symlink("../a.lv2/a.so", self.path("a.lv2/c.so"))
        self.pack()
        members = self.packed()
        self.assertEqual(members["a.lv2/b.so"].linkname, "arch/../x86/real.so")
        self.assertEqual(members["a.lv2/c.so"].linkname, "../a.lv2/a.so")

    def test_what_version_control_and_editors_leave_is_left_out_and_named_once(self):
        self.put("a.lv2/.git/objects/aa", b"1")
        for name in ("a.ttl~", "#a.ttl#", ".DS_Store", "._a.so", ".a.ttl.swp", "__pycache__/a.pyc"):
            self.put("a.lv2/presets/" + name, b"1")
        found = self.contents()
        self.assertEqual(
            found.left_out,
            ["a.lv2/.git"]
            + ["a.lv2/presets/" + name
               for name in ("#a.ttl#", ".DS_Store", "._a.so", ".a.ttl.swp", "__pycache__", "a.ttl~")],
        )
        self.pack()
        self.assertEqual(list(self.packed()), ["a.lv2", "a.lv2/a.so", "a.lv2/presets"])

    def test_a_plugin_that_is_a_link_stands_for_what_it_leads_to(self):
        os.symlink("a.lv2", self.path("b.lv2"))
        self.values["plugin"] = "b.lv2"
        self.pack()
        self.assertEqual(list(self.packed()), ["b.lv2", "b.lv2/a.so"])

    def test_names_come_back_as_they_were(self):
        names = ["-rf", "a b", "ü", "Ω", "*?[", "'\"$(x)\\", "x" * 120, "\n", "#1", ".hidden"]
        for name in names:
            self.put("a.lv2/" + name, b"1")
        self.put("a.lv2/" + os.fsdecode(b"\xe4"), b"1")
        self.pack()
        with tempfile.TemporaryDirectory() as target:
            subprocess.run(["tar", "-xf", self.archive, "-C", target], check=True)
            compare = ["diff", "-r", self.path("a.lv2"), os.path.join(target, "a.lv2")]
            self.assertEqual(subprocess.run(compare, check=False).returncode, 0)


class Times(Folder):
    def test_all_get_the_time_of_the_newest_file(self):
        self.put("a.lv2/new.ttl", b"1", OCTOBER + 5)
        self.pack()
        self.assertEqual({member.mtime for member in self.packed().values()}, {OCTOBER + 5})

    def test_a_folder_and_what_is_left_out_make_nothing_newer(self):
        self.pack()
        first = self.bytes()
        self.put("a.lv2/.DS_Store", b"1", OCTOBER + 9)
        self.assertFalse(self.pack())
        self.assertEqual(self.bytes(), first)

    def test_the_environment_decides_where_it_says(self):
        os.environ["SOURCE_DATE_EPOCH"] = "1234567890"
        self.addCleanup(os.environ.pop, "SOURCE_DATE_EPOCH")
        self.pack()
        self.assertEqual({member.mtime for member in self.packed().values()}, {1234567890})
        os.environ["SOURCE_DATE_EPOCH"] = "yesterday"
        with self.assertRaisesRegex(archive.ArchiveError, "SOURCE_DATE_EPOCH is 'yesterday'; set it"):
            self.pack()


class Packing(Folder):
    def test_nothing_is_packed_where_nothing_changed(self):
        self.assertTrue(self.pack())
        before = os.stat(self.archive)
        self.assertFalse(self.pack())
        self.put("a.lv2/a.so", b"changed")  # as long and as old as before
        self.assertTrue(self.pack())
        self.assertNotEqual(os.stat(self.archive).st_mtime_ns, before.st_mtime_ns)
        self.assertTrue(self.pack("xz"))

    def test_a_spoilt_archive_is_made_anew(self):
        self.pack()
        whole = self.bytes()
        with open(self.archive, "wb") as file:
            file.write(whole[:20])
        self.assertTrue(self.pack())
        self.assertEqual(self.bytes(), whole)

    def test_the_same_bytes_keep_their_time(self):
        self.pack()
        before = os.stat(self.archive).st_mtime_ns
        os.chmod(self.path("a.lv2/a.so"), 0o600)
        self.assertTrue(self.pack())
        self.assertEqual(os.stat(self.archive).st_mtime_ns, before)

    def test_both_compressions_are_the_same_bytes_twice_and_tar_tells_them_apart(self):
        for compression, magic in (("gzip", b"\x1f\x8b"), ("xz", b"\xfd7zXZ")):
            self.pack(compression)
            first = self.bytes()
            os.unlink(self.archive)
            self.pack(compression)
            self.assertEqual(self.bytes(), first)
            self.assertTrue(first.startswith(magic))
            listed = subprocess.run(
                ["tar", "-tf", self.archive], capture_output=True, text=True, check=True
            )
            self.assertEqual(listed.stdout, "a.lv2/\na.lv2/a.so\n")

    def test_what_is_too_large_leaves_nothing(self):
        largest, archive.LARGEST = archive.LARGEST, 1000
        self.addCleanup(setattr, archive, "LARGEST", largest)
        self.put("a.lv2/noise", os.urandom(5000))
        with self.assertRaisesRegex(archive.ArchiveError, "too large: .*; ship"):
            self.pack()
        self.assertEqual(os.listdir(os.path.dirname(self.archive)), [])

    def start(self, compression="gzip"):
        command = [sys.executable, "-B", "-c", PACK, tool_path.TOOL]
        command += [self.path("a.lv2"), self.archive, compression]
        process = subprocess.Popen(command, stdout=subprocess.PIPE, text=True)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)  # first: what does not stop would go on for ever
        return process

    def test_a_large_plugin_takes_little_memory_and_says_how_far_it_is(self):
        self.put("a.lv2/zeros", b"")
        os.truncate(self.path("a.lv2/zeros"), 300 * 2**20)
        said, _ = self.start().communicate()
        *progress, megabytes = said.splitlines()
        self.assertEqual(progress[0], "Packing: 0 %")
        self.assertEqual(progress[-1], "Packing: 100 %")
        self.assertLess(int(megabytes), 60)

    def test_control_c_ends_it_at_once_and_leaves_nothing(self):
        self.put("a.lv2/zeros", b"")
        os.truncate(self.path("a.lv2/zeros"), 2**40)
        process = self.start()
        self.assertEqual(process.stdout.readline(), "Packing: 0 %\n")
        process.send_signal(signal.SIGINT)
        process.communicate(timeout=5)
        self.assertEqual(process.returncode, 130)
        self.assertEqual(os.listdir(os.path.dirname(self.archive)), [])


if __name__ == "__main__":
    unittest.main()
