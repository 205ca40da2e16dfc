"""Where a build goes wrong for reasons of the machine, and what is handed out. The build itself is
played by a copy of a file: what is tried here is what stands round it."""

import errno
import io
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import threading
import unittest
from contextlib import redirect_stderr, redirect_stdout

import tool_path  # noqa: F401

import building
import handing_out
import main
import making
import progress
import staging
import trying
from new_product import TEMPLATE
from wording import size, some_of, visible

BUNDLE = os.path.join(staging.REPOSITORY, "products", "lantern-tilt", "lantern-tilt.lv2")
MAIN = os.path.join(tool_path.TOOL, "main.py")


class Making(unittest.TestCase):
    """A right product, and a build that is over at once."""

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.top = holder.name
        self.product = self.path("product")
        shutil.copytree(TEMPLATE, self.product)
        shutil.copytree(BUNDLE, self.path("product/my-plug-in.lv2"))
        self.builds = []
        for module, name, stand_in in (
            (building, "build", self.build),
            (making.contrast, "complaint_about", lambda path: None),
        ):
            self.addCleanup(setattr, module, name, getattr(module, name))
            setattr(module, name, stand_in)

    def build(self, stage, build_folder):
        """An ELF file with the product's name in it, as the real one."""
        os.makedirs(build_folder, exist_ok=True)
        self.builds.append(build_folder)
        built = os.path.join(build_folder, "zeph-installer")
        with open(os.path.join(stage.settings, "installer", "product_settings.h"), "rb") as file:
            header = file.read()
        name = header.split(b'.product_name = "')[1].split(b'"')[0]
        source = f'const char* name = "{name.decode()}"; int main() {{ return !name; }}'
        wanted = source.encode()
        if not os.path.exists(built) or open(built + ".c", "rb").read() != wanted:
            with open(built + ".c", "wb") as file:
                file.write(wanted)
            subprocess.run(["cc", "-O0", "-o", built, built + ".c"], check=True)
        return built

    def path(self, name):
        return os.path.join(self.top, name)

    def set(self, setting, value):
        path = self.path("product/product.toml")
        with open(path, encoding="utf-8") as file:
            lines = file.read().splitlines()
        lines = [f"{setting} = {value}" if line.startswith(setting + " ") else line for line in lines]
        with open(path, "w", encoding="utf-8") as file:
            file.write("\n".join(lines) + "\n")

    def add(self, text):
        with open(self.path("product/product.toml"), "a", encoding="utf-8") as file:
            file.write(text)

    def run_main(self, *arguments):
        """(status, said, complained) of a run."""
        said, complained = io.StringIO(), io.StringIO()
        said.reconfigure = complained.reconfigure = lambda errors: None
        old = sys.argv
        sys.argv = ["make-installer", "--build", self.path("build"), "--output", self.path("dist")]
        sys.argv += [*arguments, self.product]
        status = 0
        try:
            with redirect_stdout(said), redirect_stderr(complained):
                main.main()
        except SystemExit as end:
            status = end.code
        finally:
            sys.argv = old
        if isinstance(status, str):
            complained.write(status)
            status = 1
        return status, said.getvalue(), complained.getvalue()

    def handed_out(self):
        folder = self.path("dist")
        return sorted(os.listdir(folder)) if os.path.isdir(folder) else []


class Trying(Making):
    """What the trial is told: one that writes it down takes its place."""

    def setUp(self):
        super().setUp()
        self.notes = self.path("notes")
        with open(self.path("trial"), "w", encoding="utf-8") as file:
            file.write(f'#!/bin/sh\nprintf "%s\\0" "$@" end >> {self.notes}\n')
        os.chmod(self.path("trial"), 0o755)
        for module, name, stand_in in (
            (trying, "built_tour", lambda folder: self.path("trial")),
            (os, "getuid", lambda: 0),  # who else would ask through sudo
        ):
            self.addCleanup(setattr, module, name, getattr(module, name))
            setattr(module, name, stand_in)

    def told(self):
        """The words of each trial of a run, by name."""
        self.assertEqual(self.run_main("--try")[0], 0)
        with open(self.notes, encoding="utf-8") as file:
            runs = file.read().split("\0end\0")[:-1]
        os.unlink(self.notes)
        return [dict(word.split("=", 1) for word in run.split("\0")) for run in runs]

    def test_plays_each_way_to_install_it(self):
        self.add('[[item]]\npath = "presets"\n')
        self.add('[[item]]\npath = "manual"\nfolder = "/usr/share/doc/x"\nperson_folder = "~/doc"\n')
        for name in ("presets", "manual"):
            with open(self.path("product/" + name), "w", encoding="utf-8") as file:
                file.write("text")
        root = ("sudo", "/usr/lib/lv2", "presets/\nmanual/usr/share/doc/x\n", "build/tour")
        person = ("person", "~/.lv2", "presets/\nmanual/~/doc\n", "build/tour")
        second = (*person[:3], "build/tour-person")
        for value, asked, expected in (
            ("everybody", "0", [root]),
            ("person", "0", [person]),
            ("ask", "1", [root, second]),
        ):
            self.set("install_for", f'"{value}"')
            runs = self.told()
            found = [(run["by"], run["folder"], run["items"], run["pictures"]) for run in runs]
            self.assertEqual(found, [(*each[:3], self.path(each[3])) for each in expected])
            self.assertEqual({run["asked"] for run in runs}, {asked})


class HandingOut(Making):
    NAME = "my-plug-in-1.0-installer"

    def test_three_files_that_fit_together(self):
        status, said, _ = self.run_main()
        self.assertEqual(status, 0)
        self.assertEqual(self.handed_out(), [self.NAME, self.NAME + ".sha256", self.NAME + ".tar.gz"])
        sums = ["sha256sum", "--strict", "-c", self.NAME + ".sha256"]
        subprocess.run(sums, cwd=self.path("dist"), check=True, capture_output=True)
        os.mkdir(self.path("download"))
        archive = self.path(f"dist/{self.NAME}.tar.gz")
        subprocess.run(["tar", "-xzf", archive, "-C", self.path("download")], check=True)
        unpacked = self.path("download/" + self.NAME)
        self.assertEqual(os.stat(unpacked).st_mode & 0o777, 0o755)
        self.assertEqual(subprocess.run([unpacked], check=False).returncode, 0)
        self.assertIn(handing_out.sum_of(unpacked), said)

    def test_something_large_is_seen_to_be_packed_for_the_download(self):
        self.assertNotIn("download", self.run_main()[1])
        self.addCleanup(setattr, progress, "WORTH_TELLING", progress.WORTH_TELLING)
        progress.WORTH_TELLING = 1
        os.unlink(self.path("dist/" + self.NAME))
        _, said, _ = self.run_main()
        self.assertRegex(said, "\nPacking it for the download: [0-9]+ %\n")
        self.assertIn("\nPacking it for the download: 100 %\n", said)

    def test_the_same_bytes_twice(self):
        self.run_main()
        archive = self.path(f"dist/{self.NAME}.tar.gz")
        first = handing_out.sum_of(archive)
        shutil.rmtree(self.path("dist"))
        self.run_main()
        self.assertEqual(handing_out.sum_of(archive), first)

    def test_nothing_is_done_again_where_nothing_changed(self):
        _, first, _ = self.run_main()
        before = [os.stat(self.path("dist/" + name)).st_mtime_ns for name in self.handed_out()]
        _, second, _ = self.run_main()
        after = [os.stat(self.path("dist/" + name)).st_mtime_ns for name in self.handed_out()]
        self.assertEqual(after, before)
        self.assertIn("Nothing changed since it was made.", second)
        self.assertEqual(second.splitlines()[-5:], first.splitlines()[-5:])
        os.unlink(self.path("dist/" + self.NAME + ".tar.gz"))
        _, third, _ = self.run_main()
        self.assertNotIn("Nothing changed", third)
        self.assertEqual(len(self.handed_out()), 3)

    def test_another_version_of_the_tool_says_what_it_says(self):
        self.run_main()
        self.addCleanup(setattr, making, "tool_digest", making.tool_digest)
        making.tool_digest = lambda: "another"
        self.assertNotIn("Nothing changed", self.run_main()[1])

    def test_another_products_file_stays(self):
        self.run_main()
        kept = handing_out.sum_of(self.path("dist/" + self.NAME))
        self.set("product_name", '"Another"')
        status, _, complained = self.run_main()
        self.assertEqual(status, 1)
        self.assertRegex(complained, "is there and is no installer of Another; remove it, or choose")
        self.assertEqual(handing_out.sum_of(self.path("dist/" + self.NAME)), kept)
        with open(self.path("dist/" + self.NAME), "w", encoding="utf-8") as file:
            file.write("my diary: Another\0")
        self.assertEqual(self.run_main()[0], 1)

    def test_a_newer_one_of_the_same_product_takes_its_place(self):
        self.run_main()
        first = handing_out.sum_of(self.path(f"dist/{self.NAME}.tar.gz"))
        newer = self.path("product/my-plug-in.lv2/LICENSE")
        os.utime(newer)
        self.assertEqual(self.run_main()[0], 0)
        self.assertNotEqual(handing_out.sum_of(self.path(f"dist/{self.NAME}.tar.gz")), first)


class Said(Making):
    def test_warnings_name_file_line_and_setting_and_strict_makes_errors_of_them(self):
        status, _, complained = self.run_main()
        self.assertEqual(status, 0)
        place = self.path("product/product.toml")
        self.assertIn(f"{place}:7: product_name: warning: is still the template's", complained)
        status, _, complained = self.run_main("--strict")
        self.assertEqual(status, 1)
        self.assertIn(f"{place}:7: product_name: is still the template's", complained)
        self.assertRegex(complained, r"nothing was built; \d things to mend")
        self.assertEqual(len(self.builds), 1)

    def test_what_is_left_out_is_named(self):
        os.makedirs(self.path("product/my-plug-in.lv2/.git"))
        _, said, _ = self.run_main()
        self.assertIn("Left out: my-plug-in.lv2/.git\n", said)

    def test_the_summary_tells_what_the_plugin_is_and_where_links_lead(self):
        os.symlink("lantern-tilt.so", self.path("product/my-plug-in.lv2/b.so"))
        self.set("compression", '"xz"')
        _, said, _ = self.run_main()
        for line in (
            "plug-in        LV2 bundle, x86-64",
            "plug-in needs  libc.so.6 libm.so.6",
            "plug-in libc   exp@GLIBC_2.29",
            "lrwxrwxrwx root/root          0 my-plug-in.lv2/b.so -> lantern-tilt.so",
            "unpacking      needs the program xz and 67.1 MB of memory where it is installed",
        ):
            self.assertIn("  " + line + "\n", said)

    def test_a_long_list_says_how_many_more(self):
        for number in range(100):
            with open(self.path(f"product/my-plug-in.lv2/{number:03}"), "wb"):
                pass
        os.symlink("LICENSE", self.path("product/my-plug-in.lv2/z"))
        _, said, _ = self.run_main()
        self.assertIn("and 88 more\n", said)
        self.assertIn("  links          my-plug-in.lv2/z -> LICENSE\n", said)

    def test_names_and_numbers(self):
        self.assertEqual(visible("a\x1b[2J\nb\udcff\x7f ü"), "a\\x1b[2J\\nb\\xff\\x7f ü")
        self.assertEqual(some_of("abc", 2), ["a", "b", "c"])
        self.assertEqual(some_of("abcd", 2), ["a", "b", "and 2 more"])
        self.assertEqual(size(1_500_000), "1.5 MB")


class Surroundings(Making):
    def fail(self, number, module=staging, name="write_if_changed"):
        def failing(*_):
            raise OSError(number, os.strerror(number), self.path("build/x"))

        self.addCleanup(setattr, module, name, getattr(module, name))
        setattr(module, name, failing)
        status, _, complained = self.run_main()
        self.assertEqual(status, 1)
        self.assertNotIn("Traceback", complained)
        self.assertEqual(self.handed_out(), [])
        return complained

    def test_a_full_disk(self):
        self.assertIn("No space left on device; make room on that disk, or work elsewhere with --build",
                      self.fail(errno.ENOSPC))

    def test_a_disk_that_is_full_when_it_is_handed_out(self):
        self.assertIn("; make room", self.fail(errno.ENOSPC, handing_out, "sum_of"))

    def test_a_clone_that_cannot_be_written_to(self):
        for number in (errno.EROFS, errno.EACCES):
            self.assertIn("; make it writable, or work elsewhere with --build DIR and --output DIR",
                          self.fail(number))

    def test_a_compiler_that_meets_a_full_disk(self):
        def failing(*_):
            raise building.BuildError("the build failed:\n/tmp/x.s: No space left on device")

        building.build = failing
        self.assertIn("\nmake-installer: No space left on device; make room", self.run_main()[2])

    def test_a_build_folder_of_another_place_is_made_anew(self):
        folder = self.path("build/cmake")
        os.makedirs(folder)
        for line, stays in (
            (f"CMAKE_HOME_DIRECTORY:INTERNAL={staging.REPOSITORY}", True),
            ("CMAKE_HOME_DIRECTORY:INTERNAL=/somewhere/else", False),
        ):
            with open(os.path.join(folder, "CMakeCache.txt"), "w", encoding="utf-8") as file:
                file.write(f"CMAKE_CACHEFILE_DIR:INTERNAL={folder}\n{line}\n")
            with redirect_stdout(io.StringIO()):
                building.forget_other_place(folder)
            self.assertEqual(os.path.exists(os.path.join(folder, "CMakeCache.txt")), stays)
            self.assertTrue(os.path.isdir(folder))

    def test_two_at_once_follow_each_other(self):
        inside = threading.Event()
        go_on = threading.Event()
        order = []

        def first():
            with building.held(self.path("build")):
                inside.set()
                go_on.wait(20)
                order.append("first")

        def second():
            with redirect_stdout(said), building.held(self.path("build")):
                order.append("second")

        said = io.StringIO()
        threads = [threading.Thread(target=first), threading.Thread(target=second)]
        threads[0].start()
        inside.wait(20)
        threads[1].start()
        while "waiting for it" not in said.getvalue() and threads[1].is_alive():
            threads[1].join(0.01)
        go_on.set()
        for thread in threads:
            thread.join()
        self.assertEqual(order, ["first", "second"])
        self.assertIn("Another run makes this product; waiting for it", said.getvalue())


def processes_with(text):
    """Command lines of processes that have the text in them."""
    found = []
    for name in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{name}/cmdline", "rb") as file:
                line = file.read()
        except OSError:
            continue
        if text.encode() in line:
            found.append(line)
    return found


class Stopping(unittest.TestCase):
    def test_a_build_that_is_stopped_leaves_no_process_and_nothing_to_hand_out(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            with tempfile.TemporaryDirectory() as top:
                command = [sys.executable, "-B", MAIN, "--build", top + "/build"]
                command += ["--output", top + "/dist", os.path.dirname(BUNDLE)]
                environment = dict(os.environ, CCACHE_DISABLE="1")
                process = subprocess.Popen(
                    command,
                    env=environment,
                    stdout=subprocess.PIPE,
                    stderr=subprocess.PIPE,
                    text=True,
                )
                while not process.stdout.readline().startswith("Building: "):
                    self.assertIsNone(process.poll())
                process.send_signal(number)
                _, complained = process.communicate(timeout=20)
                self.assertEqual(process.returncode, 130)
                self.assertEqual(complained, "\nmake-installer: stopped\n")
                deadline = time.monotonic() + 20  # they are told at once, and end when they can
                while processes_with(top) and time.monotonic() < deadline:
                    time.sleep(0.05)
                self.assertEqual(processes_with(top), [])
                self.assertFalse(os.path.exists(top + "/dist"))


class Strange(unittest.TestCase):
    """Whatever is given as the product folder, it ends with a word and without a traceback."""

    def test_strange_folders(self):
        with tempfile.TemporaryDirectory() as top:
            os.makedirs(os.path.join(top, "a", "product.toml"))
            os.mkdir(os.path.join(top, "\x1b[2J"))
            os.mkdir(os.fsencode(top) + b"/\xff")
            for name in (b"a", b"\x1b[2J", b"\xff", b"none", b"a" * 300):
                command = [sys.executable, "-B", MAIN, os.fsencode(top) + b"/" + name]
                result = subprocess.run(command, capture_output=True, check=False)
                self.assertEqual(result.returncode, 1)
                self.assertIn(b"; 1 thing to mend", result.stderr)
                self.assertNotIn(b"Traceback", result.stderr)
                self.assertNotIn(b"\x1b", result.stderr)


if __name__ == "__main__":
    unittest.main()
