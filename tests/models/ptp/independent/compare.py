#!/usr/bin/python3
"""Holds a program's point-to-point model against the evaluation of this folder.

  compare.py PROGRAM     gives the program the paths, one a line, and reads diffraction loss, its Bullington part, its spherical part, clutter loss
  compare.py --self-test shows that a disturbed number is found

Prints every disagreement and a summary in one line. Exit code 0: agreement; 1: a disagreement, or the program failed; 2: wrong usage.
"""
import math
import os
import subprocess
import sys
import tempfile

import diffraction
import paths

NAMES = ("diffraction loss", "Bullington part", "spherical part", "clutter loss")
# dB. Both take the same printed constants, so that only the arithmetic differs. Most numbers agree to 1e-9 dB; for an antenna on the smooth
# earth the rounding of its height and of the ray's lowest place come in by their square root.
TOLERANCE = 1e-3
TIMEOUT = 60  # s


class Failure(Exception):
    """The program gave nothing to compare."""


def ask(command, given):
    """The program's numbers for the paths, one tuple each, in order."""
    text = "".join(path.line() + "\n" for path in given)
    try:
        done = subprocess.run(command, input=text, capture_output=True, text=True, timeout=TIMEOUT, check=False)
    except (OSError, subprocess.TimeoutExpired) as error:
        raise Failure(f"cannot run {command[0]}: {error}") from error
    if done.returncode != 0:
        raise Failure(f"exit code {done.returncode}: {done.stderr.strip()[:500]}")
    try:
        answers = [tuple(float(word) for word in line.split()) for line in done.stdout.splitlines()]
    except ValueError as error:
        raise Failure(f"not a number: {error}") from error
    if len(answers) != len(given) or any(len(answer) != len(NAMES) for answer in answers):
        raise Failure(f"{len(answers)} answers to {len(given)} paths, or not {len(NAMES)} numbers each")
    return answers


def compare(command, given, out):
    """Asks the program and prints; whether all agree."""
    worst, bad = (0.0, "nowhere"), 0
    for number, (path, answer) in enumerate(zip(given, ask(command, given)), 1):
        for name, right, said in zip(NAMES, diffraction.evaluate(path), answer):
            apart = abs(said - right) if math.isfinite(said) else math.inf
            where = f"path {number} ({len(path.heights)} samples of {path.spacing:g} km, {path.frequency:g} MHz, category {path.category}), {name}"
            if apart > worst[0]:
                worst = (apart, where)
            if apart > TOLERANCE:
                bad += 1
                print(f"{where}: {said!r} instead of {right!r}", file=out)
    print(f"{len(given)} paths with {bad} disagreements; largest difference {worst[0]:.3g} dB ({worst[1]})", file=out)
    return bool(given) and bad == 0


# A program that answers with the evaluation itself, and adds CHANGE to number COLUMN of path 3.
TWIN = '''#!{python}
import os, sys
sys.path.insert(0, {folder!r})
import diffraction, paths
for number, path in enumerate(paths.examples()[:12], 1):
    answer = list(diffraction.evaluate(path))
    if number == 3:
        answer[int(os.environ["COLUMN"])] += float(os.environ["CHANGE"])
    if number != 5 or os.environ["COLUMN"] != "-1":
        print(*map(repr, answer))
'''


def self_test():
    """Whether each disturbance is found, and only disturbances are."""
    given = paths.examples()[:12]
    passed = True
    with tempfile.TemporaryDirectory() as folder:
        twin = os.path.join(folder, "twin")
        with open(twin, "w", encoding="utf-8") as file:
            file.write(TWIN.format(python=sys.executable, folder=os.path.dirname(os.path.abspath(__file__))))
        os.chmod(twin, 0o755)

        def check(column, change, expected):
            nonlocal passed
            os.environ["COLUMN"], os.environ["CHANGE"] = str(column), repr(change)
            with open(os.path.join(folder, "out"), "w", encoding="utf-8") as out:
                try:
                    result = compare([twin], given, out)
                except Failure:
                    result = None
            right = result is expected
            passed = passed and right
            print(f"{'as expected' if right else 'WRONG'}: column {column} changed by {change}: {result}")

        check(0, 0.0, True)
        check(0, 0.5 * TOLERANCE, True)
        for column in range(len(NAMES)):
            check(column, 3 * TOLERANCE, False)
            check(column, math.nan, False)
        check(-1, 0.0, None)  # an answer is missing
    return passed


def main(given):
    if given == ["--self-test"]:
        return 0 if self_test() else 1
    if len(given) != 1 or given[0].startswith("-"):
        print(__doc__, file=sys.stderr)
        return 2
    try:
        return 0 if compare(given, paths.examples(), sys.stdout) else 1
    except Failure as failure:
        print(f"nothing to compare: {failure}", file=sys.stderr)
        return 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
