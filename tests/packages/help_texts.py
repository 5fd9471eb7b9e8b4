"""The commands and options of terrain-profiler, as its --help shows them."""

import concurrent.futures
import re
import subprocess


def help_of(program, path):
    done = subprocess.run([program, *path, "--help"], capture_output=True, text=True, check=True)
    return done.stdout


def section(text, title):
    """The lines of the help's list under a title, which ends at an empty line."""
    lines = text.split("\n")
    if title + ":" not in lines:
        return []
    below = lines[lines.index(title + ":") + 1 :]
    return below[: below.index("")] if "" in below else below


def value_name(text):
    """Without what is allowed, and without the value that stands in for none: "FILE=-"."""
    return re.sub(r"=[^A-Z].*", "", text.split(":")[0])


def options_in(text):
    """[(names, value)] of the list of options."""
    found = []
    for line in section(text, "Options"):
        head = re.match(r"  (-\S+)(?: (\S+))?", line)
        if head:
            found.append((head[1].split(","), value_name(head[2] or "")))
    return found


def commands_in(text):
    return [line.split()[0] for line in section(text, "Subcommands") if re.match(r"  \S", line)]


def read(program):
    """{path: [(names, value)]}, the program itself at ()."""
    tree = {}
    level = [()]
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        while level:
            texts = list(pool.map(lambda path: help_of(program, path), level))
            below = []
            for path, text in zip(level, texts):
                tree[path] = options_in(text)
                below += [(*path, command) for command in commands_in(text)]
            level = below
    return tree
