#!/usr/bin/python3
"""The exports of the command line, byte for byte against the files that the tests of the exports keep.

  export_golden.py PROGRAM GOLDEN
"""
import json
import os
import pathlib
import struct
import subprocess
import sys
import tempfile

RUN = ["--datum", "nad83", "--set", "Profile/Prf_Per=10", "--set", "Profile/Prf_Max=71", "--set", "Profile/Prf_Frez=60",
       "--set", "ITM/dConfidence=90", "--set", "ITM/dReliability=0.95"]
PATH = ["--from", "36.40,-84.35,30", "--to", "36.22,-84.12,12"]
SIGNAL = ["--erp", "2.5", "--longley-rice-clutter", "6", "--ptp-clutter", "4.5"]
GRAPH = ["--start", "1000", "--end", "24000", "--title", "Ridge to valley"]
NAMES = ["graph.dat", "graph.plt", "height.csv", "loss.csv", "signal.csv", "signal.csv.terrain.txt"]  # kept in each variant
MARKERS = (5.3, 21.75)  # km, x of the plot
# Variant: locale, units, whether the stretch between the markers alone is exported.
VARIANTS = {"metric": ("C", "metric", False), "imperial": ("C", "imperial", False), "comma": ("de_DE.UTF-8", "metric", False),
            "expanded": ("C", "metric", True)}


def single(value):
    return struct.unpack("f", struct.pack("f", value))[0]


class Program:
    def __init__(self, name, folder):
        self.name = name
        self.folder = folder

    def run(self, arguments, locale="C"):
        environment = dict(os.environ, LC_ALL=locale, XDG_CONFIG_HOME=str(self.folder / "config"),
                           XDG_STATE_HOME=str(self.folder / "state"))
        done = subprocess.run([self.name] + RUN + arguments, cwd=self.folder, env=environment, capture_output=True, text=True,
                              timeout=120, check=False)
        if done.returncode != 0:
            sys.exit(f"{arguments}: {done.stderr}")
        return done.stdout


def differences(golden, written, beginning):
    """Lines that differ; of a golden file that keeps the beginning only, in that."""
    if written == golden or beginning and golden and written.startswith(golden):
        return []
    wanted, found = golden.splitlines(), written.splitlines()
    return [f"line {i + 1}: {f!r}\n  wanted {w!r}" for i, (w, f) in enumerate(zip(wanted, found)) if w != f][:3] or [
        f"{len(found)} lines, wanted {len(wanted)}"]


def main():
    name, golden = sys.argv[1], pathlib.Path(sys.argv[2])
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        program = Program(name, pathlib.Path(folder))
        shift = json.loads(program.run(["picture"] + PATH + ["-o", "plot.png", "--geometry", "-"]))["distance_shift_km"]
        distances = ",".join(repr(single(x) - shift) for x in MARKERS)
        for variant, (locale, units, expanded) in VARIANTS.items():
            (program.folder / variant).mkdir()
            view = ["--expand" if expanded else "--markers", distances]
            shown = ["--units", units]
            program.run(["export", "height"] + PATH + view + shown + ["-o", f"{variant}/height.csv"], locale)
            program.run(["export", "loss-table"] + PATH + ["-o", f"{variant}/loss.csv"], locale)
            program.run(["export", "signal"] + PATH + (view if expanded else []) + shown + SIGNAL +
                        ["-o", f"{variant}/signal.csv"], locale)
            program.run(["export", "signal-graph"] + PATH + SIGNAL + GRAPH + ["-o", f"{variant}/graph.png"], locale)
            kept = sorted((golden / variant).iterdir())
            if [file.name for file in kept] != NAMES:
                faults.append(f"{golden / variant}: {[file.name for file in kept]} are kept, wanted {NAMES}")
            for file in kept:
                found = differences(file.read_bytes(), (program.folder / variant / file.name).read_bytes(),
                                    file.name == "loss.csv")
                faults += [f"{variant}/{file.name}: {text}" for text in found]
    print("\n".join(faults) or f"{len(VARIANTS)} variants agree")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
