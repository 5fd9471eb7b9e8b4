"""The examples run, and their pictures are pictures."""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

EXAMPLES = pathlib.Path(__file__).resolve().parents[2] / "python/examples"


class TheExample(unittest.TestCase):
    def test_draws_a_link_and_its_loss_over_the_distance(self):
        with tempfile.TemporaryDirectory() as folder:
            environment = dict(os.environ, PYTHONPATH=os.environ["ZEL_TEST_PACKAGES"])
            done = subprocess.run([sys.executable, str(EXAMPLES / "link_profile.py"), folder], env=environment, timeout=120,
                                  capture_output=True, text=True, check=False)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertRegex(done.stdout, r"(?s)23\.1 km at 210\.\d degrees: marginal\n.*20 % of.*modeled loss 1\d\d\.\d dB, free space 112")
            files = sorted(os.listdir(folder))
            self.assertEqual(files, ["loss.svg", "profile.png", "profile.svg"])
            self.assertTrue((pathlib.Path(folder) / "profile.png").read_bytes().startswith(b"\x89PNG"))
            chart = xml.etree.ElementTree.parse(pathlib.Path(folder) / "loss.svg").getroot()
            lines = [path for path in chart.iter("{http://www.w3.org/2000/svg}path") if path.get("d").count("L") > 100]
            self.assertEqual(len(lines), 3)
            xml.etree.ElementTree.parse(pathlib.Path(folder) / "profile.svg")

    def test_is_the_only_one_or_has_a_test_here(self):
        self.assertEqual([file.name for file in EXAMPLES.glob("*.py")], ["link_profile.py"])


if __name__ == "__main__":
    unittest.main()
