#!/usr/bin/python3
"""Makes the man pages, gzipped: terrain-profiler(1) from the program's description of its commands, and vexptp.exe(1).

    make_man_pages.py COMMANDS.json FOLDER

The same sources give the same bytes.
"""

import gzip
import pathlib
import sys

import command_tree

HERE = pathlib.Path(__file__).resolve().parent


def roff(text):
    """The text as roff shows it letter by letter."""
    text = text.replace("\\", "\\e").replace("-", "\\-").replace("'", "\\(aq").replace("~", "\\(ti").replace("^", "\\(ha")
    return "\n".join("\\&" + line if line.startswith((".", "\\(aq")) else line for line in text.split("\n"))


def bold(text):
    return "\\fB" + roff(text) + "\\fP"


def italic(text):
    return "\\fI" + roff(text) + "\\fP"


def signature(option):
    """"-o, --output FILE.csv", as it heads an option's text."""
    if not option.names[0].startswith("-"):
        return italic(option.names[0]) + (" ..." if option.repeatable else "")
    text = ", ".join(bold(name) for name in option.names)
    return text + (" " + italic(option.value) if option.value else "")


def described(option):
    sentence = option.description.strip()
    if sentence and not sentence.endswith((".", "]")):
        sentence += "."
    remarks = []
    if any(choice not in option.value + option.description for choice in option.choices):
        remarks.append("One of " + ", ".join(option.choices) + ".")
    if option.default:
        remarks.append(option.default + " unless given.")
    if option.required and option.names[0].startswith("-"):
        remarks.append("Must be given.")
    return roff(" ".join([sentence, *remarks]).strip())


def options_text(options):
    lines = []
    for option in options:
        lines += [".TP", signature(option), described(option)]
    return lines


def footer_text(footer):
    """Sentences flow; what is indented, and what a line ends with a colon for, is an example."""
    lines, in_example = [], False
    for line in footer.split("\n"):
        example = line.startswith("  ")
        if example != in_example:
            lines.append(".EX" if example else ".EE")
            in_example = example
        if line in ("Example:", "Examples:"):
            lines += [".PP", bold(line[:-1])]
        elif not line.strip():
            lines.append(".PP")
        else:
            lines.append(roff(line[2:] if example else line))
    if in_example:
        lines.append(".EE")
    return [".PP", *lines] if footer else []


def synopsis_of(command):
    words = [bold(" ".join(command.path))]
    if command.commands:
        return words[0] + " " + italic("command") + " ..."
    for option in command.options:
        if option.required:
            words.append(bold(option.names[0]) + " " + italic(option.value))
    if any(not option.required and option.names[0] not in ("-h", "--version") for option in command.options):
        words.append("[" + italic("option") + " ...]")
    for argument in command.arguments:
        name = italic(argument.names[0]) + (" ..." if argument.repeatable else "")
        words.append(name if argument.required else "[" + name + "]")
    return " ".join(words)


def command_section(command):
    lines = [".SS " + roff(" ".join(command.path[1:])), roff(command.description) + ".", ".PP"]
    lines.append(synopsis_of(command))
    own = [option for option in command.options if "--help" not in option.names]
    lines += options_text([argument for argument in command.arguments if argument.description])
    lines += options_text(own)
    lines += footer_text(command.footer)
    return lines


def settings_section(settings):
    lines = [
        ".SH SETTINGS",
        "Kept per user, and set by",
        bold("terrain-profiler settings set") + ", or for one run by " + bold("--set") + ".",
    ]
    for setting in settings:
        facts = [setting["meaning"]]
        if setting["unit"]:
            facts.append(setting["unit"])
        text = ", ".join(facts)
        if setting["range"]:
            text += "; " + setting["range"]
        default = setting["default"] or "empty"
        lines += [".TP", bold(setting["name"]) + " (" + roff(default) + ")", roff(text) + "."]
    return lines


FILES = [
    ("~/.config/zelprofiler/Terrain Profiler.ini", "The settings; below XDG_CONFIG_HOME where that is set."),
    (
        "~/.local/state/terrain-profiler",
        "The error log, and copies of plans that were not saved; below XDG_STATE_HOME where that is set.",
    ),
    ("~/.cache/zelprofiler/overviews", "Overviews of terrain, which may be deleted; below XDG_CACHE_HOME where that is set."),
]
ENVIRONMENT = [
    ("DISPLAY, WAYLAND_DISPLAY", "Where windows are shown: the map, and those of the command show."),
    ("XDG_CONFIG_HOME, XDG_STATE_HOME, XDG_CACHE_HOME", "See FILES."),
    ("ZEL_DATA_DIR", "The folder with the bundled terrain and the guide, instead of the installed one."),
    ("LC_ALL, LC_NUMERIC", "The decimal separator of the exported CSV files. Everything else has a point."),
    ("PATH", "Where gnuplot is looked for while the setting Settings/gnuPlotEXE is not set."),
]


def terms(title, pairs):
    lines = [".SH " + title]
    for term, text in pairs:
        lines += [".TP", italic(term) if "/" in term else bold(term), roff(text)]
    return lines


def split_footer(footer):
    """The program's own footer: about positions, and its examples."""
    about, _, examples = footer.partition("\n\nExamples:\n")
    return about, "\n".join(line for line in examples.split("\n") if line.startswith("  "))


def page(program):
    about, examples = split_footer(program.footer)
    sentences = program.description.split("\n")
    lines = [
        '.TH TERRAIN\\-PROFILER 1 "" "terrain\\-profiler ' + roff(program.version) + '" "User Commands"',
        ".SH NAME",
        "terrain\\-profiler \\- terrain profiles, clearance and losses of radio paths",
        ".SH SYNOPSIS",
        bold("terrain-profiler") + " [" + italic("option") + " ...] [" + italic("FILE") + "]",
        ".br",
        bold("terrain-profiler") + " [" + italic("option") + " ...] " + italic("command") + " ...",
        ".SH DESCRIPTION",
        *[roff(sentence) for sentence in sentences],
        "The commands need no display, but for " + bold("show") + ".",
        ".PP",
        roff(about),
    ]
    lines += options_text(program.arguments)
    lines += [".SH OPTIONS", "Those with a value are understood in front of a command and behind it.", *options_text(program.options)]
    lines += [".SH COMMANDS", "Each has a help of its own: " + bold("terrain-profiler") + " " + italic("command") + " " + bold("--help") + "."]
    for command in list(program.all())[1:]:
        lines += command_section(command)
    lines += settings_section(program.settings)
    lines += terms("FILES", FILES) + terms("ENVIRONMENT", ENVIRONMENT)
    lines += [
        ".SH EXIT STATUS",
        "0 done; 1 failed, with one line on standard error that says what, why and what to do; 2 wrong usage; 130 interrupted; 143 asked to end.",
        ".SH EXAMPLES",
        ".EX",
        roff(examples),
        ".EE",
        ".SH SEE ALSO",
        ".BR vexptp.exe (1),",
        ".BR gnuplot (1),",
        ".BR gdalinfo (1)",
        ".PP",
        "The user's guide opens by F1 in the windows; it is " + italic("share/terrain-profiler/guide/index.html") + " beside the program's folder.",
    ]
    return "\n".join(lines) + "\n"


def write(folder, name, text):
    with open(folder / (name + ".gz"), "wb") as file:
        file.write(gzip.compress(text.encode(), 9, mtime=0))


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    program = command_tree.read(sys.argv[1])
    folder = pathlib.Path(sys.argv[2])
    write(folder, "terrain-profiler.1", page(program))
    static = (HERE / "vexptp.exe.1").read_text(encoding="utf-8")
    write(folder, "vexptp.exe.1", static.replace("@VERSION@", program.version))


if __name__ == "__main__":
    main()
