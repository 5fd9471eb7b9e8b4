#!/usr/bin/python3
"""Runs the command-line cases of one file against a program.

A file is a list of cases, each with a name that is a sentence, and steps or one step itself:
  args      list of arguments; {dir} is the case's own empty folder, {data} the bundled terrain's
  stdin     text given on standard input
  to        a device that standard output goes to
  exit      expected exit code, 0 unless given
  stdout    expected text (whole), or
  out       list of regular expressions, each found in standard output
  err       list of regular expressions, each found in standard error; [] means that it is empty
  not_out   list of regular expressions that must not be found in standard output
  files     object: file name below {dir} -> list of regular expressions found in it, or null: it must not exist
  only      list of the names below {dir} after the step, but for the folders of settings and state
  env       object: environment variable -> value for the step, or null: it is not set
  png       object: file name below {dir} -> [width, height] in pixels of the PNG that it is
  svg       object: file name below {dir} -> [width, height, texts...] of the SVG that it is, texts among its text elements
  write     object: file name below {dir} -> content, written before the step
  json      object: path with dots -> expected value, a number with a tolerance as [value, tolerance], of standard output
  csv       object: "header" (list), "rows" (count), "cells" (list of [row, column name, value, tolerance])
Every case has settings of its own. Standard error is expected to be one line when the exit code is not 0.
"""
import contextlib
import csv
import io
import json
import os
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree


def at(value, path):
    for part in path.split("."):
        value = value[int(part)] if isinstance(value, list) else value[part]
    return value


def near(found, wanted):
    if isinstance(wanted, list) and len(wanted) == 2 and all(isinstance(x, (int, float)) for x in wanted):
        return isinstance(found, (int, float)) and abs(found - wanted[0]) <= wanted[1]
    return found == wanted


def check_step(program, step, folder, environment):
    def fill(text):
        return text.replace("{dir}", folder).replace("{data}", os.path.join(os.environ["ZEL_SOURCE_DIR"], "data", "terrain"))

    faults = []
    for name, content in step.get("write", {}).items():
        path = os.path.join(folder, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(content)
    for name, value in step.get("env", {}).items():
        environment = dict(environment, **{name: fill(value or "")})
        if value is None:
            del environment[name]
    with open(step["to"], "w", encoding="utf-8") if "to" in step else contextlib.nullcontext(subprocess.PIPE) as out:
        done = subprocess.run([program] + [fill(a) for a in step["args"]], input=step.get("stdin", ""), cwd=folder,
                              env=environment, stdout=out, stderr=subprocess.PIPE, text=True, errors="replace", timeout=250,
                              check=False)
    done.stdout = done.stdout or ""
    wanted = step.get("exit", 0)
    if done.returncode != wanted:
        faults.append(f"exit code {done.returncode}, wanted {wanted}")
    if wanted != 0 and len(done.stderr.splitlines()) != 1:
        faults.append("a failure is told in one line on standard error")
    if "stdout" in step and done.stdout != fill(step["stdout"]):
        faults.append(f"standard output is not {fill(step['stdout'])!r}")
    for name, text, patterns in (("standard output", done.stdout, step.get("out", [])),
                                 ("standard error", done.stderr, step.get("err", []))):
        faults += [f"{pattern!r} not in {name}" for pattern in patterns if not re.search(fill(pattern), text)]
    if step.get("err") == [] and done.stderr:
        faults.append("standard error is not empty")
    faults += [f"{p!r} in standard output" for p in step.get("not_out", []) if re.search(fill(p), done.stdout)]
    for name, patterns in step.get("files", {}).items():
        path = os.path.join(folder, name)
        if patterns is None:
            if os.path.exists(path):
                faults.append(f"{name} exists")
            continue
        try:
            with open(path, encoding="utf-8", newline="") as file:
                content = file.read()
        except OSError as error:
            faults.append(str(error))
            continue
        faults += [f"{p!r} not in {name}" for p in patterns if not re.search(p, content)]
    if "only" in step:
        found = sorted(set(os.listdir(folder)) - {"config", "state"})
        if found != step["only"]:
            faults.append(f"the folder has {found}, wanted {step['only']}")
    for name, size in step.get("png", {}).items():
        with contextlib.suppress(OSError), open(os.path.join(folder, name), "rb") as file:
            head = file.read(24)
            if head[:8] == b"\x89PNG\r\n\x1a\n" and [int.from_bytes(head[i:i + 4], "big") for i in (16, 20)] == size:
                continue
        faults.append(f"{name} is no PNG of {size} pixels")
    for name, (width, height, *texts) in step.get("svg", {}).items():
        try:
            root = xml.etree.ElementTree.parse(os.path.join(folder, name)).getroot()
        except (OSError, xml.etree.ElementTree.ParseError) as error:
            faults.append(f"{name}: {error}")
            continue
        space = "{http://www.w3.org/2000/svg}"
        if [root.tag, root.get("width"), root.get("height")] != [space + "svg", str(width), str(height)]:
            faults.append(f"{name} is no SVG of {width} x {height} pixels")
        there = {"".join(element.itertext()) for element in root.iter(space + "text")}
        faults += [f"{text!r} is no text of {name}" for text in texts if text not in there]
        if root.find(space + "title") is None or root.find(space + "desc") is None:
            faults.append(f"{name} has no title or description")
    if "json" in step:
        try:
            found = json.loads(done.stdout)
            for path, value in step["json"].items():
                if not near(at(found, path), value):
                    faults.append(f"{path} is {at(found, path)!r}, wanted {value!r}")
        except (ValueError, KeyError, IndexError, TypeError) as error:
            faults.append(f"JSON: {error!r}")
    if "csv" in step:
        rows = list(csv.DictReader(io.StringIO(done.stdout)))
        if "rows" in step["csv"] and len(rows) != step["csv"]["rows"]:
            faults.append(f"{len(rows)} rows")
        if "header" in step["csv"] and (not rows or list(rows[0]) != step["csv"]["header"]):
            faults.append("header")
        for row, column, value, tolerance in step["csv"].get("cells", []):
            if row >= len(rows) or abs(float(rows[row][column]) - value) > tolerance:
                faults.append(f"row {row} {column}: {rows[row][column] if row < len(rows) else 'missing'}, wanted {value}")
    if faults:
        faults.append(f"arguments: {step['args']}\n--- standard output\n{done.stdout[:3000]}\n--- standard error\n{done.stderr[:2000]}")
    return faults


def main():
    program, file = sys.argv[1:3]
    with open(file, encoding="utf-8") as cases_file:
        cases = json.load(cases_file)
    failed = 0
    for case in cases:
        with tempfile.TemporaryDirectory() as folder:
            environment = dict(os.environ, XDG_CONFIG_HOME=os.path.join(folder, "config"),
                               XDG_STATE_HOME=os.path.join(folder, "state"), HOME=folder)
            for step in case.get("steps", [case]):
                faults = check_step(program, step, folder, environment)
                if faults:
                    failed += 1
                    print(f"FAILED: {case['name']}")
                    for fault in faults:
                        print("   " + fault)
                    break
    print(f"{len(cases) - failed} of {len(cases)} cases passed")
    return 1 if failed or not cases else 0


if __name__ == "__main__":
    sys.exit(main())
