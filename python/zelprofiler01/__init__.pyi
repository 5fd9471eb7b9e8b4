import array
import os
from typing import Any, Iterable, Iterator, Literal, NamedTuple, Optional, Protocol, Sequence, SupportsFloat, SupportsIndex, Tuple, Union, overload

# A number, or an array of them: of numpy, or a list, tuple, array.array or memoryview.
_Number = Union[float, SupportsFloat, SupportsIndex]
_Numbers = Union[Sequence[_Number], memoryview, array.array[Any], Any]
# What many numbers are computed into: an array of numpy; without numpy array.array, in lists for more dimensions.
_Computed = Any
# Memory of a result: an array of numpy; without numpy a memoryview, or a list of them.
_Lent = Any
_Errors = Literal["nan", "raise"]
_Path = Union[str, bytes, os.PathLike[str], os.PathLike[bytes]]

__version__: str

class ZelError(Exception): ...
class AutomationError(ZelError): ...
class MemberNotFoundError(AutomationError, AttributeError): ...
class WrongAccessError(AutomationError, AttributeError): ...
class WrongArgumentCountError(AutomationError, TypeError): ...
class TypeMismatchError(AutomationError, TypeError): ...
class ValueOverflowError(AutomationError, OverflowError): ...
class WrongThreadError(AutomationError, RuntimeError): ...
class MemberFailedError(AutomationError, RuntimeError): ...
class SettingsError(ZelError): ...

class TerrainError(ZelError):
    status: int
    index: Optional[int]
    parameter: Optional[str]
    def __init__(self, text: str, status: int, index: Optional[int] = None, parameter: Optional[str] = None) -> None: ...

class PathError(ZelError, ValueError):
    status: int
    index: Optional[int]
    parameter: Optional[str]
    def __init__(self, text: str, status: int, index: Optional[int] = None, parameter: Optional[str] = None) -> None: ...

class TerrainWarning(UserWarning): ...

# ---- Late binding ----

class Station:
    Lat: float
    Lon: float
    AntHt: float
    def __init__(self, Lat: float = 0.0, Lon: float = 0.0, AntHt: float = 0.0) -> None: ...
    def __iter__(self) -> Iterator[float]: ...

StationProfile_Type = Station

class _AnyStation(Protocol):
    Lat: Any
    Lon: Any
    AntHt: Any

_StationLike = Union[Station, Tuple[_Number, _Number, _Number], Sequence[_Number], _AnyStation]

class AutomationObject:
    def __init__(self, handle: Any) -> None: ...
    def __getattr__(self, name: str) -> Any: ...
    def __setattr__(self, name: str, value: Any) -> None: ...

class ProfileControl(AutomationObject):
    def __init__(self) -> None: ...
    ElevLines: int
    def ExportDataToCSV(self, outfile: Union[str, os.PathLike[str]]) -> None: ...
    def ExportITMToCSV(self, outfile: Union[str, os.PathLike[str]]) -> None: ...
    @property
    def OFrmLoaded(self) -> bool: ...
    OptionButtonVisible: bool
    OwnerName: str
    @property
    def PForm(self) -> Any: ...
    @property
    def PFrmLoaded(self) -> bool: ...
    PrintDescription: str
    PrintLandscape: bool
    def PrintProfile(self) -> bool: ...
    ProgName: str
    RangeLines: int
    def SetClientApp(self, ClientApp: object) -> None: ...
    def GetPathLoss(self, Sta1: _StationLike, Sta2: _StationLike) -> float: ...
    def ShowMainForm(self, Sta1: _StationLike, Sta2: _StationLike) -> None: ...
    def ShowOptionsForm(self) -> None: ...
    StaDatum: int
    def UnloadMainForm(self) -> None: ...
    @property
    def hWnd(self) -> int: ...

# ---- Results ----

class Position(NamedTuple):
    latitude: float
    longitude: float

class TerrainProvenance:
    source_code: int
    source_name: str
    bundled_sample: bool
    files: Tuple[str, ...]
    warnings: Tuple[str, ...]
    method: str
    voids: int
    datum: str
    datum_operation: str

class SampledTerrain:
    elevations_m: _Lent
    distances_km: _Lent
    latitudes: _Lent
    longitudes: _Lent
    distance_km: Any
    status: Any
    error: Any
    terrain: Any
    def __len__(self) -> int: ...
    def __getitem__(self, index: Any) -> Any: ...
    def __iter__(self) -> Iterator[Any]: ...
    def __array__(self, dtype: Any = None) -> Any: ...

class PathObstacle:
    distance_km: float
    position: Position
    ground_m: float
    clearance_m: float
    clearance_percent: float

class PathProfile:
    status: int
    error: str
    distance_km: float
    bearing_deg: float
    points: int
    spacing_m: float
    start_height_m: int
    end_height_m: int
    start_ground_m: float
    end_ground_m: float
    minimum_m: float
    maximum_m: float
    average_m: float
    k: float
    frequency_mhz: float
    wavelength_m: float
    free_space_db: float
    worst: Optional[PathObstacle]
    verdict: str
    distances_km: _Lent
    latitudes: _Lent
    longitudes: _Lent
    ground_m: _Lent
    rise_m: _Lent
    line_of_sight_m: _Lent
    fresnel1_m: _Lent
    clearance_m: _Lent
    terrain: TerrainProvenance
    notes: Tuple[str, ...]

class PathLossModel:
    polarization: str
    climate: int
    permittivity: float
    conductivity: float
    surface_refractivity: float
    confidence: float
    reliability: float
    confidence_deviate: float
    reliability_deviate: float

class PathLoss:
    start: Position
    end: Position
    distance_km: float
    bearing_deg: float
    points: int
    model_spacing_m: float
    spacing_m: float
    start_height_m: int
    end_height_m: int
    start_ground_m: float
    end_ground_m: float
    minimum_m: float
    maximum_m: float
    average_m: float
    frequency_mhz: float
    free_space_db: float
    modeled_db: Optional[float]
    reverse_modeled_db: Optional[float]
    mode: str
    method: str
    terrain_irregularity_m: float
    effective_heights_m: Tuple[float, float]
    horizon_distances_m: Tuple[float, float]
    horizon_angles_rad: Tuple[float, float]
    reference_attenuation_db: float
    model: PathLossModel
    terrain: TerrainProvenance
    notes: Tuple[str, ...]
    warnings: Tuple[str, ...]

class LongleyRice:
    loss_db: Any
    distance_km: Any
    free_space_db: Any
    mode: Any
    method: Any
    warnings: Any
    terrain_irregularity_m: Any
    effective_heights_m: Any
    horizon_distances_m: Any
    horizon_angles_rad: Any
    surface_refractivity: Any
    reference_attenuation_db: Any
    error: Any

class Geodesic:
    distance_km: float
    bearing_deg: float
    reverse_bearing_deg: float
    latitudes: _Lent
    longitudes: _Lent

class TerrainSource(NamedTuple):
    code: int
    name: str
    paths: Tuple[str, ...]
    bundled_sample: bool

class TerrainRaster:
    path: str
    problem: str
    remark: str
    format: str
    south: float
    west: float
    north: float
    east: float
    columns: int
    rows: int
    cell_width: float
    cell_height: float
    cell_unit: str
    posts_on_corners: bool
    data_type: str
    height_unit: str
    lowest: float
    highest: float
    voids: int
    horizontal_datum: str
    vertical_datum: str

class SettingDescription(NamedTuple):
    section: str
    key: str
    type: str
    default: str
    other_default: str
    other_reader: str
    unit: str
    range: str
    meaning: str

class SettingValue(NamedTuple):
    section: str
    key: str
    value: str
    for_this_run: bool

# ---- Paths ----

@overload
def get_path_loss(lat1: float, lon1: float, h1: Optional[float], lat2: float, lon2: float, h2: Optional[float], frequency: Optional[float] = None, *, errors: _Errors = "nan") -> float: ...
@overload
def get_path_loss(lat1: Union[_Number, _Numbers], lon1: Union[_Number, _Numbers], h1: Union[None, _Number, _Numbers], lat2: Union[_Number, _Numbers], lon2: Union[_Number, _Numbers], h2: Union[None, _Number, _Numbers], frequency: Union[None, _Number, _Numbers] = None, *, errors: _Errors = "nan") -> _Computed: ...
def path_loss(lat1: _Number, lon1: _Number, h1: Optional[_Number], lat2: _Number, lon2: _Number, h2: Optional[_Number], frequency: Optional[_Number] = None, *, reverse: bool = True) -> PathLoss: ...
def sample(lat1: Union[_Number, _Numbers], lon1: Union[_Number, _Numbers], lat2: Union[_Number, _Numbers], lon2: Union[_Number, _Numbers], points: int, method: Union[None, Literal["4point", "bivariate"], int] = None, source: Optional[int] = None, *, errors: _Errors = "nan") -> SampledTerrain: ...
@overload
def profile(lat1: float, lon1: float, h1: Optional[float], lat2: float, lon2: float, h2: Optional[float], k: Optional[float] = None, frequency: Optional[float] = None, *, errors: _Errors = "nan") -> PathProfile: ...
@overload
def profile(lat1: Union[_Number, _Numbers], lon1: Union[_Number, _Numbers], h1: Union[None, _Number, _Numbers], lat2: Union[_Number, _Numbers], lon2: Union[_Number, _Numbers], h2: Union[None, _Number, _Numbers], k: Union[None, _Number, _Numbers] = None, frequency: Union[None, _Number, _Numbers] = None, *, errors: _Errors = "nan") -> Any: ...
@overload
def longley_rice(elevations: _Numbers, spacing: Union[_Number, _Numbers], tx: Union[_Number, _Numbers], rx: Union[_Number, _Numbers], frequency: Union[_Number, _Numbers], *, polarization: Union[str, Sequence[str]] = "horizontal", climate: Union[_Number, _Numbers] = 5, permittivity: Union[_Number, _Numbers] = 15.0, conductivity: Union[_Number, _Numbers] = 0.005, surface_refractivity: Union[_Number, _Numbers] = 301.0, sea_level_refractivity: Union[None, _Number, _Numbers] = None, confidence: Union[_Number, _Numbers] = 0.5, reliability: Union[_Number, _Numbers] = 0.5, full: Literal[False] = False, errors: _Errors = "nan") -> Any: ...
@overload
def longley_rice(elevations: _Numbers, spacing: Union[_Number, _Numbers], tx: Union[_Number, _Numbers], rx: Union[_Number, _Numbers], frequency: Union[_Number, _Numbers], *, polarization: Union[str, Sequence[str]] = "horizontal", climate: Union[_Number, _Numbers] = 5, permittivity: Union[_Number, _Numbers] = 15.0, conductivity: Union[_Number, _Numbers] = 0.005, surface_refractivity: Union[_Number, _Numbers] = 301.0, sea_level_refractivity: Union[None, _Number, _Numbers] = None, confidence: Union[_Number, _Numbers] = 0.5, reliability: Union[_Number, _Numbers] = 0.5, full: Literal[True], errors: _Errors = "nan") -> LongleyRice: ...

# ---- Surroundings ----

class Settings:
    def get(self, name: str, default: Any = None) -> Any: ...
    def set(self, name: str, value: Union[str, int, float, bool]) -> None: ...
    def set_for_this_run(self, name: str, value: Union[str, int, float, bool]) -> None: ...
    def problem(self, name: str, value: Union[str, int, float, bool]) -> Optional[str]: ...
    def known(self) -> list[SettingDescription]: ...
    def stored(self) -> list[SettingValue]: ...
    @property
    def file(self) -> str: ...

settings: Settings

def set_terrain(paths: Union[_Path, Iterable[_Path]]) -> None: ...
def set_terrain_source(code: int, paths: Union[_Path, Iterable[_Path]]) -> None: ...
def terrain_sources() -> list[TerrainSource]: ...
def terrain_info(path: _Path) -> list[TerrainRaster]: ...
def geodesic(lat1: _Number, lon1: _Number, lat2: _Number, lon2: _Number, points: int = 2) -> Geodesic: ...
def destination(lat: _Number, lon: _Number, bearing: _Number, distance: _Number) -> Position: ...
def parse_station(text: str) -> Station: ...
def plot(file: _Path, lat1: _Number, lon1: _Number, h1: Optional[_Number], lat2: _Number, lon2: _Number, h2: Optional[_Number], k: Optional[_Number] = None, frequency: Optional[_Number] = None, *, size: Tuple[int, int] = (1000, 500), scale: Optional[_Number] = None, markers_km: Iterable[_Number] = (), expand_km: Optional[Tuple[_Number, _Number]] = None, fresnel_percent: Optional[_Number] = None, units: Optional[Literal["metric", "imperial"]] = None) -> Tuple[str, ...]: ...
def windows_problem() -> Optional[str]: ...
def run() -> int: ...
def process_events(milliseconds: int = 0) -> None: ...
def version() -> str: ...
