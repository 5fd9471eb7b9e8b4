#!/usr/bin/python3
"""Makes a guide: HTML from docs/guide/*.md, the user's, or docs/developer/*.md, the host developer's.

    scripts/make-guide.py [--guide users|developers] [--pictures-may-be-missing] [--root ROOT] OUTPUT
    scripts/make-guide.py --self-test

Writes one page for each Markdown file, the stylesheet and the pictures to the folder OUTPUT. index.md says by its links
which pages there are and in which order. The same sources give the same bytes.

Prints one line for each fault and exits 1 when there is one:
- a link to a page, a heading or a file that is not there;
- a picture that is not there (with --pictures-may-be-missing that is a warning);
- a page that index.md does not name;
- a message that the program does not have. Messages stand in the guide as **"text"**, with ... for what varies;
- a setting (`Profile/Prf_Freq`) whose key the program does not have.
A link to the first page of the other guide leads to where that is installed, beside this one.
A link from numbers.md to another file of the project is shown as text, since that file is not installed beside it.
"""

import argparse
import dataclasses
import html
import html.parser
import pathlib
import posixpath
import re
import shutil
import sys
import tempfile
import urllib.parse

import markdown

FIRST = "index.md"
STYLES = "docs/guide"
STYLE = "guide.css"
SOURCES = ["src", "host"]



@dataclasses.dataclass(frozen=True)
class Guide:
    folder: str
    shared: tuple  # pages that stand beside the guide, because they are the project's documents too


GUIDES = {
    "users": Guide("docs/guide", ("docs/numbers.md",)),
    "developers": Guide("docs/developer", ("docs/numbers.md", "docs/file-formats.md")),
}

# ---- What the program says -------------------------------------------------------------------------------------

STRING = r'"(?:[^"\\\n]|\\.)*"'
# A comment is matched first, so that a text quoted in it counts for nothing; so is a character, for its quote.
TOKEN = re.compile(rf"//[^\n]*|/\*.*?\*/|'(?:[^'\\\n]|\\.)'|(?P<text>{STRING}(?:\s*{STRING})*)", re.S)
ESCAPES = {"n": " ", "r": "", "t": " ", '"': '"', "\\": "\\"}


def plain(text):
    """With single blanks and without the mark of a mnemonic."""
    return " ".join(text.replace("&", "").split())


def literals(source):
    """The texts of a C++ source, neighbouring ones joined as the compiler does."""
    for match in TOKEN.finditer(source):
        if match["text"] is None:
            continue
        parts = re.findall(STRING, match["text"], re.S)
        joined = "".join(part[1:-1] for part in parts)
        yield plain(re.sub(r"\\(.)", lambda escape: ESCAPES.get(escape[1], ""), joined))


def program_texts(root):
    texts = set()
    for folder in SOURCES:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix in (".cpp", ".h"):
                texts.update(literals(path.read_text(encoding="utf-8")))
    return texts


MESSAGE = re.compile(r'\*\*"(.+?)"\*\*')
SETTING = re.compile(r"`(Profile|Settings|AMMap|Contour|Colors|ITM|Terrain|PTP|LinkBudget)/(\w+)`")


def text_faults(page, source, texts):
    for message in MESSAGE.findall(source):
        parts = [plain(part) for part in message.split("...")]
        # What stands between two parts that vary may be as short as " to ", which is no message of its own.
        for part in (part for part in parts if len(part) > 3 or len(parts) == 1):
            if not any(part in text for text in texts):
                yield f'{page}: the program has no message with "{part}"'
    for section, key in SETTING.findall(source):
        if key not in texts:
            yield f"{page}: the program has no setting {section}/{key}"


# ---- Pages -----------------------------------------------------------------------------------------------------


class Page:
    def __init__(self, root, path):
        self.path = path  # below the root, as "docs/guide/plot.md"
        self.name = posixpath.basename(path)
        self.target = posixpath.splitext(self.name)[0] + ".html"
        self.source = (root / path).read_text(encoding="utf-8")
        self.body = markdown.markdown(self.source, extensions=["tables", "toc", "sane_lists", "fenced_code"], output_format="html")
        # (anchor, HTML) of each second-level heading.
        self.headings = re.findall(r'<h2 id="([^"]*)">(.*?)</h2>', self.body, re.S)
        title = re.search(r"^# (.+)$", self.source, re.M)
        self.title = title[1] if title else self.name


class Reader(html.parser.HTMLParser):
    """The anchors, links and pictures of a page."""

    def __init__(self, text):
        super().__init__()
        self.ids, self.links, self.pictures = set(), [], []
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        if values.get("id"):
            self.ids.add(values["id"])
        if tag == "a" and values.get("href"):
            self.links.append(values["href"])
        if tag == "img":
            self.pictures.append(values.get("src") or "")


def is_outside(link):
    return bool(urllib.parse.urlsplit(link).scheme)


def resolve(page, link):
    """A link's file below the root, and its anchor."""
    parts = urllib.parse.urlsplit(link)
    file = posixpath.normpath(posixpath.join(posixpath.dirname(page.path), parts.path)) if parts.path else page.path
    return urllib.parse.unquote(file), urllib.parse.unquote(parts.fragment)


def load_pages(root, guide):
    """The pages in the order of the first one's links, and what is wrong with that."""
    first = Page(root, f"{guide.folder}/{FIRST}")
    pages, faults = {first.path: first}, []
    for link in Reader(first.body).links:
        file, _ = resolve(first, link)
        if is_outside(link) or file in pages or not file.endswith(".md") or not (root / file).is_file():
            continue
        if posixpath.dirname(file) == guide.folder or file in guide.shared:
            pages[file] = Page(root, file)
    for path in sorted((root / guide.folder).glob("*.md")):
        if f"{guide.folder}/{path.name}" not in pages:
            faults.append(f"{guide.folder}/{path.name}: {FIRST} has no link to this page")
    names = [page.target for page in pages.values()]
    faults += [f"{name}: two pages have this name" for name in sorted(set(names)) if names.count(name) > 1]
    return pages, faults


def other_guide(file, guide):
    """The folder of another guide whose first page the file is, as installed beside this one; else None."""
    for other in GUIDES.values():
        if other is not guide and file == f"{other.folder}/{FIRST}":
            return posixpath.basename(other.folder)
    return None


def link_faults(root, page, pages, guide):
    for link in Reader(page.body).links:
        if is_outside(link):
            continue
        file, anchor = resolve(page, link)
        if file in pages:
            if anchor and anchor not in Reader(pages[file].body).ids:
                yield f"{page.path}: {link}: there is no such heading"
        elif not (root / file).exists():
            yield f"{page.path}: {link}: there is no such file"
        elif page.path not in guide.shared and not other_guide(file, guide):
            yield f"{page.path}: {link}: the file is no page of the guide"


def picture_faults(root, page, guide):
    for picture in Reader(page.body).pictures:
        file, _ = resolve(page, picture)
        if is_outside(picture) or not file.startswith(guide.folder + "/"):
            yield f"{page.path}: {picture}: pictures stand below {guide.folder}"
        elif not (root / file).is_file():
            yield f"{page.path}: {picture}: there is no such picture"


def linked_body(page, pages, guide):
    """The page's text with its links led to the pages as they are written."""

    def lead(match):
        link = html.unescape(match["href"])
        if is_outside(link):
            return match[0]
        file, anchor = resolve(page, link)
        if beside := other_guide(file, guide):
            return f'<a href="../{beside}/index.html">{match["text"]}</a>'
        if file not in pages:
            return match["text"]
        target = pages[file].target + (f"#{anchor}" if anchor else "")
        return f'<a href="{html.escape(target)}">{match["text"]}</a>'

    return re.sub(r'<a href="(?P<href>[^"]*)">(?P<text>.*?)</a>', lead, page.body, flags=re.S)


# ---- Output ----------------------------------------------------------------------------------------------------


def navigation(page, pages):
    lines = ["<ul>"]
    for other in pages:
        here = ' aria-current="page"' if other is page else ""
        lines.append(f'<li><a href="{other.target}"{here}>{html.escape(other.title)}</a>')
        if other is page and page.headings and page is not pages[0]:
            entries = (f'<li><a href="#{anchor}">{name}</a></li>' for anchor, name in page.headings)
            lines += ["<ul>", *entries, "</ul>"]
        lines.append("</li>")
    return "\n".join([*lines, "</ul>"])


def neighbours(page, pages):
    at = pages.index(page)
    before = f'<a rel="prev" href="{pages[at - 1].target}">{html.escape(pages[at - 1].title)}</a>' if at > 0 else ""
    behind = pages[at + 1] if at + 1 < len(pages) else None
    after = f'<a rel="next" href="{behind.target}">{html.escape(behind.title)}</a>' if behind else ""
    return f"<footer><span>{before}</span><span>{after}</span></footer>"


def document(page, pages, by_path, guide):
    return f"""<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<title>{html.escape(page.title)}</title>
<link rel="stylesheet" href="{STYLE}">
</head>
<body>
<nav class="pages" aria-label="Pages of the guide">
{navigation(page, pages)}
</nav>
<main>
{linked_body(page, by_path, guide)}
{neighbours(page, pages)}
</main>
</body>
</html>
"""


def write(root, by_path, output, guide):
    pages = list(by_path.values())
    output.mkdir(parents=True, exist_ok=True)
    for page in pages:
        (output / page.target).write_text(document(page, pages, by_path, guide), encoding="utf-8", newline="\n")
    shutil.copyfile(root / STYLES / STYLE, output / STYLE)
    for page in pages:
        for picture in Reader(page.body).pictures:
            file, _ = resolve(page, picture)
            if (root / file).is_file():
                target = output / posixpath.relpath(file, guide.folder)
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copyfile(root / file, target)
    # A page that was renamed must not stay under its old name.
    written = {page.target for page in pages}
    for old in output.glob("*.html"):
        if old.name not in written:
            old.unlink()


def make(root, output, pictures_may_be_missing, guide=GUIDES["users"]):
    """The faults and the warnings; without faults the guide is written."""
    pages, faults = load_pages(root, guide)
    texts, missing = program_texts(root), []
    for page in pages.values():
        faults += link_faults(root, page, pages, guide)
        missing += picture_faults(root, page, guide)
        if page.path not in guide.shared:
            faults += text_faults(page.path, page.source, texts)
    if not pictures_may_be_missing:
        faults, missing = faults + missing, []
    if not faults:
        write(root, pages, output, guide)
    return faults, missing


# ---- Self-test -------------------------------------------------------------------------------------------------

SOUND = {
    "docs/guide/index.md": "# Guide\n\n- [Plot](plot.md)\n- [Numbers](../numbers.md#two)\n",
    "docs/guide/plot.md": '# Plot\n\n## Ground\n\nSays **"Over Range Error."** and **"File ... is gone: ..."**, '
    'asks **"Clear? Continue?"**; `Profile/Prf_Freq`.\n\n![A plot](pictures/plot.png)\n\n[Up](index.md), [here](#ground)\n',
    "docs/guide/guide.css": "body { margin: 0; }\n",
    "docs/guide/pictures/plot.png": "picture",
    "docs/numbers.md": "# Numbers\n\n## Two\n\n[Readme](../README.md#use)\n",
    "README.md": "# Readme\n",
    "src/a.cpp": 'say("Over Range " "Error."); // "Commented."\nask("Clear?\\r\\nContinue?");\n'
    "char q = '\"'; tell(\"File \" + name + \" is gone: \"); key(\"Prf_Freq\");\n",
    "host/b.cpp": "",
}
HOSTS = {"docs/developer/index.md": "# Hosts\n\n[Numbers](../numbers.md), [formats](../file-formats.md)\n\n```cpp\nint x;\n```\n",
         "docs/file-formats.md": "# Formats\n"}
# (file, its text in place of the sound one or None for no file, a part of the expected fault)
FAULTS = [
    ("docs/guide/index.md", "# Guide\n\n[Numbers](../numbers.md)\n", "index.md has no link to this page"),
    ("docs/guide/plot.md", "# Plot\n\n[Gone](gone.md)\n", "gone.md: there is no such file"),
    ("docs/guide/plot.md", "# Plot\n\n[Gone](#gone)\n", "#gone: there is no such heading"),
    ("docs/guide/plot.md", "# Plot\n\n[Three](../numbers.md#three)\n", "there is no such heading"),
    ("docs/guide/plot.md", "# Plot\n\n[Readme](../../README.md)\n", "no page of the guide"),
    ("docs/guide/plot.md", '# Plot\n\n**"Under Range Error."**\n', 'no message with "Under Range Error."'),
    ("docs/guide/plot.md", '# Plot\n\n**"Commented."**\n', 'no message with "Commented."'),
    ("docs/guide/plot.md", '# Plot\n\n**"File ... is lost"**\n', 'no message with "is lost"'),
    ("docs/guide/plot.md", "# Plot\n\n`Profile/Prf_Gone`\n", "no setting Profile/Prf_Gone"),
    ("docs/guide/plot.md", "# Plot\n\n![Out](../out.png)\n", "pictures stand below"),
    ("docs/guide/pictures/plot.png", None, "no such picture"),
    ("README.md", None, "README.md#use: there is no such file"),
]


def lay_out(root, files):
    for name, text in files.items():
        if text is None:
            continue
        path = root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")


def contents(folder):
    return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def self_test():
    wrong = []

    def expect(fine, what):
        if not fine:
            wrong.append(what)

    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        lay_out(root / "sound", SOUND)
        one, two = root / "one", root / "two"
        lay_out(one, {"old.html": "renamed"})
        expect(make(root / "sound", one, False) == ([], []), "the sound guide has faults")
        make(root / "sound", two, False)
        made = contents(one)
        expect(made == contents(two), "two runs differ")
        names = {"index.html", "plot.html", "numbers.html", STYLE, "pictures/plot.png"}
        expect(set(made) == names, f"written: {sorted(made)}")
        expect(b'href="numbers.html#two"' in made["index.html"], "a link does not lead to its page")
        expect(b"README.md" not in made["numbers.html"], "a link leads out of the guide")
        expect(b'href="#ground">Ground' in made["plot.html"], "a page has no table of contents")

        for number, (name, text, expected) in enumerate(FAULTS):
            broken, output = root / f"broken{number}", root / f"output{number}"
            lay_out(broken, {**SOUND, name: text})
            faults, _ = make(broken, output, False)
            expect(any(expected in fault for fault in faults), f"{name}: expected {expected!r}, found {faults}")
            expect(not output.exists(), f"{name}: written in spite of {expected!r}")

        lay_out(root / "hosts", {**SOUND, **HOSTS})
        expect(make(root / "hosts", root / "developer", False, GUIDES["developers"]) == ([], []), "the developer's guide has faults")
        expect(b"<pre><code class=\"language-cpp\">int x;" in contents(root / "developer")["index.html"], "code is not set as code")

        both = {**HOSTS, "docs/guide/index.md": SOUND["docs/guide/index.md"] + "- [Hosts](../developer/index.md)\n"}
        lay_out(root / "both", {**SOUND, **both})
        expect(make(root / "both", root / "users", False) == ([], []), "a link to the other guide is a fault")
        expect(b'href="../developer/index.html">Hosts' in contents(root / "users")["index.html"], "the other guide is not linked")

        lay_out(root / "bare", {**SOUND, "docs/guide/pictures/plot.png": None})
        faults, warnings = make(root / "bare", root / "barely", True)
        expect(not faults and len(warnings) == 1, "a missing picture that may be missing is no mere warning")
    print(*wrong, sep="\n", end="\n" if wrong else "")
    print(f"self-test: {len(FAULTS) + 11} samples, {len(wrong)} wrong")
    return not wrong


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--self-test", action="store_true")
    parser.add_argument("--pictures-may-be-missing", action="store_true")
    parser.add_argument("--guide", choices=GUIDES, default="users")
    parser.add_argument("--root", type=pathlib.Path, default=pathlib.Path(__file__).resolve().parent.parent)
    parser.add_argument("output", nargs="?", type=pathlib.Path, metavar="OUTPUT")
    options = parser.parse_args(arguments)
    if options.self_test:
        return 0 if self_test() else 1
    if options.output is None:
        parser.error("OUTPUT is missing")
    faults, warnings = make(options.root, options.output, options.pictures_may_be_missing, GUIDES[options.guide])
    for fault in faults:
        print(f"error: {fault}", file=sys.stderr)
    for warning in warnings:
        print(f"warning: {warning}", file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
