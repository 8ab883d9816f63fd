"""Typed values in the batch's JSON form as Python values, so that the
table of calls shared by every binding runs through the Python package."""

import datetime
import decimal
import struct

import norvik50
from norvik50 import VT, Variant

_FORCED = {"Integer": VT.Integer, "Long": VT.Long, "Byte": VT.Byte, "Single": VT.Single}


def to_python(typed):
    """An argument: the Python value that the library receives as `typed`."""
    if not isinstance(typed, dict):
        return typed  # shorthand: str, bool, None, numbers
    vt, v = typed["vt"], typed.get("v")
    if vt == "Empty":
        return norvik50.Empty
    if vt == "Null":
        return None
    if vt in _FORCED:
        return Variant(v, _FORCED[vt])
    if vt == "Double":
        return float(v)
    if vt == "Currency":
        return Variant(decimal.Decimal(v), VT.Currency)
    if vt == "Decimal":
        return decimal.Decimal(v)
    if vt == "Date":
        return datetime.datetime.fromisoformat(v)
    if vt == "String":
        return v
    if vt == "Boolean":
        return bool(v)
    if vt == "Error":
        return norvik50.ErrorValue(v)
    if vt == "Array":
        if v is None:
            return norvik50.Array([], lower=None)
        return norvik50.Array([to_python(x) for x in v], lower=typed.get("lb", 0))
    if vt == "Record":
        return norvik50.Record(typed["type"], {k: to_python(x) for k, x in v.items()})
    raise ValueError(f"no typed value: {typed!r}")


def same(expected, actual):
    """Whether the library's answer `actual` is the typed value `expected`."""
    if not isinstance(expected, dict):
        return expected == actual and type(expected) is type(actual)
    vt, v = expected["vt"], expected.get("v")
    if vt == "Empty":
        return actual is norvik50.Empty
    if vt == "Null":
        return actual is None
    if vt in ("Integer", "Long", "Byte"):
        return type(actual) is int and actual == v
    if vt == "Single":
        return type(actual) is float and struct.pack("f", actual) == struct.pack("f", v)
    if vt == "Double":
        return type(actual) is float and actual == v
    if vt in ("Currency", "Decimal"):
        return isinstance(actual, decimal.Decimal) and actual == decimal.Decimal(v)
    if vt == "Date":
        return actual == datetime.datetime.fromisoformat(v)
    if vt == "String":
        return actual == v
    if vt == "Boolean":
        return actual is v
    if vt == "Error":
        return actual == norvik50.ErrorValue(v)
    if vt == "Array":
        return (isinstance(actual, norvik50.Array) and actual.lower == expected.get("lb")
                and len(actual) == len(v) and all(same(e, a) for e, a in zip(v, actual)))
    if vt == "Record":
        return (isinstance(actual, norvik50.Record) and actual.type_name == expected["type"]
                and actual.keys() == v.keys() and all(same(v[k], actual[k]) for k in v))
    return False
