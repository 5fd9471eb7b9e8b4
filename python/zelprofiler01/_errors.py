"""The exceptions of the package. Their texts are those of the library."""


class ZelError(Exception):
    """Everything that the library refuses."""


class AutomationError(ZelError):
    """What late binding refuses: a member of ProfileControl, or an argument of one."""


class MemberNotFoundError(AutomationError, AttributeError):
    """There is no member of that name."""


class WrongAccessError(AutomationError, AttributeError):
    """The member is there, but cannot be read, set or called as it was."""


class WrongArgumentCountError(AutomationError, TypeError):
    """More or fewer arguments than the member takes, or one that it does not have."""


class TypeMismatchError(AutomationError, TypeError):
    """A value of another kind is wanted."""


class ValueOverflowError(AutomationError, OverflowError):
    """The number does not fit into what is wanted, or is not a number."""


class WrongThreadError(AutomationError, RuntimeError):
    """The object belongs to another thread."""


class MemberFailedError(AutomationError, RuntimeError):
    """The member itself failed; the text says how."""


class SettingsError(ZelError):
    """The settings cannot be read or written; the text says which file and why."""


class _PathFault(ZelError):
    """A path that cannot be computed."""

    def __init__(self, text, status, index=None, parameter=None):
        super().__init__(text)
        self.status = status
        self.index = index
        self.parameter = parameter

    def __reduce__(self):
        return type(self), (self.args[0], self.status, self.index, self.parameter)


class TerrainError(_PathFault):
    """The terrain does not give the path's heights.

    ``status`` is 1: no usable source; 2: a sample lies outside all data; 3: more than 32767 samples or over 2,000 km;
    4: fewer than 2 samples, coincident ends, or ends that are no place on the earth. ``index`` is the place of the
    path among those of the call, counted from 0; None for a call with one path.
    """


class PathError(_PathFault, ValueError):
    """The request itself cannot be computed: a height, frequency or other number is outside its range.

    ``status`` is 5. ``parameter`` is the argument that is wrong, where one is. ``index`` as in TerrainError.
    """


class TerrainWarning(UserWarning):
    """A number was computed, but the terrain under it is not whole."""


_REQUEST = 5


def path_fault(status, text, index, parameter):
    """The exception for a status of the library, with the path's place at the head of its text."""
    kind = PathError if status == _REQUEST else TerrainError
    headed = text if index is None else f"path {index}: {text}"
    return kind(headed, status, index, parameter or None)
