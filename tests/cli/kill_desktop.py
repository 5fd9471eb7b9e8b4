#!/usr/bin/python3
"""The desktop program ended in the middle of work: kill_desktop.py PROGRAM

A list of stations is opened, which is unsaved work; the program is killed once it has kept a copy of it. The copy holds the
stations, outlives a start whose question nobody answers, and nothing else is left behind. A start without a command that is
asked to end does so without a word.
"""
import glob
import json
import os
import signal
import subprocess
import sys
import tempfile
import time

LONGEST = 90  # s; a machine may be busy


def wait_until(condition, process, what):
    latest = time.monotonic() + LONGEST
    while not condition():
        if process.poll() is not None:
            sys.exit(f"ended with {process.returncode}, before: {what}")
        if time.monotonic() > latest:
            sys.exit(f"not within {LONGEST} s: {what}")
        time.sleep(0.05)


def started(program, arguments, folder):
    environment = dict(os.environ, HOME=folder, QT_QPA_PLATFORM="offscreen", XDG_CONFIG_HOME=folder + "/config",
                       XDG_STATE_HOME=folder + "/state", XDG_CACHE_HOME=folder + "/cache")
    return subprocess.Popen([program] + arguments, env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, text=True)


def copies(folder):
    return glob.glob(folder + "/state/terrain-profiler/recovery/plan-*.json")


def locked(path):
    """Whether someone holds a lock on it; a try to lock it could come between the program and its lock."""
    inode = str(os.stat(path).st_ino)
    with open("/proc/locks", encoding="ascii") as locks:
        return any(line.split()[5].split(":")[-1] == inode for line in locks if "->" not in line)


def stations_of(path):
    with open(path, encoding="utf-8") as file:
        text = file.read()
    json.loads(text)
    return text


def main():
    program = sys.argv[1]
    with tempfile.TemporaryDirectory() as folder:
        sites = folder + "/sites.csv"
        with open(sites, "w", encoding="utf-8") as file:
            file.write("name,lat,lon\nQuarry,36.3,-84.2\nMill,36.25,-84.25\n")
        working = started(program, [sites], folder)
        try:
            wait_until(lambda: copies(folder), working, "unsaved work has a copy")
        finally:
            working.send_signal(signal.SIGKILL)
            working.communicate()
        left = copies(folder)
        assert len(left) == 1, left
        text = stations_of(left[0])
        assert "Quarry" in text and "Mill" in text, text

        # Asked, and killed before an answer.
        asking = started(program, [], folder)
        try:
            lock = left[0].replace(".json", ".lock")
            wait_until(lambda: locked(lock), asking, "the copy that is asked about is the asking program's")
        finally:
            asking.send_signal(signal.SIGKILL)
            asking.communicate()
        assert copies(folder) == left, copies(folder)
        assert stations_of(left[0]) == text

    with tempfile.TemporaryDirectory() as folder:
        idle = started(program, [], folder)
        try:
            wait_until(lambda: os.path.isdir(folder + "/cache") or os.path.isdir(folder + "/state"), idle, "it has started")
        finally:
            idle.send_signal(signal.SIGTERM)
            out, err = idle.communicate(timeout=LONGEST)
        assert (out, err) == ("", ""), (out, err)
        assert not copies(folder), copies(folder)
    print("the work of a killed program is kept")


if __name__ == "__main__":
    main()
