"""LIB and its members, made from the member table of the loaded library."""

import functools

from . import _native
from ._values import (Array, Empty, Error, ErrorValue, HostObject, Nothing, Record, Ref,
                      Variant)

_METHOD, _GET, _LET = 1, 2, 4
DIALOGS_HEADLESS, DIALOGS_QT = 0, 1

# An argument left out between given ones (a keyword call that skips one).
_MISSING = object()



def members():
    """The member table: one dict per member form (name, how, result_type,
    designed_here, params: name, type, by_ref, optional, default)."""
    return _native.members()


def set_dialogs(which):
    """DIALOGS_QT shows the Qt forms; DIALOGS_HEADLESS (the default) answers
    every dialog as failed at once. Raises Error 53 when Qt cannot be loaded."""
    _native.set_dialogs(which)


def set_host_application(name, title=""):
    """The application name the log writes and the default dialog title."""
    _native.set_host_application(name, title)


def _arguments(member, names, args, kwargs):
    """Positional and keyword arguments as one list in the member's order."""
    slots = list(args)
    for key, value in kwargs.items():
        try:
            i = names.index(key)
        except ValueError:
            raise TypeError(f"{member}() got an unexpected keyword argument {key!r}") from None
        if i < len(args):
            raise TypeError(f"{member}() got multiple values for argument {key!r}")
        slots.extend([_MISSING] * (i + 1 - len(slots)))
        slots[i] = value
    return tuple(slots)


def _place_keywords(member, how, args, kwargs):
    return _arguments(member, _param_names(member, how), args, kwargs)


_native.bind(Error=Error, Empty=Empty, Nothing=Nothing, Ref=Ref, Array=Array, Record=Record,
             ErrorValue=ErrorValue, Variant=Variant, HostObject=HostObject, Missing=_MISSING,
             Place=_place_keywords)


def _signature(entry):
    parts = []
    for p in entry["params"]:
        text = ("ref " if p["by_ref"] else "") + p["name"]
        if p["optional"]:
            text = f"[{text}]"
        parts.append(text)
    return f"{entry['name']}({', '.join(parts)})"


def _caller(name, how, doc):
    call = _native.call

    def member(self, *args, **kwargs):
        return call(self._lib, name, how, *args, **kwargs)

    member.__name__ = name
    member.__qualname__ = f"LIB.{name}"
    member.__doc__ = doc
    return member


class LIB:
    """The library object. Creating it writes "<application> initialized."
    to the log; close() (or the end of a with block, or garbage collection)
    destroys it. Members are methods named as in the member table."""
    __slots__ = ("_lib", "__dict__", "__weakref__")

    def __init__(self):
        self._lib = _native.new_lib()
        # Each member also as a partial call in the object's own dict, which
        # Python finds before the class's method: a call then goes straight
        # into the extension, without a Python frame in between.
        lib = self._lib
        self.__dict__.update((name, functools.partial(_native.call, lib, name, how))
                             for name, how in _DIRECT)

    def close(self):
        """Destroys the library object; a later call raises Error 91."""
        _native.close_lib(self._lib)

    def __enter__(self):
        return self

    def __exit__(self, *exc):
        self.close()

    def call(self, member, *args, **kwargs):
        """Calls `member` by name (a method or a property's get form)."""
        return _native.call(self._lib, member, _METHOD | _GET, *args, **kwargs)

    def let(self, member, *args, **kwargs):
        """Calls the let form of property `member`; the new value is last."""
        return _native.call(self._lib, member, _LET, *args, **kwargs)


_TABLE = {}  # (lower-case name, how) -> entry
_DIRECT = []  # (name, how) of the members called as methods


def _param_names(member, how):
    key = member.lower()
    for form in (_METHOD, _GET, _LET):
        if how & form and (key, form) in _TABLE:
            return [p["name"] for p in _TABLE[(key, form)]["params"]]
    return []


def _install_members():
    forms = {}
    for entry in _native.members():
        _TABLE[(entry["name"].lower(), entry["how"])] = entry
        forms.setdefault(entry["name"], {})[entry["how"]] = entry
    for name, by_how in forms.items():
        if hasattr(LIB, name):
            continue
        getter = by_how.get(_METHOD) or by_how.get(_GET)
        setter = by_how.get(_LET)
        if getter is not None and getter["how"] == _GET and not getter["params"] \
                and setter is not None and len(setter["params"]) == 1:
            # A property without arguments reads and assigns as an attribute.
            def fget(self, _name=name):
                return _native.call(self._lib, _name, _GET)

            def fset(self, value, _name=name):
                _native.call(self._lib, _name, _LET, value)

            setattr(LIB, name, property(fget, fset, doc=f"Property {name}"))
        elif getter is not None:
            setattr(LIB, name, _caller(name, getter["how"], _signature(getter)))
            _DIRECT.append((name, getter["how"]))
        # A let form with arguments is reached through LIB.let(name, ...).


_install_members()
