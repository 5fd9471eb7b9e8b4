"""Terrain path profiles and radio path losses.

    import zelprofiler01 as zel

    zel.get_path_loss(36.4408, -84.3433, 30, 36.1842, -84.1283, 30, 450)      # dB
    heights = zel.sample(36.40, -84.35, 36.22, -84.12, 1000)                  # metres
    zel.profile(36.40, -84.35, 30, 36.22, -84.12, 30).verdict                 # "blocked"
    zel.longley_rice(heights, 90, 30, 10, 450, reliability=[0.5, 0.9, 0.99])  # dB

    profiler = zel.ProfileControl()                                           # the class of hosts, by late binding
    profiler.GetPathLoss((36.4408, -84.3433, 30), (36.1842, -84.1283, 30))

Arguments are numbers or arrays: of numpy where it is installed, else lists and array.array. The functions over paths let
other threads run while they compute and may be called from several at once. They have the settings as they are at each
call on the thread of the ProfileControl objects (without any, the thread that imported the module); other threads have
those of the last such call, or of the last change made by this module.
"""

from ._errors import (AutomationError, MemberFailedError, MemberNotFoundError, PathError, SettingsError, TerrainError,
                      TerrainWarning, TypeMismatchError, ValueOverflowError, WrongAccessError, WrongArgumentCountError,
                      WrongThreadError, ZelError)
from ._functions import get_path_loss, longley_rice, path_loss, profile, sample
from ._objects import AutomationObject, ProfileControl, Station, StationProfile_Type
from ._results import (Geodesic, LongleyRice, PathLoss, PathLossModel, PathObstacle, PathProfile, Position,
                       SampledTerrain, SettingDescription, SettingValue, TerrainProvenance, TerrainRaster, TerrainSource)
from ._surroundings import (Settings, destination, geodesic, parse_station, plot, process_events, run, set_terrain,
                            set_terrain_source, settings, terrain_info, terrain_sources, version, windows_problem)

__version__ = version()

__all__ = [name for name in dir() if not name.startswith("_")]
