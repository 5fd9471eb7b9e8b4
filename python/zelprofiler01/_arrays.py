"""Numbers in and out: one, or many. Many are arrays of numpy where that is installed.

What comes in: a number, or rows of them. Rows are arrays of numpy or anything that numpy makes one of; without numpy
lists, tuples, ranges, array.array and memoryviews in one dimension. Texts, booleans and None are no numbers. What goes
to the extension is a float or None, or a buffer of 64-bit floats in one dimension, in the caller's own memory where
that has such.
"""

import array
import functools
import math

_TEXTS = (str, bytes, bytearray)


@functools.lru_cache(maxsize=None)
def numpy():
    """The module numpy, or None where it is not installed."""
    try:
        import numpy as module
    except ImportError:
        return None
    return module


def number(name, value, optional=False):
    """A float; None too where that is allowed."""
    kind = type(value)
    if kind is float:
        return value
    if value is None and optional:
        return None
    if getattr(value, "ndim", None) == 0 and hasattr(value, "item"):
        # Of numpy; what is masked is no number.
        value = math.nan if getattr(value, "mask", False) else value.item()
    if value is None or isinstance(value, (bool, *_TEXTS)):
        raise TypeError(f"{name} must be a number, not {_kind_of(value)}")
    try:
        return float(value)
    except OverflowError:
        raise OverflowError(f"{name} has too many digits") from None
    except (TypeError, ValueError):
        raise TypeError(f"{name} must be a number, not {_kind_of(value)}") from None


def whole(name, value):
    """An int; a float with a whole value is one, too."""
    exact = number(name, value)
    if not math.isfinite(exact) or exact != int(exact):
        raise ValueError(f"{name} must be a whole number, not {value!r}")
    return int(exact)


def rows(name, value):
    """Rows of numbers as a buffer of 64-bit floats, or None for what is one number."""
    if type(value) in (float, int) or value is None or isinstance(value, _TEXTS):
        return None
    np = numpy()
    if np is None:
        return _plain_rows(name, value)
    if not hasattr(value, "__array__") and not hasattr(value, "__len__"):
        return None
    if isinstance(value, (dict, set, frozenset)):
        return None
    return _numpy_rows(np, name, value)


def lend(column):
    """Memory of a result as an array of numpy; without numpy as a memoryview, of two dimensions as a list of them."""
    np = numpy()
    if np is not None:
        return np.asarray(column)
    view = memoryview(column)
    if view.ndim < 2:
        return view
    count, width = view.shape
    if count * width == 0:
        return [memoryview(array.array(view.format)) for _ in range(count)]
    flat = view.cast("B").cast(view.format)
    return [flat[i * width:(i + 1) * width] for i in range(count)]


def computed(column, shape):
    """Numbers computed from many: an array of numpy of that shape; without numpy array('d'), in lists for more than one
    dimension."""
    np = numpy()
    if np is not None:
        return np.asarray(column).reshape(shape)
    flat = array.array("d")
    flat.frombytes(memoryview(column).tobytes())
    return _nested(flat, shape)


class Paths:
    """The arguments of a call on one path or many, as the extension takes them.

    ``shape`` is None when every argument is one number, else that of the rows, which have the same length, or the
    lengths to which numpy broadcasts them. ``values`` are in the order given.
    """

    def __init__(self, optional=(), **arguments):
        self.shape = None
        self.values = list(arguments.values())
        if _all_floats(self.values):
            return
        found = {name: rows(name, value) for name, value in arguments.items()}
        shapes = {name: shape_of(row) for name, row in found.items() if row is not None}
        if shapes:
            self.shape = _common_shape(shapes)
        self.values = [number(name, value, name in optional) if found[name] is None else self._spread(found[name])
                       for name, value in arguments.items()]

    @property
    def count(self):
        """How many paths; None for a call on one."""
        return None if self.shape is None else math.prod(self.shape)

    def _spread(self, row):
        np = numpy()
        if np is None:
            return row
        if row.shape != self.shape:
            row = np.broadcast_to(row, self.shape)
        return row if row.ndim == 1 else row.reshape(-1)


def _all_floats(values):
    for value in values:
        if type(value) is not float:
            return False
    return True


def _kind_of(value):
    return "None" if value is None else f"{type(value).__name__} {value!r}"[:80]


def shape_of(row):
    return row.shape if hasattr(row, "shape") else (len(row),)


def _common_shape(shapes):
    np = numpy()
    different = set(shapes.values())
    if len(different) == 1:
        return different.pop()
    try:
        if np is not None:
            return np.broadcast_shapes(*shapes.values())
    except ValueError:
        pass
    said = ", ".join(f"{name} {shape}" for name, shape in shapes.items())
    raise ValueError(f"the arrays do not fit each other: {said}")


def _numpy_rows(np, name, value):
    if isinstance(value, (list, tuple)) and any(isinstance(entry, bool) for entry in value):
        raise TypeError(f"{name} must have numbers, not booleans")
    try:
        found = np.asanyarray(value)
    except ValueError as error:
        raise ValueError(f"{name}: {error}") from None
    if found.ndim == 0:
        return None
    if found.dtype == np.float64 and not np.ma.isMaskedArray(found):
        return np.asarray(found)
    if found.dtype.kind == "O":
        return _of_objects(np, name, found)
    # Texts would be read as numbers, dates and booleans counted.
    if found.dtype.kind not in "fiu" and found.size > 0:
        raise TypeError(f"{name} must have numbers, not {found.dtype}")
    if np.ma.isMaskedArray(found):
        return found.astype(np.float64).filled(np.nan)  # a masked number is none
    return found.astype(np.float64)


def _of_objects(np, name, found):
    if np.ma.isMaskedArray(found):
        raise TypeError(f"{name} must have numbers, not masked objects")
    numbers = np.empty(found.shape)
    for place in np.ndindex(found.shape):
        numbers[place] = number(f"{name}[{', '.join(map(str, place))}]", found[place])
    return numbers


def _plain_rows(name, value):
    if isinstance(value, (memoryview, array.array)):
        view = memoryview(value)
        if view.ndim == 0:
            return None
        if view.ndim > 1:
            raise TypeError(f"{name} has {view.ndim} dimensions; without numpy rows have one")
        if view.format == "d":
            return view
        value = view.tolist()
    if not hasattr(value, "__len__") or not hasattr(value, "__getitem__") or isinstance(value, dict):
        return None
    return array.array("d", [number(f"{name}[{i}]", value[i]) for i in range(len(value))])


def _nested(flat, shape):
    if len(shape) == 1:
        return flat
    step = math.prod(shape[1:])
    return [_nested(flat[i * step:(i + 1) * step], shape[1:]) for i in range(shape[0])]
