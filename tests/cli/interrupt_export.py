#!/usr/bin/python3
"""Ctrl+C in the midst of an export: interrupt_export.py PROGRAM

Standard error is a terminal, so the program shows how far it has come; the first sign of that is answered by Ctrl+C.
The program ends with 130 and one sentence, and the files are as they were.
"""
import os
import pty
import re
import signal
import subprocess
import sys
import tempfile

ATTEMPTS = 10  # a fast machine may be done before the signal arrives
ARGUMENTS = ["--set", "Profile/Prf_Max=5000", "export", "signal", "--from", "36.40,-84.35,30", "--to", "36.22,-84.12,30"]


def attempt(program, folder):
    """The exit code and what the terminal was shown."""
    environment = dict(os.environ, XDG_CONFIG_HOME=folder + "/config", XDG_STATE_HOME=folder + "/state", TERM="xterm")
    master, terminal = pty.openpty()
    running = subprocess.Popen([program] + ARGUMENTS + ["-o", folder + "/signal.csv"], stdin=subprocess.DEVNULL,
                               stdout=subprocess.DEVNULL, stderr=terminal, env=environment)
    os.close(terminal)
    shown, told = "", False
    while True:
        try:
            piece = os.read(master, 4096)
        except OSError:  # nobody has the terminal open any more
            break
        if not piece:
            break
        shown += piece.decode(errors="replace")
        if not told and "samples" in shown:
            running.send_signal(signal.SIGINT)
            told = True
    os.close(master)
    return running.wait(timeout=60), shown


def main():
    program = sys.argv[1]
    for _ in range(ATTEMPTS):
        with tempfile.TemporaryDirectory() as folder:
            with open(folder + "/signal.csv", "w", encoding="utf-8") as file:
                file.write("before")
            code, shown = attempt(program, folder)
            if code == 0:
                continue
            with open(folder + "/signal.csv", encoding="utf-8") as file:
                content = file.read()
            left = sorted(name for name in os.listdir(folder) if name not in ("config", "state"))
        faults = []
        if code != 130:
            faults.append(f"exit code {code}, wanted 130")
        if content != "before" or left != ["signal.csv"]:
            faults.append(f"the files are not as they were: {left}, {content[:40]!r}")
        if not re.search(r"Signal profile: \d+ of \d+ samples, \d+ %", shown):
            faults.append("the progress does not say how far it has come")
        if not shown.endswith("terrain-profiler: interrupted; the files are as they were\r\n"):
            faults.append("the last line does not say that it was interrupted")
        print("\n".join(faults) or "interrupted")
        if faults:
            print(repr(shown))
        return 1 if faults else 0
    print(f"done before Ctrl+C arrived, {ATTEMPTS} times")
    return 1


if __name__ == "__main__":
    sys.exit(main())
