#!/usr/bin/python3
"""Follows the links of all documents (*.md) of the project.

    scripts/check-links.py [ROOT]       prints one line for each fault, and exits 1 when there is one
    scripts/check-links.py --self-test

A fault is a link or a picture whose file is not there, or whose anchor is no heading of that file. A heading's anchor is
its text as code hosts and the guides' maker have it; where the two differ, both are asked for.
"""
import pathlib
import re
import sys
import tempfile
import urllib.parse

import markdown.extensions.toc as toc

# Trees that are made, or other people's.
LEFT_OUT = ("build", ".git")
FENCE = re.compile(r"^(```|~~~).*?^\1[^\n]*$", re.S | re.M)
LINK = re.compile(r"!?\[(?:[^\[\]]|\[[^\[\]]*\])*\]\(([^()\s]+)\)")


def prose(text):
    """Without code, in which brackets are no links."""
    text = FENCE.sub("", text)
    text = re.sub(r"^(?: {4}|\t).*$", "", text, flags=re.M)
    return re.sub(r"`[^`\n]*`", "", text)


def headings(text):
    return re.findall(r"^#{1,6} +(.+?) *#*$", FENCE.sub("", text), re.M)


def plain(heading):
    return re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading).replace("`", "").replace("*", "")


def numbered(anchors, join):
    seen, result = {}, set()
    for anchor in anchors:
        count = seen.get(anchor, 0)
        seen[anchor] = count + 1
        result.add(anchor if count == 0 else f"{anchor}{join}{count}")
    return result


def anchors(text):
    """Those that both ways of making them have."""
    names = [plain(heading) for heading in headings(text)]
    by_host = numbered((re.sub(r"[^\w\- ]", "", name.lower()).replace(" ", "-") for name in names), "-")
    by_maker = numbered((toc.slugify(name, "-") for name in names), "_")
    return by_host & by_maker


def documents(root):
    for path in sorted(root.rglob("*.md")):
        if not set(path.relative_to(root).parts[:-1]) & set(LEFT_OUT):
            yield path


def faults(root):
    texts = {path: path.read_text(encoding="utf-8") for path in documents(root)}
    for path, text in texts.items():
        for link in LINK.findall(prose(text)):
            parts = urllib.parse.urlsplit(link)
            if parts.scheme or parts.netloc:
                continue
            target = (path.parent / urllib.parse.unquote(parts.path)).resolve() if parts.path else path
            name = path.relative_to(root)
            if not target.exists():
                yield f"{name}: {link}: there is no such file"
            elif parts.fragment and (target not in texts or parts.fragment not in anchors(texts[target])):
                yield f"{name}: {link}: there is no such heading"


SOUND = {"README.md": "# Read\n\n[One](docs/a.md#two-words), [file](src/x.cpp), [here](#read), [out](https://example.org/x)\n\n"
                      "```\n[no link](gone.md)\n```\n\n    [code](gone.md)\n",
         "docs/a.md": "# A\n\n## Two words\n\n![P](p.png) `[no](gone.md)`\n", "docs/p.png": "", "src/x.cpp": ""}
BROKEN = [("README.md", "[x](docs/b.md)", "no such file"), ("README.md", "[x](docs/a.md#three)", "no such heading"),
          ("docs/a.md", "![x](q.png)", "no such file"), ("docs/a.md", "[x](#b)", "no such heading"),
          ("docs/a.md", "[x](../src/x.cpp#l1)", "no such heading")]


def self_test():
    wrong = []
    with tempfile.TemporaryDirectory() as folder:
        for number, (name, added, expected) in enumerate([("README.md", "", None), *BROKEN]):
            root = pathlib.Path(folder) / str(number)
            for file, text in SOUND.items():
                (root / file).parent.mkdir(parents=True, exist_ok=True)
                (root / file).write_text(text + ("\n" + added if file == name else ""), encoding="utf-8")
            found = list(faults(root.resolve()))
            seen = len(found) == 1 and expected in found[0] if expected else not found
            if not seen:
                wrong.append(f"{added!r}: {found}")
    print(*wrong, sep="\n", end="\n" if wrong else "")
    print(f"self-test: {len(BROKEN) + 1} samples, {len(wrong)} wrong")
    return 1 if wrong else 0


def main(given):
    if given == ["--self-test"]:
        return self_test()
    if len(given) > 1 or (given and given[0].startswith("-")):
        print(__doc__, file=sys.stderr)
        return 2
    root = pathlib.Path(given[0] if given else pathlib.Path(__file__).parent.parent).resolve()
    found = list(faults(root))
    print(*found, sep="\n", end="\n" if found else "", file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
