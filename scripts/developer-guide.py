#!/usr/bin/python3
"""Keeps the code in the developer's guide (docs/developer/*.md) the same as the files it comes from.

    scripts/developer-guide.py           writes the files between their markers
    scripts/developer-guide.py --check   only says what is out of date; exit code 1 when something is

    <!-- file: examples/cpp/first_loss.cpp -->
    ```cpp
    ...
    ```
    <!-- end -->

holds the whole file, a path below docs/developer. A line <!-- headers --> in the place of the first one stands for the
table of the installed headers, one line each, with the first sentence of the header's own comment.

Also found out: an example that no page shows, and a function of zel/c_api.h that neither c.md nor members.md names.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
GUIDE = ROOT / "docs" / "developer"
HEADERS = ROOT / "include" / "zel"
LANGUAGES = {".cpp": "cpp", ".c": "c", ".py": "python", ".txt": "cmake", ".out": "text", ".err": "text"}
SHOWN = re.compile(r"(<!-- (?:file: (?P<file>\S+)|(?P<headers>headers)) -->\n).*?(<!-- end -->\n)", re.S)
# Texts that this script does not look at, for the languages in which examples are written.
EXAMPLES = ("*.cpp", "*.c", "*.py", "CMakeLists.txt")


def first_sentence(header):
    text = header.read_text(encoding="utf-8")
    comment = re.match(r"(?:(?://[^\n]*\n)+|/\*.*?\*/)", text, re.S)[0]
    plain = " ".join(re.sub(r"^\s*(?://|/?\*+/?)|\*/$", "", line).strip() for line in comment.splitlines())
    return re.match(r".*?\.(?= |$)", plain.strip())[0]


def headers_table():
    lines = ["| header | |", "|---|---|"]
    lines += [f"| `zel/{header.name}` | {first_sentence(header)} |" for header in sorted(HEADERS.glob("*.h"))]
    return "\n".join(lines) + "\n"


def shown_file(name):
    path = GUIDE / name
    return f"```{LANGUAGES[path.suffix]}\n{path.read_text(encoding='utf-8').rstrip()}\n```\n"


def filled(text):
    def fill(match):
        content = headers_table() if match["headers"] else shown_file(match["file"])
        return match[1] + content + match[4]

    return SHOWN.sub(fill, text)


def c_functions():
    return re.findall(r"ZEL_API (?:int|const char\*) (zel\w+)\(", (HEADERS / "c_api.h").read_text(encoding="utf-8"))


def faults(pages):
    shown = {match["file"] for text in pages.values() for match in SHOWN.finditer(text)}
    for pattern in EXAMPLES:
        for path in sorted((GUIDE / "examples").rglob(pattern)):
            if str(path.relative_to(GUIDE)) not in shown:
                yield f"{path.relative_to(ROOT)}: no page shows this example"
    named = pages.get("c.md", "") + pages.get("members.md", "")
    for function in c_functions():
        if not re.search(rf"\b{function}\b", named):
            yield f"include/zel/c_api.h: neither c.md nor members.md names {function}"


def main(given):
    if given not in ([], ["--check"]):
        print(__doc__, file=sys.stderr)
        return 2
    wrong, pages = [], {}
    for path in sorted(GUIDE.glob("*.md")):
        text = path.read_text(encoding="utf-8")
        try:
            pages[path.name] = filled(text)
        except FileNotFoundError as error:
            wrong.append(f"{path.relative_to(ROOT)}: there is no {error.filename}")
            continue
        if pages[path.name] == text:
            continue
        if given:
            wrong.append(f"{path.relative_to(ROOT)} is out of date: run scripts/developer-guide.py")
        else:
            path.write_text(pages[path.name], encoding="utf-8")
    wrong += faults(pages)
    print(*wrong, sep="\n", end="\n" if wrong else "", file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
