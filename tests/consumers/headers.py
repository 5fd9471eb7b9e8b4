#!/usr/bin/python3
"""Compiles every installed header by itself, as C++20, and those for C as C11 too.

    headers.py INCLUDE-FOLDER C-COMPILER C++-COMPILER
"""

import concurrent.futures
import pathlib
import subprocess
import sys

FOR_C = {"c_api.h", "export.h", "station_profile.h"}
WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Werror", "-fsyntax-only"]


def compile_header(command):
    done = subprocess.run([*command, "-"], input="extern int something;\n", capture_output=True, text=True, check=False)
    return None if done.returncode == 0 else " ".join(command) + "\n" + done.stderr


def main():
    folder = pathlib.Path(sys.argv[1])
    names = sorted(path.name for path in (folder / "zel").glob("*.h"))
    missing = FOR_C - set(names)
    if missing or len(names) < 20:
        sys.exit(f"failed: {len(names)} headers in {folder}/zel, and not there: {missing or 'none'}")
    commands = []
    for name in names:
        given = [*WARNINGS, "-I", str(folder), "-include", "zel/" + name]
        commands.append([sys.argv[3], "-std=c++20", "-x", "c++", *given])
        if name in FOR_C:
            commands.append([sys.argv[2], "-std=c11", "-x", "c", *given])
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        faults = [fault for fault in pool.map(compile_header, commands) if fault]
    print("\n".join(faults) or f"{len(commands)} compilations, {len(names)} headers")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
