#!/usr/bin/python3
"""The command that draws the pictures of the documents.

usage: screenshots_test.py SCREENSHOTS_SH PROGRAMS
"""
import os
import subprocess
import sys
import tempfile

# With the bytes that each may have at most. Shaded terrain packs badly.
PICTURES = {
    "add-station.png": 90000,
    "frequency-dialog.png": 90000,
    "height-scale.png": 90000,
    "import-summary.png": 90000,
    "link-budget.png": 90000,
    "loss-table.png": 90000,
    "map-stations.png": 700000,
    "map-window.png": 700000,
    "preferences-model.png": 90000,
    "preferences-colors.png": 90000,
    "preferences-point-to-point.png": 90000,
    "preferences-programs.png": 90000,
    "preferences-terrain.png": 90000,
    "print-description.png": 90000,
    "print-preview.png": 90000,
    "printer-dialog.png": 90000,
    "profile-window.png": 90000,
    "report-dialog.png": 90000,
    "report-page.png": 900000,
    "settings-dialog.png": 90000,
}


def drawn(script, programs, folder):
    subprocess.run([script, "--programs", programs, folder], check=True, timeout=120)
    pictures = {}
    for name in sorted(os.listdir(folder)):
        with open(os.path.join(folder, name), "rb") as file:
            pictures[name] = file.read()
    return pictures


def main():
    script, programs = sys.argv[1:3]
    faults = []
    with tempfile.TemporaryDirectory() as first, tempfile.TemporaryDirectory() as second:
        pictures = drawn(script, programs, first)
        if sorted(pictures) != sorted(PICTURES):
            faults.append(f"it drew {sorted(pictures)}")
        for name, data in pictures.items():
            width, height = (int.from_bytes(data[i:i + 4], "big") for i in (16, 20))
            if data[:8] != b"\x89PNG\r\n\x1a\n" or not (150 <= width <= 1200 and 80 <= height <= 1000):
                faults.append(f"{name} is no PNG of a window: {width} x {height}")
            if len(data) > PICTURES.get(name, 0):
                faults.append(f"{name} has {len(data)} bytes")
        if pictures.get("profile-window.png", b"")[16:24] != (621).to_bytes(4, "big") + (432).to_bytes(4, "big"):
            faults.append("the profile window has another size than a new one's")
        again = drawn(script, programs, second)
        if again != pictures:
            faults.append("it draws other pictures the second time")
        # One that cannot be drawn leaves those that are there.
        with tempfile.TemporaryDirectory() as failing:
            os.symlink(os.path.join(programs, "screenshots"), os.path.join(failing, "screenshots"))
            os.symlink("/bin/false", os.path.join(failing, "host_screenshots"))
            before = {name: os.stat(os.path.join(first, name)).st_mtime_ns for name in pictures}
            done = subprocess.run([script, "--programs", failing, first], capture_output=True, check=False, timeout=60)
            after = {name: os.stat(os.path.join(first, name)).st_mtime_ns for name in pictures}
            if done.returncode != 1 or after != before:
                faults.append("a failing program is not told of, or costs the old pictures")
        done = subprocess.run([script, "--unknown"], capture_output=True, check=False, timeout=60)
        if done.returncode != 2:
            faults.append("an unknown option is not wrong usage")
    for fault in faults:
        print("FAILED: " + fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
