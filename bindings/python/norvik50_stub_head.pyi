# Type stubs of the norvik50 package; LIB's members below are generated
# from the library's member table.
import enum
from datetime import datetime
from decimal import Decimal
from typing import Any, Iterable, Mapping, Sequence

__version__: str
DIALOGS_HEADLESS: int
DIALOGS_QT: int

class VT(enum.IntEnum):
    Empty: int
    Null: int
    Integer: int
    Long: int
    Single: int
    Double: int
    Currency: int
    Date: int
    String: int
    Object: int
    Error: int
    Boolean: int
    Variant: int
    Decimal: int
    Byte: int
    Record: int
    Array: int

class Error(Exception):
    number: int
    description: str
    source: str
    def __init__(self, number: int, description: str = ..., source: str = ...) -> None: ...

class _EmptyType: ...
class _NothingType: ...
Empty: _EmptyType
Nothing: _NothingType

class Ref:
    value: Any
    def __init__(self, value: Any = ...) -> None: ...

class Array(list[Any]):
    lower: int | None
    element_type: VT
    def __init__(self, items: Iterable[Any] = ..., lower: int | None = ...,
                 element_type: int = ...) -> None: ...

class Record(dict[str, Any]):
    type_name: str
    def __init__(self, type_name: str, fields: Mapping[str, Any] = ...) -> None: ...

class ErrorValue:
    code: int
    def __init__(self, code: int) -> None: ...

class Variant:
    value: Any
    vt: VT
    def __init__(self, value: Any, vt: int) -> None: ...

class HostObject:
    @classmethod
    def collection(cls, items: Iterable[Any] = ...) -> HostObject: ...
    def __len__(self) -> int: ...
    def add(self, item: Any) -> None: ...
    def item(self, index: int) -> Any: ...

def members() -> list[dict[str, Any]]: ...
def set_dialogs(which: int) -> None: ...
def set_host_application(name: str, title: str = ...) -> None: ...

class LIB:
    def __init__(self) -> None: ...
    def close(self) -> None: ...
    def __enter__(self) -> LIB: ...
    def __exit__(self, *exc: Any) -> None: ...
    def call(self, member: str, *args: Any, **kwargs: Any) -> Any: ...
    def let(self, member: str, *args: Any, **kwargs: Any) -> Any: ...
