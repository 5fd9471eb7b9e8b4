#!/usr/bin/python3
"""Holds a program's irregular terrain model against the evaluation of this folder.

  compare.py PROGRAM [--figures printed|exact]   runs `PROGRAM longley-rice --batch -` over the links
  compare.py --self-test                         shows that a disturbed value is found

Prints every disagreement and a summary in one line. Exit code 0: agreement; 1: a disagreement, or the program failed; 2: wrong usage.
--figures exact compares with the unrounded figures in place of those that the publications print (25.1, 47.70, 3.14, ...).
"""
import copy
import json
import math
import os
import subprocess
import sys
import tempfile

import irregular_terrain as model
import links

# Greatest difference, with its unit. What follows from the terrain and the curvature alone has no rounded figure in it, so that only the
# arithmetic differs; losses allow for rounded constants in logarithms (4.343 for 10 / ln 10: 0.001 dB) and for the 0.49 of the frequency gain.
LOSS = 0.02  # dB
TOLERANCES = {
    "free_space_db": 1e-3,  # dB
    "delta_h_m": 1e-4,  # m
    "effective_heights_m": 1e-4,  # m
    "horizon_distances_m": 1e-2,  # m
    "horizon_angles_rad": 1e-8,  # rad
    "surface_refractivity": 1e-6,  # N-units
    "reference_attenuation_db": LOSS,
    "loss_db": LOSS,
    "confidence": 1e-9,  # fraction
    "reliability": 1e-9,  # fraction
}
RELATIVE = 1e-9  # of numbers with units, on top: outputs of 10 digits agree as well
TEXTS = ("mode", "method")
TIMEOUT = 60  # s


class Failure(Exception):
    """The program gave nothing to compare."""


def flatten(value, name):
    """(name with indexes, number) of a number or of nested lists of numbers."""
    if isinstance(value, list):
        for index, item in enumerate(value):
            yield from flatten(item, f"{name}[{index}]")
    else:
        yield name, value


def is_number(value):
    return isinstance(value, (int, float)) and not isinstance(value, bool) and math.isfinite(value)


def shape(value):
    return [shape(item) for item in value] if isinstance(value, list) else None


def differences(expected, answer):
    """Disagreements of one link as texts, and its largest loss difference as (dB, name)."""
    found, largest = [], (0.0, "")
    for key in TEXTS:
        if answer.get(key) != expected[key]:
            found.append(f"{key}: {answer.get(key)!r} instead of {expected[key]!r}")
    for key, tolerance in TOLERANCES.items():
        if shape(answer.get(key)) != shape(expected[key]) or key not in answer:
            found.append(f"{key}: {answer.get(key)!r} has not the form of {expected[key]!r}")
            continue
        for (name, right), (_, given) in zip(flatten(expected[key], key), flatten(answer[key], key)):
            if not is_number(given):
                found.append(f"{name}: {given!r} is not a number")
                continue
            difference = abs(given - right)
            if tolerance == LOSS and difference > largest[0]:
                largest = (difference, name)
            if difference > tolerance + (RELATIVE * abs(right) if tolerance != LOSS else 0):
                found.append(f"{name}: {given!r} instead of {right!r}, {difference:.3g} apart, {tolerance:g} allowed")
    return found, largest


def ask(command, given):
    """The program's answers to the links, one each, in order."""
    text = "".join(json.dumps(link) + "\n" for link in given)
    try:
        done = subprocess.run(command, input=text, capture_output=True, text=True, timeout=TIMEOUT, check=False)
    except (OSError, subprocess.TimeoutExpired) as error:
        raise Failure(f"cannot run {command[0]}: {error}") from error
    lines = [line for line in done.stdout.splitlines() if line.strip()]
    answers = []
    for number, line in enumerate(lines, 1):
        try:
            answer = json.loads(line)
        except ValueError as error:
            raise Failure(f"answer {number} is not JSON ({error}): {line[:200]}") from error
        if not isinstance(answer, dict):
            raise Failure(f"answer {number} is not an object: {line[:200]}")
        if "error" in answer:
            raise Failure(f"answer {number} is an error: {answer['error']}")
        answers.append(answer)
    if done.returncode != 0:
        raise Failure(f"exit code {done.returncode}: {done.stderr.strip()[:500]}")
    if len(answers) != len(given):
        raise Failure(f"{len(answers)} answers to {len(given)} links; {done.stderr.strip()[:500]}")
    return answers


def describe(number, link, path):
    return (f"link {number} ({path.distance:g} km, {len(link['elevations_m'])} samples, {link['frequency']:g} MHz, {link['polarization']}, "
            f"climate {link['climate']}, {link['tx']:g} m to {link['rx']:g} m, {path.mode})")


def compare(command, given, figures, out):
    """Asks the program and prints; whether all agree. `given`: links."""
    answers = ask(command, given)
    worst, count, bad = (0.0, "nowhere"), 0, 0
    for number, (link, answer) in enumerate(zip(given, answers), 1):
        expected, path, _ = model.analyse(**links.arguments(link), figures=figures)
        found, largest = differences(expected, answer)
        for text in found:
            print(f"{describe(number, link, path)}: {text}", file=out)
        count += len(found)
        bad += bool(found)
        if largest[0] > worst[0]:
            worst = (largest[0], f"{largest[1]} of {describe(number, link, path)}, {expected['method']}")
    print(f"{len(given)} links, {bad} of them with {count} disagreements; largest loss difference {worst[0]:.5f} dB ({worst[1]})", file=out)
    return bool(given) and count == 0


# ------------------------------------------------------------------------------------------------------------------ self-test

# A program that answers with the evaluation itself. MISTAKE in its environment: a key whose first number it changes, or a failure.
TWIN = '''#!{python}
import json, os, sys
sys.path.insert(0, {folder!r})
import irregular_terrain as model, links
if sys.argv[1:] != ["longley-rice", "--batch", "-"]:
    sys.exit("unexpected arguments")
mistake = os.environ.get("MISTAKE", "")
for number, line in enumerate(sys.stdin, 1):
    answer = model.evaluate(**links.arguments(json.loads(line)))
    if number == 3 and mistake not in ("", "exit code"):
        if mistake == "error line":
            answer = {{"error": "no such thing", "line": number}}
        elif mistake == "missing line":
            continue
        elif mistake == "not JSON":
            print("nonsense")
            continue
        elif mistake == "not a number":
            answer["loss_db"][0][0] = None
        elif mistake == "missing key":
            del answer["delta_h_m"]
        elif mistake == "missing row":
            answer["loss_db"].pop()
        elif isinstance(answer[mistake], str):
            answer[mistake] = "troposcatter" if mistake == "mode" else "two ridges"
        else:
            row = answer
            place = mistake
            while isinstance(row[place], list):
                row, place = row[place], len(row[place]) - 1
            row[place] += float(os.environ["CHANGE"])
    print(json.dumps(answer))
sys.exit(3 if mistake == "exit code" else 0)
'''


def self_test():
    """Whether each disturbance is found, and only disturbances are."""
    given = [link for link, *_ in links.examples()][:12]
    passed = True

    def check(what, right):
        nonlocal passed
        passed = passed and right
        print(f"{'found' if right else 'NOT FOUND'}: {what}")

    with tempfile.TemporaryDirectory() as folder:
        twin = os.path.join(folder, "twin")
        with open(twin, "w", encoding="utf-8") as file:
            file.write(TWIN.format(python=sys.executable, folder=os.path.dirname(os.path.abspath(__file__))))
        os.chmod(twin, 0o755)
        command = [twin, "longley-rice", "--batch", "-"]

        def run(mistake, change=0.0):
            """Agreement (None: the program failed), and the text that was printed."""
            os.environ["MISTAKE"], os.environ["CHANGE"] = mistake, repr(change)
            with open(os.path.join(folder, "out"), "w+", encoding="utf-8") as out:
                try:
                    agreed = compare(command, given, model.PRINTED, out)
                except Failure as failure:
                    return None, str(failure)
                finally:
                    os.environ.pop("MISTAKE")
                    os.environ.pop("CHANGE")
                out.seek(0)
                return agreed, out.read()

        agreed, text = run("")
        check("an undisturbed program agrees", agreed is True and "0 of them with 0 disagreements" in text)
        for key, tolerance in TOLERANCES.items():
            agreed, text = run(key, 20 * tolerance + 1e-4 * (tolerance == 1e-6))
            check(f"a change of {key}", agreed is False and "link 3 " in text and key in text and "1 of them with 1 disagreements" in text)
        agreed, text = run("loss_db", 0.9 * LOSS)
        check("a change of a loss within the tolerance is let pass", agreed is True and f"difference {0.9 * LOSS:.5f} dB" in text)
        for mistake in ("mode", "method", "not a number", "missing key", "missing row"):
            agreed, text = run(mistake)
            check(f"another {mistake}" if mistake in TEXTS else mistake, agreed is False and "link 3 " in text)
        for mistake, words in (("error line", "answer 3 is an error: no such thing"), ("missing line", "11 answers to 12 links"),
                               ("not JSON", "answer 3 is not JSON"), ("exit code", "exit code 3")):
            agreed, text = run(mistake)
            check(mistake, agreed is None and words in text)
        command[0] = os.path.join(folder, "no-such-program")
        agreed, text = run("")
        check("a missing program", agreed is None and "cannot run" in text)
    # Not only a disturbed answer: what the evaluation itself makes of another terrain.
    link = copy.deepcopy(given[0])
    before = model.evaluate(**links.arguments(link))
    link["elevations_m"][len(link["elevations_m"]) // 2] += 300
    found, _ = differences(before, model.evaluate(**links.arguments(link)))
    check("another terrain", bool(found))
    return passed


def main(given):
    if given == ["--self-test"]:
        return 0 if self_test() else 1
    figures = {"printed": model.PRINTED, "exact": model.EXACT}
    if len(given) == 3 and given[1] == "--figures" and given[2] in figures:
        chosen = figures[given[2]]
    elif len(given) == 1 and not given[0].startswith("-"):
        chosen = model.PRINTED
    else:
        print(__doc__, file=sys.stderr)
        return 2
    try:
        agreed = compare([given[0], "longley-rice", "--batch", "-"], [link for link, *_ in links.examples()], chosen, sys.stdout)
    except Failure as failure:
        print(f"nothing to compare: {failure}", file=sys.stderr)
        return 1
    return 0 if agreed else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
