#!/usr/bin/python3
"""Checks which way the parts of the source look at each other, and which toolkit each may see.

    scripts/check-includes.py [--self-test] [ROOT]

Prints one line for each breach and exits 1 when there is one. The rules are the tables below; --self-test holds them
against samples that break each of them, and samples that must pass.
"""

import pathlib
import re
import sys

# ---- Rules -----------------------------------------------------------------------------------------------------

# Which layer a path belongs to: the longest prefix decides.
LAYERS = {
    "include/zel/automation.h": "automation",
    "include/zel/export.h": "automation",  # what the automation header needs; of no consequence otherwise
    "include/zel/": "public",
    "src/foundation/": "foundation",
    "src/automation/": "automation",
    "src/platform/": "platform",
    "src/component/services/": "services",
    "src/component/": "component",
    "src/profile/": "profile",
    "src/profile/path_loss/": "path_loss",
    "src/models/": "models",
    "src/models/ptp/vexptp/": "ptp_program",
    "src/canvas/": "canvas",
    "src/canvas/qt/": "qt_canvas",
    "src/ui/plot/": "plot",
    "src/ui/page/": "plot",
    "src/ui/": "ui",
    "src/export/": "export",
    "src/zeltool/": "zeltool",
    "host/": "host",
    "host/planning/": "host_planning",
    "host/import/": "host_import",
    "host/links/": "host_links",
    "host/map/": "host_map",
    "host/analysis/": "host_analysis",
    "host/map_view/": "host_map_view",
    "host/preferences/": "host_preferences",
    "host/report/": "host_report",
    "host/desktop/": "host_desktop",
    "python/": "python",
    "tests/": "tests",
    "bench/": "tests",
    "fuzz/": "tests",
}

# Which other layers a layer may include. A layer always sees itself.
HOST = {"host_planning", "host_import", "host_links", "host_map", "host_analysis", "host_map_view", "host_preferences", "host_report"}
BASE = {"foundation", "automation", "platform", "services"}
MODEL = BASE | {"models", "path_loss", "profile"}
MAY_SEE = {
    "foundation": set(),
    "automation": {"foundation"},
    "public": {"automation"},
    "platform": {"foundation", "automation"},
    "services": {"foundation", "automation", "platform"},
    "models": {"foundation"},
    # A program of its own over the model, with the files and levels of the exports.
    "ptp_program": {"foundation", "models", "export"},
    "profile": BASE | {"path_loss"},
    "path_loss": BASE | {"models", "profile"},
    "canvas": {"foundation"},
    # The services for files that are written whole.
    "qt_canvas": BASE | {"canvas"},
    "export": MODEL,
    "plot": MODEL | {"canvas"},
    "ui": MODEL | {"export", "plot", "canvas", "qt_canvas"},
    "zeltool": {"foundation", "automation", "platform"},
    # The component makes the tool objects in its set-up and passes them in.
    "component": MODEL | {"export", "plot", "ui", "canvas", "qt_canvas", "zeltool", "public"},
    # Whoever uses the component sees what is installed, and nothing behind it.
    "host_planning": {"public", "automation"},
    "host_import": {"public", "automation", "host_planning"},
    "host_links": {"public", "automation", "host_planning", "host_import"},
    "host_map": {"public", "automation"},
    "host_analysis": {"public", "automation", "host_planning"},
    "host_map_view": {"public", "automation", "host_planning", "host_map", "host_analysis"},
    "host_preferences": {"public", "automation", "host_map"},
    "host_report": {"public", "automation", "host_planning", "host_map", "host_analysis", "host_map_view"},
    "host_desktop": {"public", "automation"} | HOST,
    "host": {"public", "automation", "host_desktop", "host_planning", "host_report", "host_links"},
    "python": {"public", "automation"},
}
# These see of the automation layer only what is installed; so does every installed header itself.
INSTALLED_ONLY = ("host/", "python/", "include/")

# Of the desktop program: the map's calculation and the plan need none.
QT_IN_HOST = {"host_import", "host_analysis", "host_map_view", "host_preferences", "host_report"}

# Toolkits by the look of their headers, and the layers that may see them.
TOOLKITS = {
    "Qt": (r"^(Q[A-Z]\w*|Qt\w*)(/.*)?$|^q[a-z]+\.h$", {"qt_canvas", "ui", "component", "zeltool", "host", "host_desktop"} | QT_IN_HOST),
    "GDAL": (r"^(gdal|ogr|cpl|vrt)\w*\.h$", {"zeltool"}),
    "PROJ": (r"^(proj\w*|geodesic)\.h$", {"zeltool"}),
    "CLI11": (r"^CLI/", {"host"}),
    "nlohmann-json": (r"^nlohmann/", {"host", "host_planning", "host_import"}),
    "libzip": (r"^zip\w*\.h$", {"host_import"}),
    "pybind11": (r"^pybind11/", {"python"}),
    "GoogleTest": (r"^(gtest|gmock)/", set()),
    "Google Benchmark": (r"^benchmark/", set()),
    "POSIX": (
        r"^(unistd|fcntl|dlfcn|link|malloc|pwd|signal|spawn|poll|termios|pthread|pty)\.h$|^sys/\w+\.h$",
        {"services", "zeltool", "component", "host", "host_planning", "host_links", "host_map_view", "host_desktop"},
    ),
}

# The standard library, as far as C++20 and C11 have it.
STANDARD = set(
    """algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono cinttypes
    climits clocale cmath codecvt compare complex concepts condition_variable coroutine csetjmp csignal cstdarg cstddef
    cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution filesystem forward_list
    fstream functional future initializer_list iomanip ios iosfwd iostream istream iterator latch limits list locale
    map memory memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex
    scoped_allocator semaphore set shared_mutex source_location span sstream stack stdexcept stop_token streambuf
    string string_view syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map
    unordered_set utility valarray variant vector version
    assert.h ctype.h errno.h float.h inttypes.h limits.h locale.h math.h setjmp.h stdarg.h stdbool.h stddef.h
    stdint.h stdio.h stdlib.h string.h time.h""".split()
)

# ---- The check -------------------------------------------------------------------------------------------------

INCLUDE = re.compile(r'^[ \t]*#[ \t]*(?:include|include_next|import)[ \t]*([<"])([^>"]+)[>"]', re.MULTILINE)
COMMENT = re.compile(r'/\*.*?\*/|//[^\n]*|"(?:\\.|[^"\\\n])*"', re.DOTALL)
SOURCES = {".h", ".hpp", ".cpp", ".cc", ".c"}
FOLDERS = ("include", "src", "host", "python", "tests", "bench", "fuzz")


def layer_of(path):
    fitting = [prefix for prefix in LAYERS if path.startswith(prefix)]
    return LAYERS[max(fitting, key=len)] if fitting else None


def without_comments(text):
    """Comments become blank, line by line; texts in quotes stay, so that a comment mark in one is none."""
    return COMMENT.sub(lambda m: m[0] if m[0][0] == '"' else "\n" * m[0].count("\n"), text)


def resolve(path, name, quoted, exists):
    """The project's file behind an include, None when it is none of the project's."""
    roots = ["include/", "src/"]
    if layer_of(path) == "tests":
        roots += ["tests/", "host/"]
    for root in roots:
        if exists(root + name):
            return root + name
    # Programs are no libraries: their headers lie beside their sources.
    top = path.split("/")[0]
    if quoted and top not in ("src", "include"):
        folder = path.rsplit("/", 1)[0]
        for place in (folder, top):
            if exists(f"{place}/{name}"):
                return f"{place}/{name}"
    return None


def breaches(path, text, exists):
    """Every breach in one file as a text."""
    layer = layer_of(path)
    if layer is None:
        yield f"{path}: no layer is named for this folder"
        return
    text = without_comments(text)
    for match in INCLUDE.finditer(text):
        quoted, name = match[1] == '"', match[2]
        place = f"{path}:{text.count(chr(10), 0, match.start()) + 1}: \"{name}\""
        target = resolve(path, name, quoted, exists)
        if target is not None:
            yield from (f"{place}: {reason}" for reason in project_breach(path, target, name, quoted))
        elif quoted:
            yield f"{place}: is no file of the project, counted from its include roots"
        elif name not in STANDARD:
            yield from (f"{place}: {reason}" for reason in foreign_breach(layer, name))


def project_breach(path, target, name, quoted):
    layer, other = layer_of(path), layer_of(target)
    if not quoted:
        yield "headers of the project are included in double quotes"
    if ".." in name.split("/"):
        yield "includes are counted from the roots, not upwards"
    if layer == "tests":
        return
    if other != layer and other not in MAY_SEE[layer]:
        yield f"{layer} must not see {other}"
    elif (path.startswith(INSTALLED_ONLY) and other != layer and not target.startswith("include/")
          and not (path.startswith("host/") and target.startswith("host/"))):
        yield f"{layer} sees installed headers only"
    elif path.startswith("include/") and not target.startswith("include/"):
        yield "installed headers see installed headers only"


def foreign_breach(layer, name):
    for toolkit, (pattern, layers) in TOOLKITS.items():
        if re.search(pattern, name):
            if layer != "tests" and layer not in layers:
                yield f"{layer} must not see {toolkit}"
            return
    yield "belongs to no known toolkit (see TOOLKITS and STANDARD)"


def check_tree(root):
    files = sorted(
        file
        for folder in FOLDERS
        for file in (root / folder).rglob("*")
        if file.suffix in SOURCES and file.is_file()
    )
    found = []
    for file in files:
        path = file.relative_to(root).as_posix()
        found += breaches(path, file.read_text(encoding="utf-8"), lambda name: (root / name).is_file())
    return len(files), found


# ---- Self-test -------------------------------------------------------------------------------------------------

PRESENT = {
    "include/zel/automation.h", "include/zel/export.h", "include/zel/profile_control.h",
    "src/foundation/text.h", "src/automation/values.h", "src/platform/terrain.h", "src/component/services/error_trap.h",
    "src/component/wiring.h", "src/profile/path/geometry.h", "src/profile/path_loss/loss.h",
    "src/models/longrice/model.h", "src/canvas/canvas.h", "src/canvas/qt/painter.h", "src/ui/plot/ticks.h",
    "src/ui/profile_window/window.h", "src/export/csv.h", "src/zeltool/terrain/library.h", "host/options.h",
    "host/map_view/map_view.h", "host/map/map_frame.h",
    "tests/support/folder.h", "src/models/ptp/vexptp/program.h",
}
# (file, line, a part of the expected breach; "" when it must pass)
SAMPLES = [
    ("src/foundation/a.cpp", '#include "platform/terrain.h"', "foundation must not see platform"),
    ("src/foundation/a.cpp", "#include <QString>", "foundation must not see Qt"),
    ("src/foundation/a.cpp", "#include <unistd.h>", "foundation must not see POSIX"),
    ("src/foundation/a.cpp", "  #  include <gdal_priv.h>", "foundation must not see GDAL"),
    ("src/foundation/a.cpp", "#include <boost/any.hpp>", "no known toolkit"),
    ("src/automation/a.cpp", '#include "platform/terrain.h"', "automation must not see platform"),
    ("src/automation/a.cpp", "#include <QtCore/QObject>", "automation must not see Qt"),
    ("src/platform/a.h", '#include "component/services/error_trap.h"', "platform must not see services"),
    ("src/platform/a.h", '#include "zeltool/terrain/library.h"', "platform must not see zeltool"),
    ("src/platform/a.h", "#include <proj.h>", "platform must not see PROJ"),
    ("src/component/services/a.h", '#include "component/wiring.h"', "services must not see component"),
    ("src/component/services/a.h", '#include "profile/path/geometry.h"', "services must not see profile"),
    ("src/component/services/a.h", "#include <QSettings>", "services must not see Qt"),
    ("src/profile/path/a.cpp", '#include "models/longrice/model.h"', "profile must not see models"),
    ("src/profile/path/a.cpp", '#include "export/csv.h"', "profile must not see export"),
    ("src/profile/path/a.cpp", '#include "zeltool/terrain/library.h"', "profile must not see zeltool"),
    ("src/profile/path/a.cpp", "#include <geodesic.h>", "profile must not see PROJ"),
    ("src/models/longrice/a.cpp", '#include "automation/values.h"', "models must not see automation"),
    ("src/models/longrice/a.cpp", '#include "platform/terrain.h"', "models must not see platform"),
    ("src/models/longrice/a.cpp", '#include "export/csv.h"', "models must not see export"),
    ("src/models/longrice/a.cpp", '#include "models/ptp/vexptp/program.h"', "models must not see ptp_program"),
    ("src/models/ptp/vexptp/a.cpp", '#include "profile/path/geometry.h"', "ptp_program must not see profile"),
    ("src/models/ptp/vexptp/a.cpp", "#include <unistd.h>", "ptp_program must not see POSIX"),
    ("src/canvas/a.cpp", '#include "platform/terrain.h"', "canvas must not see platform"),
    ("src/canvas/a.cpp", "#include <QPainter>", "canvas must not see Qt"),
    ("src/canvas/a.cpp", '#include "canvas/qt/painter.h"', "canvas must not see qt_canvas"),
    ("src/export/a.cpp", '#include "ui/plot/ticks.h"', "export must not see plot"),
    ("src/export/a.cpp", "#include <QImage>", "export must not see Qt"),
    ("src/export/a.cpp", '#include "canvas/canvas.h"', "export must not see canvas"),
    ("src/canvas/qt/a.cpp", '#include "export/csv.h"', "qt_canvas must not see export"),
    ("src/ui/plot/a.cpp", "#include <QFont>", "plot must not see Qt"),
    ("src/ui/plot/a.cpp", '#include "ui/profile_window/window.h"', "plot must not see ui"),
    ("src/ui/profile_window/a.cpp", '#include "component/wiring.h"', "ui must not see component"),
    ("src/ui/profile_window/a.cpp", '#include "zeltool/terrain/library.h"', "ui must not see zeltool"),
    ("src/zeltool/terrain/a.cpp", '#include "component/services/error_trap.h"', "zeltool must not see services"),
    ("src/zeltool/terrain/a.cpp", '#include "profile/path/geometry.h"', "zeltool must not see profile"),
    ("src/component/a.cpp", "#include <gdal_priv.h>", "component must not see GDAL"),
    ("src/component/a.cpp", '#include "../profile/path/geometry.h"', "no file of the project"),
    ("src/component/a.cpp", '#include "wiring.h"', "no file of the project"),
    ("src/component/a.cpp", "#include <foundation/text.h>", "in double quotes"),
    ("src/component/a.cpp", '#include "host/options.h"', "no file of the project"),
    ("host/a.cpp", '#include "foundation/text.h"', "host must not see foundation"),
    ("host/a.cpp", '#include "component/wiring.h"', "host must not see component"),
    ("host/a.cpp", '#include "automation/values.h"', "host sees installed headers only"),
    ("host/map/a.cpp", '#include "map_view/map_view.h"', "host_map must not see host_map_view"),
    ("host/map/a.cpp", "#include <QImage>", "host_map must not see Qt"),
    ("host/desktop/a.cpp", '#include "foundation/text.h"', "host_desktop must not see foundation"),
    ("host/a.cpp", "#include <cpl_conv.h>", "host must not see GDAL"),
    ("python/a.cpp", '#include "profile/path/geometry.h"', "python must not see profile"),
    ("python/a.cpp", "#include <QString>", "python must not see Qt"),
    ("include/zel/a.h", "#include <QWidget>", "public must not see Qt"),
    ("include/zel/a.h", '#include "foundation/text.h"', "public must not see foundation"),
    ("include/zel/automation.h", '#include "automation/values.h"', "see installed headers only"),
    ("include/zel/automation.h", "#include <QVariant>", "automation must not see Qt"),
    ("include/zel/a.h", '#include "automation/values.h"', "public sees installed headers only"),
    ("src/profile/path/a.cpp", "#include <QPointF>", "profile must not see Qt"),
    ("src/models/longrice/a.cpp", "#include <QString>", "models must not see Qt"),
    ("src/unheard_of/a.cpp", "#include <vector>", "no layer is named"),
    ("src/foundation/a.cpp", '/* "text" */ \n#include "platform/terrain.h"', "a.cpp:2:"),
    # These must pass.
    ("src/foundation/a.cpp", '#include "foundation/text.h"\n#include <vector>', ""),
    ("src/foundation/a.cpp", '// #include <QString>\n/* \n#include <QString>\n*/', ""),
    ("include/zel/automation.h", '#include "zel/export.h"\n#include <memory>', ""),
    ("include/zel/a.h", '#include "zel/automation.h"', ""),
    ("src/platform/a.h", '#include "zel/automation.h"', ""),
    ("src/component/services/a.cpp", "#include <unistd.h>", ""),
    ("src/profile/path_loss/a.cpp", '#include "models/longrice/model.h"', ""),
    ("src/export/a.cpp", '#include "models/longrice/model.h"', ""),
    ("src/models/ptp/vexptp/a.cpp", '#include "models/longrice/model.h"\n#include "export/csv.h"', ""),
    ("src/canvas/qt/a.cpp", '#include <QPainter>\n#include "canvas/canvas.h"\n#include "component/services/error_trap.h"', ""),
    ("src/ui/profile_window/a.cpp", '#include <QWidget>\n#include "profile/path/geometry.h"', ""),
    ("src/zeltool/terrain/a.cpp", '#include <gdal_priv.h>\n#include <proj.h>\n#include "platform/terrain.h"', ""),
    ("src/component/a.cpp", '#include "zeltool/terrain/library.h"\n#include "zel/profile_control.h"', ""),
    ("host/map_view/a.cpp", '#include "map/map_frame.h"\n#include <QWidget>', ""),
    ("host/a.cpp", '#include "zel/profile_control.h"\n#include "options.h"\n#include <CLI/CLI.hpp>', ""),
    ("tests/zeltool/a.cpp", '#include "support/folder.h"\n#include <gtest/gtest.h>\n#include <gdal.h>', ""),
]


def self_test():
    failed = 0
    for path, text, expected in SAMPLES:
        found = list(breaches(path, text, PRESENT.__contains__))
        fine = any(expected in breach for breach in found) if expected else not found
        if not fine:
            failed += 1
            print(f"self-test: {path}: {text!r}: expected {expected or 'no breach'!r}, found {found}")
    print(f"self-test: {len(SAMPLES)} samples, {failed} wrong")
    return failed == 0


def main(arguments):
    if arguments[:1] == ["--self-test"]:
        return 0 if self_test() else 1
    root = pathlib.Path(arguments[0]) if arguments else pathlib.Path(__file__).resolve().parent.parent
    count, found = check_tree(root)
    print(*found, sep="\n", end="\n" if found else "")
    print(f"{count} files, {len(found)} includes against the rules")
    # Nothing to look at is a wrong root, not a clean tree.
    return 1 if found or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
