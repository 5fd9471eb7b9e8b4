"""What the tests of the package share."""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

try:
    import numpy
except ImportError:
    numpy = None

# Over the bundled terrain.
A = (36.4408, -84.3433, 30.0)
B = (36.1842, -84.1283, 30.0)
PATH = (*A, *B)
# A neighbourhood of A without data.
OUTSIDE = (36.9, -84.3433, 30.0)

needs_numpy = unittest.skipIf(numpy is None, "numpy is not installed")
needs_no_numpy = unittest.skipUnless(numpy is None, "numpy is installed")


def run_script(text, *arguments, check=True, timeout=240, environment=None):
    """A process of its own, with settings of its own, that runs the text."""
    with tempfile.TemporaryDirectory() as folder:
        own = dict(os.environ, PYTHONPATH=os.environ["ZEL_TEST_PACKAGES"], PYTHONDONTWRITEBYTECODE="1",
                   XDG_CONFIG_HOME=f"{folder}/config", XDG_STATE_HOME=f"{folder}/state")
        own.update(environment or {})
        done = subprocess.run([sys.executable, "-X", "faulthandler", "-c", text, *arguments], env=own, cwd=folder,
                              capture_output=True, text=True, timeout=timeout, check=False)
    if check and done.returncode != 0:
        raise AssertionError(f"exit {done.returncode}\n{done.stdout}\n{done.stderr}")
    return done


def package_folder():
    return pathlib.Path(os.environ["ZEL_TEST_PACKAGES"]) / "zelprofiler01"


def listed(numbers):
    return [float(number) for number in numbers]
