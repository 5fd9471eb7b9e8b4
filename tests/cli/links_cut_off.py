#!/usr/bin/python3
"""Runs over a list that are cut off: links_cut_off.py PROGRAM

A run is killed at random places, again and again, and gone on with each time: what it writes in the end is, to the byte, what a run
writes that nobody disturbs. Ctrl+C at a terminal, which shows how far it has come, keeps what is done, too,
and says how to go on.
"""
import contextlib
import json
import os
import pty
import random
import re
import signal
import subprocess
import sys
import tempfile
import time

LINKS = 6000
LONGEST = 60  # s


def write_list(path):
    chance = random.Random(5)
    with open(path, "w", encoding="utf-8") as file:
        file.write("name,lat1,lon1,h1,lat2,lon2,h2,frequency\n")
        for number in range(LINKS):
            latitude = 95 if number % 97 == 5 else chance.uniform(36.2, 36.4)
            file.write(f"L{number},{latitude:.5f},{chance.uniform(-84.38, -84.3):.5f},30,{chance.uniform(36.2, 36.4):.5f},"
                       f"{chance.uniform(-84.2, -84.1):.5f},20,450\n")


class Program:
    def __init__(self, program, folder):
        self.program = program
        self.folder = folder
        self.environment = dict(os.environ, XDG_CONFIG_HOME=folder + "/config", XDG_STATE_HOME=folder + "/state")

    def start(self, *arguments, errors=subprocess.PIPE):
        return subprocess.Popen([self.program, "links", "list.csv", *arguments], cwd=self.folder, env=self.environment,
                                stdout=subprocess.DEVNULL, stderr=errors, text=True)

    def run(self, *arguments):
        with self.start(*arguments) as running:
            errors = running.communicate(timeout=LONGEST)[1]
            return running.returncode, errors

    def bytes_of(self, name):
        try:
            with open(os.path.join(self.folder, name), "rb") as file:
                return file.read()
        except FileNotFoundError:
            return None

    def size_of(self, name):
        try:
            return os.path.getsize(os.path.join(self.folder, name))
        except FileNotFoundError:
            return 0


def wait_for(condition, running):
    """False when the program ended before."""
    latest = time.monotonic() + LONGEST
    while not condition():
        if running.poll() is not None:
            return False
        if time.monotonic() > latest:
            sys.exit(f"not within {LONGEST} s")
        time.sleep(0.002)
    return True


def killed_and_gone_on_with(program, output, whole, faults):
    """How often it was killed, and behind how many links the last run went on."""
    chance = random.Random(9)
    state = output + ".unfinished.state"
    kills = 0
    mode = []
    while kills < 4:
        before = program.bytes_of(state)
        # At a size that lies anywhere, also within a line; and every other time as soon as something more is kept.
        mark = int(len(whole) * chance.uniform(0, 0.9)) if kills % 2 else 0
        with program.start("-o", output, "--jobs", "1", *mode) as running:
            ready = wait_for(lambda: program.size_of(output + ".unfinished") >= mark and program.size_of(state) > 0 and
                             (kills % 2 or program.bytes_of(state) not in (before, None) and
                              b"totals\tlinks" in program.bytes_of(state)), running)
            running.kill()
            running.communicate()
        if not ready:
            break
        kills += 1
        if program.bytes_of(output) is not None:
            faults.append("the output is there before it is whole")
        # A write that was under way when the machine went down.
        with open(os.path.join(program.folder, output + ".unfinished"), "ab") as file:
            file.write(whole[:chance.randint(0, 300)])
        mode = ["--resume"]
    done = subprocess.run([program.program, "links", "list.csv", "-o", output, "--resume", "--json"], cwd=program.folder,
                          env=program.environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=LONGEST, check=False)
    return kills, json.loads(done.stdout)["resumed_behind"]


def interrupted(program, faults):
    master, terminal = pty.openpty()
    with program.start("-o", "int.csv", "--jobs", "1", errors=terminal) as running:
        os.close(terminal)
        wait_for(lambda: program.size_of("int.csv.unfinished.state") > 0, running)
        shown = ""
        while not re.search(r"links: [1-9]\d* done, \d+ %", shown):
            shown += os.read(master, 4096).decode()
        running.send_signal(signal.SIGINT)
        with contextlib.suppress(OSError):  # nobody has the terminal open any more
            while piece := os.read(master, 4096).decode():
                shown += piece
        running.wait(timeout=LONGEST)
    os.close(master)
    last = shown.replace("\x1b[K", "").replace("\r", "\n").rstrip("\n").split("\n")[-1]
    wanted = r"^terrain-profiler: interrupted after \d+ links?; they are kept in int.csv.unfinished, and the same command with --resume goes on$"
    if running.returncode != 130 or not re.match(wanted, last):
        faults.append(f"Ctrl+C: exit code {running.returncode}, {last!r}")
    code, errors = program.run("-o", "int.csv")
    if code != 1 or "--resume goes on with it, --restart throws it away" not in errors:
        faults.append(f"what is left is not asked about: {code}, {errors!r}")
    code, errors = program.run("-o", "int.csv", "--resume", "--clearance", "30")
    if code != 1 or "--clearance was 60 and is 30" not in errors:
        faults.append(f"another run's left-over is not refused: {code}, {errors!r}")
    program.run("-o", "int.csv", "--resume")


def main():
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        program = Program(sys.argv[1], folder)
        write_list(folder + "/list.csv")
        wholes = {}
        for name in ("whole.csv", "whole.json"):
            code, errors = program.run("-o", name)
            if code != 1 or "links of list.csv could not be computed" not in errors:
                sys.exit(f"the undisturbed run: {code}, {errors!r}")
            wholes[name] = program.bytes_of(name)
        for output in ("out.csv", "out.json"):
            whole = wholes["whole." + output.split(".")[1]]
            kills, behind = killed_and_gone_on_with(program, output, whole, faults)
            if kills == 0 or behind == 0:
                faults.append(f"{output} was cut off {kills} times, and gone on with behind {behind} links")
            if program.bytes_of(output) != whole:
                faults.append(f"{output} differs from that of an undisturbed run after {kills} kills")
        interrupted(program, faults)
        if program.bytes_of("int.csv") != wholes["whole.csv"]:
            faults.append("int.csv differs from that of an undisturbed run")
        left = sorted(name for name in os.listdir(folder) if "unfinished" in name)
        if left:
            faults.append(f"left behind: {left}")
    print("\n".join(faults) or "as if never cut off")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
