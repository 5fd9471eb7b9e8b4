#!/usr/bin/python3
"""Ctrl+C in the midst of a report: interrupt_report.py PROGRAM

As for an export (interrupt_export.py): 130, one sentence, and the file is as it was.
"""
import json
import os
import re
import sys
import tempfile

from interrupt_export import interrupted

STATIONS = [("North ridge", 36.40, -84.35), ("South hill", 36.22, -84.12), ("Knob", 36.3392, -84.2725)]


def main():
    program = sys.argv[1]
    with tempfile.TemporaryDirectory() as folder:
        stations = [{"id": i + 1, "name": name, "latitude": lat, "longitude": lon} for i, (name, lat, lon) in enumerate(STATIONS)]
        links = [{"from": a, "to": b} for a, b in ((1, 2), (2, 3), (1, 3))]
        plan, report = folder + "/plan.json", folder + "/report.pdf"
        with open(plan, "w", encoding="utf-8") as file:
            json.dump({"format": "terrain-profiler plan", "version": 1, "stations": stations, "links": links}, file)
        with open(report, "w", encoding="utf-8") as file:
            file.write("before")
        code, shown = interrupted(program, folder, ["report", plan, "-o", report])
        with open(report, encoding="utf-8", errors="replace") as file:
            content = file.read()
        left = sorted(name for name in os.listdir(folder) if name not in ("config", "state"))
    faults = []
    if code != 130:
        faults.append(f"exit code {code}, wanted 130")
    if content != "before" or left != ["plan.json", "report.pdf"]:
        faults.append(f"the files are not as they were: {left}, {content[:40]!r}")
    if not re.search(r"report: figures of link \d of 3, \d+ %", shown):
        faults.append("the progress does not say how far it has come")
    if not shown.endswith("terrain-profiler: interrupted; nothing was written\r\n"):
        faults.append("the last line does not say that it was interrupted")
    print("\n".join(faults) or "interrupted")
    if faults:
        print(repr(shown))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
