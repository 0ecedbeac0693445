"""Technical analysis of price series.

Every function of the catalogue is here by its name, ``orvex.relative_strength_index`` for one; ``help`` of it tells
its formula, its arguments and its columns. What goes in comes out: lists, NumPy arrays, pandas, polars and Arrow
columns and frames, polars expressions, Dask frames.
"""

import sys as _sys
from importlib import import_module as _import_module
from types import ModuleType as _ModuleType

from orvex import _native
from orvex._errors import OrvexError, SymbolWarning
from orvex._results import Note


def catalogue() -> list[dict[str, object]]:
    """Return the description of every function as plain data, for programs that choose among them."""
    return [_native.describe(function.index) for function in _native.FUNCTIONS]


# What is imported when it is asked for: calls with plain arrays need none of it.
_LATER = {
    "Chart": "orvex._chart",
    "chart": "orvex._chart",
    "Kept": "orvex._live",
    "Live": "orvex._live",
    "indicators": "orvex._groups",
    "read": "orvex._reader",
}

__all__ = ["Note", "OrvexError", "SymbolWarning", "catalogue"]
__all__.extend(_LATER)


def __getattr__(name: str) -> object:
    if name not in _LATER:
        raise AttributeError(f"module 'orvex' has no attribute {name!r}")
    globals()[name] = getattr(_import_module(_LATER[name]), name)
    return globals()[name]


def _publish() -> None:
    """Put each function into its module: this one, or one within it."""
    for function in _native.FUNCTIONS:
        name = function.__module__
        if name not in _sys.modules:
            module = _ModuleType(name, f"The functions of {name}.")
            module.__all__ = []  # type: ignore[attr-defined]
            _sys.modules[name] = module
            globals()[name.removeprefix("orvex.")] = module
            __all__.append(name.removeprefix("orvex."))
        module = _sys.modules[name]
        setattr(module, function.__name__, function)
        module.__all__.append(function.__name__)


_publish()
