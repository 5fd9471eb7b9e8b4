#!/usr/bin/python3
"""Holds the files of the package against the program that they belong to.

    package_files.py PROGRAM MADE-FOLDER SOURCE-FOLDER

MADE-FOLDER has the man pages, completions and icons that the build makes. What is expected of them is read from the
program's own --help, not from the description that they are made from.
"""

import configparser
import functools
import gzip
import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml

import help_texts

PROGRAM, MADE, SOURCE = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])
PACKAGING = SOURCE / "packaging"
HELP = help_texts.read(PROGRAM)
EVERYWHERE = {"--terrain", "--set", "--datum"}


def names_at(path):
    """The options that may follow a command."""
    return {name for names, _ in HELP[path] for name in names} | EVERYWHERE


def run(*command, **more):
    return subprocess.run(command, capture_output=True, text=True, check=False, **more)


@functools.cache
def version():
    return run(PROGRAM, "--version").stdout.split()[-1]


class TheHelp(unittest.TestCase):
    def test_is_read_whole(self):
        """What the other cases rest on."""
        self.assertGreaterEqual(len(HELP), 20)
        self.assertIn(("export", "signal-graph"), HELP)
        self.assertIn((["-o", "--output"], "FILE.csv"), HELP[("export", "height")])
        self.assertLessEqual(EVERYWHERE, {name for names, _ in HELP[()] for name in names})


class ManPages(unittest.TestCase):
    def page(self, name):
        return gzip.decompress((MADE / (name + ".gz")).read_bytes()).decode()

    def sections(self):
        """{path: its text} of the commands."""
        commands = self.page("terrain-profiler.1").split(".SH COMMANDS")[1].split(".SH SETTINGS")[0]
        parts = re.split(r"^\.SS (.*)\n", commands, flags=re.MULTILINE)
        return {tuple(title.replace("\\-", "-").split()): text for title, text in zip(parts[1::2], parts[2::2])}

    def test_every_command_and_option_stands_in_the_page(self):
        sections = self.sections()
        sections[()] = self.page("terrain-profiler.1").split(".SH OPTIONS")[1].split(".SH COMMANDS")[0]
        self.assertEqual(set(sections), set(HELP))
        for path, options in HELP.items():
            for names, value in options:
                if path and "--help" in names:
                    continue
                with self.subTest(path=path, option=names):
                    entries = [line for line in sections[path].split("\n") if line.startswith("\\fB\\-")]
                    plain = [re.sub(r"\\f.", "", line).replace("\\-", "-") for line in entries]
                    fitting = [line for line in plain if re.match(re.escape(", ".join(names)) + r"(?= |$)", line)]
                    self.assertEqual(len(fitting), 1, plain)
                    if value:
                        self.assertTrue(fitting[0].endswith(" " + value), fitting[0])

    def test_every_setting_stands_in_the_page(self):
        page = self.page("terrain-profiler.1").replace("\\-", "-")
        listed = re.findall(r"^([A-Za-z]+/\w+)=", run(PROGRAM, "settings", "list").stdout, flags=re.MULTILINE)
        self.assertGreater(len(listed), 30)
        for name in listed:
            self.assertIn("\\fB" + name + "\\fP", page)

    def test_the_pages_bear_the_version_and_are_made_without_a_warning(self):
        for name in ("terrain-profiler.1", "vexptp.exe.1"):
            self.assertIn("terrain-profiler " + version(), self.page(name).replace("\\-", "-"))
            if shutil.which("groff"):
                done = run("groff", "-man", "-Tutf8", "-ww", "-z", input=self.page(name))
                self.assertEqual(done.stderr, "")

    def test_every_item_of_the_point_to_point_program_stands_in_its_page(self):
        help_text = run(pathlib.Path(PROGRAM).with_name("vexptp.exe"), "--help").stdout
        items = re.findall(r"^  ([A-Z-]+)  ", help_text, flags=re.MULTILINE)
        self.assertEqual(len(items), 7)
        page = self.page("vexptp.exe.1")
        for item in items:
            self.assertRegex(page, rf"(?m)^\.TP\n\.I {item}$")
        companion = (SOURCE / "docs/file-formats.md").read_text().split("### Companion")[1].split("### ")[0]
        keys = re.findall(r"^\| `(\w+)` \|", companion, flags=re.MULTILINE)
        self.assertGreaterEqual(len(keys), 8)
        for key in keys:
            self.assertIn(key, page)


class Bash(unittest.TestCase):
    DRIVER = """
        . "$1"
        while IFS=$'\\t' read -r -a COMP_WORDS; do
            COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
            [[ ${COMP_WORDS[COMP_CWORD]} == "(empty)" ]] && COMP_WORDS[COMP_CWORD]=
            _terrain_profiler
            (IFS=$'\\t'; echo "${COMPREPLY[*]}")
        done
    """

    def completed(self, lines, folder="."):
        """What is offered for each list of words; the last of them is being typed."""
        words = ["\t".join(["terrain-profiler", *(word or "(empty)" for word in line)]) for line in lines]
        done = run("bash", "--norc", "-c", self.DRIVER, "bash", str(MADE / "terrain-profiler.bash"),
                   input="\n".join(words) + "\n", cwd=folder)
        self.assertEqual(done.stderr, "")
        return [set(filter(None, line.split("\t"))) for line in done.stdout.split("\n")[:-1]]

    def test_it_knows_every_command_and_option(self):
        paths = list(HELP)
        with tempfile.TemporaryDirectory() as empty:
            offered = self.completed([[*path, "-"] for path in paths], empty)
            for path, names in zip(paths, offered):
                self.assertEqual(names, names_at(path), path)
            above = sorted({path[:-1] for path in paths if path})
            for path, names in zip(above, self.completed([[*path, ""] for path in above], empty)):
                self.assertEqual(names, {p[-1] for p in paths if p and p[:-1] == path}, path)

    def test_it_offers_what_a_value_may_be(self):
        with tempfile.TemporaryDirectory() as folder:
            for name in ("a.csv", "with blank.csv", "b.png", "c.svg"):
                (pathlib.Path(folder) / name).touch()
            (pathlib.Path(folder) / "sub").mkdir()
            cases = [
                (["picture", "--units", ""], {"metric", "imperial"}),
                (["picture", "--units", "=", "m"], {"metric"}),
                (["--datum", "nad2"], {"nad27"}),
                (["picture", "-o", ""], {"b.png", "c.svg", "sub"}),
                (["export", "height", "--output", ""], {"a.csv", "with blank.csv", "sub"}),
                (["profile", "-o", "a"], {"a.csv"}),
                (["settings", "get", "Profile/Prf_C"], {"Profile/Prf_Crv"}),
                (["--set", "Profile/Prf_C"], {"Profile/Prf_Crv="}),
                (["--set", "Profile/Prf_Crv", "=", "1.3", "settings", "l"], {"list"}),
                (["terrain", "set", ""], {"1", "2", "3", "7", "9"}),
                (["terrain", "set", "3", "b"], {"b.png"}),
                (["terrain", "set", "3", "b.png", "c"], {"c.svg"}),
                (["terrain", "info", "with"], {"with blank.csv"}),
                (["sample", "--points", ""], set()),
                (["--terrain", "loss", "profile", "--k"], {"--k"}),
                (["a"], {"a.csv"}),
            ]
            for (line, wanted), offered in zip(cases, self.completed([line for line, _ in cases], folder)):
                self.assertEqual(offered, wanted, line)


class OtherShells(unittest.TestCase):
    def test_zsh_knows_every_command_and_option(self):
        text = (MADE / "_terrain-profiler").read_text()
        self.assertTrue(text.startswith("#compdef terrain-profiler\n"))
        for path in HELP:
            function = re.search(rf"^{'_'.join(['_terrain-profiler', *path])}\(\) {{\n(.*?)^}}", text, re.M | re.S)
            self.assertIsNotNone(function, path)
            for name in names_at(path):
                self.assertRegex(function[1], rf"['{{,]\*?{re.escape(name)}['\[,}}]", path)
            for below in HELP:
                if below and below[:-1] == path:
                    self.assertIn(f"\n        '{below[-1]}:", function[1])
        if shutil.which("zsh"):
            self.assertEqual(run("zsh", "-n", str(MADE / "_terrain-profiler")).stderr, "")

    def test_fish_knows_every_command_and_option(self):
        text = (MADE / "terrain-profiler.fish").read_text()
        for path in HELP:
            place = f"complete -c terrain-profiler -n '__terrain_profiler_at \"{' '.join(path)}\"'"
            lines = [line + " " for line in text.split("\n") if line.startswith(place)]
            for name in names_at(path):
                spelled = f" -l {name[2:]} " if name.startswith("--") else f" -s {name[1:]} "
                self.assertEqual(sum(spelled in line for line in lines), 1, (path, name))
            for below in HELP:
                if below and below[:-1] == path:
                    self.assertEqual(sum(f" -a {below[-1]} -d " in line for line in lines), 1, below)
        if shutil.which("fish"):
            self.assertEqual(run("fish", "--no-config", "-n", str(MADE / "terrain-profiler.fish")).stderr, "")


class TheDesktop(unittest.TestCase):
    # What the system's own database has of JSON.
    BASE = """<mime-info xmlns="http://www.freedesktop.org/standards/shared-mime-info">
        <mime-type type="text/plain"><glob pattern="*.txt"/></mime-type>
        <mime-type type="application/json"><sub-class-of type="text/plain"/><glob pattern="*.json"/></mime-type>
        <mime-type type="application/geo+json">
          <sub-class-of type="application/json"/><glob pattern="*.geojson"/>
        </mime-type></mime-info>"""

    def entry(self):
        entry = configparser.RawConfigParser(strict=True, interpolation=None)
        entry.optionxform = str
        entry.read(PACKAGING / "terrain-profiler.desktop", encoding="utf-8")
        return entry

    def mime(self):
        space = {"m": "http://www.freedesktop.org/standards/shared-mime-info"}
        return xml.parse(PACKAGING / "terrain-profiler-plan.xml").getroot().find("m:mime-type", space), space

    def metainfo(self):
        return xml.parse(MADE / "terrain-profiler.metainfo.xml").getroot()

    def test_the_menu_entry_is_whole(self):
        entry = self.entry()
        main = entry["Desktop Entry"]
        for key in ("Type", "Name", "Comment", "Exec", "Icon", "Categories", "Keywords", "MimeType", "StartupWMClass"):
            self.assertTrue(main.get(key), key)
        for key in ("Actions", "Categories", "Keywords", "MimeType"):
            self.assertTrue(main[key].endswith(";"), key)
        actions = main["Actions"].strip(";").split(";")
        self.assertEqual({"Desktop Entry", *("Desktop Action " + action for action in actions)}, set(entry.sections()))
        # What is started is a command line that the program knows.
        for section in entry.sections():
            words = entry[section]["Exec"].split()
            self.assertEqual(words[0], "terrain-profiler")
            path = tuple(word for word in words[1:2] if (word,) in HELP)
            self.assertLessEqual({word for word in words if word.startswith("--")}, names_at(path))
        if shutil.which("desktop-file-validate"):
            done = run("desktop-file-validate", str(PACKAGING / "terrain-profiler.desktop"))
            self.assertEqual(done.stdout + done.stderr, "")

    def test_the_catalogue_entry_has_the_version_and_names_the_same_files(self):
        root = self.metainfo()
        self.assertEqual(root.find("releases/release").get("version"), version())
        self.assertRegex(root.find("releases/release").get("date"), r"^\d{4}-\d{2}-\d{2}$")
        self.assertEqual(root.find("launchable").text, "terrain-profiler.desktop")
        self.assertEqual(root.find("icon").text, self.entry()["Desktop Entry"]["Icon"])
        self.assertEqual(root.find("name").text, self.entry()["Desktop Entry"]["Name"])
        if shutil.which("appstreamcli"):
            done = run("appstreamcli", "validate", "--no-net", "--no-color", str(MADE / "terrain-profiler.metainfo.xml"))
            self.assertEqual(done.returncode, 0, done.stdout)

    def test_the_file_type_of_plans_is_one_and_the_same_everywhere(self):
        kind, _ = self.mime()
        self.assertIn(kind.get("type"), self.entry()["Desktop Entry"]["MimeType"].split(";"))
        self.assertEqual(self.metainfo().find("provides/mediatype").text, kind.get("type"))

    def test_a_plan_is_told_by_what_is_in_it_and_other_json_is_left_alone(self):
        kind, space = self.mime()
        # Below the weight of JSON's own name, and a priority that outweighs a name: the content decides.
        self.assertLess(int(kind.find("m:glob", space).get("weight")), 50)
        self.assertGreaterEqual(int(kind.find("m:magic", space).get("priority")), 80)
        if not (shutil.which("update-mime-database") and shutil.which("gio")):
            self.skipTest("shared-mime-info or gio is not here")
        with tempfile.TemporaryDirectory() as folder:
            data = pathlib.Path(folder) / "data"
            (data / "mime/packages").mkdir(parents=True)
            (data / "mime/packages/base.xml").write_text(self.BASE)
            shutil.copy(PACKAGING / "terrain-profiler-plan.xml", data / "mime/packages")
            environment = dict(os.environ, XDG_DATA_HOME=str(data), XDG_DATA_DIRS="/nowhere")
            run("update-mime-database", str(data / "mime"), env=environment)
            plan, json = kind.get("type"), "application/json"
            cases = {
                "as saved.json": ('{\n  "format": "terrain-profiler plan",\n  "version": 1\n}\n', plan),
                "in one line.json": ('{"version":1,"format":"terrain-profiler plan"}', plan),
                "marked.json": ('\ufeff{"format": "terrain-profiler plan"}', plan),
                "no ending": ('{"format": "terrain-profiler plan"}', plan),
                "other.json": ('{"format": "of another program"}', json),
                "list.json": ('["terrain-profiler plan"]', json),
                "places.geojson": ('{"type": "FeatureCollection", "features": []}', "application/geo+json"),
            }
            for name, (text, wanted) in cases.items():
                file = pathlib.Path(folder) / name
                file.write_text(text, encoding="utf-8")
                done = run("gio", "info", "-a", "standard::content-type", str(file), env=environment)
                self.assertEqual(re.search(r"content-type: (\S+)", done.stdout)[1], wanted, name)

    def test_the_icon_comes_in_the_sizes_of_the_theme(self):
        for side in (16, 24, 32, 48, 64, 128, 256):
            head = (MADE / f"icon-{side}.png").read_bytes()[:24]
            self.assertEqual(struct.unpack(">8s8xII", head), (b"\x89PNG\r\n\x1a\n", side, side))

    def test_the_drawn_icon_has_the_colours_of_the_program_s(self):
        drawing = (SOURCE / "host/desktop/program_icon.cpp").read_text()
        colours = {"#" + "".join(c) for c in re.findall(r"QColor\(0x(..), 0x(..), 0x(..)\)", drawing)}
        self.assertGreaterEqual(len(colours), 4)
        root = xml.parse(PACKAGING / "terrain-profiler.svg").getroot()
        drawn = {element.get(key) for element in root.iter() for key in ("fill", "stroke")} - {None, "none"}
        self.assertEqual(drawn, colours)


class TheChangelog(unittest.TestCase):
    def test_has_every_version_with_its_day(self):
        with tempfile.TemporaryDirectory() as folder:
            source, made = pathlib.Path(folder) / "CHANGELOG.md", pathlib.Path(folder) / "changelog.gz"
            source.write_text("# Changes\n\n## 0.2.0 (unreleased)\n\n- New `thing`,\n  on two lines.\n- Other.\n\n## 0.1.0 (2026-03-04)\n\nThe first.\n\n- [A link](x.md).\n")
            done = run("/usr/bin/python3", str(PACKAGING / "make_changelog.py"), str(source), "A B <a@b.c>", str(made),
                       env=dict(os.environ, SOURCE_DATE_EPOCH="1700000000"))
            self.assertEqual(done.returncode, 0, done.stderr)
            self.assertEqual(gzip.decompress(made.read_bytes()).decode(), """\
terrain-profiler (0.2.0) stable; urgency=medium

  * New thing, on two lines.
  * Other.

 -- A B <a@b.c>  Tue, 14 Nov 2023 22:13:20 +0000

terrain-profiler (0.1.0) stable; urgency=medium

  * A link.

 -- A B <a@b.c>  Wed, 04 Mar 2026 12:00:00 +0000
""")


class TheSetUp(unittest.TestCase):
    def test_the_version_stands_in_one_place(self):
        """The top CMakeLists.txt; everything else takes it from there."""
        found = []
        for folder in ("cmake", "host", "packaging", "python", "scripts", "src"):
            for path in (SOURCE / folder).rglob("*"):
                if path.is_file() and path.suffix in (".cpp", ".h", ".py", ".sh", ".txt", ".cmake", ".in", ".1", ".toml"):
                    # A comment may have an example.
                    text = re.sub(r"//.*|^\s*#.*", "", path.read_text(encoding="utf-8"), flags=re.MULTILINE)
                    if version() in text:
                        found.append(str(path))
        self.assertEqual(found, [])
        self.assertIn("VERSION " + version(), (SOURCE / "CMakeLists.txt").read_text())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
