"""Objects of the component by late binding: ProfileControl, windows, and whatever they hand out."""

import inspect
import os

from . import _errors, _zelprofiler01 as _extension

_GET, _LET, _METHOD = _extension.Access.GET, _extension.Access.LET, _extension.Access.METHOD


class Station:
    """A station as a host hands it over: ``Lat`` and ``Lon`` in degrees (north and east positive), ``AntHt`` in metres
    above ground, of which the component keeps whole metres, rounded half to even. Unpacks into the three."""

    __slots__ = ("Lat", "Lon", "AntHt")
    __match_args__ = ("Lat", "Lon", "AntHt")

    def __init__(self, Lat=0.0, Lon=0.0, AntHt=0.0):
        self.Lat = Lat
        self.Lon = Lon
        self.AntHt = AntHt

    def __iter__(self):
        return iter((self.Lat, self.Lon, self.AntHt))

    def __eq__(self, other):
        return tuple(self) == tuple(other) if isinstance(other, Station) else NotImplemented

    __hash__ = None

    def __repr__(self):
        return f"Station(Lat={self.Lat!r}, Lon={self.Lon!r}, AntHt={self.AntHt!r})"


StationProfile_Type = Station


class AutomationObject:
    """An object of the component. Its members are attributes, in any case of their letters; they are read, set and
    called as they are used. A member that can only be called is given as a function."""

    __slots__ = ("_handle", "__weakref__")

    def __init__(self, handle):
        object.__setattr__(self, "_handle", handle)

    def __getattr__(self, name):
        # What Python itself looks for is no member.
        if name.startswith("_"):
            raise AttributeError(f"{type(self).__name__!r} object has no attribute {name!r}")
        try:
            return self._handle.invoke(name, _GET, ())
        except (_errors.WrongAccessError, _errors.WrongArgumentCountError):
            return _Method(self._handle, name)

    def __setattr__(self, name, value):
        self._handle.invoke(name, _LET, (value,))

    def __delattr__(self, name):
        raise _errors.WrongAccessError(f"{name} cannot be deleted")

    def __reduce_ex__(self, protocol):
        raise TypeError(f"{type(self).__name__} cannot be pickled or copied: it is an object of this process")

    def __eq__(self, other):
        if not isinstance(other, AutomationObject):
            return NotImplemented
        return self._handle.identity() == other._handle.identity()

    def __hash__(self):
        return hash(self._handle.identity())


class _Method:
    """A method of an object without a description of its members, or a group of its controls, read by an index."""

    __slots__ = ("_handle", "__name__")

    def __init__(self, handle, name):
        self._handle = handle
        self.__name__ = name

    def __call__(self, *arguments):
        try:
            return self._handle.invoke(self.__name__, _METHOD, arguments)
        except _errors.WrongAccessError:
            if not arguments:
                raise
            return self._handle.invoke(self.__name__, _GET, arguments)

    def __repr__(self):
        return f"<method {self.__name__} of the component>"


# ---- ProfileControl, from the member table ----

_STATION = "StationProfile_Type"
_PYTHON_TYPES = {"boolean": "bool", "16-bit integer": "int", "32-bit integer": "int", "32-bit float": "float",
                 "text": "str", "object": "object", _STATION: "Station"}


class _Member:
    """All that the table says of one name."""

    def __init__(self, name):
        self.name = name
        self.accesses = {}  # (arguments, result type, description)

    def kind_of(self):
        if _METHOD in self.accesses:
            return "method"
        return {frozenset({_GET}): "read only", frozenset({_LET}): "write only"}.get(frozenset(self.accesses),
                                                                                     "read and write")

    def value_type(self):
        arguments, result, _ = next(iter(self.accesses.values()))
        return result or arguments[0][1]


def _member_table():
    table = {}
    for name, access, _, arguments, result, description in _extension.member_rows():
        table.setdefault(name, _Member(name)).accesses[access] = (arguments, result, description)
    return table


def _station_argument(value):
    """A station for the component; anything else than Station, tuple and list it reads by Lat, Lon and AntHt itself."""
    if isinstance(value, (tuple, list)):
        if len(value) != 3:
            raise _errors.TypeMismatchError(f"a station has latitude, longitude and antenna height, not {len(value)} values")
        return _extension.make_station(*value)
    if type(value) is Station:
        return _extension.make_station(value.Lat, value.Lon, value.AntHt)
    return value


def _text_argument(value):
    return os.fspath(value) if isinstance(value, os.PathLike) else value


_CONVERSIONS = {_STATION: _station_argument, "text": _text_argument}


def _ordered(name, described, positional, keywords):
    """The arguments in the table's order; keywords in any case of their letters."""
    names = [argument for argument, _ in described]
    by_name = {argument.lower(): argument for argument in names}
    values = dict(zip(names, positional))
    for keyword, value in keywords.items():
        argument = by_name.get(keyword.lower())
        if argument is None:
            raise _errors.WrongArgumentCountError(f"{name} has no argument {keyword}; it has {', '.join(names) or 'none'}")
        if argument in values:
            raise _errors.WrongArgumentCountError(f"{name} is given its argument {argument} twice")
        values[argument] = value
    count = max(len(positional), len(values))
    if count != len(names):
        raise _errors.WrongArgumentCountError(f"{name} takes {len(names)} arguments, not {count}")
    return [_CONVERSIONS.get(kind, lambda same: same)(values[argument]) for argument, kind in described]


def _described_type(kind):
    return f"{_PYTHON_TYPES[kind]} ({kind})"


def _property_of(member):
    kinds = member.kind_of()
    texts = [description for _, _, description in member.accesses.values()]
    doc = f"{_described_type(member.value_type())}, {kinds}. {' '.join(texts)}"
    name = member.name
    return property(lambda self: self._handle.invoke(name, _GET, ()),
                    lambda self, value: self._handle.invoke(name, _LET, (value,)), None, doc)


def _function_of(member):
    arguments, result, description = member.accesses[_METHOD]
    name = member.name

    def method(self, *positional, **keywords):
        return self._handle.invoke(name, _METHOD, tuple(_ordered(name, arguments, positional, keywords)))

    parameters = [inspect.Parameter("self", inspect.Parameter.POSITIONAL_OR_KEYWORD)]
    parameters += [inspect.Parameter(argument, inspect.Parameter.POSITIONAL_OR_KEYWORD, annotation=_PYTHON_TYPES[kind])
                   for argument, kind in arguments]
    method.__signature__ = inspect.Signature(parameters, return_annotation=_PYTHON_TYPES[result] if result else None)
    method.__name__ = name
    method.__qualname__ = f"ProfileControl.{name}"
    lines = [description]
    if arguments:
        lines += ["", *(f"{argument}: {_described_type(kind)}" for argument, kind in arguments)]
    if result:
        lines += ["", f"Returns {_described_type(result)}."]
    method.__doc__ = "\n".join(lines)
    return method


class ProfileControl(AutomationObject):
    """The terrain profiler's class, by late binding.

    Its members are those of the component's member table, under their names in any case of their letters. All
    ProfileControl objects share one state; the class belongs to the thread of the first that is alive. A failure inside
    a member is shown, logged to zelErrorLog.txt in the application's Path, and not raised: the member then gives 0, False
    or None. What is raised (AutomationError) is a call that does not fit the member.

    Stations are Station objects, tuples (latitude, longitude, antenna height), or any object with Lat, Lon and AntHt.
    SetClientApp takes any object with the attributes Title, Path and, as far as it has them, ProductName, HelpFile,
    Major, Minor and Revision; they are read each time they are needed. The component may keep that object for the rest of
    the process.
    """

    __slots__ = ()

    def __init__(self):
        super().__init__(_extension.make_control())

    def __getattr__(self, name):
        member = _BY_LOWER_NAME.get(name.lower())
        if member is None:
            return super().__getattr__(name)
        # Also where reading a property has failed as a missing attribute would: the component says again why.
        return getattr(self, member.name) if name != member.name else self._handle.invoke(name, _GET, ())

    def __dir__(self):
        return [*object.__dir__(self)]

    def __repr__(self):
        return "<ProfileControl>"


_MEMBERS = _member_table()
_BY_LOWER_NAME = {name.lower(): member for name, member in _MEMBERS.items()}
for _member in _MEMBERS.values():
    setattr(ProfileControl, _member.name,
            _function_of(_member) if _METHOD in _member.accesses else _property_of(_member))
del _member
