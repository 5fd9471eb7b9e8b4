"""Several threads at once. These run under the thread sanitizer, too (scripts/thread-sanitizer.sh)."""
import concurrent.futures
import tempfile
import threading
import types
import unittest

import zelprofiler01 as zel

from support import A, B, PATH, listed, run_script

FREQUENCY = 450.0


class EightThreads(unittest.TestCase):
    JOBS = [(36.43 - i * 0.002, -84.34, 30, 36.20, -84.13, 20 + i) for i in range(40)]

    @staticmethod
    def work(job):
        return (zel.get_path_loss(*job, FREQUENCY), listed(zel.get_path_loss([job[0]] * 3, *job[1:], FREQUENCY)),
                listed(zel.profile(*job).clearance_m), listed(zel.sample(*job[:2], *job[3:5], 200)),
                zel.longley_rice(zel.sample(*job[:2], *job[3:5], 200), 100, 30, 10, 450))

    def test_compute_what_one_computes(self):
        wanted = [self.work(job) for job in self.JOBS]
        with concurrent.futures.ThreadPoolExecutor(8) as pool:
            self.assertEqual(list(pool.map(self.work, self.JOBS)), wanted)

    def test_may_be_the_first_to_compute(self):
        # Terrain, drivers and settings are met for the first time by all of them at once.
        done = run_script("""
import threading
import zelprofiler01 as zel
start = threading.Barrier(8)
found = []
def work(i):
    start.wait()
    found.append((zel.get_path_loss(36.4408, -84.3433, 30, 36.1842, -84.1283, 30, 450),
                  zel.get_path_loss([36.4408], -84.3433, 30, 36.1842, -84.1283, 30, 450)[0],
                  zel.sample(36.4408, -84.3433, 36.1842, -84.1283, 100)[99], zel.settings.get("Profile/Prf_Freq")))
threads = [threading.Thread(target=work, args=(i,)) for i in range(8)]
for thread in threads: thread.start()
for thread in threads: thread.join()
print(len(found), len(set(found)))
""")
        self.assertEqual((done.stdout, done.stderr), ("8 1\n", ""))

    def test_compute_beside_a_control(self):
        control = zel.ProfileControl()
        control.SetClientApp(types.SimpleNamespace(Title="Threads Test", Path=tempfile.gettempdir()))
        wanted = self.work(self.JOBS[0])
        done = threading.Event()
        found = []

        def elsewhere():
            while not done.is_set():
                found.append(self.work(self.JOBS[0]))

        threads = [threading.Thread(target=elsewhere) for _ in range(4)]
        for thread in threads:
            thread.start()
        for i in range(60):
            control.GetPathLoss(A, B)
            control.ElevLines = i
            zel.settings.set_for_this_run("Display/none", i)
        done.set()
        for thread in threads:
            thread.join()
        self.assertGreater(len(found), 0)
        self.assertTrue(all(each == wanted for each in found))

    def test_have_the_settings_as_of_the_last_change(self):
        self.addCleanup(zel.settings.set_for_this_run, "Profile/Prf_HtL", 30)
        control = zel.ProfileControl()
        path = (*A[:2], None, *B, FREQUENCY)
        with concurrent.futures.ThreadPoolExecutor(1) as pool:
            for height in (40, 80):
                zel.settings.set_for_this_run("Profile/Prf_HtL", height)
                self.assertEqual(pool.submit(zel.get_path_loss, *path).result(),
                                 zel.get_path_loss(*A[:2], height, *B, FREQUENCY))
        control = None

    def test_have_the_settings_before_the_control_s_own_thread_has_computed(self):
        done = run_script("""
import threading
import zelprofiler01 as zel
control = zel.ProfileControl()
found = []
path = (36.4408, -84.3433, 30, 36.1842, -84.1283, 30)
def in_a_thread():
    thread = threading.Thread(target=lambda: found.append(zel.get_path_loss(*path)))
    thread.start(); thread.join()
in_a_thread()
zel.settings.set_for_this_run("Profile/Prf_Freq", 450)
in_a_thread()
print(found == [zel.get_path_loss(*path, 100), zel.get_path_loss(*path, 450)])
""")
        self.assertEqual((done.stdout, done.stderr), ("True\n", ""))

    def test_run_while_another_computes(self):
        # A call on arrays lets others run: a thread that only counts goes on meanwhile.
        counted = []
        done = threading.Event()

        def count():
            while not done.is_set():
                counted.append(1)

        counter = threading.Thread(target=count)
        counter.start()
        try:
            before = len(counted)
            zel.get_path_loss([A[0]] * 2000, *PATH[1:], FREQUENCY)
            self.assertGreater(len(counted) - before, 100)
        finally:
            done.set()
            counter.join()


if __name__ == "__main__":
    unittest.main()
