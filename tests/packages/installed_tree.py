#!/usr/bin/python3
"""Looks through an installed tree that was moved to a folder with a blank in its name.

    installed_tree.py PREFIX BUILD-FOLDER SOURCE-FOLDER
"""

import os
import pathlib
import re
import stat
import subprocess
import sys
import unittest

PREFIX, BUILD, SOURCE = (pathlib.Path(argument) for argument in sys.argv[1:4])
LIBRARY = r"lib(?:/[^/]+-linux-gnu)?/"

# Patterns of whole paths below the prefix. Each has to fit a file, and each file has to fit one of the patterns.
EXPECTED = [
    r"bin/terrain-profiler",
    r"bin/vexptp\.exe",
    r"include/zel/c_api\.h",
    r"include/zel/profile_control\.h",
    r"include/zel/\w+\.h",
    LIBRARY + r"libzelProfiler01\.so",
    LIBRARY + r"libzelProfiler01\.so\.0",
    LIBRARY + r"libzelProfiler01\.so\.\d+\.\d+\.\d+",
    LIBRARY + r"cmake/zelProfiler01/zelProfiler01Config\.cmake",
    LIBRARY + r"cmake/zelProfiler01/zelProfiler01ConfigVersion\.cmake",
    LIBRARY + r"cmake/zelProfiler01/zelProfiler01Targets(?:-\w+)?\.cmake",
    LIBRARY + r"pkgconfig/zelProfiler01\.pc",
    r"share/applications/terrain-profiler\.desktop",
    r"share/bash-completion/completions/terrain-profiler",
    r"share/doc/terrain-profiler/copyright",
    r"share/doc/terrain-profiler/file-formats\.md",
    r"share/fish/vendor_completions\.d/terrain-profiler\.fish",
    *[rf"share/icons/hicolor/{side}x{side}/apps/terrain-profiler\.png" for side in (16, 24, 32, 48, 64, 128, 256)],
    r"share/icons/hicolor/scalable/apps/terrain-profiler\.svg",
    r"share/man/man1/terrain-profiler\.1\.gz",
    r"share/man/man1/vexptp\.exe\.1\.gz",
    r"share/metainfo/terrain-profiler\.metainfo\.xml",
    r"share/mime/packages/terrain-profiler\.xml",
    r"share/terrain-profiler/guide/index\.html",
    r"share/terrain-profiler/guide/.+\.(?:html|css|png|svg)",
    r"share/terrain-profiler/terrain/jacksboro_3s\.tif",
    r"share/terrain-profiler/terrain/README\.md",
    r"share/zsh/site-functions/_terrain-profiler",
]
# Of parts that a build may leave out.
MAY_BE = [r"lib/python3/dist-packages/zelprofiler01/.+", r"share/terrain-profiler/developer/.+", r"share/doc/terrain-profiler/.+"]


def files():
    return sorted(path for path in PREFIX.rglob("*") if not path.is_dir() or path.is_symlink())


class TheInstalledTree(unittest.TestCase):
    def test_is_whole_and_has_nothing_else(self):
        names = [str(path.relative_to(PREFIX)) for path in files()]
        for pattern in EXPECTED:
            self.assertTrue(any(re.fullmatch(pattern, name) for name in names), pattern)
        others = [name for name in names if not any(re.fullmatch(pattern, name) for pattern in EXPECTED + MAY_BE)]
        self.assertEqual(others, [])

    def test_has_every_public_header(self):
        installed = {path.name for path in (PREFIX / "include/zel").iterdir()}
        self.assertEqual(installed, {path.name for path in (SOURCE / "include/zel").iterdir()})

    def test_knows_neither_the_build_nor_where_it_was_put_first(self):
        places = {str(BUILD), str(PREFIX.parent / "first"), str(SOURCE)}
        for path in files():
            content = path.read_bytes()
            # A debug build of the library names its sources; everything that is text must not.
            if path.is_symlink() or content[:4] == b"\x7fELF":
                continue
            for place in places:
                self.assertNotIn(place.encode(), content, path)

    def test_can_be_read_by_everybody_and_run_where_it_is_a_program(self):
        for path in files():
            if path.is_symlink():
                continue
            mode = stat.S_IMODE(path.stat().st_mode)
            self.assertEqual(mode & 0o444, 0o444, path)
            self.assertEqual(mode & 0o022, 0, path)
            if path.parent.name == "bin":
                self.assertEqual(mode & 0o111, 0o111, path)
            elif not re.search(r"\.so(\.|$)", path.name):
                self.assertEqual(mode & 0o111, 0, path)

    def test_runs_and_finds_its_terrain_from_another_folder(self):
        environment = {key: value for key, value in os.environ.items() if key not in ("LD_LIBRARY_PATH", "ZEL_DATA_DIR")}
        command = [str(PREFIX / "bin/terrain-profiler"), "loss", "--from", "36.40,-84.35,30", "--to", "36.22,-84.12,30"]
        done = subprocess.run(command, capture_output=True, text=True, check=False, cwd="/", env=environment)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertRegex(done.stdout, r"(?m)^Modeled loss +\d+\.\d\d dB")
        listed = subprocess.run([command[0], "terrain", "list"], capture_output=True, text=True, check=True, cwd="/", env=environment)
        self.assertIn(str(PREFIX), listed.stdout)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
