#!/usr/bin/python3
"""A list of links against single runs, row by row: links_against_single_runs.py PROGRAM

Each figure of each row, for each k, is the one that `profile` and `loss` give for that link alone; and what the list became is
opened by other readers: CSV, JSON, GeoJSON, KML.
"""
import csv
import json
import os
import random
import subprocess
import sys
import tempfile
import xml.etree.ElementTree
from concurrent.futures import ThreadPoolExecutor

# Over the bundled terrain: random links, a short one, one in degrees-minutes-seconds, one without heights, one in feet, one outside the
# model's frequencies, one that is blocked at any k, one that leaves the data, one that is too short.
SOUTH, WEST, NORTH, EAST = 36.17, -84.40, 36.44, -84.09
FACTORS = ["4/3", "2/3"]
SUFFIXES = ["", "_k0.667"]
FIXED = [
    ["dms", "36-24-00 N", "84-21-00 W", "30", "36 13 12 N", "84:07:12 W", "98.4 ft", "2.4 GHz"],
    ["bare", "36.40", "-84.35", "", "36.22", "-84.12", "", ""],
    ["high, \"quoted\"\nname", "36.40", "-84.35", "300", "36.22", "-84.12", "299.5", "30000"],
    ["outside", "36.40", "-84.35", "30", "37.22", "-84.12", "30", "450"],
    ["near", "36.40", "-84.35", "30", "36.4001", "-84.35", "30", "450"],
    ["halves", "36.40", "-84.35", "10.5", "36.30", "-84.30", "11.5", "150"],
]


def links():
    chance = random.Random(11)
    rows = list(FIXED)
    for number in range(4):
        ends = [(chance.uniform(SOUTH, NORTH), chance.uniform(WEST, EAST)) for _ in range(2)]
        rows.append([f"random {number}", f"{ends[0][0]:.6f}", f"{ends[0][1]:.6f}", str(chance.randint(5, 80)), f"{ends[1][0]:.6f}",
                     f"{ends[1][1]:.6f}", str(chance.randint(5, 80)), str(chance.choice([150, 450, 950, 7500]))])
    return rows


class Run:
    def __init__(self, program, folder):
        self.program = program
        self.environment = dict(os.environ, XDG_CONFIG_HOME=folder + "/config", XDG_STATE_HOME=folder + "/state")
        self.folder = folder

    def call(self, *arguments):
        return subprocess.run([self.program, *arguments], env=self.environment, cwd=self.folder, capture_output=True, text=True,
                              timeout=250, check=False)

    def summary(self, command, row, *more):
        def place(latitude, longitude, height):
            return f"{latitude},{longitude}" + ("," + height.replace(" ", "") if height else "")

        # A height in feet is read by the position's own reader.
        arguments = [command, "--from", place(*row[1:4]), "--to", place(*row[4:7]), "--json", *more]
        if row[7]:
            arguments += ["--frequency", "2400" if row[7] == "2.4 GHz" else row[7]]
        done = self.call(*arguments)
        return json.loads(done.stdout) if done.returncode == 0 else done.stderr


def differences(row, found, profiles, loss):
    """What of a row of the list is not what the single runs say."""
    faults = []

    def check(column, wanted, decimals):
        text = found[column]
        if wanted is None or wanted == "":
            if text != "":
                faults.append(f"{column} is {text!r}, wanted nothing")
        elif isinstance(wanted, str):
            if text != wanted:
                faults.append(f"{column} is {text!r}, wanted {wanted!r}")
        elif text == "" or abs(float(text) - wanted) > 0.51 * 10 ** -decimals:
            faults.append(f"{column} is {text!r}, wanted {wanted}")

    if isinstance(profiles[0], str):
        reason = profiles[0].split("terrain-profiler: ", 1)[1].rstrip("\n")
        check("error", reason, 0)
        for suffix in SUFFIXES:
            check("verdict" + suffix, "", 0)
        check("modeled_db", None if isinstance(loss, str) else loss["modeled_db"], 4)
        return faults
    check("error", "", 0)
    check("distance_km", profiles[0]["distance_km"], 6)
    check("bearing_deg", profiles[0]["bearing_deg"], 4)
    check("free_space_db", loss["free_space_db"], 4)
    check("free_space_db", profiles[0]["free_space_db"], 2)
    check("modeled_db", loss["modeled_db"], 4)
    check("mode", loss["mode"] or "", 0)
    for suffix, profile in zip(SUFFIXES, profiles):
        worst = profile["worst_obstacle"]
        check("obstacle_km" + suffix, worst["distance_km"], 6)
        check("obstacle_m" + suffix, worst["ground_m"], 3)
        check("clearance_m" + suffix, worst["clearance_m"], 3)
        check("clearance_percent" + suffix, worst["clearance_percent"], 2)
        check("verdict" + suffix, profile["verdict"], 0)
    return faults


def check_rough_ground(run, faults):
    """Ground with holes in it, and with a height that is none: verdicts, errors and warnings as of single runs."""
    size, cell, west, south = 40, 0.01, -84.4, 36.1
    heights = [["300"] * size for _ in range(size)]  # the first row is the northernmost
    for row in range(15, 25):
        heights[row][20] = "-9999"
    heights[5][30] = "-300"
    with open(run.folder + "/rough.asc", "w", encoding="utf-8") as file:
        file.write(f"ncols {size}\nnrows {size}\nxllcorner {west}\nyllcorner {south}\ncellsize {cell}\nNODATA_value -9999\n")
        file.write("\n".join(" ".join(row) for row in heights) + "\n")

    def at(row, column):
        return [f"{south + (size - row - 0.5) * cell:.6f}", f"{west + (column + 0.5) * cell:.6f}"]

    rows = [["over a hole", *at(20, 5), "60", *at(20, 35), "60", "7500"], ["out of a hole", *at(20, 20), "60", *at(20, 35), "60", "450"],
            ["over a pit", *at(5, 25), "60", *at(5, 35), "60", "450"], ["beside all that", *at(35, 5), "200", *at(35, 15), "200", "7500"]]
    with open(run.folder + "/rough.csv", "w", encoding="utf-8", newline="") as file:
        csv.writer(file).writerows([["name", "lat1", "lon1", "h1", "lat2", "lon2", "h2", "frequency"], *rows])
    terrain = ["--terrain", "rough.asc"]
    run.call(*terrain, "links", "rough.csv", "-o", "rough.json", *(text for factor in FACTORS for text in ("--k", factor)))
    run.call(*terrain, "links", "rough.csv", "-o", "rough-out.csv", *(text for factor in FACTORS for text in ("--k", factor)))
    with open(run.folder + "/rough-out.csv", encoding="utf-8", newline="") as file:
        table = list(csv.DictReader(file))
    with open(run.folder + "/rough.json", encoding="utf-8") as file:
        listed = json.load(file)["links"]
    for row, found, link in zip(rows, table, listed):
        profiles = [run.summary("profile", row, *terrain, "--k", factor_text(factor)) for factor in FACTORS]
        loss = run.summary("loss", row, *terrain)
        faults += [f"{row[0]!r}: {fault}" for fault in differences(row, found, profiles, loss)]
        if not isinstance(loss, str):
            faults += [f"{row[0]!r} lacks the warning {text!r}" for text in loss["warnings"] if text not in link["warnings"]]
        if not isinstance(profiles[0], str):
            faults += [f"{row[0]!r} lacks the note {text!r}" for text in profiles[0]["notes"] if text not in link["notes"]]
    verdicts = [row["verdict"] for row in table]
    if verdicts != ["unknown", "", "", "clear"] or not table[1]["modeled_db"] or "heights from -500 m" not in table[2]["error"]:
        faults.append(f"rough ground: {[(row['name'], row['verdict'], row['modeled_db'], row['error']) for row in table]}")


def factor_text(text):
    number = text.split("/")
    return repr(float(number[0]) / (float(number[1]) if len(number) > 1 else 1))


def check_formats(run, arguments, table, faults):
    """The other formats have the CSV's figures, each by a reader of its own."""
    for ending in ("json", "geojson", "kml"):
        done = run.call(*arguments, "-o", "out." + ending)
        if done.returncode != 1:
            faults.append(f"{ending}: exit code {done.returncode}: {done.stderr}")
    with open(run.folder + "/out.json", encoding="utf-8") as file:
        listed = json.load(file)["links"]
    with open(run.folder + "/out.geojson", encoding="utf-8") as file:
        features = json.load(file)["features"]
    space = "{http://www.opengis.net/kml/2.2}"
    placemarks = list(xml.etree.ElementTree.parse(run.folder + "/out.kml").getroot().iter(space + "Placemark"))
    if not len(listed) == len(features) == len(placemarks) == len(table):
        faults.append("the formats have different numbers of links")
        return
    for row, link, feature, placemark in zip(table, listed, features, placemarks):
        data = {each.get("name"): each.findtext(space + "value") for each in placemark.iter(space + "Data")}
        if placemark.findtext(space + "name") != row["name"]:
            faults.append(f"KML calls {row['name']!r} {placemark.findtext(space + 'name')!r}")
        for name in ("distance_km", "modeled_db", "clearance_m_k0.667", "verdict", "error"):
            for where, value in (("JSON", link[name]), ("GeoJSON", feature["properties"][name]), ("KML", data.get(name))):
                same = (value in (None, "") if row[name] == "" else
                        value == row[name] or name not in ("verdict", "error") and float(value) == float(row[name]))
                if not same:
                    faults.append(f"{where}: {name} of {row['name']!r} is {value!r}, in CSV {row[name]!r}")


def check_guide(run, faults):
    """The guide's example gives the guide's table."""
    page = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../docs/guide/batch.md")
    with open(page, encoding="utf-8") as file:
        lines = file.read().splitlines()
    listed = [line.strip() for line in lines if line.startswith("    ") and line.count(",") == 8]
    with open(run.folder + "/links.csv", "w", encoding="utf-8") as file:
        file.write("\n".join(listed) + "\n")
    command = next(line.split() for line in lines if line.startswith("    terrain-profiler links links.csv -o result.csv --k"))
    done = run.call(*command[1:])
    told = [line.strip() for line in lines if line.startswith("    terrain-profiler: ")]
    if done.stderr.splitlines() != told:
        faults.append(f"the guide's example says {done.stderr!r}")
    with open(run.folder + "/result.csv", encoding="utf-8", newline="") as file:
        found = list(csv.DictReader(file))
    figures = 0
    for line in lines:
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if len(cells) != len(found) + 1 or not cells[0].startswith("`"):
            continue
        figures += 1
        values = [row[cells[0].strip("`")] for row in found]
        if values != cells[1:]:
            faults.append(f"the guide's example has {cells}, the program {values}")
    if figures != 16:
        faults.append(f"the guide's example shows {figures} figures, not 16")


def main():
    program = sys.argv[1]
    rows = links()
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        run = Run(program, folder)
        with open(folder + "/list.csv", "w", encoding="utf-8", newline="") as file:
            csv.writer(file).writerows([["name", "lat1", "lon1", "h1", "lat2", "lon2", "h2", "frequency"], *rows])
        arguments = ["links", "list.csv", *(text for factor in FACTORS for text in ("--k", factor))]
        outputs = []
        for jobs in ("1", "4"):
            done = run.call(*arguments, "-o", f"out{jobs}.csv", "--jobs", jobs)
            if done.returncode != 1:
                faults.append(f"exit code {done.returncode}, wanted 1: {done.stderr}")
            with open(f"{folder}/out{jobs}.csv", encoding="utf-8", newline="") as file:
                outputs.append(file.read())
        if outputs[0] != outputs[1]:
            faults.append("one and four threads write different bytes")
        table = list(csv.DictReader(outputs[0].splitlines(keepends=True)))
        if [row["name"] for row in table] != [row[0] for row in rows]:
            faults.append("the rows are not those of the list, in its order")
        with ThreadPoolExecutor(2) as pool:
            def single(row):
                return [run.summary("profile", row, "--k", factor_text(factor)) for factor in FACTORS], run.summary("loss", row)
            singles = list(pool.map(single, rows))
        for row, found, (profiles, loss) in zip(rows, table, singles):
            faults += [f"{row[0]!r}: {fault}" for fault in differences(row, found, profiles, loss)]
        check_formats(run, arguments, table, faults)
        check_guide(run, faults)
        check_rough_ground(run, faults)
    print("\n".join(faults) or f"{len(rows)} links as by themselves")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
