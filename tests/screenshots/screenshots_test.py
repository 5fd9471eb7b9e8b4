#!/usr/bin/python3
"""The command that draws the pictures of the documents.

usage: screenshots_test.py SCREENSHOTS_SH PROGRAM
"""
import os
import subprocess
import sys
import tempfile

PICTURES = ["link-budget.png", "loss-table.png", "print-preview.png", "profile-window.png", "settings-dialog.png"]
LARGEST = 90000  # bytes


def drawn(script, program, folder):
    subprocess.run([script, "--program", program, folder], check=True, timeout=60)
    pictures = {}
    for name in sorted(os.listdir(folder)):
        with open(os.path.join(folder, name), "rb") as file:
            pictures[name] = file.read()
    return pictures


def main():
    script, program = sys.argv[1:3]
    faults = []
    with tempfile.TemporaryDirectory() as first, tempfile.TemporaryDirectory() as second:
        pictures = drawn(script, program, first)
        if sorted(pictures) != PICTURES:
            faults.append(f"it drew {sorted(pictures)}")
        for name, data in pictures.items():
            width, height = (int.from_bytes(data[i:i + 4], "big") for i in (16, 20))
            if data[:8] != b"\x89PNG\r\n\x1a\n" or not (250 <= width <= 1000 and 200 <= height <= 1000):
                faults.append(f"{name} is no PNG of a window: {width} x {height}")
            if len(data) > LARGEST:
                faults.append(f"{name} has {len(data)} bytes")
        if pictures.get("profile-window.png", b"")[16:24] != (621).to_bytes(4, "big") + (432).to_bytes(4, "big"):
            faults.append("the profile window has another size than a new one's")
        again = drawn(script, program, second)
        if again != pictures:
            faults.append("it draws other pictures the second time")
        # One that cannot be drawn leaves those that are there.
        done = subprocess.run([script, "--program", "/bin/false", first], capture_output=True, check=False, timeout=60)
        if done.returncode != 1 or sorted(os.listdir(first)) != PICTURES:
            faults.append("a failing program is not told of, or costs the old pictures")
        done = subprocess.run([script, "--unknown"], capture_output=True, check=False, timeout=60)
        if done.returncode != 2:
            faults.append("an unknown option is not wrong usage")
    for fault in faults:
        print("FAILED: " + fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
