"""What the functions give. Lengths, heights and angles are in the unit that ends the name; arrays are arrays of numpy over
the memory of the result, and memoryviews where numpy is not installed."""

import dataclasses
import math
from typing import Any, NamedTuple, Optional

from . import _arrays


class Position(NamedTuple):
    """Degrees, north and east positive."""

    latitude: float
    longitude: float


_result = dataclasses.dataclass(frozen=True, eq=False, repr=False)


class _Result:
    """The beginning of a result's text; all of it is a line a field with str()."""

    _shown = ()

    def __repr__(self):
        said = ", ".join(f"{name}={_short(getattr(self, name))}" for name in self._shown)
        return f"{type(self).__name__}({said})"

    def __str__(self):
        return "\n".join(f"{field.name}: {_short(getattr(self, field.name))}" for field in dataclasses.fields(self))


def _short(value):
    if isinstance(value, memoryview) or hasattr(value, "dtype"):
        return f"<{' x '.join(map(str, value.shape))} numbers>"
    if isinstance(value, (list, tuple)) and len(value) > 8:
        return f"<{len(value)} entries>"
    return repr(value)


@_result
class TerrainProvenance(_Result):
    """What heights were computed from."""

    source_code: int
    source_name: str
    bundled_sample: bool  # nothing is set: the bundled sample terrain stood in
    files: tuple  # rasters that gave heights
    warnings: tuple  # rasters that could not be used, and why
    method: str
    voids: int  # samples without a height
    datum: str  # "NAD-27" or "NAD-83" once the host has set it, of the positions; else empty
    datum_operation: str  # the conversion used for NAD-27 positions, with its accuracy; else empty

    _shown = ("source_name", "bundled_sample", "voids")


@_result
class SampledTerrain(_Result):
    """Heights along one path, or along many, a row each. Stands for its heights where an array is wanted: it has their
    length, is indexed and iterated as they are, and numpy takes it for them."""

    elevations_m: Any  # above sea level; NaN in a void
    distances_km: Any  # of each sample from the first
    latitudes: Any
    longitudes: Any
    distance_km: Any  # from the first sample to the last; of many paths an array
    status: Any  # 0, or that of the TerrainError; of many paths an array
    error: Any  # empty, or why there are no heights; of many paths a list
    terrain: Any  # TerrainProvenance; of many paths a list

    _shown = ("elevations_m", "distance_km", "terrain")

    def __len__(self):
        return len(self.elevations_m)

    def __getitem__(self, index):
        return self.elevations_m[index]

    def __iter__(self):
        return iter(self.elevations_m)

    def __array__(self, dtype=None):
        heights = _arrays.numpy().asarray(self.elevations_m)
        return heights if dtype is None else heights.astype(dtype, copy=False)


@_result
class PathObstacle(_Result):
    """Where least of the first Fresnel zone is free."""

    distance_km: float  # from the start
    position: Position
    ground_m: float  # above sea level, without the rise
    clearance_m: float  # of the line of sight above ground and rise
    clearance_percent: float  # of the first Fresnel zone's radius there

    _shown = ("distance_km", "clearance_m", "clearance_percent")


@_result
class PathProfile(_Result):
    """A path in exact geometry, from station to station."""

    status: int  # 0, or that of the error; other fields are then without a value
    error: str
    distance_km: float
    bearing_deg: float  # from the start to the end, clockwise from north
    points: int  # samples, both ends included
    spacing_m: float
    start_height_m: int  # antennas above ground, as used
    end_height_m: int
    start_ground_m: float
    end_ground_m: float
    minimum_m: float  # of the ground, voids left out
    maximum_m: float
    average_m: float
    k: float
    frequency_mhz: float
    wavelength_m: float
    free_space_db: float
    worst: Optional[PathObstacle]
    verdict: str  # "clear", "marginal", "blocked" or "unknown"
    distances_km: Any
    latitudes: Any
    longitudes: Any
    ground_m: Any  # NaN in a void
    rise_m: Any  # bulge of the earth between the stations
    line_of_sight_m: Any
    fresnel1_m: Any  # radius of the first Fresnel zone
    clearance_m: Any  # line of sight - ground - rise; NaN in a void
    terrain: TerrainProvenance
    notes: tuple  # defaults taken, roundings and clampings made, in words

    _shown = ("distance_km", "points", "verdict", "error")


@_result
class PathLossModel(_Result):
    """The model's parameters, section ITM of the settings, as used."""

    polarization: str
    climate: int
    permittivity: float
    conductivity: float  # S/m
    surface_refractivity: float  # N-units
    confidence: float  # fraction
    reliability: float  # fraction
    confidence_deviate: float
    reliability_deviate: float

    _shown = ("polarization", "climate", "confidence", "reliability")


@_result
class PathLoss(_Result):
    """The loss of a path with all that it was computed from."""

    start: Position
    end: Position
    distance_km: float
    bearing_deg: float
    points: int
    model_spacing_m: float  # as the model was told: distance / points
    spacing_m: float  # as the samples lie
    start_height_m: int
    end_height_m: int
    start_ground_m: float
    end_ground_m: float
    minimum_m: float
    maximum_m: float
    average_m: float
    frequency_mhz: float
    free_space_db: float
    modeled_db: Optional[float]  # None outside 20 to 20000 MHz, where the model is not asked
    reverse_modeled_db: Optional[float]  # None also when it was not asked for
    mode: str
    method: str
    terrain_irregularity_m: float
    effective_heights_m: tuple  # of the start and the end
    horizon_distances_m: tuple
    horizon_angles_rad: tuple
    reference_attenuation_db: float
    model: PathLossModel
    terrain: TerrainProvenance
    notes: tuple
    warnings: tuple

    _shown = ("distance_km", "frequency_mhz", "free_space_db", "modeled_db", "mode")


@_result
class LongleyRice(_Result):
    """The radio model's answer. For many paths every field is an array or a tuple with an entry, or a row, a path."""

    loss_db: Any  # as longley_rice gives it without ``full``
    distance_km: Any
    free_space_db: Any
    mode: Any  # what the antennas see: "line of sight", "single horizon, diffraction dominant", ...
    method: Any  # "line of sight", "diffraction", "troposcatter"
    warnings: Any  # a tuple of texts
    terrain_irregularity_m: Any
    effective_heights_m: Any  # of transmitter and receiver
    horizon_distances_m: Any
    horizon_angles_rad: Any
    surface_refractivity: Any  # as used, N-units
    reference_attenuation_db: Any
    error: Any  # empty, or why there is no loss

    _shown = ("loss_db", "mode", "warnings")


@_result
class Geodesic(_Result):
    """A line on the WGS 84 ellipsoid."""

    distance_km: float
    bearing_deg: float  # at the start, clockwise from north
    reverse_bearing_deg: float  # from the end back to the start
    latitudes: Any
    longitudes: Any

    _shown = ("distance_km", "bearing_deg")


class TerrainSource(NamedTuple):
    """A source with its rasters and folders of rasters."""

    code: int
    name: str
    paths: tuple
    bundled_sample: bool  # nothing is set: the bundled sample terrain stands in


@_result
class TerrainRaster(_Result):
    """What a raster holds."""

    path: str
    problem: str  # why it cannot be used as terrain; empty when it can
    remark: str  # what is doubtful about a usable raster; else empty
    format: str
    south: float
    west: float
    north: float
    east: float
    columns: int
    rows: int
    cell_width: float  # in cell_unit
    cell_height: float
    cell_unit: str
    posts_on_corners: bool
    data_type: str
    height_unit: str  # of the file
    lowest: float  # metres
    highest: float
    voids: int
    horizontal_datum: str
    vertical_datum: str

    _shown = ("path", "problem")


class SettingDescription(NamedTuple):
    """A setting that the component knows."""

    section: str
    key: str
    type: str
    default: str
    other_default: str  # the same for one reader that differs on purpose; empty without one
    other_reader: str
    unit: str
    range: str
    meaning: str


class SettingValue(NamedTuple):
    """A value that is stored, or set for this run."""

    section: str
    key: str
    value: str
    for_this_run: bool


def _lent(fields, names):
    for name in names:
        fields[name] = _arrays.lend(fields[name])


def sampled_terrain(fields):
    many = isinstance(fields["terrain"], list)
    provenance = fields["terrain"]
    fields["terrain"] = [TerrainProvenance(**each) for each in provenance] if many else TerrainProvenance(**provenance)
    _lent(fields, ("elevations_m", "distances_km", "latitudes", "longitudes"))
    if many:
        _lent(fields, ("distance_km", "status"))
    return SampledTerrain(**fields)


_PROFILE_ROWS = ("distances_km", "latitudes", "longitudes", "ground_m", "rise_m", "line_of_sight_m", "fresnel1_m",
                 "clearance_m")


def path_profile(fields):
    if fields["status"] != 0:
        fields = {name: math.nan if isinstance(value, float) else value for name, value in fields.items()}
    _lent(fields, _PROFILE_ROWS)
    fields["terrain"] = TerrainProvenance(**fields["terrain"])
    worst = fields["worst"]
    if worst is not None:
        worst["position"] = Position(*worst["position"])
        fields["worst"] = PathObstacle(**worst)
    return PathProfile(**fields)


def path_loss(fields):
    fields["start"] = Position(*fields["start"])
    fields["end"] = Position(*fields["end"])
    fields["model"] = PathLossModel(**fields["model"])
    fields["terrain"] = TerrainProvenance(**fields["terrain"])
    return PathLoss(**fields)


def geodesic(fields):
    _lent(fields, ("latitudes", "longitudes"))
    return Geodesic(**fields)


_MODEL_ROWS = ("distance_km", "free_space_db", "terrain_irregularity_m", "effective_heights_m", "horizon_distances_m",
               "horizon_angles_rad", "surface_refractivity", "reference_attenuation_db")
_MODEL_TEXTS = ("mode", "method", "warnings", "error")


def longley_rice(fields, loss, one):
    """`one`: the answer of one path, whose fields are no rows."""
    fields["loss_db"] = loss
    _lent(fields, _MODEL_ROWS)
    if one:
        for name in _MODEL_ROWS:
            first = fields[name][0]
            fields[name] = tuple(map(float, first)) if hasattr(first, "__len__") else float(first)
        for name in _MODEL_TEXTS:
            fields[name] = fields[name][0]
    return LongleyRice(**fields)
