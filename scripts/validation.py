#!/usr/bin/python3
"""Makes the validation tables of docs/numbers.md anew.

  scripts/validation.py [PROGRAM]           writes them into the page (PROGRAM: build/release/bin/terrain-profiler)
  scripts/validation.py --check [PROGRAM]   only says whether the page is up to date; exit code 1 if it is not

The cases are those of the tests: the published example, and the links that the independent evaluation is asked for.
"""
import json
import os
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
CASES = os.path.join(ROOT, "tests", "models", "longrice", "independent")
sys.path.insert(0, CASES)
sys.dont_write_bytecode = True

import compare  # noqa: E402  (beside the links)
import links  # noqa: E402

PAGE = os.path.join(ROOT, "docs", "numbers.md")
PUBLISHED = os.path.join(CASES, "..", "data", "path2200.json")
BEGIN, END = "<!-- validation begin -->\n", "<!-- validation end -->\n"

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


def main(given):
    check = given[:1] == ["--check"]
    given = given[1:] if check else given
    if len(given) > 1 or (given and given[0].startswith("-")):
        print(__doc__, file=sys.stderr)
        return 2
    program = given[0] if given else os.path.join(ROOT, "build", "release", "bin", "terrain-profiler")
    with open(PAGE, encoding="utf-8") as file:
        page = file.read()
    try:
        table = "\n".join([*published_table(program), "", *agreement_table(program)]) + "\n"
    except compare.Failure as failure:
        print(f"no tables: {failure}", file=sys.stderr)
        return 1
    before, rest = page.split(BEGIN)
    after = rest.split(END)[1]
    made = before + BEGIN + table + END + after
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
