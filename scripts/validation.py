#!/usr/bin/python3
"""Makes the measured tables of docs/numbers.md anew.

  scripts/validation.py [BUILD]           writes them into the page (BUILD: build/release)
  scripts/validation.py --check [BUILD]   only says whether the page is up to date; exit code 1 if it is not

The cases are those of the tests: the published example, the links and paths that the independent evaluations are asked for, and
what bin/numbers_report measures over the bundled terrain. A table stands between <!-- NAME begin --> and <!-- NAME end -->.
"""
import importlib.util
import json
import math
import os
import re
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
MODELS = os.path.join(ROOT, "tests", "models")
CASES = os.path.join(MODELS, "longrice", "independent")
sys.path[:0] = [CASES, os.path.join(MODELS, "ptp", "independent")]
sys.dont_write_bytecode = True

import diffraction  # noqa: E402  (beside the paths)
import links  # noqa: E402
import paths  # noqa: E402


def module_of(name, file):
    """The two models' comparisons have one file name."""
    origin = importlib.util.spec_from_file_location(name, file)
    module = importlib.util.module_from_spec(origin)
    origin.loader.exec_module(module)
    return module


compare = module_of("compare_links", os.path.join(CASES, "compare.py"))
compare_paths = module_of("compare_paths", os.path.join(MODELS, "ptp", "independent", "compare.py"))

PAGE = os.path.join(ROOT, "docs", "numbers.md")
PUBLISHED = os.path.join(CASES, "..", "data", "path2200.json")
TERRAIN = os.path.join(ROOT, "data", "terrain", "jacksboro_3s.tif")
BLOCK = re.compile(r"(<!-- (?P<name>[a-z]+) begin -->\n).*?(<!-- (?P=name) end -->\n)", re.S)

# Regimes of the links that a reader asks for, in the order of the table.
REGIMES = (
    "line of sight", "single horizon", "double horizon",
    "method line of sight", "obstructed within the smooth-earth horizons", "method diffraction", "method troposcatter",
    "20 to 100 MHz", "100 MHz to 1 GHz", "1 to 6 GHz", "6 to 20 GHz",
    "horizontal polarization", "vertical polarization", "low antenna", "high antenna", "sea ground", "flat sea", "very short",
    "scatter very far",
    "climate 1", "climate 2", "climate 3", "climate 4", "climate 5", "climate 6", "climate 7",
)


def ask(program, given):
    return compare.ask([program, "longley-rice", "--batch", "-"], given)


def published_table(program):
    """The published example beside what the program makes of it."""
    with open(PUBLISHED, encoding="utf-8") as file:
        example = json.load(file)
    answer = ask(program, [{
        "elevations_m": example["elevations_m"], "spacing": 1000 * example["distance_km"] / example["intervals"],
        "tx": example["tx_agl_m"], "rx": example["rx_agl_m"], "frequency": example["freq_mhz"],
        "polarization": example["polarization"], "climate": example["climate"],
        "permittivity": example["relative_permittivity"], "conductivity": example["conductivity_s_per_m"],
        "surface_refractivity": example["surface_refractivity_n_units"],
        "confidence": example["confidence"], "reliability": example["reliability"]}])[0]
    yield (f"**A published example**: Crystal Palace to Mursley, {example['distance_km']} km, {example['freq_mhz']} MHz. "
           "Each cell: published / computed, dB.")
    yield ""
    yield "| reliability | " + " | ".join(f"confidence {100 * c:g} %" for c in example["confidence"]) + " |"
    yield "|---|" + "---|" * len(example["confidence"])
    for fraction, published, computed in zip(example["reliability"], example["loss_db"], answer["loss_db"]):
        yield f"| {100 * fraction:g} % | " + " | ".join(f"{p:.1f} / {c:.2f}" for p, c in zip(published, computed)) + " |"
    yield ""
    heights = " and ".join(f"{p:g} / {c:.1f}" for p, c in zip(example["effective_heights_m"], answer["effective_heights_m"]))
    yield (f"Free space {example['free_space_db']:g} / {answer['free_space_db']:.2f} dB, effective heights {heights} m, "
           f"terrain irregularity {example['delta_h_m']:g} / {answer['delta_h_m']:.1f} m, mode {answer['mode']}.")


def agreement_table(program):
    """How far the program and the independent evaluation are apart, regime by regime."""
    examples = list(links.examples())
    answers = ask(program, [link for link, *_ in examples])
    largest, counts = {}, {}
    overall = 0.0
    for (link, expected, path, reference), answer in zip(examples, answers):
        difference = compare.differences(expected, answer)[1][0]
        overall = max(overall, difference)
        for regime in links.regimes(link, expected, path, reference):
            counts[regime] = counts.get(regime, 0) + 1
            largest[regime] = max(largest.get(regime, 0.0), difference)
    yield (f"**Against the independent evaluation**: {len(examples)} links over made-up terrain, 1 to 900 km. The largest difference of any loss "
           f"is {overall:.3f} dB; it comes from figures that one of the publications rounds (0.49 and 1.38, 3.14).")
    yield ""
    yield "| links of the regime | number | largest difference, dB |"
    yield "|---|---|---|"
    for regime in REGIMES:
        yield f"| {regime} | {counts[regime]} | {largest[regime]:.3f} |"


# Regimes of the point-to-point paths, in the order of the table: name, and whether a path with its evaluation is one.
PATH_REGIMES = (
    ("2 to 10 samples", lambda path, losses: len(path.heights) <= 10),
    ("11 to 399 samples", lambda path, losses: len(path.heights) > 10),
    ("20 to 100 MHz", lambda path, losses: path.frequency < 100),
    ("100 MHz to 1 GHz", lambda path, losses: 100 <= path.frequency < 1000),
    ("1 to 6 GHz", lambda path, losses: 1000 <= path.frequency < 6000),
    ("6 to 20 GHz", lambda path, losses: path.frequency >= 6000),
    ("the edge alone", lambda path, losses: losses[0] == losses[1]),
    ("the smooth earth counts", lambda path, losses: losses[0] > losses[1]),
    ("no loss", lambda path, losses: losses[0] == 0),
    ("horizontal polarization", lambda path, losses: not path.ground.vertical),
    ("vertical polarization", lambda path, losses: path.ground.vertical),
    ("sea", lambda path, losses: path.ground.conductivity > 1),
    ("radius of 8500 km", lambda path, losses: path.radius == 8500),
    ("radius of 4000, 6371 or 20,000 km", lambda path, losses: path.radius != 8500),
    ("no cover", lambda path, losses: path.category == 0),
    ("water or open country", lambda path, losses: path.category in (1, 2)),
    ("suburb, town, forest", lambda path, losses: path.category >= 3),
    ("receiver on the ground", lambda path, losses: path.rx == 0),
)


def shown(difference):
    """As the next power of ten above: the digits are those of last bits, which another compiler may round otherwise."""
    return "below 1e-9" if difference < 1e-9 else f"below 1e{math.floor(math.log10(difference)) + 1}"


def paths_table(program):
    """The point-to-point model against its independent evaluation, regime by regime."""
    given = paths.examples()
    largest, counts = {}, {}
    overall = 0.0
    for path, said in zip(given, compare_paths.ask([program], given)):
        right = diffraction.evaluate(path)
        difference = max(abs(a - b) for a, b in zip(said, right))
        overall = max(overall, difference)
        for name, belongs in PATH_REGIMES:
            if belongs(path, right):
                counts[name] = counts.get(name, 0) + 1
                largest[name] = max(largest.get(name, 0.0), difference)
    yield (f"**Against the independent evaluation**: {len(given)} paths, 20 MHz to 20 GHz. The largest difference of the diffraction loss, its "
           f"Bullington part, its spherical part and the clutter loss is {shown(overall)} dB.")
    yield ""
    yield "| paths of the regime | number | largest difference, dB |"
    yield "|---|---|---|"
    for name, _ in PATH_REGIMES:
        yield f"| {name} | {counts[name]} | {shown(largest[name])} |"


def measured_tables(program):
    """What the report prints, by the names of its tables."""
    try:
        done = subprocess.run([program, TERRAIN], capture_output=True, text=True, timeout=300, check=True)
    except (OSError, subprocess.SubprocessError) as error:
        raise compare.Failure(f"cannot run {program}: {error}") from error
    parts = re.split(r"^== (\w+)\n", done.stdout, flags=re.M)
    return dict(zip(parts[1::2], parts[2::2]))


def tables(build):
    programs = os.path.join(build, "bin")
    program = os.path.join(programs, "terrain-profiler")
    made = measured_tables(os.path.join(programs, "numbers_report"))
    made["validation"] = "\n".join([*published_table(program), "", *agreement_table(program)]) + "\n"
    made["paths"] = "\n".join(paths_table(os.path.join(programs, "test_ptp_lines"))) + "\n"
    return made


def main(given):
    check = given[:1] == ["--check"]
    given = given[1:] if check else given
    if len(given) > 1 or (given and given[0].startswith("-")):
        print(__doc__, file=sys.stderr)
        return 2
    with open(PAGE, encoding="utf-8") as file:
        page = file.read()
    try:
        tables_by_name = tables(given[0] if given else os.path.join(ROOT, "build", "release"))
    except (compare.Failure, compare_paths.Failure) as failure:
        print(f"no tables: {failure}", file=sys.stderr)
        return 1
    names = [match["name"] for match in BLOCK.finditer(page)]
    if sorted(names) != sorted(tables_by_name):
        print(f"docs/numbers.md has the tables {sorted(names)}, not {sorted(tables_by_name)}", file=sys.stderr)
        return 1
    made = BLOCK.sub(lambda match: match[1] + tables_by_name[match["name"]] + match[3], page)
    if made == page:
        return 0
    if check:
        print("docs/numbers.md is out of date: run scripts/validation.py", file=sys.stderr)
        return 1
    beside = PAGE + ".new"
    with open(beside, "w", encoding="utf-8") as file:
        file.write(made)
    os.replace(beside, PAGE)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
