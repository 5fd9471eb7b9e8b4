#!/usr/bin/python3
"""Ctrl+C in the midst of an export: interrupt_export.py PROGRAM

Standard error is a terminal, so the program shows how far it has come. The terminal is stopped, as by Ctrl+S, so that the first
sign of that holds the program up, however fast it is; there Ctrl+C meets it, and the terminal goes on.
The program ends with 130 and one sentence, and the files are as they were.
"""
import os
import pty
import re
import signal
import subprocess
import sys
import tempfile
import termios
import time

LONGEST = 60  # s
ARGUMENTS = ["--set", "Profile/Prf_Max=5000", "export", "signal", "--from", "36.40,-84.35,30", "--to", "36.22,-84.12,30"]


def catches(process, number):
    """Whether the program handles a signal itself."""
    with open(f"/proc/{process}/status", encoding="ascii") as file:
        caught = int(re.search(r"^SigCgt:\s*([0-9a-f]+)$", file.read(), re.MULTILINE).group(1), 16)
    return caught >> (number - 1) & 1 == 1


def wait_until(condition, what):
    latest = time.monotonic() + LONGEST
    while not condition():
        if time.monotonic() > latest:
            sys.exit(f"not within {LONGEST} s: {what}")
        time.sleep(0.005)


def read_all(master):
    shown = b""
    while True:
        try:
            piece = os.read(master, 4096)
        except OSError:  # nobody has the terminal open any more
            return shown.decode(errors="replace")
        if not piece:
            return shown.decode(errors="replace")
        shown += piece


def interrupted(program, folder, arguments):
    """The exit code and what the terminal was shown."""
    environment = dict(os.environ, XDG_CONFIG_HOME=folder + "/config", XDG_STATE_HOME=folder + "/state", TERM="xterm")
    master, terminal = pty.openpty()
    termios.tcflow(terminal, termios.TCOOFF)
    with subprocess.Popen([program] + arguments, stdin=subprocess.DEVNULL,
                          stdout=subprocess.DEVNULL, stderr=terminal, env=environment) as running:
        try:
            wait_until(lambda: catches(running.pid, signal.SIGINT), "the work waits for Ctrl+C")
            running.send_signal(signal.SIGINT)
            # It takes the first one only, so that a second one ends it at once.
            wait_until(lambda: not catches(running.pid, signal.SIGINT), "Ctrl+C has arrived")
            termios.tcflow(terminal, termios.TCOON)
            os.close(terminal)
            shown = read_all(master)
            return running.wait(timeout=LONGEST), shown
        finally:
            running.kill()
            os.close(master)


def main():
    program = sys.argv[1]
    with tempfile.TemporaryDirectory() as folder:
        with open(folder + "/signal.csv", "w", encoding="utf-8") as file:
            file.write("before")
        code, shown = interrupted(program, folder, ARGUMENTS + ["-o", folder + "/signal.csv"])
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


if __name__ == "__main__":
    sys.exit(main())
