"""norvik50 for Python: the library's members as methods of LIB.

    import norvik50
    lib = norvik50.LIB()
    lib.tklVal("1234,56")                 # 1234.56 in a German locale
    before, term, after = norvik50.Ref(""), norvik50.Ref(""), norvik50.Ref("")
    lib.tklSeparateString("a-b", "-", before, term, after)
    before.value                          # "a"

Values are Python's own: str, int, float, bool, decimal.Decimal for
Currency and Decimal, datetime.datetime for Date, None for Null and
norvik50.Empty for Empty. Arrays come back as norvik50.Array (a list with
its lower bound), records as norvik50.Record (a dict with its type name).
A member that fails raises norvik50.Error with its number, description and
source. The members are generated from the library's member table, so they
are always those of the loaded library.
"""

from ._values import (Array, Empty, Error, ErrorValue, HostObject, Nothing, Record, Ref,
                      Variant, VT)
from ._lib import LIB, DIALOGS_HEADLESS, DIALOGS_QT, members, set_dialogs, set_host_application
from . import _native

__version__ = _native.version()

__all__ = ["LIB", "Ref", "Error", "Empty", "Nothing", "Array", "Record", "ErrorValue",
           "HostObject", "Variant", "VT", "members", "set_dialogs", "set_host_application",
           "DIALOGS_HEADLESS", "DIALOGS_QT"]
