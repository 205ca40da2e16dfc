"""Disks that are full and folders that cannot be written to, for real: mounted in a mount namespace of the
test's own, which ends with it. As in making_test.py the build itself is played."""

import ctypes
import os
import subprocess
import unittest

import tool_path  # noqa: F401

import building
import new_product
import trying
from making_test import Making

NEW_MOUNTS = 0x20000  # CLONE_NEWNS


def setUpModule():
    if ctypes.CDLL(None, use_errno=True).unshare(NEW_MOUNTS) != 0:
        raise OSError(ctypes.get_errno(), "no mount namespace; run it as root")
    mount("--make-rprivate", "/")


def mount(*words):
    subprocess.run(["mount", *words], check=True)


class Disks(Making):
    def small_disk(self, name, size):
        """A folder that is a disk of that size."""
        path = self.path(name)
        os.mkdir(path)
        mount("-t", "tmpfs", "-o", f"size={size},mode=755", "none", path)
        self.addCleanup(subprocess.run, ["umount", path], check=True)
        return path

    def read_only(self, name):
        path = self.path(name)
        os.makedirs(path, exist_ok=True)
        mount("--bind", path, path)
        self.addCleanup(subprocess.run, ["umount", path], check=True)
        mount("-o", "remount,bind,ro", path)
        return path

    def refused(self, said, *arguments):
        """Runs it and sees it end with those words, and nothing handed out."""
        status, _, complained = self.run_main(*arguments)
        self.assertEqual(status, 1)
        self.assertIn(said, complained)
        self.assertNotIn("Traceback", complained)
        self.assertNotIn("Errno", complained)
        self.assertEqual(self.handed_out(), [])
        return complained

    def test_a_full_disk_is_named_and_later_it_goes_on(self):
        build = self.small_disk("build", "8k")
        wrong = f"{build} or {self.path('dist')}: No space left on device; make room on that disk, or work"
        self.refused(wrong)
        mount("-o", "remount,size=4m", build)
        self.assertEqual(self.run_main()[0], 0)
        self.assertEqual(len(self.handed_out()), 3)

    def test_a_full_disk_to_hand_out_on(self):
        dist = self.small_disk("dist", "4k")
        for size in ("4k", "16k", "20k"):
            mount("-o", f"remount,size={size}", dist)
            self.refused("No space left on device; make room on that disk, or work elsewhere with --build")

    def test_a_tool_that_does_not_say_that_the_disk_is_full(self):
        build = self.small_disk("build", "1m")

        def failing(*_):
            raise building.BuildError("ar: unable to copy file 'x.a'; reason: Success")

        building.build = failing
        complained = self.refused(f"\nmake-installer: {build}: only ")
        self.assertRegex(complained, r"only [0-9.]+ KB are left on that disk; make room there, or work")

    def test_a_read_only_clone_is_noticed_before_it_is_built(self):
        wrong = "Read-only file system; make it writable, or work elsewhere with --build DIR and --output DIR"
        self.refused(f"{self.read_only('dist')}: {wrong}")
        self.assertEqual(self.builds, [])
        self.refused(f"{self.read_only('build')}/lock: {wrong}", "--output", self.path("other"))

    def test_a_folder_to_hand_out_into_that_is_a_file(self):
        with open(self.path("file"), "wb"):
            pass
        self.refused(f"{self.path('file')}: Not a directory", "--output", self.path("file/dist"))
        self.assertEqual(self.builds, [])

    def test_a_folder_that_cannot_be_laid_out_is_left_empty(self):
        mend = "; name another one; it can be anywhere"
        for folder, wrong in (
            (self.small_disk("small", "12k"), "No space left on device"),
            (os.path.join(self.read_only("fixed"), "my-product"), "Read-only file system"),
        ):
            with self.assertRaises(new_product.FolderError) as caught:
                new_product.lay_out(folder)
            self.assertEqual(str(caught.exception), f"{folder} cannot be made: {wrong}{mend}")
            self.assertEqual(os.listdir(folder) if os.path.isdir(folder) else [], [])
        mount("-o", "remount,size=1m", self.path("small"))
        new_product.lay_out(self.path("small"))
        self.assertTrue(os.path.exists(self.path("small/product.toml")))


class ATrialElsewhere(Making):
    def test_is_built_where_the_run_works_when_that_was_said(self):
        places = []
        for name, stand_in in (
            ("built_tour", lambda folder: places.append(folder)),
            ("try_out", lambda *_: None),
        ):
            self.addCleanup(setattr, trying, name, getattr(trying, name))
            setattr(trying, name, stand_in)
        self.assertEqual(self.run_main("--try")[0], 0)
        self.assertEqual(places, [self.path("build/try")])


if __name__ == "__main__":
    unittest.main()
