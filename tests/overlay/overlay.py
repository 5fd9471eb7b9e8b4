#!/usr/bin/python3
"""Lays a drawing of its own over the pictures of `terrain-profiler picture`.

usage: overlay.py PROGRAM

The ground comes from `terrain-profiler sample` between the two ends that the geometry file names, everything else (curvature
rise, line of sight, first Fresnel zone) is computed here from its formula. World coordinates go to device pixels as
include/zel/plot_image.h says. Then both ways: each pixel of a stroke that is expected has a pixel of its colour no farther than
one device pixel away, unless a later stroke covers it; and no pixel of that colour is farther from what is expected. Normal
and expanded view, scale 1 and 2, metric and imperial labels, flat and round samples, voids.

Nothing of the program's code is used, and nothing but Python's own library: not even to read PNG.
"""
import csv
import io
import json
import math
import os
import struct
import subprocess
import sys
import tempfile
import zlib

RIDGES = ["--from", "36.40,-84.35,30", "--to", "36.22,-84.12,30"]
EARTH_KM = 6378.388  # equatorial radius of the ellipsoid of 1924, which the rise is given with
FEET, MILES = 1 / 0.3048, 1 / 1.609344
BLACK, RED, GREEN, BLUE, MAGENTA = (0, 0, 0), (255, 0, 0), (0, 255, 0), (0, 0, 255), (255, 0, 255)
MARKER = (0, 255, 255)
VOID = -9999
NEAR = [(dx, dy) for dx in (-1, 0, 1) for dy in (-1, 0, 1)]


# ---- PNG ----

def read_png(path):
    """Width, height and the positions of every colour but white."""
    with open(path, "rb") as file:
        data = file.read()
    assert data[:8] == b"\x89PNG\r\n\x1a\n", "no PNG"
    place, packed, header = 8, b"", None
    while place < len(data):
        length, kind = struct.unpack(">I4s", data[place:place + 8])
        content = data[place + 8:place + 8 + length]
        assert zlib.crc32(kind + content) == struct.unpack(">I", data[place + 8 + length:place + 12 + length])[0], "a torn PNG"
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", content)
        elif kind == b"IDAT":
            packed += content
        place += 12 + length
    width, height, depth, colour, _, _, interlace = header
    assert depth == 8 and colour in (2, 6) and interlace == 0, f"a PNG of another kind: {header}"
    size = 3 if colour == 2 else 4
    stride = width * size
    rows = zlib.decompress(packed)
    colours, above, white = {}, bytearray(stride), b"\xff" * stride
    for y in range(height):
        start = y * (stride + 1)
        row = unfiltered(rows[start], bytearray(rows[start + 1:start + 1 + stride]), above, size)
        above = row
        if row == white:
            continue
        for x in range(width):
            pixel = tuple(row[x * size:x * size + 3])
            if pixel != (255, 255, 255):
                colours.setdefault(pixel, set()).add((x, y))
    return width, height, colours


def unfiltered(kind, row, above, size):
    if kind == 1:
        for i in range(size, len(row)):
            row[i] = (row[i] + row[i - size]) & 255
    elif kind == 2:
        for i, value in enumerate(above):
            row[i] = (row[i] + value) & 255
    elif kind == 3:
        for i, value in enumerate(above):
            row[i] = (row[i] + ((row[i - size] if i >= size else 0) + value) // 2) & 255
    elif kind == 4:
        for i, b in enumerate(above):
            a, c = (row[i - size], above[i - size]) if i >= size else (0, 0)
            pa, pb, pc = abs(b - c), abs(a - c), abs(a + b - 2 * c)
            row[i] = (row[i] + (a if pa <= pb and pa <= pc else b if pb <= pc else c)) & 255
    return row


# ---- The program ----

def run(program, arguments):
    done = subprocess.run([program] + arguments, capture_output=True, text=True, timeout=120, check=False)
    assert done.returncode == 0, f"{arguments}: {done.stderr}"
    return done.stdout


def picture_of(program, folder, arguments):
    png, geometry = os.path.join(folder, "plot.png"), os.path.join(folder, "plot.json")
    run(program, arguments + ["-o", png, "--geometry", geometry])
    with open(geometry, encoding="utf-8") as file:
        return read_png(png), json.load(file)


def heights_of(program, geometry, arguments):
    """The samples, from 1 on, as the terrain source has them."""
    ends = [f"{geometry['samples'][end]['latitude']!r},{geometry['samples'][end]['longitude']!r}" for end in ("from", "to")]
    terrain = arguments[:arguments.index("picture")]
    table = run(program, terrain + ["sample", "--from", ends[0], "--to", ends[1], "--points",
                                    str(geometry["samples"]["count"])])
    rows = list(csv.DictReader(io.StringIO(table)))
    return [None] + [float(row[[name for name in row if name.startswith(("height", "ground", "elevation"))][0]])
                     for row in rows]


# ---- What is expected ----

def half_even(value):
    return int(round(value))


class Path:
    """Heights and lines of the plot in world coordinates: km from the back point, metres."""

    def __init__(self, geometry, heights):
        samples = geometry["samples"]
        self.geometry, self.raw = geometry, heights
        self.count, self.spacing = samples["count"], samples["spacing_km"]
        self.first, self.last = samples["first"], samples["last"]
        self.start = half_even(geometry["distance_shift_km"] / self.spacing)
        self.end = self.count - self.start
        self.distance = geometry["distance_km"]
        # A height below -500 m is none, and counts as 0.
        self.height = [None] + [0.0 if h < -500 else h for h in heights[1:]]
        self.rise = self.rises(geometry["inputs"]["k"], geometry["extended_km"])
        self.top = [self.height[i] + self.rise[i] + geometry[name]["antenna_m"]
                    for i, name in ((self.start, "start"), (self.end, "end"))]

    def rises(self, k, length):
        radius = half_even(k * EARTH_KM)  # whole kilometres, as the plot has it
        angle = 2 * math.asin(length / (2 * radius))
        chord = radius * math.cos(angle / 2)
        rise = [None, 0.0]
        # One step out of phase with where the sample is taken, and none at both ends: so the plot is meant.
        rise += [(radius * math.cos(angle / 2 - i * angle / self.count) - chord) * 1000 for i in range(2, self.count)]
        return rise + [0.0]

    def sight(self, x):
        return self.top[0] + (self.top[1] - self.top[0]) / self.distance * (x - self.start * self.spacing)

    def markers(self):
        return [marker["x_km"] for marker in self.geometry["markers"]]

    def ground(self):
        """Segments with whether they lead to a void."""
        expanded = self.geometry["expanded"]
        offset = self.geometry["samples"]["x_offset_samples"]
        point = (self.first * self.spacing if expanded else 0.0, self.height[self.first])
        for i in range(self.first, self.last + 1):
            void = self.raw[i] < -499
            after = ((i + offset) * self.spacing, (0.0 if void else self.raw[i]) + self.rise[i])
            yield point, after, void
            point = after

    def fresnel(self):
        part = self.geometry["inputs"]["fresnel_percent"] / 100
        wavelength = 300 / self.geometry["inputs"]["frequency_mhz"]
        first, last = self.start, self.end
        if self.geometry["expanded"]:
            left, right = self.markers()
            first, last = max(half_even(left / self.spacing), first), min(half_even(right / self.spacing), last)
        points = []
        for i in range(first, last + 1):
            x = (i - self.start) * self.spacing
            radius = math.sqrt(max(wavelength * 1000 / self.distance * x * (self.distance - x), 0))
            points.append((i * self.spacing, self.sight(i * self.spacing) - part * radius))
        return points

    def line_of_sight(self):
        ends = self.markers() if self.geometry["expanded"] else (self.start * self.spacing, self.end * self.spacing)
        return [(x, self.sight(x)) for x in ends]


class Sheet:
    """Device pixels of world positions."""

    def __init__(self, geometry, shift=0):
        self.world, self.pixels = geometry["world"], geometry["pixels"]
        self.ratio, self.shift = geometry["pixel_ratio"], shift
        self.width, self.height = (geometry["device_pixels"][side] for side in ("width", "height"))

    def at(self, point):
        x = (point[0] - self.world["left_km"]) / (self.world["right_km"] - self.world["left_km"]) * self.pixels["width"]
        y = (point[1] - self.world["top_m"]) / (self.world["bottom_m"] - self.world["top_m"]) * self.pixels["height"]
        x, y = math.floor(x * self.ratio + 0.5), math.floor(y * self.ratio + 0.5) + self.shift
        return (self.width - 1 if x == self.width else x), (self.height - 1 if y == self.height else y)

    def holds(self, pixel):
        return 0 <= pixel[0] < self.width and 0 <= pixel[1] < self.height

    def stroke(self, a, b):
        """The pixels of a straight line, those outside left out."""
        (x, y), (x2, y2) = self.at(a), self.at(b)
        steps = max(abs(x2 - x), abs(y2 - y))
        for i in range(steps + 1):
            part = i / steps if steps else 0
            pixel = (math.floor(x + (x2 - x) * part + 0.5), math.floor(y + (y2 - y) * part + 0.5))
            if self.holds(pixel):
                yield pixel

    def polyline(self, points):
        return {pixel for a, b in zip(points, points[1:]) for pixel in self.stroke(a, b)}

    def vertical(self, x):
        return set(self.stroke((x, self.world["bottom_m"]), (x, self.world["top_m"])))


def widened(pixels, by=1):
    for _ in range(by):
        pixels = {(x + dx, y + dy) for x, y in pixels for dx, dy in NEAR}
    return pixels


def inked(sheet, pixels):
    """What a pen of one logical pixel leaves around them; one of an even width has its middle to the right and below."""
    pen = max(math.floor(sheet.ratio + 0.5), 1)
    way = range(-((pen - 1) // 2), pen // 2 + 1)
    return {(x + dx, y + dy) for x, y in pixels for dx in way for dy in way}


def mast(sheet, x, top, antenna, pen):
    """The pixels that a mast must have and those that it may have; the same of the circle at its top: disk and ring."""
    line = set(sheet.stroke((x, top), (x, top - antenna)))
    cx, cy = sheet.at((x, top))
    radius = sheet.pixels["width"] * sheet.ratio / 200
    reach = math.ceil(radius + pen)
    disk = {(cx + dx, cy + dy) for dx in range(-reach, reach + 1) for dy in range(-reach, reach + 1)
            if math.hypot(dx, dy) <= radius + pen / 2 + 1}
    ring = {(cx + round(radius * math.cos(angle)), cy + round(radius * math.sin(angle))) for angle in range(360)}
    return line, widened(line, pen // 2 + 1), disk, ring


# ---- The comparison ----

class Findings:
    def __init__(self):
        self.texts = []

    def missing(self, what, expected, found, covered):
        lost = [p for p in expected if p not in covered and not any((p[0] + dx, p[1] + dy) in found for dx, dy in NEAR)]
        if lost:
            self.texts.append(f"{what}: {len(lost)} of {len(expected)} pixels are missing, first {min(lost)}")
        if not expected:
            self.texts.append(f"{what}: nothing is expected, so nothing was tried")

    def astray(self, what, found, allowed):
        lost = [p for p in found if p not in allowed]
        if lost:
            self.texts.append(f"{what}: {len(lost)} of {len(found)} pixels are where none belongs, first {min(lost)}")

    def near(self, what, value, wanted, tolerance):
        if not abs(value - wanted) <= tolerance:
            self.texts.append(f"{what} is {value}, wanted {wanted}")


def label_pixels(sheet, geometry):
    pixels = set()
    for label in geometry["labels"]:
        box = label["rectangle"]
        for x in range(math.floor(box["x"] * sheet.ratio) - 1, math.ceil((box["x"] + box["width"]) * sheet.ratio) + 2):
            for y in range(math.floor(box["y"] * sheet.ratio) - 1, math.ceil((box["y"] + box["height"]) * sheet.ratio) + 2):
                pixels.add((x, y))
    return pixels


def compare_strokes(findings, image, geometry, path, shift=0):
    width, height, colours = image
    sheet = Sheet(geometry, shift)
    findings.near("the width", width, sheet.width, 0)
    findings.near("the height", height, sheet.height, 0)
    found = {name: colours.get(name, set()) for name in (BLACK, RED, GREEN, BLUE, MAGENTA, MARKER)}

    # From the last stroke to the first, because each covers those before it.
    ground = {False: set(), True: set()}
    for a, b, void in path.ground():
        ground[void].update(sheet.stroke(a, b))
    labels = label_pixels(sheet, geometry)
    circles, rings, masts, masts_near = set(), set(), set(), set()
    if not geometry["expanded"]:
        for x, top, end in ((path.start * path.spacing, path.top[0], "start"),
                            (path.start * path.spacing + path.distance, path.top[1], "end")):
            line, near, circle, ring = mast(sheet, x, top, geometry[end]["antenna_m"], round(3 * sheet.ratio))
            masts, masts_near, circles, rings = masts | line, masts_near | near, circles | circle, rings | ring
    # Where ground and void meet, either may have the last stroke.
    covered = widened(inked(sheet, ground[False] | ground[True]))
    findings.missing("the ground", ground[False], found[BLACK], widened(inked(sheet, ground[True])))
    if any(h == VOID for h in path.raw[path.first:path.last + 1]):
        findings.missing("the ground of voids", ground[True], found[RED], widened(inked(sheet, ground[False])))
    sight = sheet.polyline(path.line_of_sight())
    findings.missing("the line of sight", sight, found[BLUE], covered)
    covered |= widened(inked(sheet, sight))
    if masts:
        findings.missing("the masts", masts, found[RED], covered | circles)
        findings.missing("the circles of the masts", {p for p in rings if sheet.holds(p)}, found[BLACK], covered)
    fresnel = sheet.polyline(path.fresnel())
    findings.missing("the Fresnel line", fresnel, found[RED], covered | circles | masts_near)

    def allowed(pixels):
        return widened(inked(sheet, pixels))

    findings.astray("black", found[BLACK], allowed(ground[False]) | labels | circles)
    findings.astray("red", found[RED], allowed(fresnel) | masts_near | allowed(ground[True]))
    findings.astray("blue", found[BLUE], allowed(sight))

    # Reference lines and markers lie below all that, and below the texts.
    covered |= widened(inked(sheet, fresnel)) | masts_near | circles | labels
    ranges = set()
    for label in geometry["labels"]:
        if label["kind"] == "range":
            ranges |= sheet.vertical(label["x_km"])
    findings.missing("the range lines", ranges, found[MAGENTA], covered)
    findings.astray("magenta", found[MAGENTA], allowed(ranges))
    levels = set()
    for label in geometry["labels"]:
        if label["kind"] == "elevation":
            levels |= sheet.polyline([(i * path.spacing, label["y_m"] + path.rise[i] - path.rise[path.first])
                                      for i in range(path.first, path.last + 1)])
    findings.missing("the elevation lines", levels, found[GREEN], covered | allowed(ranges))
    if path.markers():
        markers = set().union(*(sheet.vertical(x) for x in path.markers()))
        findings.missing("the markers", markers, found[MARKER], covered | allowed(ranges | levels))
        findings.astray("the markers' colour", found[MARKER], allowed(markers))


def compare_labels(findings, geometry):
    feet, miles = (FEET, MILES) if geometry["units"] == "imperial" else (1, 1)
    boxes = []
    for label in geometry["labels"]:
        number = float(label["text"].replace(",", ""))
        if label["kind"] == "elevation":
            findings.near(f"the level of {label['text']}", label["y_m"] * feet, number, 0.51)
        else:
            findings.near(f"the distance of {label['text']}", label["distance_km"] * miles, number, 0.51 if "." not in
                          label["text"] else 0.051)
        box = label["rectangle"]
        left, top, right, bottom = box["x"], box["y"], box["x"] + box["width"], box["y"] + box["height"]
        if left < -0.01 or top < -0.01 or right > geometry["pixels"]["width"] + 0.01 or \
                bottom > geometry["pixels"]["height"] + 0.01:
            findings.texts.append(f"the label {label['text']} is cut off")
        for name, other in boxes:
            if left < other[2] - 0.01 and other[0] < right - 0.01 and top < other[3] - 0.01 and other[1] < bottom - 0.01:
                findings.texts.append(f"the labels {name} and {label['text']} lie over each other")
        boxes.append((label["text"], (left, top, right, bottom)))
    if not boxes:
        findings.texts.append("there are no labels")


def compare_numbers(findings, geometry, path):
    for name, top, x in (("start", path.top[0], path.start * path.spacing),
                         ("end", path.top[1], path.start * path.spacing + path.distance)):
        findings.near(f"the top of the {name} mast", geometry[name]["top_m"], top, 0.02)
        findings.near(f"the place of the {name} mast", geometry[name]["x_km"], x, 1e-6)
    findings.near("the extended path", geometry["extended_km"], path.distance + 2 * path.start * path.spacing, 1e-6)


def write_tile(folder):
    """Hills of 200 to 400 m with a lake of voids across the path, in the format of SRTM."""
    path = os.path.join(folder, "N36W085.hgt")
    with open(path, "wb") as file:
        for row in range(1201):
            file.write(b"".join(
                struct.pack(">h", -32768 if 640 <= column <= 700 else
                            round(300 + 60 * math.sin(row / 17) + 40 * math.cos(column / 23))) for column in range(1201)))
    return path


def main():
    program = os.path.abspath(sys.argv[1])
    failed = 0
    with tempfile.TemporaryDirectory() as folder:
        tile = write_tile(folder)
        scenarios = [(view, scale, units, []) for view in ("normal", "expanded") for scale in ("1", "2")
                     for units in ("metric", "imperial")]
        scenarios += [("markers", "1.5", "metric", []), ("normal", "1", "metric", ["--terrain", tile]),
                      ("expanded", "2", "imperial", ["--terrain", tile]), ("tiny", "1", "metric", []),
                      ("tiny", "2", "imperial", [])]
        for view, scale, units, terrain in scenarios:
            arguments = terrain + ["picture"] + RIDGES + ["--scale", scale, "--units", units, "--size",
                                                          "100x80" if view == "tiny" else "621x330"]
            if view == "expanded":
                arguments += ["--expand", "4.515,12"] if not terrain else ["--expand", "7,20"]
            elif view == "markers":
                arguments += ["--markers", "7.5,21"]
            image, geometry = picture_of(program, folder, arguments)
            path = Path(geometry, heights_of(program, geometry, arguments))
            findings = Findings()
            compare_numbers(findings, geometry, path)
            compare_labels(findings, geometry)
            compare_strokes(findings, image, geometry, path)
            # A drawing that is moved by three pixels must not pass.
            moved = Findings()
            compare_strokes(moved, image, geometry, path, shift=3)
            for what in ("the ground", "the line of sight", "the Fresnel line", "black", "red", "blue"):
                if view != "tiny" and not any(text.startswith(what + ":") for text in moved.texts):
                    findings.texts.append(f"{what}: a drawing beside it would pass as well")
            name = f"{view}, scale {scale}, {units}{', voids' if terrain else ''}"
            print(("FAILED  " if findings.texts else "ok      ") + name)
            for text in findings.texts:
                print("        " + text)
            failed += bool(findings.texts)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
