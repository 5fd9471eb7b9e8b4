#!/usr/bin/python3
"""Runs vexptp.exe as a program and reads its result another way.

  check_program.py PROGRAM

Columns are held against the evaluation in tests/models/ptp/independent; then the program is given what it must refuse, random bytes, and is
killed in its work. Exit code 0: all as expected; 1: not; 2: wrong usage.
"""
import csv
import math
import pathlib
import random
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "models" / "ptp" / "independent"))

import diffraction  # noqa: E402

PROGRAM = ""
TITLES = ["sample", "distance_km", "diffraction_loss_db", "clutter_loss_db", "level_dbuvm"]
NO_VALUE = -999.0
LOSS = 1e-3  # dB: the independent evaluation's own tolerance
LEVEL = 1e-5  # dB, of a level from the losses beside it: its power's term is in single precision
SEED = 4307


def single(value):
    return struct.unpack("f", struct.pack("f", value))[0]


def hills(rng, samples, step=8.0):
    heights, height = [], rng.uniform(50, 500)
    for _ in range(samples):
        heights.append(round(height, 2))
        height = max(height + rng.uniform(-step, step), 0)
    return heights


class Folder(unittest.TestCase):
    """A scratch folder with an input, and what is asked of the program."""

    def setUp(self):
        self.folder = self.made_folder()
        self.scratch = self.folder / "zel3f2a.tmp"
        self.result = self.folder / "graph_PTP.txt"

    def made_folder(self):
        made = tempfile.TemporaryDirectory()
        self.addCleanup(made.cleanup)
        return pathlib.Path(made.name)

    def write(self, heights, companion=None):
        self.scratch.write_bytes(("START\r\n" + "".join(f"{height:.2f}\r\n" for height in heights)).encode())
        beside = pathlib.Path(str(self.scratch) + ".par")
        beside.unlink(missing_ok=True)
        if companion is not None:
            beside.write_bytes("".join(f"{key}={value!r}\r\n" for key, value in companion.items()).encode())

    def command(self, frequency="950", erp="2.5", receiver="10", clutter="4"):
        return [PROGRAM, str(self.scratch), str(self.result), frequency, erp, receiver, clutter, self.scratch.name]

    def run_program(self, command=None):
        return subprocess.run(command or self.command(), capture_output=True, timeout=30, check=False)

    def rows(self):
        """The result by a CSV reader: numbers, after checks of its form."""
        text = self.result.read_bytes()
        self.assertTrue(text.endswith(b"\r\n"))
        self.assertEqual(text.count(b"\n"), text.count(b"\r\n"))
        self.assertNotIn(b" ", text)
        lines = list(csv.reader(text.decode("ascii").splitlines()))
        self.assertEqual(lines[0], TITLES)
        self.assertEqual([int(line[0]) for line in lines[1:]], list(range(1, len(lines))))
        return [[float(field) for field in line[1:]] for line in lines[1:]]


class Agreement(Folder):
    def check(self, heights, companion, frequency, erp, receiver, clutter):
        self.write(heights, companion)
        done = self.run_program(self.command(repr(frequency), repr(erp), repr(receiver), repr(clutter)))
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))
        rows = self.rows()
        self.assertEqual(len(rows), len(heights))
        self.assertEqual(rows[0], [0, NO_VALUE, NO_VALUE, NO_VALUE])

        h = [single(height) for height in heights]
        given = companion or {}
        spacing = given.get("spacing_km", 0.1)
        tx = given.get("tx_amsl_m", h[0] + 30)
        ground = diffraction.Ground(bool(given.get("polarization", 0)), given.get("permittivity", 15.0), given.get("conductivity", 0.005))
        category, cover = given.get("clutter_category", 0), given.get("clutter_height_m", 0.0)
        compared = 0
        for last in sorted({1, min(2, len(h) - 1), len(h) - 1} | set(range(10, len(h), 37))):
            distance, loss, terminal, level = rows[last]
            ends = [diffraction.terminal_loss(category, cover, antenna, frequency) for antenna in (tx - h[0], receiver)]
            if NO_VALUE in ends:
                self.assertEqual([loss, terminal, level], [NO_VALUE] * 3)
                continue
            tops = [tx, h[last] + receiver]
            if category:
                top = diffraction.cover(category, cover)
                tops = [h[0] + max(tx - h[0], top), h[last] + max(receiver, top)]
            right = diffraction.diffraction(spacing, h[: last + 1], *tops, 8500.0, frequency, ground)[0]
            self.assertAlmostEqual(distance, last * spacing, delta=1e-12 * last)
            self.assertAlmostEqual(loss, right, delta=LOSS, msg=f"sample {last + 1}")
            self.assertAlmostEqual(terminal, sum(ends), delta=LOSS)
            expected = 10 * math.log10(erp) + 106.92 - 20 * math.log10(distance) - loss - terminal - clutter
            self.assertAlmostEqual(level, expected, delta=LEVEL)
            compared += 1
        return compared

    def test_every_column_is_that_of_the_independent_evaluation(self):
        rng = random.Random(SEED)
        compared = 0
        for number in range(24):
            heights = hills(rng, rng.choice((2, 3, 60, 300)), rng.choice((0.5, 8, 40)))
            companion = None
            if number % 4 != 0:
                companion = {"spacing_km": rng.uniform(0.01, 0.5), "tx_amsl_m": single(heights[0]) + rng.choice((0.0, 5.0, 80.0)), "samples": len(heights)}
            if number % 4 == 2:
                companion.update(polarization=1, permittivity=80.0, conductivity=5.0)
            if number % 4 == 3:
                companion.update(clutter_category=rng.randrange(1, 6), clutter_height_m=rng.choice((0.0, 12.5)))
            frequency = rng.choice((20.0, 88.5, 450.0, 2999.0, 3001.0, 20000.0))
            compared += self.check(heights, companion, single(frequency), rng.choice((0.001, 1.0, 50.0)), rng.choice((0.0, 1.5, 10.0)), rng.choice((0.0, 6.5)))
        self.assertGreater(compared, 80)

    def test_a_path_as_long_as_any_is_done_well_within_its_callers_patience(self):
        self.write([200 + 20 * math.sin(i / 50) for i in range(32767)])
        start = time.monotonic()
        self.assertEqual(self.run_program().returncode, 0)
        self.assertLess(time.monotonic() - start, 20)  # s; the caller waits 60, and this takes a fraction of one
        self.assertEqual(len(self.rows()), 32767)


class Refusal(Folder):
    def expect_refusal(self, status, part, command=None):
        self.result.write_bytes(b"before")
        done = self.run_program(command)
        messages = done.stderr.decode()
        self.assertEqual(done.returncode, status, messages)
        self.assertEqual(done.stdout, b"")
        self.assertTrue(messages.startswith("vexptp.exe: "))
        self.assertEqual(messages.count("\n"), 1 if status == 1 else 2)
        self.assertIn(part, messages)
        self.assertEqual(self.result.read_bytes(), b"before")

    def test_wrong_items(self):
        self.write([1, 2, 3])
        self.expect_refusal(2, "the number of items is 0", [PROGRAM])
        self.expect_refusal(2, "the number of items is 6", self.command()[:-1])
        self.expect_refusal(2, "frequency", self.command(frequency="9"))
        self.expect_refusal(2, "not a number", self.command(erp="2,5"))

    def test_bad_inputs(self):
        self.expect_refusal(1, "No such file")
        self.write([1])
        self.expect_refusal(1, "one height")
        self.write([1, 2, -9999])
        self.expect_refusal(1, "line 4")
        self.write([1, 2, 3], {"samples": 2})
        self.expect_refusal(1, "2 samples")

    def test_a_cut_file_is_found_out_by_its_companion(self):
        self.write(hills(random.Random(SEED), 40), {"samples": 40})
        whole = self.scratch.read_bytes()
        for length in range(0, len(whole) - 2, 7):
            self.scratch.write_bytes(whole[:length])
            done = self.run_program()
            if done.returncode == 0:
                # Only the last height's end is gone, or its last digits are.
                self.assertEqual(whole[:length].count(b"\n"), 40)
                continue
            self.assertEqual(done.returncode, 1)
            self.assertFalse(self.result.exists())

    def test_random_bytes_end_in_a_message(self):
        rng = random.Random(SEED)
        for number in range(60):
            self.scratch.write_bytes(b"START\n" * (number % 2) + rng.randbytes(rng.randrange(400)))
            pathlib.Path(str(self.scratch) + ".par").write_bytes(rng.randbytes(rng.randrange(100)) if number % 3 else b"")
            done = self.run_program()
            self.assertEqual(done.returncode, 1, done.stderr)
            self.assertTrue(done.stderr.startswith(b"vexptp.exe: "))
            self.assertFalse(self.result.exists())


class Killed(Folder):
    def test_leaves_what_was_there(self):
        self.write([200 + 20 * math.sin(i / 50) for i in range(32767)])
        self.assertEqual(self.run_program().returncode, 0)
        whole = self.result.read_bytes()
        rng = random.Random(SEED)
        ended = set()
        for number in range(12):
            self.result.write_bytes(b"before")
            with subprocess.Popen(self.command(), stderr=subprocess.DEVNULL) as running:
                time.sleep(rng.uniform(0.001, 0.1))
                running.send_signal(signal.SIGTERM if number % 2 else signal.SIGKILL)
                ended.add(running.wait(30))
            self.assertIn(self.result.read_bytes(), (b"before", whole))
        self.assertIn(-signal.SIGTERM, ended)
        self.assertIn(-signal.SIGKILL, ended)


if __name__ == "__main__":
    if len(sys.argv) != 2 or sys.argv[1].startswith("-"):
        print(__doc__, file=sys.stderr)
        sys.exit(2)
    PROGRAM = sys.argv.pop()
    unittest.main()
