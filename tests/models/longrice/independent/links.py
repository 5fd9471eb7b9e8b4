#!/usr/bin/python3
"""Some 400 test links for the irregular terrain model, the same on every machine, as lines for `longley-rice --batch`.

  links.py             the links, one JSON object a line
  links.py --summary   how many links there are of each regime; exit code 1 if a regime has fewer than 20

Every regime of the model is asked for by drawing links until it has its share. A link is passed over when rounding decides which way it
goes, that is when a change of a billionth of the refractivity or a millionth of the frequency moves its loss visibly, or when a limit of a fit falls
on a sample by a product that is not exact: what such a link gives says nothing about an evaluation.
"""
import json
import math
import sys

import irregular_terrain as model

SEED = 19820404
LEAST = 20  # links a regime

CONFIDENCES = ([0.5], [0.5, 0.9, 0.1], [0.95, 0.5], [0.01, 0.5, 0.99])
RELIABILITIES = ([0.5], [0.01, 0.1, 0.5, 0.9, 0.99], [0.9, 0.5], [0.001, 0.05, 0.5, 0.999])
GROUNDS = ((15, 0.005), (15, 0.005), (25, 0.02), (4, 0.001), (81, 0.01), (80, 5))
SEA = (80, 5)


class Draw:
    """Numerical Recipes' quick generator modulo 2^32: x <- 1664525 x + 1013904223; the upper 24 bits are used."""

    def __init__(self, seed):
        self.state = seed

    def unit(self):
        self.state = (1664525 * self.state + 1013904223) % 2 ** 32
        return (self.state >> 8) / 2 ** 24

    def between(self, low, high):
        return low + (high - low) * self.unit()

    def spread(self, low, high):
        """Evenly over the decades."""
        return low * (high / low) ** self.unit()

    def one_of(self, choices):
        return choices[int(self.unit() * len(choices))]


# ------------------------------------------------------------------------------------------- terrain: n intervals -> n + 1 heights

def sea(draw, n):
    return [0.0] * (n + 1)


def level(draw, n):
    return [round(draw.between(0, 1500), 1)] * (n + 1)


def hills(draw, n):
    height, waves, phase = draw.between(10, 150), draw.between(1, 9), draw.between(0, 6)
    return [200 + height * math.sin(phase + 2 * math.pi * waves * i / n) + 0.2 * height * math.sin(17 * waves * i / n) for i in range(n + 1)]


def mountains(draw, n):
    step = draw.spread(60, 900) / math.sqrt(n)
    heights = [draw.between(100, 1200)]
    for _ in range(n):
        heights.append(abs(heights[-1] + step * (draw.unit() + draw.unit() - 1) * 2))
    return heights


def rolling(draw, n):
    return [100 + z / 12 for z in mountains(draw, n)]


def ridge(draw, n):
    top, at, width = draw.spread(50, 900), draw.between(0.2, 0.8) * n, draw.between(0.02, 0.15) * n + 0.5
    return [50 + top * math.exp(-((i - at) / width) ** 2) + 8 * draw.unit() for i in range(n + 1)]


def two_ridges(draw, n):
    first, second = ridge(draw, n), ridge(draw, n)
    return [a + b for a, b in zip(first, second)]


def step(draw, n):
    rise, at = draw.between(-400, 400), draw.between(0.2, 0.8) * n
    return [420 + (rise if i > at else 0) + 5 * draw.unit() for i in range(n + 1)]


def plateau(draw, n):
    rise, begin, end = draw.between(30, 500), draw.between(0.1, 0.45) * n, draw.between(0.55, 0.9) * n
    return [80 + (rise if begin < i < end else 0) + 10 * draw.unit() for i in range(n + 1)]


def valley(draw, n):
    depth = draw.between(50, 900)
    return [950 - depth * math.sin(math.pi * i / n) + 15 * draw.unit() for i in range(n + 1)]


def basins(draw, n):
    """A wall near each end: steep horizons, great scatter angles."""
    walls = [draw.between(300, 2500), draw.between(300, 2500)]
    places = [1 + int(draw.between(1, 5)), n - 1 - int(draw.between(1, 5))]
    return [20 + 10 * draw.unit() + sum(wall for wall, place in zip(walls, places) if i == place) for i in range(n + 1)]


TERRAINS = (sea, level, hills, mountains, rolling, ridge, two_ridges, step, plateau, valley)


# --------------------------------------------------------------------------------------------------------------------------- links

def rounded(draw, heights):
    """Whole metres or decimetres."""
    digits = draw.one_of((0, 1))
    return [round(z, digits) if digits else float(round(z)) for z in heights]


def draw_link(draw, distance, samples, terrains=TERRAINS, antennas=(0.5, 3000), frequencies=(20, 20000)):
    """A link about `distance` km long with at most about `samples` samples."""
    intervals = max(1, int(samples))
    spacing = min(max(distance * 1000 / intervals, 10.0), 2000.0)
    spacing = draw.one_of((round(spacing), round(spacing, 1), round(spacing, 3)))
    intervals = max(1, round(distance * 1000 / spacing))
    terrain = draw.one_of(terrains)
    elevations = rounded(draw, terrain(draw, intervals))
    permittivity, conductivity = SEA if terrain is sea else draw.one_of(GROUNDS)
    link = {
        "spacing": spacing,
        "tx": round(draw.spread(*antennas), draw.one_of((0, 1, 1))) or 0.5,
        "rx": round(draw.spread(*antennas), draw.one_of((0, 1, 1))) or 0.5,
        "frequency": round(draw.spread(*frequencies), draw.one_of((0, 2))),
        "polarization": draw.one_of(("horizontal", "vertical")),
        "climate": 1 + int(7 * draw.unit()),
        "permittivity": permittivity,
        "conductivity": conductivity,
    }
    if draw.unit() < 0.2:
        link["sea_level_refractivity"] = draw.one_of((301, 330, 365.5))
    else:
        link["surface_refractivity"] = round(draw.between(255, 395), draw.one_of((0, 1)))
    link["confidence"] = list(draw.one_of(CONFIDENCES))
    link["reliability"] = list(draw.one_of(RELIABILITIES))
    link["elevations_m"] = elevations
    return link


def surface_refractivity(link):
    if "surface_refractivity" in link:
        return link["surface_refractivity"]
    return model.refractivity_at_surface(link["elevations_m"], link["sea_level_refractivity"])


def arguments(link):
    """What `evaluate` takes, by name."""
    return dict(elevations=link["elevations_m"], spacing=link["spacing"], tx=link["tx"], rx=link["rx"], frequency=link["frequency"],
                polarization=link["polarization"], climate=link["climate"], permittivity=link["permittivity"],
                conductivity=link["conductivity"], surface_refractivity=surface_refractivity(link),
                confidences=link["confidence"], reliabilities=link["reliability"])


BRANCHES = ("no scatter", "gain taken over", "gain at both", "scatter angle middling", "scatter angle great", "scattering low",
            "scattering between", "scattering high", "height gain without K", "height gain with K", "great height gain")


def regimes(link, result, path, reference):
    """Names of the regimes that the link is an example of."""
    distance, curve = path.distance, reference.curve
    names = [f"climate {link['climate']}", f"{link['polarization']} polarization", path.mode, f"method {result['method']}"]
    names.append("refractivity at sea level" if "sea_level_refractivity" in link else "refractivity at the surface")
    if path.mode == "line of sight":
        names.append("line of sight near" if distance < 0.3 * reference.join else "line of sight far")
    if curve is not None:
        names.append("line of sight with k2" if curve.k_2 > 0 else "line of sight without k2")
        if path.mode != "line of sight":
            names.append("obstructed within the smooth-earth horizons")
    if "heights grown" in path.branch:
        names.append("heights grown until they see each other")
    if result["method"] == "diffraction":
        names.append(f"diffraction over a {path.mode}" if path.mode != "line of sight" else "diffraction at sight")
    if result["method"] == "troposcatter":
        names.append("scatter far" if distance < 300 else "scatter very far")
    names += [name for name in BRANCHES if name in path.branch]
    if path.delta_h == 0:
        names.append("no irregularity")
    if path.delta_h > 300:
        names.append("great irregularity")
    if link["conductivity"] == SEA[1]:
        names.append("sea ground")
    if all(z == 0 for z in link["elevations_m"]):
        names.append("flat sea")
    if len(link["elevations_m"]) <= 10:
        names.append("few samples")
    if distance < 3.5:
        names.append("very short")
    for name, low, high in (("20 to 100 MHz", 20, 100), ("100 MHz to 1 GHz", 100, 1000), ("1 to 6 GHz", 1000, 6000), ("6 to 20 GHz", 6000, 20001)):
        if low <= link["frequency"] < high:
            names.append(name)
    if min(link["tx"], link["rx"]) < 2:
        names.append("low antenna")
    if max(link["tx"], link["rx"]) > 500:
        names.append("high antenna")
    if any(loss < result["free_space_db"] for row in result["loss_db"] for loss in row):
        names.append("gain over free space")
    return names


def exact_products(link, path):
    """Whether limits of the fits that fall on samples do so in exact arithmetic."""
    whole = link["spacing"] == int(link["spacing"]) and all(2 * link[end] == int(2 * link[end]) for end in ("tx", "rx"))
    return whole or path.limit_margin > 1e-7


def is_steady(link, result, path):
    """Whether the link is decided by its values and not by rounding."""
    if path.horizon_margin < 1e-12 or not exact_products(link, path):
        return False
    if abs(path.distance - path.total_smooth) < 1e-9 * path.distance:  # heights grown over level ground: they just see each other
        return False
    for sign in (1, -1):
        moved = arguments(link)
        moved["surface_refractivity"] *= 1 + sign * 1e-9
        moved["frequency"] *= 1 + sign * 1e-6
        other, other_path, _ = model.analyse(**moved)
        if other["method"] != result["method"] or other_path.branch != path.branch:
            return False
        if any(abs(a - b) > 1e-3 for a, b in zip(result["loss_db"][0], other["loss_db"][0])):
            return False
    return True


# What to draw: what it is, links, distances in km, samples, the regime that is kept (None: all), further arguments of draw_link.
PLAN = (
    ("any", 80, (2, 120), (20, 300), None, {}),
    ("near", 25, (2, 25), (20, 200), None, {"antennas": (5, 300)}),
    ("sight from high", 25, (20, 150), (50, 250), None, {"antennas": (60, 3000), "terrains": (sea, level, hills, rolling, valley)}),
    ("short", 40, (1.0, 3.3), (1, 9), None, {"antennas": (0.5, 100)}),
    ("short and dense", 15, (1.0, 3.3), (20, 150), None, {}),
    ("obstructed", 50, (8, 90), (40, 250), None, {"antennas": (0.5, 100), "terrains": (ridge, two_ridges, mountains, plateau, step, hills)}),
    ("over the sea", 25, (5, 200), (30, 250), None, {"terrains": (sea,), "antennas": (1, 300)}),
    ("scatter", 25, (100, 300), (80, 250), None, {"antennas": (2, 500)}),
    ("far scatter", 30, (300, 900), (200, 450), None, {"antennas": (2, 3000)}),
    ("very far, high frequency", 10, (100, 900), (60, 450), None, {"antennas": (0.5, 10), "frequencies": (2000, 20000)}),
    ("scatter out of reach", 20, (100, 400), (40, 120), "no scatter", {"antennas": (0.5, 3), "frequencies": (20, 50)}),
    ("one ridge", 20, (8, 120), (40, 250), "diffraction over a single horizon", {"antennas": (0.5, 30), "terrains": (ridge,)}),
    ("steep horizons", 25, (60, 600), (60, 200), "method troposcatter", {"antennas": (2, 60), "terrains": (basins,)}),
    ("high over a smooth earth", 20, (5, 60), (30, 100), "height gain without K", {"antennas": (1, 60), "frequencies": (300, 20000)}),
    ("just in sight", 20, (10, 90), (8, 40), "heights grown until they see each other",
     {"antennas": (5, 200), "terrains": (valley, rolling)}),
    ("gain of the farther distance", 8, (150, 500), (60, 150), "gain taken over", {"antennas": (0.5, 10), "frequencies": (20, 300)}),
    ("curved near", 20, (5, 150), (20, 250), "line of sight with k2", {"antennas": (2, 1000)}),
)


def examples():
    """Each link with its result, path and reference attenuation."""
    draw = Draw(SEED)
    for _, count, distances, samples, wanted, further in PLAN:
        made = 0
        while made < count:
            link = draw_link(draw, draw.between(*distances), draw.between(*samples), **further)
            try:
                result, path, reference = model.analyse(**arguments(link))
                kept = wanted is None or wanted in regimes(link, result, path, reference)
                steady = kept and is_steady(link, result, path)
            except ValueError:  # outside the range of an approximation
                continue
            if steady:
                made += 1
                yield link, result, path, reference


def summary(out):
    counts, links = {}, 0
    for link, result, path, reference in examples():
        links += 1
        for name in regimes(link, result, path, reference):
            counts[name] = counts.get(name, 0) + 1
    for name, count in sorted(counts.items(), key=lambda item: -item[1]):
        print(f"{count:4} {name}", file=out)
    print(f"{links:4} links", file=out)
    return all(count >= LEAST for count in counts.values())


def main(arguments_given):
    if arguments_given == ["--summary"]:
        return 0 if summary(sys.stdout) else 1
    if arguments_given:
        print(__doc__, file=sys.stderr)
        return 2
    for link, *_ in examples():
        print(json.dumps(link))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
