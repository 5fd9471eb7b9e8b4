"""What a process as a whole sees: its end, its memory, its signals, other interpreters."""
import unittest

from support import run_script

APPLICATION = """
import zelprofiler01 as zel
class Application:
    Title = "Exit Test"
    Path = "."
    @property
    def Major(self): return 1
    def __del__(self): print("deleted", flush=True)
"""
LOSS = 'zel.get_path_loss(36.4408, -84.3433, 30, 36.1842, -84.1283, 30, 450)'


class TheEndOfAProcess(unittest.TestCase):
    def test_is_clean_with_an_application_that_the_component_still_keeps(self):
        done = run_script(APPLICATION + f"""
control = zel.ProfileControl()
control.SetClientApp(Application())
print(round({LOSS}, 3))
""")
        self.assertEqual(done.stdout.splitlines()[0], "133.769")
        self.assertEqual(done.stderr, "")

    def test_is_clean_with_a_control_that_was_released_before(self):
        done = run_script(APPLICATION + """
control = zel.ProfileControl()
control.SetClientApp(Application())
del control
""")
        self.assertEqual(done.stderr, "")

    def test_is_clean_with_objects_in_a_cycle(self):
        done = run_script(APPLICATION + """
application = Application()
application.control = zel.ProfileControl()
application.control.SetClientApp(application)
application.me = application
""")
        self.assertEqual(done.stderr, "")

    def test_is_clean_with_an_open_window(self):
        done = run_script(APPLICATION + """
control = zel.ProfileControl()
control.SetClientApp(Application())
control.ShowMainForm((36.40, -84.35, 30), (36.22, -84.12, 30))
zel.process_events(50)
print(control.PFrmLoaded)
form = control.PForm
""")
        self.assertEqual(done.stdout.splitlines()[0], "True")
        self.assertEqual(done.stderr.replace("This plugin does not support raise()\n", ""), "")

    def test_is_clean_with_daemon_threads_inside_the_functions(self):
        for _ in range(3):
            done = run_script(f"""
import threading, time
import zelprofiler01 as zel
{LOSS}
started = threading.Barrier(5)
def work(arrays):
    started.wait()
    while True:
        if arrays: zel.get_path_loss([36.4408] * 50, -84.3433, 30, 36.1842, -84.1283, 30, 450)
        else: {LOSS}; zel.settings.get("Profile/Prf_Freq")
for i in range(4): threading.Thread(target=work, args=(i % 2 == 0,), daemon=True).start()
started.wait()
time.sleep(0.05)
""")
            self.assertEqual(done.stderr, "")

    def test_is_clean_with_a_control_owned_by_another_thread(self):
        done = run_script(APPLICATION + """
import threading
made = []
thread = threading.Thread(target=lambda: made.append(zel.ProfileControl()))
thread.start(); thread.join()
try: made[0].ElevLines
except zel.WrongThreadError as error: print(isinstance(error, RuntimeError))
""")
        self.assertEqual(done.stdout.splitlines()[0], "True")
        self.assertEqual(done.stderr, "")


class Signals(unittest.TestCase):
    def test_ctrl_c_ends_a_long_call_on_arrays(self):
        done = run_script("""
import array, os, signal, threading
import zelprofiler01 as zel
zel.get_path_loss([36.44], -84.3433, 30, 36.1842, -84.1283, 30, 450)
many = array.array("d", [36.4408]) * 300000
ground = array.array("d", [100.0 + i % 7 for i in range(30000)])
for call in (lambda: zel.get_path_loss(many, -84.3433, 30, 36.1842, -84.1283, 30, 450),
             lambda: zel.profile(many, -84.3433, 30, 36.1842, -84.1283, 30),
             lambda: zel.sample(many, -84.3433, 36.1842, -84.1283, 10),
             lambda: zel.longley_rice(ground, 30, many, 10, 450)):
    try:
        threading.Timer(0.05, os.kill, (os.getpid(), signal.SIGINT)).start()
        call()
        print("went on to the end")
    except KeyboardInterrupt:
        print("ended")
""")
        self.assertEqual(done.stdout, "ended\n" * 4)

    def test_ctrl_c_in_an_application_s_property_is_raised_when_the_member_is_back(self):
        done = run_script("""
import zelprofiler01 as zel
class Application:
    Path = "."
    @property
    def Title(self): raise KeyboardInterrupt
control = zel.ProfileControl()
try: control.SetClientApp(Application())
except KeyboardInterrupt: print("ended")
""")
        self.assertEqual(done.stdout.splitlines()[-1], "ended")


class Interpreters(unittest.TestCase):
    def test_a_second_interpreter_is_refused_with_a_reason(self):
        for first in ("", "import zelprofiler01"):
            done = run_script(f"""
{first}
import _xxsubinterpreters as interpreters, sys
other = interpreters.create()
try: interpreters.run_string(other, "import sys; sys.path[:0] = " + repr(sys.path) + "; import zelprofiler01")
except interpreters.RunFailedError as error: print(error)
interpreters.destroy(other)
del other
import zelprofiler01 as zel
print(round({LOSS}, 3))
""")
            self.assertRegex(done.stdout + done.stderr, "ImportError.*the first interpreter of a process")
            self.assertIn("133.769", done.stdout)

    def test_a_forked_process_computes_too(self):
        done = run_script(f"""
import os
import zelprofiler01 as zel
{LOSS}
child = os.fork()
if child == 0:
    os._exit(0 if round({LOSS}, 3) == 133.769 else 1)
print(os.waitpid(child, 0)[1])
""")
        self.assertEqual(done.stdout, "0\n")

    def test_forked_processes_read_the_terrain_that_their_parent_has_open(self):
        # They shared the place in the file: each read rows that another one looked for.
        done = run_script("""
import array, os, sys
import zelprofiler01 as zel
with open("N36W085.hgt", "wb") as tile:  # the height of a row is its number, from the north
    for row in range(3601):
        heights = array.array("h", [row]) * 3601
        heights.byteswap()
        heights.tofile(tile)
zel.set_terrain(".")
def right(column):
    west = -84.99 + 0.14 * column  # a column of blocks each
    terrain = zel.sample(36.99, west, 36.01, west, 200)
    return all(abs((37 - place) * 3600 - height) < 0.01 for place, height in zip(terrain.latitudes, terrain))
zel.sample(36.99, -84.5, 36.98, -84.5, 5)  # opens it
children = []
for column in range(6):
    child = os.fork()
    if child == 0: os._exit(0 if right(column) else 1)
    children.append(child)
assert right(6)
print([os.waitpid(child, 0)[1] for child in children])
""")
        self.assertEqual(done.stdout, str([0] * 6) + "\n")


class Memory(unittest.TestCase):
    def test_thousands_of_calls_leave_nothing_behind(self):
        done = run_script("""
import gc, resource, sys
import zelprofiler01 as zel
near = (36.44, -84.34, 30, 36.438, -84.342, 30)
class Application:
    Title = "Soak"
    Path = "."
class Plain:
    Lat, Lon, AntHt = 36.44, -84.34, 30
control = zel.ProfileControl()
application = Application()
control.SetClientApp(application)
plain = Plain()
nothing = object()
def calls():
    zel.get_path_loss(*near, 450)
    zel.get_path_loss([36.44, 10.0], *near[1:], 450)
    zel.sample(36.44, -84.34, 36.438, -84.342, 100)
    zel.profile(*near).ground_m
    zel.longley_rice([100.0, 110.0, 120.0] * 100, 30, 10, 10, 450, reliability=[0.5, 0.9], full=True)
    control.GetPathLoss(plain, near[3:])
    control.ElevLines = 3
    for wrong in (lambda: control.NoSuchMember, lambda: zel.get_path_loss(99, 0, 0, 0, 0, 0), lambda: control.GetPathLoss(1),
                  lambda: zel.longley_rice([1.0], 1, 1, 1, 1), lambda: zel.get_path_loss(nothing, 0, 0, 0, 0, 0)):
        try: wrong()
        except Exception: pass
def resident():
    return int(open("/proc/self/statm").read().split()[1]) * resource.getpagesize()
for _ in range(100): calls()
gc.collect()
before = resident(), sys.getrefcount(application), sys.getrefcount(plain), sys.getrefcount(None), len(gc.get_objects())
for _ in range(300): calls()
gc.collect()
after = resident(), sys.getrefcount(application), sys.getrefcount(plain), sys.getrefcount(None), len(gc.get_objects())
print(after[0] - before[0], *(b - a for a, b in zip(before[1:], after[1:])))
""")
        grown, application, plain, nothing, objects = map(int, done.stdout.split())
        self.assertLess(grown, 1 << 20)
        self.assertEqual((application, plain), (0, 0))
        self.assertLess(abs(nothing), 200)  # 300 rounds of calls
        self.assertLess(objects, 50)

    def test_results_keep_their_memory_when_the_result_is_gone(self):
        run_script("""
import gc
import zelprofiler01 as zel
rows = [zel.profile(36.44, -84.34, 30, 36.40, -84.30, 30).ground_m for _ in range(50)]
heights = [zel.sample(36.44, -84.34, 36.40, -84.30, 500).elevations_m for _ in range(50)]
gc.collect()
junk = [zel.profile(36.40, -84.30, 30, 36.44, -84.34, 30) for _ in range(50)]
assert all(list(row) == list(rows[0]) for row in rows) and all(list(row) == list(heights[0]) for row in heights)
assert len(rows[0]) > 100
""")


if __name__ == "__main__":
    unittest.main()
