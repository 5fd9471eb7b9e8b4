#!/usr/bin/python3
"""Runs an example of the developer's guide in a folder of its own and compares what it prints with what the guide shows.

    run_example.py [--status N] [--last LINE] EXPECTED PROGRAM [ARGUMENT...]

EXPECTED is the file with the example's standard output; a file of the same name that ends in .err has its standard
error, which is empty without it. The argument low.asc stands for a raster of -300 m that is made here. With --last the
example waits for its user: it is ended when it has printed that line.
"""
import argparse
import difflib
import os
import pathlib
import subprocess
import sys
import tempfile

# What the toolkit says without a screen.
TOOLKIT = ("This plugin does not support", "QStandardPaths:", "qt.qpa")


def made_terrain(path):
    row = " ".join(["-300"] * 40)
    head = "ncols 40\nnrows 40\nxllcorner -84.5\nyllcorner 36.1\ncellsize 0.0125\nNODATA_value -9999\n"
    path.write_text(head + (row + "\n") * 40, encoding="ascii")


def run(command, folder, last):
    home = {name: str(folder / name.lower()) for name in ("XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME")}
    environment = {**os.environ, **home, "HOME": str(folder)}
    program = subprocess.Popen(command, cwd=folder, env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                               text=True, encoding="utf-8")
    output = ""
    while last is not None:
        line = program.stdout.readline()
        output += line
        if line in ("", last + "\n"):
            program.terminate()
            break
    rest, errors = program.communicate()
    return output + rest, errors, program.returncode


def differences(name, expected, found):
    return list(difflib.unified_diff(expected.splitlines(), found.splitlines(), f"the guide's {name}", "printed", "", "", 1, ""))


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--status", type=int, default=0)
    parser.add_argument("--last")
    parser.add_argument("expected", type=pathlib.Path)
    parser.add_argument("command", nargs=argparse.REMAINDER)
    options = parser.parse_args(arguments)
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        if "low.asc" in options.command:
            made_terrain(folder / "low.asc")
        output, errors, status = run(options.command, folder, options.last)
    expected_errors = options.expected.with_suffix(".err")
    expected = expected_errors.read_text(encoding="utf-8") if expected_errors.exists() else ""
    errors = "".join(line for line in errors.splitlines(True) if not line.startswith(TOOLKIT))
    wrong = differences("output", options.expected.read_text(encoding="utf-8"), output)
    wrong += differences("standard error", expected, errors)
    if options.last is None and status != options.status:
        wrong.append(f"exit status {status}, not {options.status}")
    print(*wrong, sep="\n")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
