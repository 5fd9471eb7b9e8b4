#!/usr/bin/python3
"""Opens what `terrain-profiler print` has written, with other programs, and holds it against what the other commands say of
the same path: every line in its order and column, its numbers against `export height` and `picture --geometry`, the plot against
`picture` in the size of the box. Paths, markers, units, papers and orientations in many combinations; descriptions of every
length; files that cannot be written. The texts of every page are compared, the plot's pixels of those that differ most. The
checks themselves are given pages that are wrong.

usage: printed_pages.py PROGRAM PART

PART is "pages", "rest" (descriptions, copies, failures) or "checks" (the checks themselves).

Exit status 0: everything held; 1: it did not; 77: the tools that read PDF are not there.
"""
import copy
import functools
import json
import math
import os
import re
import resource
import shutil
import struct
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "overlay"))
import pdf_page  # noqa: E402
from overlay import read_png  # noqa: E402

RIDGES = ("36.40,-84.35,30", "36.22,-84.12,12")
SHORT = ("36.300,-84.250,10", "36.304,-84.248,10")
TILE = ("36.10,-84.90,20", "36.60,-84.20,250")
PAPERS = {"a4": (595.3, 841.9), "letter": (612, 792)}  # points
TWIPS = 20  # a point
MARGIN, FOOT = 12 / 25.4 * 72, 27  # points: on three sides, and below the small print
DPI = 96  # of the picture
SCALE = 2  # pixels of the rendering to one of the picture: fewer would not part the outline from what lies beside it
NEAR = 2  # pixels
BORDER = 3  # pixels along the plot's sides, where the outline lies
BLACK, WHITE = (0, 0, 0), (255, 255, 255)
FEET, MILES = 1 / 0.3048, 1 / 1.609344


# ---- What is asked for ----

class Case:
    def __init__(self, name, path, markers="", expand="", units="metric", paper="a4", landscape=False, description=None,
                 frequency=None, before=(), pixels=False):
        self.name, self.path, self.units, self.paper, self.landscape = name, path, units, paper, landscape
        self.markers, self.expand, self.description, self.before = markers, expand, description, list(before)
        self.frequency, self.pixels = frequency, pixels

    def stations(self):
        return ["--from", self.path[0], "--to", self.path[1]]

    def view(self):
        view = self.stations() + ["--units", self.units]
        if self.markers:
            view += ["--markers", self.markers]
        if self.expand:
            view += ["--expand", self.expand]
        return view + (["--frequency", self.frequency] if self.frequency else [])

    def print_arguments(self):
        arguments = self.before + ["print"] + self.view() + ["--paper", self.paper]
        if self.landscape:
            arguments.append("--landscape")
        return arguments + (["--description", self.description] if self.description is not None else [])

    def size(self):
        width, height = PAPERS[self.paper]
        return (height, width) if self.landscape else (width, height)


class Program:
    def __init__(self, path, folder):
        self.path, self.folder = path, folder
        self.environment = dict(os.environ, XDG_CONFIG_HOME=os.path.join(folder, "config"),
                                XDG_STATE_HOME=os.path.join(folder, "state"), HOME=folder, LC_ALL="C.UTF-8")

    def file(self, name):
        return os.path.join(self.folder, name)

    def run(self, arguments, **options):
        options = {"stdout": subprocess.PIPE, **options}
        return subprocess.run([self.path] + arguments, env=self.environment, stderr=subprocess.PIPE, timeout=120,
                              cwd=self.folder, check=False, **options)

    def output(self, arguments):
        done = self.run(arguments)
        if done.returncode != 0:
            raise RuntimeError(f"{arguments}: {done.stderr.decode(errors='replace')}")
        return done.stdout.decode()


# ---- What the lines must say ----

def position(degrees, letters):
    tenths = round(abs(degrees) * 36000)
    whole, tenths = divmod(tenths, 36000)
    minutes, tenths = divmod(tenths, 600)
    return f"{whole}-{minutes:02d}-{tenths / 10:04.1f} {letters[0] if degrees >= 0 else letters[1]}"


def latitude(degrees):
    return position(degrees, "NS")


def longitude(degrees):
    return position(degrees, "EW")


class Expected:
    """The texts of the page, from the other commands' files."""

    def __init__(self, program, case):
        geometry = program.file("plot.json")
        # The picture has no half pixels.
        self.width, self.height = (round(side / pdf_page.POINTS * DPI) for side in box_of(case.size()[0])[1:])
        self.file = program.file(f"{case.name.replace(' ', '-')}.png")
        program.output(case.before + ["picture"] + case.view() + ["--size", f"{self.width}x{self.height}", "-o", self.file,
                                                                  "--geometry", geometry])
        with open(geometry, encoding="utf-8") as file:
            self.geometry = json.load(file)
        table = program.file("heights.csv")
        markers = case.expand or case.markers
        program.output(case.before + ["export", "height"] + case.stations() + ["--units", case.units, "-o", table] +
                       (["--markers", markers] if markers else []) +
                       (["--frequency", case.frequency] if case.frequency else []))
        with open(table, encoding="utf-8") as file:
            self.table = [[cell.strip() for cell in line.split(",")] for line in file.read().splitlines()]
        self.case = case
        self.start, self.end = ([float(x) for x in station.split(",")] for station in case.path)

    @functools.cached_property
    def colours(self):
        """The places of each colour but white."""
        width, height, colours = read_png(self.file)
        assert (width, height) == (self.width, self.height), "a picture of another size"
        return colours

    def header(self):
        ends = [f"{latitude(station[0])} / {longitude(station[1])}" for station in (self.start, self.end)]
        lines = [r"Date: \d{4}-\d\d-\d\d \d\d:\d\d:\d\d", r"Terrain Profiler Version \d+\.\d+\.\d+",
                 re.escape(f"Terrain Profile from {ends[0]} to {ends[1]}")]
        return lines + (["Expanded to show between markers"] if self.case.expand else [])

    def summary(self, name):
        return float(self.table[1][self.table[0].index(f"'{name}'")])

    def rows(self):
        imperial = self.case.units == "imperial"
        unit, distance = ("ft", "mi") if imperial else ("m", "km")
        heights = [float(row[4]) for row in self.samples()]
        antennas = [round(station[2] * (FEET if imperial else 1)) for station in (self.start, self.end)]
        geometry = self.geometry
        rows = [(f"Start Point Latitude: {latitude(self.start[0])}", f"End Point Latitude: {latitude(self.end[0])}"),
                (f"Start Point Longitude: {longitude(self.start[1])}", f"End Point Longitude: {longitude(self.end[1])}"),
                (f"Start Point AMSL: {heights[0]:,.1f} {unit}", f"End Point AMSL: {heights[-1]:,.1f} {unit}"),
                (f"Start Antenna AGL: {antennas[0]} {unit}", f"End Antenna AGL: {antennas[1]} {unit}")]
        rows += self.marker_rows()
        fresnel, k = geometry["inputs"]["fresnel_percent"], geometry["inputs"]["k"]
        return rows + [
            (f"Range: {geometry['distance_km'] * (MILES if imperial else 1):.1f} {distance}", f"E-Curve: {k:.3f}"),
            (f"Bearing: {geometry['bearing_deg']:.0f} degrees", f"% Fresnel: {fresnel}"),
            (f"Average Height: {self.summary(f'Average Ht ({unit})'):,.1f}",
             f"Frequency: {geometry['inputs']['frequency_mhz']:g} MHz"),
            (f"Minimum Height: {self.summary(f'Min Ht ({unit})'):,.1f}",
             f"Free Space Path Loss: {decibels(geometry['free_space_db'])} dB"),
            (f"Maximum Height: {self.summary(f'Max Ht ({unit})'):,.1f}",
             f"Modeled Path Loss: {decibels(geometry['modeled_db'])} dB")]

    def samples(self):
        first = next(i for i, row in enumerate(self.table) if row[0] == "'Point'")
        return self.table[first + 1:]

    def marker_rows(self):
        sides = []
        for side in ("Left", "Right"):
            row = next((row for row in self.table if row[0] == f"'{side} Marker'"), None)
            if row is None or not any(m["side"] == side.lower() for m in self.geometry["markers"]):
                sides.append(("", "", ""))
                continue
            sides.append((f"{side} Marker Latitude: {latitude(float(row[1]))}",
                          f"{side} Marker Longitude: {longitude(float(row[2]))}",
                          f"{side} Marker AMSL: {float(row[4]):.1f}"))
        return list(zip(*sides)) if any(sides[0] + sides[1]) else []


def decibels(value):
    text = f"{value:.2f}".rstrip("0")  # "###.##" keeps its point
    return text


def box_of(page_width):
    """Left side, width and height of the plot's box, points; they are whole twips."""
    left, wide = int(page_width * TWIPS * 0.1), int(page_width * TWIPS * 0.8)
    return left / TWIPS, wide / TWIPS, int(wide / 3) / TWIPS


# ---- What is found ----

def coloured(row):
    """The pixels of a row that are not white. Most of them are, and passed by in blocks."""
    block, width = 32, len(row) // 3
    white = b"\xff" * (3 * block)
    for start in range(0, width, block):
        if row[3 * start:3 * (start + block)] == white:
            continue
        for x in range(start, min(start + block, width)):
            pixel = tuple(row[3 * x:3 * x + 3])
            if pixel != WHITE:
                yield x, pixel


def mostly(pixels, fits):
    """The plot's lines reach into the outline, but take little of it."""
    count = len(pixels) // 3
    return sum(fits(tuple(pixels[3 * i:3 * i + 3])) for i in range(count)) >= 0.9 * count


class Found:
    """The parts of a printed page: lines above the plot, the plot's words and pixels, lines below it, small print. The file is
    read when the parts are found."""

    def __init__(self, path, number=1):
        self.page = pdf_page.PdfPage(path, number)
        self.find_plot()
        above = [w for w in self.page.words if w[4] < self.top + 2]
        self.labels = [w for w in self.page.words if self.top <= (w[2] + w[4]) / 2 <= self.bottom]
        below = [w for w in self.page.words if (w[2] + w[4]) / 2 > self.bottom]
        self.header = self.page.lines([w for w in above if w not in self.labels])
        lines = self.page.lines(below)
        size = max((line[0].bottom - line[0].top for line in lines), default=0)
        self.rows = [line for line in lines if line[0].bottom - line[0].top > 0.85 * size]
        self.notes = [line for line in lines if line not in self.rows]

    def find_plot(self):
        """The outline's sides, points."""
        dpi = DPI * SCALE
        scale = dpi / pdf_page.POINTS
        left, wide, high = box_of(self.page.width)
        first = math.floor(left * scale) - BORDER
        width = math.ceil((left + wide) * scale) + BORDER - first
        rows = self.page.pixels(dpi, first, width)
        inside = slice(3 * 2 * BORDER, 3 * (width - 2 * BORDER))
        outline = [y for y, row in enumerate(rows) if row.count(0) > width and mostly(row[inside], lambda pixel: pixel == BLACK)]
        if len(outline) < 2:
            raise RuntimeError(f"{self.page.path}: no outline of the plot")
        top, bottom = outline[0], outline[-1] + 1
        self.rows_of_plot = rows[top:bottom]
        # Markers on the plot's border may cover the outline's sides.
        vertical = [x for x in (*range(3 * BORDER), *range(width - 3 * BORDER, width))
                    if mostly(b"".join(row[3 * x:3 * x + 3] for row in self.rows_of_plot), lambda pixel: pixel != WHITE)]
        if not vertical:
            raise RuntimeError(f"{self.page.path}: the outline of the plot has no sides")
        self.top, self.bottom = top / scale, bottom / scale
        self.left, self.right = (first + vertical[0]) / scale, (first + vertical[-1] + 1) / scale
        # Of the box's corner, from the upper left of those rows and from that of the page.
        self.corner = left * scale - first, ((bottom - top) - high * scale) / 2
        self.box_top = (top + self.corner[1]) / scale

    @functools.cached_property
    def colours(self):
        """The places of each colour but white in the plot."""
        places = {}
        for y, row in enumerate(self.rows_of_plot):
            for x, pixel in coloured(row):
                place = (x + 0.5 - self.corner[0]) // SCALE, (y + 0.5 - self.corner[1]) // SCALE
                places.setdefault(pixel, set()).add(place)
        return places

    def in_plot(self, x, y):
        """Pixels of the plot, of points of the page."""
        scale = DPI / pdf_page.POINTS
        return (x - box_of(self.page.width)[0]) * scale, (y - self.box_top) * scale


# ---- Checks: lists of faults ----

def document_faults(page, case, copies=1):
    faults, path = [], page.path
    facts = pdf_page.facts(path)
    if facts.get("Pages") != str(copies):
        faults.append(f"{facts.get('Pages')} pages")
    if any(abs(a - b) > 0.6 for a, b in zip((page.width, page.height), case.size())):
        faults.append(f"the paper has {page.width} x {page.height} points")
    if not facts.get("Title", "").startswith("Terrain Profile from ") or "Terrain Profiler" not in facts.get("Creator", ""):
        faults.append("title or creator are missing")
    fonts = pdf_page.fonts(path)
    if not fonts or not all(embedded for _, embedded in fonts):
        faults.append(f"fonts that are not embedded: {fonts}")
    if pdf_page.images(path):
        faults.append("there are images in it")
    return faults


def margin_faults(found):
    page = found.page
    return [f"{word[0]!r} reaches into the margin" for word in page.words
            if word[1] < MARGIN or word[2] < MARGIN or word[3] > page.width - MARGIN or word[4] > page.height - FOOT]


def header_faults(found, expected, description=None):
    """With a description its words follow the other lines; None checks that there is none."""
    faults = []
    wanted = expected.header()
    lines = found.header
    for line, pattern in zip(lines, wanted):
        if len(line) != 1 or not re.fullmatch(pattern, line[0].text):
            faults.append(f"{line} in the header, wanted {pattern}")
    rest = " ".join(text.text for line in lines[len(wanted):] for text in line)
    told = " ".join(("Description: " + description).split()) if description else ""
    if len(lines) < len(wanted) or rest != told:
        faults.append(f"the header goes on with {rest[:200]!r}, wanted {told[:200]!r}")
    for line in lines:
        middle = (line[0].left + line[-1].right) / 2
        if abs(middle - found.page.width / 2) > 1:
            faults.append(f"{line} is not centred")
    widest = found.page.width - (1400 + 3700) / TWIPS
    faults += [f"{line} is wider than its column" for line in lines[len(wanted):]
               if line[-1].right - line[0].left > widest + 0.5]
    return faults


def box_faults(found):
    left, wide, high = box_of(found.page.width)
    wanted = {"left": left, "right": left + wide, "height": high}
    is_ = {"left": found.left, "right": found.right, "height": found.bottom - found.top}
    return [f"the box's {side} is {is_[side]:.1f} points, wanted {wanted[side]:.1f}" for side in wanted
            if abs(is_[side] - wanted[side]) > 1.2]


def row_faults(found, expected):
    faults = []
    left, wide, _ = box_of(found.page.width)
    second = left + wide - 3500 / TWIPS
    texts = []
    for line in found.rows:
        texts.append((" ".join(t.text for t in line if t.left < second - 1),
                      " ".join(t.text for t in line if t.left >= second - 1)))
    wanted = expected.rows()
    for i in range(max(len(wanted), len(texts))):
        a, b = (rows[i] if i < len(rows) else None for rows in (texts, wanted))
        if a != b:
            faults.append(f"line {i + 1} of the values is {a}, wanted {b}")
    first = {round(t.left, 0) for line in found.rows for t in line if t.left < second - 1}
    if len(first) != 1:
        faults.append(f"the left column begins at {sorted(first)}")
    for line in found.rows:
        faults += [f"{t} is not at {second:.1f}" for t in line if t.left >= second - 1 and abs(t.left - second) > 1]
        faults += [f"{a} runs into {b}" for a, b in zip(line, line[1:]) if a.right > b.left - 3]
        faults += [f"{a} and {b} are not on one line" for a, b in zip(line, line[1:]) if abs(a.bottom - b.bottom) > 0.3]
    steps = [b[0].bottom - a[0].bottom for a, b in zip(found.rows, found.rows[1:])]
    if steps and max(steps) - min(steps) > 0.8:
        faults.append(f"the lines are {min(steps):.1f} to {max(steps):.1f} points apart")
    return faults


def note_faults(found):
    faults = []
    if len(found.notes) < 2:
        faults.append("fewer than two lines of notes")
    if found.rows and any(line[0].top < found.rows[-1][0].bottom for line in found.notes):
        faults.append("notes among the values")
    return faults


def label_faults(found, expected):
    """The picture's labels, thousands grouped, at the same places. A height on the page makes way for the labels of the
    range, down or to the right."""
    faults = []
    ranges = {label["text"] for label in expected.geometry["labels"] if label["kind"] == "range"}
    there = [(word[0], *found.in_plot(word[1], word[2]), *found.in_plot(word[3], word[4])) for word in found.labels]
    wanted = [(label["text"], label["rectangle"]) for label in expected.geometry["labels"]]
    if sorted(word[0].replace(",", "") for word in there) != sorted(text.replace(",", "") for text, _ in wanted):
        faults.append(f"labels {sorted(word[0] for word in there)}, wanted {sorted(text for text, _ in wanted)}")
    for text, *_ in there:
        if re.search(r"\d{4}", text.split(".")[0]):
            faults.append(f"the label {text} has no separators of thousands")
    for text, place in wanted:
        right, down = (6, 4) if text in ranges else (3 * place["height"], place["height"] + 4)
        if not any(word[0].replace(",", "") == text.replace(",", "") and -6 < word[1] - place["x"] < right and
                   -4 < (word[2] + word[4]) / 2 - place["y"] - place["height"] / 2 < down for word in there):
            faults.append(f"the label {text} is not where the picture has it")
    for i, a in enumerate(there):
        faults += [f"the labels {a[0]} and {b[0]} collide" for b in there[:i]
                   if a[1] < b[3] and b[1] < a[3] and a[2] + 2 < b[4] - 2 and b[2] + 2 < a[4] - 2]
    return faults


def widened(places, reach=NEAR):
    """With all that lie within so many pixels of them, across and up."""
    steps = range(-reach, reach + 1)
    across = {(x + step, y) for x, y in places for step in steps}
    return {(x, y + step) for x, y in across for step in steps}


def stroke_faults(found, expected):
    """Each pixel of the page has one of its colour in the picture, and the other way round, within two pixels, unless a text,
    the outline or a stroke of another colour lies over it there."""
    texts = [(r["x"], r["y"], r["x"] + r["width"], r["y"] + r["height"])
             for r in (label["rectangle"] for label in expected.geometry["labels"])]
    texts += [(*found.in_plot(w[1], w[2]), *found.in_plot(w[3], w[4])) for w in found.labels]

    def under_text(place):
        x, y = place
        return any(a - 2 <= x <= c + 2 and b - 2 <= y <= d + 2 for a, b, c, d in texts)

    def inside(places):
        return {(x, y) for x, y in places if BORDER <= x < expected.width - BORDER and BORDER <= y < expected.height - BORDER}

    sides = {"page": found.colours, "picture": expected.colours}
    near = {name: {colour: widened(places) for colour, places in colours.items()} for name, colours in sides.items()}
    faults = []
    for colour in sorted(set(found.colours) | set(expected.colours)):
        for name, other in (("page", "picture"), ("picture", "page")):
            ours = inside(sides[name].get(colour, set()))
            lost = ours - near[other].get(colour, set())
            covered = [places for over, places in near[other].items() if over != colour]
            stray = [place for place in lost if not under_text(place) and not any(place in places for places in covered)]
            if stray:
                faults.append(f"{len(stray)} pixels of {colour} are in the {name} alone, as at {min(stray)}")
            if len(ours) > 200 and len(lost) > len(ours) / 3:
                faults.append(f"most pixels of {colour} are in the {name} alone")
    return faults


def marker_faults(found, expected, colour=(0, 255, 255)):
    """The markers' columns, from the geometry; those on the borders of an expanded view are the outline's neighbours."""
    faults = []
    width, height = expected.width, expected.height
    columns = {}
    for x, y in found.colours.get(colour, set()):
        columns[x] = columns.get(x, 0) + 1
    lines = [x for x, count in columns.items() if count > height * 0.6]
    wanted = [marker["pixel_x"] for marker in expected.geometry["markers"] if 2 < marker["pixel_x"] < width - 2]
    faults += [f"no marker at {x:.1f}" for x in wanted if not any(abs(x - line) <= 1.6 for line in lines)]
    faults += [f"a marker at {line}" for line in lines
               if 2 < line < width - 2 and not any(abs(x - line) <= 1.6 for x in wanted)]
    return faults


def text_faults(found, expected, description=None):
    return margin_faults(found) + header_faults(found, expected, description) + box_faults(found) + \
        row_faults(found, expected) + note_faults(found) + label_faults(found, expected)


def page_faults(found, expected):
    case = expected.case
    faults = text_faults(found, expected, case.description)
    return faults + (stroke_faults(found, expected) + marker_faults(found, expected) if case.pixels else [])


# ---- Pages ----

LONG = ("The second reflector stands on the ridge north of the town and is fed from the old fire tower; ask for the key at the "
        "station. ") * 3
GOOD = Case("both markers, imperial, Letter", RIDGES, markers="12,4.5", units="imperial", paper="letter", pixels=True)


def write_tile(program):
    """Hills of 240 to 360 m, in rows, with a lake of voids across the path, in the format of SRTM."""
    path = program.file("N36W085.hgt")
    with open(path, "wb") as file:
        for row in range(1201):
            height = struct.pack(">h", round(300 + 60 * math.sin(row / 17)))
            file.write(height * 640 + struct.pack(">h", -32768) * 61 + height * 500)
    return path


def cases(tile):
    return [
        Case("plain", RIDGES),
        Case("left marker", RIDGES, markers="7.5", description="Jacksboro, second reflector"),
        GOOD,
        Case("landscape", RIDGES, markers="4.5,12", landscape=True, description=LONG),
        Case("Letter landscape, imperial", RIDGES, units="imperial", paper="letter", landscape=True),
        Case("expanded", RIDGES, expand="4.5,12", pixels=True),
        Case("expanded, imperial, Letter landscape", RIDGES, expand="20,3.25", units="imperial", paper="letter",
             landscape=True, description="Füße, Ωμέγα – naïve \"quotes\" & <tags>"),
        Case("short", SHORT, frequency="450.125", description=LONG),
        Case("short, imperial, landscape", SHORT, units="imperial", markers="0.1,0.3", landscape=True, pixels=True),
        Case("voids", TILE, before=["--terrain", tile], markers="30", pixels=True),
        Case("voids, expanded, imperial", TILE, before=["--terrain", tile], expand="10,60", units="imperial", landscape=True),
        Case("colours and another k", RIDGES, before=["--set", "Colors/cLOS=65280", "--set", "Colors/cFresnel=16744448", "--set",
                                                      "Profile/Prf_Crv=0.75", "--set", "Profile/Prf_Frez=60", "--set",
                                                      "Profile/Prf_Ele=5", "--set", "Profile/Prf_Rng=8"], pixels=True),
        Case("no Fresnel line", RIDGES, before=["--set", "Profile/Prf_Frez=0"], paper="letter"),
    ]


def printed(program, case, *arguments):
    """What the command says."""
    return program.output(case.print_arguments() + ["-o", program.file("page.pdf"), *arguments])


def check_pages(program):
    failed = []
    for case in cases(write_tile(program)):
        printed(program, case)
        expected, found = Expected(program, case), Found(program.file("page.pdf"))
        failed += [f"{case.name}: {fault}" for fault in document_faults(found.page, case) + page_faults(found, expected)]
    return failed


# ---- Descriptions, copies, standard output ----

def check_descriptions(program):
    faults = []
    cases_of_it = [Case("description", RIDGES, markers="4.5,12"),
                   Case("description", RIDGES, markers="4.5,12", paper="letter", landscape=True)]
    path = program.file("page.pdf")
    both = [(case, Expected(program, case)) for case in cases_of_it]
    for name, text in (("25,000 words", "word " * 25000), ("one long word", "x" * 100000), ("lines", "line\n" * 5000)):
        for case, expected in both:
            summary = printed(program, case, "--description", text)
            found = Found(path)
            told = "".join(t.text for line in found.header[len(expected.header()):] for t in line)
            faults += [f"{name}: {fault}" for fault in margin_faults(found) + row_faults(found, expected) + note_faults(found) +
                       box_faults(found)]
            if pdf_page.facts(path)["Pages"] != "1":
                faults.append(f"{name}: more than one page")
            if not told.endswith("…") or not told.startswith("Description:"):
                faults.append(f"{name}: the description does not end in an ellipsis: {told[-80:]!r}")
            if "ends in an ellipsis" not in summary:
                faults.append(f"{name}: the summary does not say that the description was cut")
    case, expected = both[0]
    for name, text, part in (("bytes that are no text", b"caf\xe9 au lait", "caf\ufffd au lait"),
                             ("control characters", "a\x07b\x1b[1mc", "a b [1mc"), ("blanks", "   ", None),
                             ("other scripts", "Berg 山 \U0001f3d4 гора", "Berg")):
        summary = printed(program, case, "--description", text)
        found = Found(path)
        told = " ".join(t.text for line in found.header[len(expected.header()):] for t in line)
        if part is not None and f"Description: {part}" not in told:
            faults.append(f"{name}: the description is {told!r}")
        faults += [f"{name}: {fault}" for fault in row_faults(found, expected)]
        if name in ("bytes that are no text", "control characters") and "Note              the description has" not in summary:
            faults.append(f"{name}: nothing is noted")
    return faults


def check_copies(program):
    """Every copy is the same page, and so is the one on standard output."""
    case = Case("copies", RIDGES)
    path, alone = program.file("page.pdf"), program.file("alone.pdf")
    expected = Expected(program, case)
    printed(program, case, "--copies", "3")
    copies = [Found(path, number) for number in (1, 2, 3)]
    faults = document_faults(copies[0].page, case, copies=3)
    done = program.run(case.print_arguments() + ["-o", "-"])
    with open(alone, "wb") as file:
        file.write(done.stdout)
    if done.returncode != 0 or done.stderr:
        faults.append("standard output: " + done.stderr.decode(errors="replace"))
    copies.append(Found(alone))
    faults += document_faults(copies[-1].page, case)
    for number, copy_of_it in enumerate(copies, 1):
        faults += text_faults(copy_of_it, expected)
        if copy_of_it.rows_of_plot != copies[0].rows_of_plot:
            faults.append(f"the plot of copy {number} is another one")
    return [f"copies: {fault}" for fault in faults]


# ---- Files that cannot be written ----

def check_failures(program):
    """One line, nothing half written, what was there stays."""
    os.mkdir(program.file("files"))
    old = program.file("files/old.pdf")
    with open(old, "wb") as file:
        file.write(b"old")
    os.mkdir(program.file("files/folder.pdf"))
    os.symlink("/dev/full", program.file("files/full.pdf"))
    os.symlink("nowhere/page.pdf", program.file("files/link.pdf"))
    before = sorted(os.listdir(program.file("files")))

    def small_files():
        resource.setrlimit(resource.RLIMIT_FSIZE, (8192, 8192))

    page = ["print", "--from", RIDGES[0], "--to", RIDGES[1]]
    faults = []
    for name, arguments, options in (
            ("folder that is not there", ["-o", program.file("none/page.pdf")], {}),
            ("folder in the file's place", ["-o", program.file("files/folder.pdf")], {}),
            ("full device", ["-o", program.file("files/full.pdf")], {}),
            ("link to nowhere", ["-o", program.file("files/link.pdf")], {}),
            # The signal of the limit stays as Python has it: ignored, so that the write itself fails.
            ("no room for the new file", ["-o", old], {"preexec_fn": small_files, "restore_signals": False}),
            ("no room for it on standard output", ["-o", "-"], {"stdout": "/dev/full"}),
            ("path that cannot be profiled", ["-o", old, "--markers", "40"], {})):
        if "stdout" in options:
            with open(options["stdout"], "wb") as device:
                done = program.run(page + arguments, stdout=device)
        else:
            done = program.run(page + arguments, **options)
        told = done.stderr.decode(errors="replace")
        if done.returncode != 1 or len(told.splitlines()) != 1 or done.stdout:
            faults.append(f"{name}: exit {done.returncode}, {told!r}")
        with open(old, "rb") as file:
            if file.read() != b"old":
                faults.append(f"{name}: the old file is gone")
        if sorted(os.listdir(program.file("files"))) != before or os.path.exists(program.file("none")):
            faults.append(f"{name}: it left {os.listdir(program.file('files'))}")
    return [f"failures: {fault}" for fault in faults]


# ---- The checks themselves ----

def check_the_checks(program):
    """Each disturbance of a good page must be seen."""
    printed(program, GOOD)
    found, expected = Found(program.file("page.pdf")), Expected(program, GOOD)

    def disturbed(name, change, check):
        page = copy.copy(found)
        page.rows, page.header, page.notes = (copy.deepcopy(lines) for lines in (found.rows, found.header, found.notes))
        page.colours = {colour: set(places) for colour, places in found.colours.items()}
        change(page)
        return [] if check(page, expected) else [f"the checks do not see {name}"]

    def shift(page, colour, x, y):
        page.colours[colour] = {(a + x, b + y) for a, b in page.colours[colour]}

    def move(text, x, y):
        text.left, text.right, text.top, text.bottom = text.left + x, text.right + x, text.top + y, text.bottom + y

    def rename(text, words):
        text.text = words

    def swap_columns(page):
        for line in page.rows:
            line[0].text, line[1].text = line[1].text, line[0].text

    blue, marker = (0, 0, 255), (0, 255, 255)
    faults = page_faults(found, expected)
    faults += disturbed("a line that is gone", lambda p: p.rows.pop(5), row_faults)
    faults += disturbed("two lines in another order", lambda p: p.rows.insert(0, p.rows.pop(1)), row_faults)
    faults += disturbed("columns that are exchanged", swap_columns, row_faults)
    faults += disturbed("a text out of its column", lambda p: move(p.rows[3][1], 4, 0), row_faults)
    faults += disturbed("a text off its line", lambda p: move(p.rows[3][1], 0, 1), row_faults)
    faults += disturbed("another number", lambda p: rename(p.rows[2][0], "Start Point AMSL: 1,816.2 ft"), row_faults)
    faults += disturbed("a line of the header off the middle", lambda p: move(p.header[1][0], 3, 0), header_faults)
    faults += disturbed("a header line more", lambda p: p.header.append(p.header[0]), header_faults)
    faults += disturbed("no notes", lambda p: p.notes.clear(), lambda p, _: note_faults(p))
    faults += disturbed("ground that lies too low", lambda p: shift(p, BLACK, 0, 4), stroke_faults)
    faults += disturbed("ground that lies too far to the right", lambda p: shift(p, BLACK, 5, 0), stroke_faults)
    faults += disturbed("no line of sight", lambda p: p.colours.pop(blue), stroke_faults)
    faults += disturbed("a line of sight in another colour", lambda p: p.colours.update({(0, 0, 254): p.colours.pop(blue)}),
                        stroke_faults)
    faults += disturbed("a marker at another place", lambda p: shift(p, marker, 4, 0), marker_faults)
    return faults


PARTS = {"pages": [check_pages], "rest": [check_descriptions, check_copies, check_failures], "checks": [check_the_checks]}


def main():
    for tool in ("pdftotext", "pdftoppm", "pdfinfo", "pdffonts", "pdfimages"):
        if shutil.which(tool) is None:
            print(f"there is no {tool} here; it is in the package poppler-utils")
            return 77
    with tempfile.TemporaryDirectory() as folder:
        program = Program(os.path.abspath(sys.argv[1]), folder)
        faults = [fault for check in PARTS[sys.argv[2]] for fault in check(program)]
    for fault in faults:
        print("FAILED: " + fault)
    print("the pages are as they must be" if not faults else f"{len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
