#!/usr/bin/python3
"""The package of an installed tree: imported from below the prefix it uses the prefix's library and terrain.

  installed.py CMAKE BUILD WORK
"""
import os
import pathlib
import shutil
import subprocess
import sys

SCRIPT = """
import pathlib, sys
import zelprofiler01 as zel
prefix = pathlib.Path(sys.argv[1])
loss = zel.path_loss(36.4408, -84.3433, 30, 36.1842, -84.1283, 30, 450)
libraries = {line.split()[-1] for line in open("/proc/self/maps") if "zelProfiler01.so" in line or "_zelprofiler01" in line}
for file in (*libraries, zel.__file__, *loss.terrain.files):
    assert prefix in pathlib.Path(file).parents, file
assert len(libraries) == 2, libraries
assert (pathlib.Path(zel.__file__).parent / "py.typed").exists()
print(round(loss.modeled_db, 2))
"""


def main():
    cmake, build, work = sys.argv[1:]
    prefix = pathlib.Path(work).resolve() / "prefix"
    shutil.rmtree(prefix, ignore_errors=True)
    subprocess.run([cmake, "--install", build, "--prefix", str(prefix)], check=True, stdout=subprocess.DEVNULL)
    package = prefix / "lib/python3/dist-packages"
    environment = dict(os.environ, PYTHONPATH=str(package), PYTHONDONTWRITEBYTECODE="1")
    environment.pop("LD_LIBRARY_PATH", None)
    done = subprocess.run(["/usr/bin/python3", "-c", SCRIPT, str(prefix)], env=environment, capture_output=True, text=True,
                          timeout=120, check=False)
    print(done.stdout, done.stderr, sep="")
    left = [file for file in package.rglob("*") if "__pycache__" in file.parts]
    if left:
        print(f"compiled files are installed: {left}")
    shutil.rmtree(prefix)
    return 0 if done.returncode == 0 and done.stdout == "133.77\n" and not left else 1


if __name__ == "__main__":
    sys.exit(main())
