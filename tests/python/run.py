#!/usr/bin/python3
"""Runs the tests of the Python package under Python's own runner.

  run.py PACKAGES [--without-numpy] [MODULE...]

PACKAGES is the folder that has zelprofiler01. Without modules all of them run, each in a process of its own: the component
is one for a process, and its settings for a run stay. Settings and logs are the run's own.
"""
import importlib.abc
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent


class NoNumpy(importlib.abc.MetaPathFinder):
    """A machine on which numpy is not installed."""

    def find_spec(self, name, path, target=None):
        if name.partition(".")[0] == "numpy":
            raise ModuleNotFoundError("No module named 'numpy'", name="numpy")
        return None


def run_modules(packages, modules):
    sys.path[:0] = [packages, str(HERE)]
    sys.dont_write_bytecode = True
    os.environ["ZEL_TEST_PACKAGES"] = packages
    with tempfile.TemporaryDirectory() as folder:
        for name in ("CONFIG", "STATE", "CACHE", "DATA"):
            os.environ[f"XDG_{name}_HOME"] = os.path.join(folder, name.lower())
        suite = unittest.defaultTestLoader.loadTestsFromNames(modules)
        result = unittest.TextTestRunner(verbosity=2).run(suite)
    return result.wasSuccessful() and result.testsRun > 0


def run_all(arguments):
    modules = sorted(file.stem for file in HERE.glob("test_*.py"))
    if not modules:
        sys.exit(f"there are no tests in {HERE}")
    failed = [module for module in modules
              if subprocess.run([sys.executable, __file__, *arguments, module], check=False).returncode != 0]
    print(f"{len(modules)} modules, failed: {' '.join(failed) or 'none'}")
    return not failed


def main():
    packages, *modules = sys.argv[1:]
    options = [option for option in modules if option.startswith("--")]
    modules = modules[len(options):]
    if not modules:
        return run_all([packages, *options])
    if "--without-numpy" in options:
        sys.meta_path.insert(0, NoNumpy())
    return run_modules(packages, modules)


if __name__ == "__main__":
    sys.exit(0 if main() else 1)
