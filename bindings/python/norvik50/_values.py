"""The Python forms of the library's values that Python has no type for."""

import enum


class VT(enum.IntEnum):
    """The type codes of the library's values."""
    Empty = 0
    Null = 1
    Integer = 2
    Long = 3
    Single = 4
    Double = 5
    Currency = 6
    Date = 7
    String = 8
    Object = 9
    Error = 10
    Boolean = 11
    Variant = 12
    Decimal = 14
    Byte = 17
    Record = 36
    Array = 0x2000


class Error(Exception):
    """A member failed: number, description and source as the library gives them."""

    def __init__(self, number, description="", source=""):
        super().__init__(f"{description} ({number})")
        self.number = number
        self.description = description
        self.source = source


class _EmptyType:
    """The Empty value: a variable never assigned. Distinct from None (Null)."""
    _instance = None

    def __new__(cls):
        if cls._instance is None:
            cls._instance = super().__new__(cls)
        return cls._instance

    def __repr__(self):
        return "norvik50.Empty"

    def __bool__(self):
        return False


Empty = _EmptyType()


class _NothingType:
    """An object value that refers to no object."""
    _instance = None

    def __new__(cls):
        if cls._instance is None:
            cls._instance = super().__new__(cls)
        return cls._instance

    def __repr__(self):
        return "norvik50.Nothing"

    def __bool__(self):
        return False


Nothing = _NothingType()


_UNSET = object()


class Ref:
    """A by-reference argument: pass it, and read .value after the call.
    Ref() starts Empty; Ref(None) passes Null."""
    __slots__ = ("value",)

    def __init__(self, value=_UNSET):
        self.value = Empty if value is _UNSET else value

    def __repr__(self):
        return f"norvik50.Ref({self.value!r})"


class Array(list):
    """A one-dimensional array with its lower bound; lower is None for an
    array that was never dimensioned. element_type is a VT code."""

    def __init__(self, items=(), lower=0, element_type=VT.Variant):
        super().__init__(items)
        self.lower = lower
        self.element_type = VT(element_type)

    def __repr__(self):
        return f"norvik50.Array({list(self)!r}, lower={self.lower!r})"


class Record(dict):
    """A record such as typFileInfo: its fields by name."""

    def __init__(self, type_name, fields=()):
        super().__init__(fields)
        self.type_name = type_name

    def __repr__(self):
        return f"norvik50.Record({self.type_name!r}, {dict(self)!r})"


class ErrorValue:
    """An error value (the runtime's CVErr), not a raised error."""
    __slots__ = ("code",)

    def __init__(self, code):
        self.code = int(code)

    def __eq__(self, other):
        return isinstance(other, ErrorValue) and other.code == self.code

    def __hash__(self):
        return hash(("ErrorValue", self.code))

    def __repr__(self):
        return f"norvik50.ErrorValue({self.code})"


class Variant:
    """A value passed as the given type, where Python's own type would pick
    another: Variant(Decimal("12.5"), VT.Currency), Variant(3, VT.Integer)."""
    __slots__ = ("value", "vt")

    def __init__(self, value, vt):
        self.value = value
        self.vt = VT(vt)

    def __repr__(self):
        return f"norvik50.Variant({self.value!r}, VT.{self.vt.name})"


class HostObject:
    """An object value the library handed out or that the host made
    (a collection). Copies refer to the same object."""
    __slots__ = ("_handle",)

    def __init__(self, handle):
        self._handle = handle

    def __eq__(self, other):
        return isinstance(other, HostObject) and other._handle.id() == self._handle.id()

    def __hash__(self):
        return hash(self._handle.id())

    @classmethod
    def collection(cls, items=()):
        """A new collection (items from 1) holding `items`."""
        from . import _native
        handle = _native.new_collection()
        obj = cls(handle)
        for item in items:
            obj.add(item)
        return obj

    def __len__(self):
        return self._handle.count()

    def add(self, item):
        self._handle.add(item)

    def item(self, index):
        """The item at 1-based `index`."""
        return self._handle.item(index)
