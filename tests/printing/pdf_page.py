"""A page of a PDF as a reader of it sees it: words with their places, lines of words, and pixels by colour.

Places are points (1/72 inch) from the page's upper left corner. The tools are those of poppler.
"""
import html
import re
import subprocess

POINTS = 72


def output_of(*command):
    done = subprocess.run(command, capture_output=True, timeout=120, check=False)
    if done.returncode != 0:
        raise RuntimeError(f"{' '.join(command)}: {done.stderr.decode(errors='replace')}")
    return done.stdout


class Text:
    """Words of one line, as they stand together."""

    def __init__(self, words):
        self.text = " ".join(word[0] for word in words)
        self.left, self.right = words[0][1], words[-1][3]
        self.top, self.bottom = min(word[2] for word in words), max(word[4] for word in words)

    def __repr__(self):
        return f"{self.text!r} at {self.left:.1f}, {self.top:.1f}"


class PdfPage:
    def __init__(self, path, number=1):
        self.path, self.number = path, number
        page = output_of("pdftotext", "-bbox", "-f", str(number), "-l", str(number), path, "-").decode()
        self.width, self.height = (float(x) for x in re.search(r'<page width="([\d.]+)" height="([\d.]+)"', page).groups())
        # (text, left, top, right, bottom)
        self.words = [(html.unescape(word[4]), *(float(x) for x in word[:4])) for word in re.findall(
            r'<word xMin="([-\d.]+)" yMin="([-\d.]+)" xMax="([-\d.]+)" yMax="([-\d.]+)">(.*?)</word>', page, re.DOTALL)]

    def lines(self, words):
        """Lists of texts that stand beside each other, from the top. A gap as wide as the letters are high parts two."""
        rows = []
        for word in sorted(words, key=lambda w: (round(w[4], 0), w[1])):
            if rows and abs(rows[-1][-1][4] - word[4]) < 2:
                rows[-1].append(word)
            else:
                rows.append([word])
        lines = []
        for row in rows:
            row.sort(key=lambda w: w[1])
            texts = [[row[0]]]
            for word in row[1:]:
                if word[1] - texts[-1][-1][3] > word[4] - word[2]:
                    texts.append([])
                texts[-1].append(word)
            lines.append([Text(words) for words in texts])
        return lines

    def pixels(self, dpi, left, width):
        """The rows of an upright strip of the page, from its top to its bottom: a rendering without antialiasing, three bytes a
        pixel. The strip is `width` pixels wide and begins at pixel `left`."""
        picture = output_of("pdftoppm", "-r", str(dpi), "-aa", "no", "-aaVector", "no", "-f", str(self.number), "-l",
                            str(self.number), "-x", str(left), "-W", str(width), self.path)
        kind, size, depth, data = picture.split(b"\n", 3)
        assert (kind, depth) == (b"P6", b"255"), "no pixels"
        given, height = (int(x) for x in size.split())
        assert given == width, "the strip is not as wide as asked for"
        return [data[y * width * 3:(y + 1) * width * 3] for y in range(height)]


def facts(path):
    """Of the whole document: what pdfinfo says."""
    return dict(re.findall(r"^(.*?): +(.*)$", output_of("pdfinfo", path).decode(), re.MULTILINE))


def fonts(path):
    """(name, whether it is embedded)"""
    rows = output_of("pdffonts", path).decode().splitlines()[2:]
    return [(row.split()[0], row.split()[-5] == "yes") for row in rows]


def images(path):
    return output_of("pdfimages", "-list", path).decode().splitlines()[2:]
