"""What paths are computed from, and what is around them: settings, terrain, geodesics, windows, pictures."""

import os
import pathlib
import signal
import threading

from . import _arrays, _results, _zelprofiler01 as _extension
from ._objects import Station


def _bytes_of(path):
    name = os.fsencode(path)
    if b"\0" in name:
        raise ValueError("a path has no null character")
    return name


def _paths_of(paths):
    """Paths as bytes; one alone is a list of itself."""
    return [_bytes_of(path) for path in ([paths] if isinstance(paths, (str, bytes, os.PathLike)) else paths)]


class Settings:
    """The settings of the bound application; without one, of the component's own, "zelProfiler01".

    Names are "SECTION/KEY", known ones in any case of their letters. Values are texts; numbers and booleans become theirs.
    """

    def __init__(self):
        raise TypeError("there is one object of this class: zelprofiler01.settings")

    def get(self, name, default=None):
        """The value for this run or the stored one; `default` where there is neither."""
        value = _extension.stored_setting(*_split(name))
        return default if value is None else value

    def set(self, name, value):
        """Stores the value; it is on disk when the call returns. ValueError for one that the setting cannot have."""
        _extension.store_setting(*_split(name), _fitting(name, value))

    def set_for_this_run(self, name, value):
        """From here on, and in this process only, the value stands in the place of the stored one."""
        _extension.override_setting(*_split(name), _fitting(name, value))

    def problem(self, name, value):
        """Why the setting cannot have that value; None when it can, or when it is not a known one."""
        return _extension.setting_problem(*_split(name), _text(value))

    def known(self):
        """Every setting that the component knows, as a list of SettingDescription."""
        return [_results.SettingDescription(**fields) for fields in _extension.known_settings()]

    def stored(self):
        """Everything stored or set for this run, as a list of SettingValue."""
        return [_results.SettingValue(*fields) for fields in _extension.stored_settings()]

    @property
    def file(self):
        """The file that holds the settings."""
        return _extension.settings_file()

    def __repr__(self):
        return "<zelprofiler01.settings>"


def _split(name):
    if not isinstance(name, str):
        raise TypeError(f"a setting's name is a text, not {type(name).__name__}")
    section, slash, key = name.partition("/")
    if not slash or not section or not key:
        raise ValueError(f'a setting is named "SECTION/KEY", not {name!r}')
    return section.encode(), key.encode()


def _text(value):
    if isinstance(value, str):
        return value.encode()
    if isinstance(value, bool):
        return b"True" if value else b"False"
    if isinstance(value, (int, float)):
        return repr(value).encode()
    raise TypeError(f"a setting's value is a text or a number, not {type(value).__name__}")


def _fitting(name, value):
    text = _text(value)
    problem = _extension.setting_problem(*_split(name), text)
    if problem is not None:
        raise ValueError(problem)
    return text


settings = object.__new__(Settings)


def set_terrain(paths):
    """From here on, and in this process only, every source reads these rasters and folders."""
    _extension.use_terrain_for_this_run(_paths_of(paths))


def set_terrain_source(code, paths):
    """Stores the rasters and folders of a source; none go back to the bundled sample."""
    _extension.set_terrain_source(_arrays.whole("code", code), _paths_of(paths))


def terrain_sources():
    """The terrain sources with their paths, as a list of TerrainSource."""
    return [_results.TerrainSource(*fields) for fields in _extension.terrain_sources()]


def terrain_info(path):
    """What the raster, or each raster of the folder, holds, as a list of TerrainRaster."""
    return [_results.TerrainRaster(**fields) for fields in _extension.terrain_rasters(_bytes_of(path))]


def geodesic(lat1, lon1, lat2, lon2, points=2):
    """The WGS 84 geodesic with `points` even positions, both ends included, as a Geodesic."""
    ends = [_arrays.number(name, value) for name, value in
            zip(("lat1", "lon1", "lat2", "lon2"), (lat1, lon1, lat2, lon2))]
    count = _arrays.whole("points", points)
    if not 2 <= count <= 10_000_000:
        raise ValueError(f"points must be 2 to 10,000,000, not {count}")
    return _results.geodesic(_extension.geodesic_line(*ends, count))


def destination(lat, lon, bearing, distance):
    """The Position `distance` kilometres along the geodesic that leaves at the bearing in degrees."""
    values = [_arrays.number(name, value) for name, value in
              zip(("lat", "lon", "bearing", "distance"), (lat, lon, bearing, distance))]
    return _results.Position(*_extension.geodesic_destination(*values))


def parse_station(text):
    """Reads "LAT,LON" or "LAT,LON,HEIGHT", in decimal degrees or degrees, minutes and seconds. Gives a Station, whose AntHt
    is None where the text has no height. Raises PathError."""
    if not isinstance(text, str):
        raise TypeError(f"a station's text is a str, not {type(text).__name__}")
    return Station(*_extension.parse_station(text.encode()))


def plot(file, lat1, lon1, h1, lat2, lon2, h2, k=None, frequency=None, *, size=(1000, 500), scale=None, markers_km=(),
         expand_km=None, fresnel_percent=None, units=None):
    """Draws the profile as the window would show it into a PNG or SVG file, by the name's ending.

    What is None is taken from the settings, with the window's defaults. `size` is in logical pixels, `scale` is device
    pixels for each of them (PNG alone). `markers_km` are up to two distances from the start, `expand_km` is a stretch that
    is drawn alone; `fresnel_percent` is 0 to 100, `units` "metric" or "imperial". Gives what was assumed, as a tuple of
    texts. The plot reaches a little past both stations, so the terrain must, too. On the component's thread.
    """
    path = pathlib.Path(os.fsdecode(_bytes_of(file)))
    kind = path.suffix.lower()
    if kind not in (".png", ".svg"):
        raise ValueError(f"the file must end in .png or .svg, not {path.name!r}")
    if units not in (None, "metric", "imperial"):
        raise ValueError(f'units must be "metric" or "imperial", not {units!r}')
    options = {name: _arrays.number(name, value, name not in ("lat1", "lon1", "lat2", "lon2"))
               for name, value in {"lat1": lat1, "lon1": lon1, "h1": h1, "lat2": lat2, "lon2": lon2, "h2": h2, "k": k,
                                   "frequency": frequency, "fresnel_percent": fresnel_percent}.items()}
    width, height = size
    options.update(width=_small("width", width), height=_small("height", height), svg=kind == ".svg",
                   markers_km=[_arrays.number("markers_km", marker) for marker in markers_km])
    if scale is not None:
        options["scale"] = _arrays.number("scale", scale)
    if expand_km is not None:
        first, last = expand_km
        options["expand_km"] = (_arrays.number("expand_km", first), _arrays.number("expand_km", last))
    if units is not None:
        options["imperial"] = units == "imperial"
    picture, notes = _extension.plot(options)
    beside = path.with_name(path.name + ".part")
    try:
        beside.write_bytes(picture)
        os.replace(beside, path)
    except OSError:
        beside.unlink(missing_ok=True)
        raise
    return notes


def _small(name, value):
    whole = _arrays.whole(name, value)
    if not 0 < whole <= 100_000:
        raise ValueError(f"the {name} is {whole} pixels, which no picture has")
    return whole


def windows_problem():
    """Why windows cannot be shown; None when they can. Makes the graphical application they need."""
    return _extension.windows_problem() or None


def run():
    """Handles the windows' events until the last window is closed, and gives the exit code.

    Python handles no signals meanwhile: where Ctrl+C would raise KeyboardInterrupt, it ends the process at once.
    """
    interruptible = (threading.current_thread() is threading.main_thread()
                     and signal.getsignal(signal.SIGINT) is signal.default_int_handler)
    if not interruptible:
        return _extension.run()
    signal.signal(signal.SIGINT, signal.SIG_DFL)
    try:
        return _extension.run()
    finally:
        signal.signal(signal.SIGINT, signal.default_int_handler)


def process_events(milliseconds=0):
    """Handles the windows' events that are pending, for at most that time; for loops of one's own. Raises SystemExit when
    the user chose not to go on after a failure."""
    _extension.process_events(_arrays.whole("milliseconds", milliseconds))


def version():
    """The library's version, as "1.2.3"."""
    return _extension.version()
