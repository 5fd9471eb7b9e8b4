#!/usr/bin/python3
"""Reads the exported files of a real path again, and computes their columns a second time.

  check_exports.py PROGRAM               runs `PROGRAM FOLDER`, holds the files against those in golden/ and against its own figures
  check_exports.py --self-test PROGRAM   shows that a disturbance of any column, line or blank is found
  check_exports.py --renew PROGRAM       writes golden/ anew; look at what changes

Everything is computed from the stations, the settings and the sampled heights, by the rules of the file formats: geodesics by Vincenty's
series, single precision where the profile keeps it, both radio models by the independent evaluations in tests/models.
Exit code 0: agreement; 1: a disagreement; 2: wrong usage.
"""
import functools
import itertools
import json
import math
import pathlib
import re
import statistics
import struct
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
for model in ("longrice", "ptp"):
    sys.path.insert(0, str(HERE.parent / "models" / model / "independent"))

import diffraction  # noqa: E402
import irregular_terrain  # noqa: E402

GOLDEN = HERE / "golden"
GOLDEN_LOSS_LINES = 6  # of the loss table only the first lines are kept; the rest is computed again
VARIANTS = ("metric", "imperial", "comma", "expanded")
NAMES = ("height.csv", "signal.csv", "signal.csv.terrain.txt", "loss.csv", "graph.dat", "graph.plt")

# Greatest differences.
HEIGHT = 5e-4  # m: single precision, and a sum of a hundred of it
DISTANCE = 1e-6  # km: 1 mm
DEGREES = 9e-6  # five decimals, of a single near 84
LEVEL = 0.02  # dB: the independent evaluations' own tolerance
EXACT_LEVEL = 1.1e-3  # dB, of levels that follow from the losses beside them: three decimals and single precision
FREE_SPACE = 6e-5  # dB: seven digits
ROUNDED_GROUND = 0.03  # dB: heights of two decimals, as the point-to-point program is given them
PLACE = 0.11  # dBu: labels' levels of one decimal, from levels of three
RELATIVE = 1e-9  # between numbers of the kept files and new ones


def single(value):
    return struct.unpack("f", struct.pack("f", value))[0]


# ------------------------------------------------------------------------------------------------------------------- geodesics

A, F = 6378137.0, 1 / 298.257223563
B = A * (1 - F)


def series(cos2_alpha):
    u2 = cos2_alpha * (A * A - B * B) / (B * B)
    first = 1 + u2 / 16384 * (4096 + u2 * (-768 + u2 * (320 - 175 * u2)))
    second = u2 / 1024 * (256 + u2 * (-128 + u2 * (74 - 47 * u2)))
    return first, second


def arc_correction(b, sin_s, cos_s, cos_m):
    return b * sin_s * (cos_m + b / 4 * (cos_s * (2 * cos_m ** 2 - 1) - b / 6 * cos_m * (4 * sin_s ** 2 - 3) * (4 * cos_m ** 2 - 3)))


def longitude_step(sin_alpha, cos2_alpha, sigma, sin_s, cos_s, cos_m):
    c = F / 16 * cos2_alpha * (4 + F * (4 - 3 * cos2_alpha))
    return (1 - c) * F * sin_alpha * (sigma + c * sin_s * (cos_m + c * cos_s * (2 * cos_m ** 2 - 1)))


def inverse(start, end):
    """(km, degrees from north) from one point to another."""
    u1, u2 = (math.atan((1 - F) * math.tan(math.radians(p[0]))) for p in (start, end))
    apart = lam = math.radians(end[1] - start[1])
    for _ in range(100):
        sin_s = math.hypot(math.cos(u2) * math.sin(lam),
                           math.cos(u1) * math.sin(u2) - math.sin(u1) * math.cos(u2) * math.cos(lam))
        cos_s = math.sin(u1) * math.sin(u2) + math.cos(u1) * math.cos(u2) * math.cos(lam)
        sigma = math.atan2(sin_s, cos_s)
        sin_alpha = math.cos(u1) * math.cos(u2) * math.sin(lam) / sin_s
        cos2_alpha = 1 - sin_alpha ** 2
        cos_m = cos_s - 2 * math.sin(u1) * math.sin(u2) / cos2_alpha
        before, lam = lam, apart + longitude_step(sin_alpha, cos2_alpha, sigma, sin_s, cos_s, cos_m)
        if abs(lam - before) < 1e-15:
            break
    first, second = series(cos2_alpha)
    azimuth = math.atan2(math.cos(u2) * math.sin(lam), math.cos(u1) * math.sin(u2) - math.sin(u1) * math.cos(u2) * math.cos(lam))
    return B * first * (sigma - arc_correction(second, sin_s, cos_s, cos_m)) / 1000, math.degrees(azimuth) % 360


def direct(start, distance, azimuth):
    """The point so many km from another in a direction."""
    alpha = math.radians(azimuth)
    u1 = math.atan((1 - F) * math.tan(math.radians(start[0])))
    sigma1 = math.atan2(math.tan(u1), math.cos(alpha))
    sin_alpha = math.cos(u1) * math.sin(alpha)
    cos2_alpha = 1 - sin_alpha ** 2
    first, second = series(cos2_alpha)
    sigma = flat = distance * 1000 / (B * first)
    for _ in range(100):
        cos_m = math.cos(2 * sigma1 + sigma)
        before, sigma = sigma, flat + arc_correction(second, math.sin(sigma), math.cos(sigma), cos_m)
        if abs(sigma - before) < 1e-15:
            break
    sin_s, cos_s, cos_m = math.sin(sigma), math.cos(sigma), math.cos(2 * sigma1 + sigma)
    latitude = math.atan2(math.sin(u1) * cos_s + math.cos(u1) * sin_s * math.cos(alpha),
                          (1 - F) * math.hypot(sin_alpha, math.sin(u1) * sin_s - math.cos(u1) * cos_s * math.cos(alpha)))
    lam = math.atan2(sin_s * math.sin(alpha), math.cos(u1) * cos_s - math.sin(u1) * sin_s * math.cos(alpha))
    return math.degrees(latitude), start[1] + math.degrees(lam - longitude_step(sin_alpha, cos2_alpha, sigma, sin_s, cos_s, cos_m))


# --------------------------------------------------------------------------------------------------------------------- profile

class Profile:
    """Everything that the files show, from the inputs; lists of samples are counted from 1 (element 0 is nothing)."""

    def __init__(self, inputs):
        self.inputs = inputs
        start, end = inputs["start"], inputs["end"]
        self.distance, self.azimuth = inverse(start, end)
        self.n = min(round(inputs["points_per_km"] * self.distance + 1), inputs["max_points"])
        self.e = round(self.n * 0.05)
        self.t = self.n + 2 * self.e
        self.spacing = self.distance / self.n
        self.length = self.distance + 2 * self.e * self.spacing
        self.first, self.last = self.e, self.n + self.e
        assert len(inputs["heights"]) == self.t
        self.ground = [None] + inputs["heights"]
        self.back = direct(start, self.e * self.spacing, (self.azimuth + 180) % 360)
        self.forward = direct(end, self.e * self.spacing, self.azimuth)
        whole, azimuth = inverse(self.back, self.forward)
        self.position = [None] + [direct(self.back, i * whole / (self.t - 1), azimuth) for i in range(self.t)]
        self.rise = self.curvature()
        tops = [single(single(self.ground[i] + self.rise[i]) + antenna)
                for i, antenna in zip((self.first, self.last), inputs["antennas"])]
        self.slope = single((tops[0] - tops[1]) / -self.distance)
        self.start_top, self.end_top = tops
        self.fresnel = self.fresnel_line()
        self.sight_at_zero = single(self.start_top - self.slope * self.first * self.spacing)
        self.sight_step = single(self.slope * self.spacing)
        self.stations = self.ground[self.first:self.last + 1]
        self.average = sum(self.stations) / self.n  # of N + 1 samples

    def curvature(self):
        k = single(self.inputs["k"])
        radius = round(k * 6378.388)
        angle = math.acos(1 - self.length ** 2 / (2 * radius ** 2))
        chord = math.sqrt(4 * radius ** 2 - self.length ** 2) / 2
        step = angle / self.t
        inner = [(radius * math.cos(angle / 2 - i * step) - chord) * 1000 for i in range(2, self.t)]
        return [None, 0.0] + [single(height) for height in inner] + [0.0]

    def fresnel_line(self):
        a = single(300 / self.inputs["frequency"]) * 1000 / self.distance
        line = [None] * (self.last + 1)
        line[self.first], line[self.last] = self.start_top, self.end_top
        for i in range(self.first + 1, self.last):
            x = (i - self.first) * self.spacing
            zone = math.sqrt(a * x * (self.distance - x))
            line[i] = self.slope * x + self.start_top - self.inputs["fresnel_percent"] / 100 * zone
        return line

    def sight(self, sample):
        return sample * self.sight_step + self.sight_at_zero

    def view(self, expanded):
        if not expanded:
            return self.first, self.last
        left, right = self.inputs["markers"]
        return (max(max(1, math.floor(left / self.spacing) - 1), self.first),
                min(min(self.t, math.floor(right / self.spacing) + 1), self.last))


@functools.lru_cache(maxsize=None)
def table_deviate(percent):
    """Two decimals, from a four-decimal table; the larger of two that are as near."""
    if percent > 50:
        return -table_deviate(100 - percent)
    tail = {z / 100: round(1 - statistics.NormalDist().cdf(z / 100), 4) for z in range(0, 400)}
    return min(tail, key=lambda z: (round(abs(tail[z] - percent / 100), 6), -z))


def tail(deviate):
    return 1 - statistics.NormalDist().cdf(deviate)


# ----------------------------------------------------------------------------------------------------------------------- reader

class Reader:
    """One file: its lines, and what is wrong with them."""

    def __init__(self, path, comma):
        data = path.read_bytes()
        self.name = f"{path.parent.name}/{path.name}"
        self.faults = []
        self.comma = comma
        text = data.decode("utf-8")
        if text.replace("\r\n", "").count("\r") or text.replace("\r\n", "").count("\n") or not text.endswith("\r\n"):
            self.faults.append(f"{self.name}: a line does not end in CR LF")
        self.lines = text.split("\r\n")[:-1]

    def fault(self, line, what):
        self.faults.append(f"{self.name}:{line + 1}: {what}")

    def text(self, line, expected):
        if line >= len(self.lines) or self.lines[line] != expected:
            self.fault(line, f"{self.lines[line] if line < len(self.lines) else None!r} is not {expected!r}")

    def number(self, text):
        """A number in the file's own style: no groups, no blanks, no needless zeros are looked at elsewhere."""
        point = "," if self.comma else "."
        if not re.fullmatch(rf"-?\d*(?:[{point}]\d+)?(?:E[+-]\d+)?", text) or not re.search(r"\d", text):
            raise ValueError(f"{text!r} is no number of this file")
        return float(text.replace(",", "."))

    def fields(self, line, checks, mark=""):
        """checks: for each field an exact text, or (expected number, greatest difference, pattern or None)."""
        if line >= len(self.lines):
            return self.fault(line, "is missing")
        if not self.lines[line].startswith(mark):
            return self.fault(line, f"does not begin with {mark!r}")
        fields = self.lines[line][len(mark):].split(", ")
        if len(fields) != len(checks):
            return self.fault(line, f"{len(fields)} fields, not {len(checks)}")
        for column, (field, check) in enumerate(zip(fields, checks)):
            if isinstance(check, str):
                if field != check:
                    self.fault(line, f"field {column}: {field!r} is not {check!r}")
                continue
            expected, tolerance, pattern = check
            try:
                value = self.number(field)
            except ValueError as error:
                self.fault(line, f"field {column}: {error}")
                continue
            if abs(value - expected) > tolerance:
                self.fault(line, f"field {column}: {field} is not {expected}")
            if not re.fullmatch(pattern or GENERAL, field.replace(",", ".")):
                self.fault(line, f"field {column}: {field!r} has not the form {pattern or GENERAL}")

    def values(self, line):
        return [self.number(field) if field else None for field in self.lines[line].split(", ")]


GENERAL = r"-?(?:0|[1-9]\d*)(?:\.\d*[1-9])?(?:E[+-]\d\d+)?"  # no trailing zeros, a zero before the point
DEGREE_FORM = r"-?(?:[1-9]\d*)?\.\d{5}"
LEVEL_FORM = r"-?\d+\.\d(?:\d?[1-9])?"


class Units:
    def __init__(self, imperial):
        self.height, self.distance = ("ft", "mi") if imperial else ("m", "km")
        self.metre = 1 / 0.3048 if imperial else 1.0
        self.km = 1 / 0.3048 * 1000 / 5280 if imperial else 1.0


def summary_titles(u):
    return (f", 'Start Latitude', 'Start Longitude', 'End Latitude', 'End Longitude', 'Range ({u.distance})', 'Bearing', "
            f"'Max Ht ({u.height})', 'Min Ht ({u.height})', 'Average Ht ({u.height})', 'Earth Curve', '% Fresnel', 'Freq', 'Datum'")


def point_titles(u):
    return (f"'Point', 'Distance ({u.distance})', 'Latitude', 'Longitude', 'Ground AMSL ({u.height})', 'Fresnel AMSL ({u.height})', "
            f"'LOS AMSL ({u.height})', 'Earth Rise ({u.height})'")


def plain(value, comma):
    text = f"{value:.15g}"
    return text.replace(".", ",") if comma else text


def summary(p, u, comma):
    i = p.inputs
    return ["", *(plain(v, comma) for v in i["start"] + i["end"]), (p.distance * u.km, DISTANCE, None), (p.azimuth, 1e-8, None),
            (max(p.stations) * u.metre, HEIGHT, None), (min(p.stations) * u.metre, HEIGHT, None), (p.average * u.metre, HEIGHT, None),
            plain(i["k"], comma), plain(i["fresnel_percent"], comma), plain(i["frequency"], comma), "NAD-83"]


def point(p, u, first, i, degree_form):
    heights = [p.ground[i], p.fresnel[i], p.sight(i), p.rise[i] - p.rise[first]]
    return [str(i - first + 1), ((i - first) * p.spacing * u.km, DISTANCE, None),
            *((value, DEGREES, degree_form) for value in p.position[i]), *((h * u.metre, HEIGHT * u.metre, None) for h in heights)]


def marker(p, u, title, x):
    x = single(x)
    d = single(x - p.first * p.spacing)
    k = round(x / p.spacing)
    place, fraction = direct(p.inputs["start"], d, p.azimuth), x / p.spacing - math.floor(x / p.length * p.t)
    before = math.floor(x / p.length * p.t) + 1  # as the pointer reads the ground
    ground = p.ground[before] + (p.ground[before + 1] - p.ground[before]) * fraction
    odd = p.fresnel[k] + d * (p.fresnel[k] + p.fresnel[k + 1] / p.spacing)
    sight = p.slope * x + p.sight_at_zero
    return [title, *((value, 1e-8, None) for value in place), (d * u.km, DISTANCE, None), (ground * u.metre, HEIGHT * u.metre, None),
            (odd * u.metre, 50 * HEIGHT * u.metre, None), (sight * u.metre, HEIGHT * u.metre, None)]


def check_height(r, p, u, first, last):
    r.text(0, summary_titles(u))
    r.fields(1, summary(p, u, r.comma))
    r.text(2, f", 'Latitude', 'Longitude', 'Distance from Start ({u.distance})',  'Ground AMSL ({u.height})', "
              f"'Fresnel AMSL ({u.height})', 'LOS AMSL ({u.height})' ")
    r.fields(3, marker(p, u, "'Left Marker'", p.inputs["markers"][0]))
    r.fields(4, marker(p, u, "'Right Marker'", p.inputs["markers"][1]))
    r.text(5, point_titles(u))
    for i in range(first, last + 1):
        r.fields(6 + i - first, point(p, u, first, i, None))
    if len(r.lines) != 7 + last - first:
        r.fault(len(r.lines), "the number of lines is wrong")


@functools.lru_cache(maxsize=None)
def longley_rice(p, first, last):
    i = p.inputs
    return irregular_terrain.evaluate(
        p.ground[first:last + 1], single(p.spacing * 1000), *i["antennas"], i["frequency"], "horizontal", 5, 15, 0.005, 301,
        [tail(table_deviate(round(i["confidence"] * 100)))], [tail(table_deviate(round(i["reliability"] * 100)))])["loss_db"][0][0]


@functools.lru_cache(maxsize=None)
def point_to_point(p, first, last):
    ground = p.ground[first:last + 1]
    tx, rx = p.inputs["antennas"]
    return diffraction.diffraction(p.spacing, ground, ground[0] + tx, ground[-1] + rx, 8500, p.inputs["frequency"], diffraction.Ground())[0]


def check_signal(r, p, u, first, last):
    i = p.inputs
    power, frequency = 10 * math.log10(i["erp"]) + 106.92, 20 * math.log10(i["frequency"]) + 32.4
    r.text(0, summary_titles(u) + f", 'Xmit Ant Ht AGL ({u.height})',  'Rec Ant Ht AGL ({u.height})',  'ERP (kW)'")
    r.fields(1, summary(p, u, r.comma) + [(a * u.metre, HEIGHT, None) for a in i["antennas"]] + [plain(i["erp"], r.comma)])
    r.text(2, "")
    r.text(3, point_titles(u) + ", 'LR Path Loss (dB)', 'LR Signal Level (dBuV/m)', 'PTP Diffraction Loss (dB)', 'PTP Clutter Loss (dB)', "
                                "'PTP Signal Level (dBuV/m)', 'Free Space Loss (dB)', 'Free Space Signal Level (dBuV/m)'")
    r.fields(4, point(p, u, first, first, DEGREE_FORM) + [""])
    for sample in range(first + 1, last + 1):
        line = 4 + sample - first
        d = (sample - first) * p.spacing
        free = frequency + 20 * math.log10(d)
        loss, bent = longley_rice(p, first, sample), point_to_point(p, first, sample)
        r.fields(line, point(p, u, first, sample, DEGREE_FORM) + [
            (loss, LEVEL, None), (power + frequency - loss - i["lr_clutter"], LEVEL + EXACT_LEVEL, LEVEL_FORM), (bent, LEVEL, None), "0",
            (power - 20 * math.log10(d) - bent - i["ptp_clutter"], LEVEL + EXACT_LEVEL, LEVEL_FORM), (free, FREE_SPACE, None),
            (power + frequency - free, EXACT_LEVEL, LEVEL_FORM)])
        try:
            values = r.values(line)
            if abs(values[9] - (power + frequency - values[8] - i["lr_clutter"])) > EXACT_LEVEL:
                r.fault(line, "the Longley-Rice level does not follow from its loss")
            if abs(values[12] - (power - 20 * math.log10(d) - values[10] - values[11] - i["ptp_clutter"])) > EXACT_LEVEL:
                r.fault(line, "the point-to-point level does not follow from its losses")
        except (ValueError, IndexError, TypeError):
            r.fault(line, "a level cannot be read")
    if len(r.lines) != 5 + last - first:
        r.fault(len(r.lines), "the number of lines is wrong")


def whole_metres(value):
    rounded = math.floor(abs(value) + 0.5)
    return "" if rounded == 0 else ("-" if value < 0 else "") + str(rounded)


def check_terrain(r, p, first, last):
    starts = range(first, last + 1, 12)
    for line, a in enumerate(starts):
        r.text(line, "     &" + "".join(whole_metres(p.ground[a + b]) + "," for b in range(1, 13)))
    if len(r.lines) != len(starts):
        r.fault(len(r.lines), "the number of lines is wrong")


@functools.lru_cache(maxsize=None)
def loss_cells(p):
    i = p.inputs
    levels = [tail(table_deviate(percent)) for percent in range(1, 100)]
    return irregular_terrain.evaluate(p.stations, single(p.spacing * 1000), *i["antennas"], i["frequency"], "horizontal", 5, 15, 0.005,
                                      301, levels, levels)["loss_db"]  # [reliability][confidence]


def check_loss(r, p):
    r.text(0, ", 'Ant Polarization', 'Radio Climate', 'Dielectric', 'Conductivity', 'Surf Refractivity'")
    r.text(1, f", 'horizontal',  'Continental Temperate', 15, {plain(0.005, r.comma)}, 301, ")
    r.text(2, ",'Confidence'")
    r.text(3, "'Reliability'" + "".join(f", {percent}" for percent in range(1, 100)))
    cells = loss_cells(p)
    for c in range(1, 100):
        r.fields(3 + c, [str(c)] + [(cells[reliability][c - 1], LEVEL, None) for reliability in range(99)])
    if len(r.lines) != 103:
        r.fault(len(r.lines), "the number of lines is wrong")


# The signal graph is of the whole path, in metres and kilometres, with a point, in every variant.

def graph_samples(p):
    """For each sample from the transmitter on: (distance, plotted, [(level, greatest difference)] of the three curves)."""
    i = p.inputs
    power, frequency = 10 * math.log10(i["erp"]) + 106.92, 20 * math.log10(i["frequency"]) + 32.4
    start, end = (round(metres / 1000 / p.spacing) for metres in i["graph"])
    for sample in range(1, p.n + 1):
        d = sample * p.spacing
        free = power - 20 * math.log10(d)
        last = p.first + sample
        yield d, start <= sample <= end, [
            (power + frequency - longley_rice(p, p.first, last) - i["lr_clutter"], LEVEL + EXACT_LEVEL),
            (free - point_to_point(p, p.first, last) - i["ptp_clutter"], LEVEL + ROUNDED_GROUND), (free, EXACT_LEVEL)]


def check_graph_data(r, p):
    i = p.inputs
    top = single(p.ground[p.first] + i["antennas"][0])
    for line, text in enumerate(["OUTFILE, ' '", f"FREQ, {i['frequency']}", f"POWER, {i['erp']}", f"TX_AMSL, {top:.7g}",
                                 f"RX_AGL, {i['antennas'][1]}", f"CLU_LOSS, LR:{i['lr_clutter']} PTP:{i['ptp_clutter']}",
                                 f"TITLE, {i['title']}", "", "'Terrain Height', 'Distance from Transmitter', 'Longley Rice', 'PTP', "
                                 "Std Contour', 'Freespace', 'Reference'", "START DATA",
                                 f"#{p.ground[p.first]:.1f}, 0.000, NaN, NaN, 70, NaN, 60"]):
        r.text(line, text)
    for sample, (d, plotted, (irregular, bent, free)) in enumerate(graph_samples(p), 1):
        mark = "" if plotted else "#"
        height = p.ground[p.first + sample]
        r.fields(10 + sample, [(height, 0.0501, r"-?\d+\.\d"), (d, 0.000501, r"\d+\.\d{3}"), (*irregular, LEVEL_FORM),
                               (*bent, LEVEL_FORM), "70", (*free, LEVEL_FORM), "60"], mark)
    if len(r.lines) != 11 + p.n:
        r.fault(len(r.lines), "the number of lines is wrong")


def check_script(r, p, variant):
    i = p.inputs
    graph, data = f'"{variant}/graph.png"', f'"{variant}/graph.dat"'
    head = ["set terminal png size 1280,1024", "set key right top inside",
            'set xlabel "Distance from Transmitter (km)" font "Tahoma, 11"', 'set ylabel "Field Strength (dBu)" font "Tahoma, 11"',
            f'set title  "{i["title"]}" font "Tahoma, 18"']
    tail_lines = [f"set output  {graph}", "set grid",
                  f'plot  {data} using 2:3 title "Longley-Rice" with lines lw 3,\\', f'{data} using 2:4 title "Point-to-Point" with lines lw 3,\\',
                  f'{data} using 2:6 title "Freespace" with lines lw 2,\\', f'{data} using 2:5 title "Std Contour" with lines lw 2,\\',
                  f"{data} using 2:7 notitle with lines lw 1"]
    for line, text in enumerate(head):
        r.text(line, text)
    for line, text in enumerate(tail_lines):
        r.text(14 + line, text)
    if len(r.lines) != 21:
        r.fault(len(r.lines), "the number of lines is wrong")
    check_labels(r, p)


def axis(low, high):
    """As gnuplot lengthens it: to the next tic at both ends."""
    power = 10 ** math.floor(math.log10(high - low))
    tics = 20 * power / (high - low)
    step = power * next(share for share, least in ((0.2, 10), (0.5, 4), (1, 0)) if tics > least)
    return math.floor(low / step) * step, math.ceil(high / step) * step


def check_labels(r, p):
    """Their texts and places: two columns, even steps, and no curve through them."""
    i = p.inputs
    plotted = [(d, [level for level, _ in levels]) for d, shown, levels in graph_samples(p) if shown]
    every = [level for _, levels in plotted for level in levels] + [60, 70]
    start, end = axis(plotted[0][0], plotted[-1][0])
    low, high = axis(min(every), max(every))
    step = 0.01 * (high - low)
    whole = lambda value: f"{math.floor(abs(value) + 0.5) * (-1 if value < 0 else 1)}"
    texts = [(f"Freq: {i['frequency']:.1f} MHz", 0.2, 2.0), (f"ERP: {i['erp']:.1f} kW", 0.2, 4.5),
             (f"Tx Ant: {whole(p.ground[p.first] + i['antennas'][0])} m AMSL", 0.2, 7.0), (f"Rx Ant: {i['antennas'][1]:.1f} m AGL", 0.2, 9.5),
             (f"LR Clutter: {whole(i['lr_clutter'])} dB", 0.2, 12.0), (f"Latitude: {plain(i['start'][0], False)}", 0.35, 2.0),
             (f"Longitude: {plain(i['start'][1], False)}", 0.35, 4.5), ("Tx HAAT: 30 m AMSL", 0.35, 7.0),
             (f"PTP Clutter: {whole(i['ptp_clutter'])} dB", 0.35, 12.0)]
    base = None
    for line, (text, column, factor) in enumerate(texts, 5):
        place = re.fullmatch(rf'set label "{re.escape(text)}" font "Tahoma, 10" at (-?\d+\.\d(?:\d?[1-9])?),(-?\d+\.\d)',
                             r.lines[line] if line < len(r.lines) else "")
        if not place:
            r.fault(line, f"is not the label {text!r}")
            continue
        x, y = map(float, place.groups())
        base = y - factor * step if base is None else base
        if abs(x - (start + column * (end - start))) > 0.000501:
            r.fault(line, f"x is {x}")
        if abs(y - base - factor * step) > PLACE:
            r.fault(line, f"y is {y}")
    if base is None:
        return
    if base < low - PLACE or base + 13 * step > high + PLACE:
        r.fault(5, "the labels leave the graph")
    hidden = [d for d, levels in plotted if 0.2 <= (d - start) / (end - start) <= 0.55 and
              any(base + step + PLACE < level < base + 13 * step - PLACE for level in levels)]
    if hidden:
        r.fault(5, f"the labels lie on a curve at {hidden} km")


def check_file(path, variant, name, p):
    """What is wrong with one file."""
    r = Reader(path, comma=variant == "comma" and not name.startswith("graph"))
    u = Units(variant == "imperial")
    first, last = p.view(variant == "expanded")
    if name == "height.csv":
        check_height(r, p, u, first, last)
    elif name == "signal.csv":
        check_signal(r, p, u, first, last)
    elif name == "loss.csv":
        check_loss(r, p)
    elif name == "graph.dat":
        check_graph_data(r, p)
    elif name == "graph.plt":
        check_script(r, p, variant)
    else:
        check_terrain(r, p, first, last)
    return r.faults


# ----------------------------------------------------------------------------------------------------------------- kept files

def kept_text(path, name):
    text = path.read_bytes().decode("utf-8")
    return "".join(text.splitlines(keepends=True)[:GOLDEN_LOSS_LINES]) if name == "loss.csv" else text


def compare_with_kept(new, kept, label):
    """The same text; numbers may differ in what another compiler or library rounds otherwise."""
    faults = []
    pattern = re.compile(r"(-?[\d.,]*\d(?:E[+-]\d+)?)")
    for line, (a, b) in enumerate(zip(new.splitlines(), kept.splitlines()), 1):
        if a == b:
            continue
        pieces_a, pieces_b = pattern.split(a), pattern.split(b)
        same = len(pieces_a) == len(pieces_b)
        for index, (x, y) in enumerate(zip(pieces_a, pieces_b)):
            if x == y:
                continue
            try:
                near = index % 2 == 1 and math.isclose(float(x.replace(",", ".")), float(y.replace(",", ".")), rel_tol=RELATIVE)
            except ValueError:
                near = False
            same = same and near
        if not same:
            faults.append(f"{label}:{line}: {a!r} was {b!r}")
    if new.count("\n") != kept.count("\n"):
        faults.append(f"{label}: {new.count(chr(10))} lines, and {kept.count(chr(10))} were kept")
    return faults


def read_profile(folder):
    return Profile(json.loads((folder / "inputs.json").read_text()))


def check(folder):
    profile = read_profile(folder)
    faults = []
    for variant in VARIANTS:
        for name in NAMES:
            path = folder / variant / name
            faults += check_file(path, variant, name, profile)
            faults += compare_with_kept(kept_text(path, name), (GOLDEN / variant / name).read_bytes().decode("utf-8"),
                                        f"golden/{variant}/{name}")
    return faults


def renew(folder):
    for variant in VARIANTS:
        (GOLDEN / variant).mkdir(parents=True, exist_ok=True)
        for name in NAMES:
            (GOLDEN / variant / name).write_bytes(kept_text(folder / variant / name, name).encode("utf-8"))


# ------------------------------------------------------------------------------------------------------------------- self-test

def disturbances(text, name):
    """(what, text) for every kind of fault that a reader must see."""
    lines = text.split("\r\n")
    yield "line ends without CR", text.replace("\r\n", "\n")
    yield "a line twice", "\r\n".join(lines[:-2] + lines[-2:-1] * 2 + lines[-1:])
    yield "the last line missing", "\r\n".join(lines[:-2] + lines[-1:])
    for row in range(min(len(lines) - 1, 9)):
        if lines[row]:
            yield f"line {row + 1} with a blank more", "\r\n".join(lines[:row] + [lines[row] + " "] + lines[row + 1:])
    if name == "signal.csv.terrain.txt":
        return
    rows = {1, 3, 4, 6, 8, 12, 30, len(lines) - 2}
    if name.startswith("graph"):
        rows |= set(range(len(lines) - 1) if name == "graph.plt" else [2, 10, 11, 50])
    for row in sorted(row for row in rows if row < len(lines)):
        yield f"line {row + 1} as a comment", "\r\n".join([*lines[:row], "#" + lines[row], *lines[row + 1:]])
        separator = "," if name == "graph.plt" else ", "
        fields = lines[row].split(separator)
        for column, field in enumerate(fields):
            if not re.fullmatch(r"-?[\d.,]*\d", field) or (name == "loss.csv" and column % 24 > 1):
                continue
            moved = re.sub(r"\d", lambda digit: str((int(digit.group()) + 3) % 10), field, count=1)
            changed = [*fields[:column], moved, *fields[column + 1:]]
            yield f"line {row + 1}, field {column}: {field} as {moved}", "\r\n".join(lines[:row] + [separator.join(changed)] + lines[row + 1:])


def self_test(folder):
    profile = read_profile(folder)
    missed, count = [], 0
    with tempfile.TemporaryDirectory() as scratch:
        # Each disturbance in one variant, in turn: four times as many would take half a minute and show nothing else.
        for turn, variant in enumerate(VARIANTS):
            for name in NAMES:
                text = (folder / variant / name).read_bytes().decode("utf-8")
                path = pathlib.Path(scratch) / variant / name
                path.parent.mkdir(exist_ok=True)
                for what, disturbed in itertools.islice(disturbances(text, name), turn, None, len(VARIANTS)):
                    path.write_bytes(disturbed.encode("utf-8"))
                    count += 1
                    if not check_file(path, variant, name, profile):
                        missed.append(f"{variant}/{name}: not seen: {what}")
    print(f"{count} disturbances, {len(missed)} not seen")
    return missed


def main(arguments):
    mode = arguments.pop(0) if arguments[:1] in (["--self-test"], ["--renew"]) else ""
    if len(arguments) != 1:
        print(__doc__, file=sys.stderr)
        return 2
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        subprocess.run([arguments[0], scratch], check=True, timeout=60)
        if mode == "--renew":
            renew(folder)
            return 0
        faults = self_test(folder) if mode else check(folder)
    print(*faults[:40], sep="\n", end="\n" if faults else "")
    print(f"{len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
