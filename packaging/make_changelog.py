#!/usr/bin/python3
"""Makes the Debian package's changelog, gzipped, from CHANGELOG.md.

    make_changelog.py CHANGELOG.md MAINTAINER FILE

A version that has no date in CHANGELOG.md is not released; it gets the time of SOURCE_DATE_EPOCH, or now.
"""

import datetime
import email.utils
import gzip
import os
import pathlib
import re
import sys
import textwrap


def versions(text):
    """[(version, date or None, [item, ...])], the newest first."""
    found = []
    for section in re.split(r"^## ", text, flags=re.MULTILINE)[1:]:
        head, _, body = section.partition("\n")
        version = head.split()[0]
        date = re.search(r"\d{4}-\d{2}-\d{2}", head)
        items = [" ".join(item.split()) for item in re.split(r"^- ", body, flags=re.MULTILINE)[1:]]
        found.append((version, date and date[0], items))
    return found


def plain(text):
    """Markdown's marks are no text: links, code, strong."""
    return re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", text).replace("`", "").replace("**", "")


def entry(version, date, items, maintainer):
    if date:
        when = datetime.datetime.fromisoformat(date).replace(hour=12, tzinfo=datetime.timezone.utc)
    else:
        seconds = int(os.environ.get("SOURCE_DATE_EPOCH") or datetime.datetime.now().timestamp())
        when = datetime.datetime.fromtimestamp(seconds, datetime.timezone.utc)
    lines = [f"terrain-profiler ({version}) stable; urgency=medium", ""]
    for item in items:
        lines += textwrap.wrap(plain(item), 78, initial_indent="  * ", subsequent_indent="    ")
    return "\n".join([*lines, "", f" -- {maintainer}  {email.utils.format_datetime(when)}", ""])


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    entries = versions(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))
    if not entries:
        sys.exit(f"{sys.argv[1]}: no version in it")
    text = "\n".join(entry(*one, sys.argv[2]) for one in entries)
    pathlib.Path(sys.argv[3]).write_bytes(gzip.compress(text.encode(), 9, mtime=0))


if __name__ == "__main__":
    main()
