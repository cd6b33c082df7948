#!/usr/bin/env python3
"""Builds the Debian package, installs it into a root of its own, uses it and removes it.

usage: package_test.py SOURCE_DIRECTORY
"""
import functools
import json
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

SOURCE = Path(sys.argv.pop(1)).resolve()
BUILD = SOURCE / "build/release"
PACKAGE = "tollivar"
# What the programs start or load by name; every other dependency is a linked library.
USED_BY_NAME = {"ca-certificates", "ffmpeg", "libqt6svg6", "xdg-utils"}
# Built beside the programs, and nothing that a person installs.
NOT_SHIPPED = {"sample-site"}
LIMIT_SECONDS = 60


def output_of(*command, **options):
    return subprocess.run(command, check=True, text=True, stdout=subprocess.PIPE, **options).stdout


@functools.lru_cache(maxsize=None)
def owner_of(library):
    """The Debian package that brings a file; it may know it by the other name of /usr/lib."""
    for path in (library, library.removeprefix("/usr"), "/usr" + library):
        found = subprocess.run(["dpkg-query", "--search", path], text=True, capture_output=True)
        if found.returncode == 0:
            return found.stdout.split(":")[0]
    raise AssertionError(f"no package brings {library}")


def is_program(path):
    if path.is_symlink() or not path.is_file():
        return False
    with path.open("rb") as file:
        return file.read(4) == b"\x7fELF"


class Root:
    """An empty system of its own, whose package database knows what is installed on this one."""

    def __init__(self, folder):
        self.folder = folder
        self.database = folder / "var/lib/dpkg"
        for name in ("info", "updates", "triggers"):
            (self.database / name).mkdir(parents=True)
        # dpkg holds the dependencies against this; the package itself may be on this system too.
        stanzas = Path("/var/lib/dpkg/status").read_text().split("\n\n")
        others = [text for text in stanzas if not text.startswith(f"Package: {PACKAGE}\n")]
        (self.database / "status").write_text("\n\n".join(others))

    def dpkg(self, *arguments):
        environment = dict(os.environ, PATH=os.environ["PATH"] + ":/usr/sbin:/sbin")
        done = subprocess.run(["fakeroot", "dpkg", f"--root={self.folder}", "--log=/dev/null",
                               *arguments], env=environment, text=True, capture_output=True)
        # On success it only warns that the lists of the other packages' files are not here.
        assert done.returncode == 0, done.stderr

    def files(self):
        return {path.relative_to(self.folder) for path in self.folder.rglob("*")
                if self.database not in path.parents}


class Package(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        for old in BUILD.glob("*.deb"):
            old.unlink()
        subprocess.run([SOURCE / "tools/build", "release", "package"], check=True,
                       stdout=subprocess.DEVNULL)
        (cls.file,) = BUILD.glob("*.deb")
        folder = tempfile.TemporaryDirectory(prefix="tollivar-package-")
        cls.addClassCleanup(folder.cleanup)
        cls.work = Path(folder.name)
        cls.root = cls.work / "root"
        Root(cls.root).dpkg("--install", str(cls.file))

    @classmethod
    def field(cls, name):
        return output_of("dpkg-deb", "--field", cls.file, name).strip()

    def setUp(self):
        self.home = Path(tempfile.mkdtemp(dir=self.work))
        self.addCleanup(shutil.rmtree, self.home)
        (self.home / "run").mkdir(mode=0o700)
        self.environment = {
            "PATH": os.environ["PATH"], "HOME": str(self.home), "LANG": "C.UTF-8",
            "XDG_RUNTIME_DIR": str(self.home / "run"), "QT_QPA_PLATFORM": "offscreen"}

    def installed(self, command, *arguments):
        return output_of(self.root / "usr/bin" / command, *arguments, env=self.environment,
                         cwd=self.home, timeout=LIMIT_SECONDS)

    def site(self):
        """The address of the sample site, which lives as long as the case."""
        server = subprocess.Popen([BUILD / "Tollivar/sample-site"], stdin=subprocess.PIPE,
                                  stdout=subprocess.PIPE, text=True)
        self.addCleanup(server.wait)
        self.addCleanup(server.stdout.close)
        self.addCleanup(server.stdin.close)
        return server.stdout.readline().strip()

    def programs(self):
        return [path for path in (self.root / "usr/lib/tollivar").rglob("*") if is_program(path)]

    def test_every_built_program_is_in_it(self):
        built = {path.name for path in (BUILD / "Tollivar").rglob("*") if is_program(path)}
        self.assertEqual({path.name for path in self.programs()}, built - NOT_SHIPPED)

    def test_what_lies_beside_the_programs_is_in_it(self):
        here, there = self.root / "usr/lib/tollivar", BUILD / "Tollivar"
        for folder in ("Language", "help", "skins", "sound"):
            names = [sorted(path.relative_to(place) for path in (place / folder).rglob("*"))
                     for place in (here, there)]
            self.assertTrue(names[0], folder)
            self.assertEqual(*names)

    def test_every_program_has_a_manual_page(self):
        pages = {path.name for path in (self.root / "usr/share/man/man1").iterdir()}
        commands = [path.name for path in (self.root / "usr/bin").iterdir()]
        for name in commands + [path.name for path in self.programs() if path.name != "Tollivar"]:
            self.assertIn(f"{name}.1.gz", pages)

    def test_the_manual_page_names_every_command_and_option_of_the_help_text(self):
        page = output_of("zcat", self.root / "usr/share/man/man1/tollivar-cli.1.gz")
        page = page.replace("\\-", "-")
        help_text = self.installed("tollivar-cli", "--help")
        words = set(re.findall(r"--[a-z-]+", help_text))
        words |= set(re.findall(r"^  ([a-z]+) ", help_text, re.MULTILINE))
        self.assertGreater(len(words), 10)
        for word in words:
            self.assertIn(word, page)

    def test_every_linked_library_is_a_dependency_and_nothing_else_but_what_is_used_by_name(self):
        depends = {re.match(r"[^ :(]+", text.strip())[0] for text in self.field("Depends").split(",")}
        linked = set()
        for program in self.programs():
            needed = re.findall(r"NEEDED\s+(\S+)", output_of("objdump", "-p", program))
            places = dict(re.findall(r"(\S+) => (/\S+)", output_of("ldd", program)))
            linked |= {owner_of(places[name]) for name in needed if name in places}
        self.assertEqual(depends, linked | USED_BY_NAME)

    def test_it_is_small_and_holds_no_debug_information(self):
        for program in self.programs():
            self.assertNotIn(".debug_info", output_of("objdump", "-h", program))
        self.assertLess(self.file.stat().st_size, 10_000_000)

    def test_the_terminal_front_end_tells_its_version_and_its_profiles(self):
        self.assertIn(self.field("Version").split("-")[0], self.installed("tollivar-cli", "--version"))
        profiles = json.loads(self.installed("tollivar-cli", "profiles", "--json"))
        self.assertGreater(len(profiles), 10)

    def test_it_captures_what_a_page_plays(self):
        site = self.site()
        path = self.installed("tollivar-cli", "download", "--folder", "videos", site + "video.html")
        self.assertEqual(Path(path.strip()), self.home / "videos/Harbour at dawn.mp4")
        self.assertEqual(Path(path.strip()).read_bytes(),
                         (BUILD / "Tollivar/samples/media/clip.mp4").read_bytes())

    def test_a_link_of_the_desktop_starts_the_program_with_its_address(self):
        link = "tollivar:" + self.site() + "media/clip.webm"
        with subprocess.Popen([self.root / "usr/bin/tollivar", "-url", link], cwd=self.home,
                              env=self.environment) as window:
            try:
                self.wait_for_completed()
                # The desktop's entry without an address: the second start ends, the first stays.
                self.installed("tollivar", "-url")
                self.assertIsNone(window.poll())
            finally:
                window.send_signal(signal.SIGTERM)
            self.assertEqual(window.wait(LIMIT_SECONDS), 0)

    def wait_for_completed(self):
        end = time.monotonic() + LIMIT_SECONDS
        while time.monotonic() < end:
            # Before the program has made its data directory there is no list to show.
            shown = subprocess.run([self.root / "usr/bin/tollivar-cli", "list", "--json"], text=True,
                                   cwd=self.home, env=self.environment, capture_output=True)
            tasks = json.loads(shown.stdout) if shown.returncode == 0 else []
            if [task["state"] for task in tasks] == ["completed"]:
                return
        self.fail("the task was never completed")

    def test_the_desktop_finds_the_entry_its_icon_and_its_command(self):
        (entry,) = (self.root / "usr/share/applications").glob("*.desktop")
        lines = dict(line.split("=", 1) for line in entry.read_text().splitlines() if "=" in line)
        self.assertTrue((self.root / "usr/bin" / lines["TryExec"]).exists())
        self.assertEqual(lines["Exec"].split()[0], lines["TryExec"])
        languages = len(list((SOURCE / "Language").glob("*.ini")))
        for key in ("GenericName", "Comment", "Keywords"):
            translated = [name for name in lines if name.startswith(key)]
            self.assertEqual(len(translated), languages, key)
        icons = self.root / "usr/share/icons/hicolor"
        for size in (16, 22, 24, 32, 48, 64, 128, 256, 512):
            icon = (icons / f"{size}x{size}/apps/{lines['Icon']}.png").read_bytes()
            self.assertEqual(icon[16:24], size.to_bytes(4, "big") * 2)
        self.assertTrue((icons / f"scalable/apps/{lines['Icon']}.svg").exists())

    def test_the_package_checker_finds_no_fault(self):
        subprocess.run(["lintian", "--fail-on", "error,warning", self.file], check=True)

    def test_its_removal_leaves_nothing(self):
        root = Root(self.home / "root")
        before = root.files()
        root.dpkg("--install", str(self.file))
        self.assertGreater(len(root.files()), len(before))
        root.dpkg("--purge", PACKAGE)
        self.assertEqual(root.files(), before)


if __name__ == "__main__":
    unittest.main(verbosity=2)
