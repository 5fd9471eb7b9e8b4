"""Losses, heights and profiles of paths, and the radio model over heights of the caller's own."""

from . import _arrays, _results, _zelprofiler01 as _extension

_ERRORS = ("nan", "raise")
_METHODS = {"4point": 0, "bivariate": 1}
_POLARIZATIONS = {"horizontal": 0.0, "vertical": 1.0}
_LARGEST = 2**31 - 1


def _raises(errors):
    if errors not in _ERRORS:
        raise ValueError(f'errors must be "nan" or "raise", not {errors!r}')
    return errors == "raise"


def _bounded(name, value):
    whole = _arrays.whole(name, value)
    if not -_LARGEST <= whole <= _LARGEST:
        raise OverflowError(f"{name} is {whole}, which does not fit into 32 bits")
    return whole


def get_path_loss(lat1, lon1, h1, lat2, lon2, h2, frequency=None, *, errors="nan"):
    """The modeled (Longley-Rice) loss between stations in dB: the number of ProfileControl.GetPathLoss.

    Positions are degrees, heights metres above ground (whole metres are used, rounded half to even), the frequency MHz.
    h1 and h2 may be None: the settings Prf_HtL and Prf_HtR hold. Without a frequency the setting Prf_Freq holds, and
    100 MHz where nothing is stored.

    Of numbers it gives a float; what cannot be computed raises PathError or TerrainError. With an array among the
    arguments it gives an array of the shape to which all of them broadcast, with NaN for each path that cannot be
    computed; errors="raise" raises the first one's error instead. Outside 20 to 20000 MHz the model is not asked, and a
    path cannot be computed (ProfileControl.GetPathLoss gives 0 there).

    Voids count as 0 m, as they do for GetPathLoss; a TerrainWarning then says so. path_loss gives all that is known.
    """
    raises = _raises(errors)
    paths = _arrays.Paths(("h1", "h2", "frequency"), lat1=lat1, lon1=lon1, h1=h1, lat2=lat2, lon2=lon2, h2=h2,
                          frequency=frequency)
    if paths.shape is None:
        return _extension.path_loss(*paths.values)
    return _arrays.computed(_extension.path_losses(paths.count, raises, *paths.values), paths.shape)


def path_loss(lat1, lon1, h1, lat2, lon2, h2, frequency=None, *, reverse=True):
    """The loss of one path as a PathLoss: get_path_loss's number in modeled_db, with everything that it was computed from.

    Without `reverse` the loss from the end to the start is left out, which saves half of the work. Outside 20 to
    20000 MHz modeled_db is None. Raises PathError or TerrainError.
    """
    optional = ("h1", "h2", "frequency")
    values = [_arrays.number(name, value, name in optional) for name, value in
              zip(("lat1", "lon1", "h1", "lat2", "lon2", "h2", "frequency"), (lat1, lon1, h1, lat2, lon2, h2, frequency))]
    return _results.path_loss(_extension.path_loss_in_full(bool(reverse), *values))


def sample(lat1, lon1, lat2, lon2, points, method=None, source=None, *, errors="nan"):
    """Terrain heights at `points` even points of the geodesic, both ends included, as a SampledTerrain.

    `method` is "4point" (bilinear) or "bivariate" (cubic convolution), or 0 or 1 as the setting CalcMethod, which holds
    without it; `source` is the code of a terrain source, else the setting Prf_TRes holds.

    The result stands for its heights in metres (`elevations_m`, 64-bit floats): it has their length, is indexed as they
    are and taken for them by numpy. A void is NaN. Beside them are distances_km, latitudes, longitudes, and terrain, which
    says what they were read from.

    With arrays among the positions it gives a row of heights a path, of the arrays' number taken in order; the row of a
    path that cannot be sampled is NaN, and status and error say why. errors="raise" raises instead, as a single path
    always does. Takes 32 bytes a sample.
    """
    raises = _raises(errors)
    paths = _arrays.Paths(lat1=lat1, lon1=lon1, lat2=lat2, lon2=lon2)
    fields = _extension.sample(paths.count, raises or paths.shape is None, *paths.values, _bounded("points", points),
                               _method_code(method), None if source is None else _bounded("source", source))
    return _results.sampled_terrain(fields)


def _method_code(method):
    if method is None:
        return None
    code = _METHODS.get(method) if isinstance(method, str) else _arrays.whole("method", method)
    if code not in _METHODS.values():
        raise ValueError(f'method must be "4point" or "bivariate", not {method!r}')
    return code


def profile(lat1, lon1, h1, lat2, lon2, h2, k=None, frequency=None, *, errors="nan"):
    """The profile of a path in exact geometry, as a PathProfile: ground, rise, line of sight, Fresnel zone, clearance.

    `k` is the effective-earth factor. h1, h2, k and frequency may be None: the settings Prf_HtL, Prf_HtR, Prf_Crv (1.333
    where nothing is stored) and Prf_Freq (950 MHz) hold.

    With arrays among the arguments it gives a list, in the order of the arrays; a path that cannot be computed has its
    status and error and is empty. errors="raise" raises PathError or TerrainError instead, as a single path always does.
    """
    raises = _raises(errors)
    paths = _arrays.Paths(("h1", "h2", "k", "frequency"), lat1=lat1, lon1=lon1, h1=h1, lat2=lat2, lon2=lon2, h2=h2, k=k,
                          frequency=frequency)
    found = [_results.path_profile(fields) for fields in
             _extension.profiles(paths.count, raises or paths.shape is None, *paths.values)]
    return found[0] if paths.shape is None else found


def longley_rice(elevations, spacing, tx, rx, frequency, *, polarization="horizontal", climate=5, permittivity=15.0,
                 conductivity=0.005, surface_refractivity=301.0, sea_level_refractivity=None, confidence=0.5,
                 reliability=0.5, full=False, errors="nan"):
    """The loss of the Longley-Rice model (version 1.2.2, point-to-point) over given heights, in dB.

    `elevations` are metres above sea level, evenly spaced, the transmitter's first: an array in one dimension, or in two
    for many paths, a row each; a list of arrays may have paths of different lengths. 64-bit floats are read where they
    are, without a copy. `spacing` is metres; `tx` and `rx` are the antennas in metres above ground; `frequency` is MHz;
    conductivity is S/m; refractivities are N-units, of which sea_level_refractivity takes the place of the other;
    `confidence` and `reliability` are fractions above 0 and below 1. Each but the levels may be an array with an entry a
    path; with one row of elevations all of these paths lie over it.

    The loss is not exceeded in the fraction `reliability` of the time, in the fraction `confidence` of comparable
    situations. It is a float for one path and one level of each. Otherwise it is an array with these axes: the paths, if
    there are many; the levels of reliability, if they are an array; those of confidence, if they are one. With
    full=True the result is a LongleyRice: the loss in loss_db, with mode, method, warnings and the rest.

    What the model refuses raises PathError for one path, and is NaN among many; with errors="raise" it raises there, too.
    """
    raises = _raises(errors)
    ground, rows, many_rows = _elevation_rows(elevations)
    arguments = {"spacing": spacing, "tx": tx, "rx": rx, "frequency": frequency, "polarization": _verticals(polarization),
                 "climate": climate, "permittivity": permittivity, "conductivity": conductivity,
                 "surface_refractivity": surface_refractivity, "sea_level_refractivity": sea_level_refractivity}
    paths = _arrays.Paths(("sea_level_refractivity",), **arguments)
    shape = _paths_shape(paths, rows, many_rows)
    confidences, one_confidence = _levels("confidence", confidence)
    reliabilities, one_reliability = _levels("reliability", reliability)
    one = shape is None
    fields = _extension.longley_rice(None if one else shape[0], raises or one, bool(full), ground, *paths.values,
                                     confidences, reliabilities)
    axes = (() if one else shape) + (() if one_reliability else (len(reliabilities),))
    axes += () if one_confidence else (len(confidences),)
    loss = _arrays.computed(fields["loss_db"], axes) if axes else memoryview(fields["loss_db"])[0, 0, 0]
    return _results.longley_rice(fields, loss, one) if full else loss


def _elevation_rows(elevations):
    """What the extension takes, how many paths it is, and whether it is meant as many."""
    if isinstance(elevations, _results.SampledTerrain):
        elevations = elevations.elevations_m
    if isinstance(elevations, (list, tuple)) and any(hasattr(row, "__len__") for row in elevations):
        ground = [_elevation_row(f"elevations[{i}]", row) for i, row in enumerate(elevations)]
        return ground, len(ground), True
    ground = _elevation_row("elevations", elevations, dimensions=2)
    dimensions = len(_arrays.shape_of(ground))
    return ground, _arrays.shape_of(ground)[0] if dimensions == 2 else 1, dimensions == 2


def _elevation_row(name, elevations, dimensions=1):
    row = _arrays.rows(name, elevations)
    if row is None:
        raise TypeError(f"{name} must be an array of numbers, not {type(elevations).__name__}")
    if len(_arrays.shape_of(row)) > dimensions:
        raise ValueError(f"{name} has more than {'one dimension' if dimensions == 1 else 'two dimensions'}")
    return row


def _paths_shape(paths, rows, many_rows):
    """(paths,), or None for one."""
    if paths.shape is None:
        return (rows,) if many_rows else None
    if len(paths.shape) != 1:
        raise ValueError("the arguments of longley_rice have one entry a path, in one dimension")
    if many_rows and rows != 1 and rows != paths.shape[0]:
        raise ValueError(f"the arrays do not fit each other: elevations have {rows} rows, other arguments "
                         f"{paths.shape[0]} entries")
    return paths.shape


def _verticals(polarization):
    """Names as numbers of the extension, one or a list of them."""
    if isinstance(polarization, str) or not hasattr(polarization, "__len__"):
        return _vertical(polarization)
    return [_vertical(name) for name in polarization]


def _vertical(name):
    if not isinstance(name, str) or name.lower() not in _POLARIZATIONS:
        raise ValueError(f'polarization must be "horizontal" or "vertical", not {name!r}')
    return _POLARIZATIONS[name.lower()]


def _levels(name, levels):
    """A list of floats, and whether it was one number."""
    row = _arrays.rows(name, levels)
    if row is None:
        return [_arrays.number(name, levels)], True
    if len(_arrays.shape_of(row)) != 1:
        raise ValueError(f"{name} has one dimension")
    return [float(level) for level in row], False
