"""What functions return that are not columns alone."""

from __future__ import annotations

from collections import namedtuple
from collections.abc import Iterable
from typing import Any, NamedTuple

from orvex import _native


class Note(NamedTuple):
    """A point of a series: the number of a record, counted from 1, a value and a text."""

    period: int
    value: float
    note: str


def type_name(function: str) -> str:
    """Name the named tuple of a function: ``MacdResult`` for ``macd``."""
    return "".join(part.capitalize() for part in function.split("_")) + "Result"


_types: dict[int, type[tuple[Any, ...]]] = {}


def result_type(index: int) -> type[tuple[Any, ...]]:
    """Return the named tuple of the columns of a function, made when it is first asked for."""
    if index not in _types:
        function = _native.describe(index)
        name = type_name(function["name"])
        # Made from the catalogue, so that neither its name nor its fields can be literals.
        fields = namedtuple(name, [column["attribute"] for column in function["columns"]])  # type: ignore[misc]
        made: type[tuple[Any, ...]] = type(
            name,
            (fields,),
            {
                "__slots__": (),
                "__doc__": f"The columns of ``{function['name']}``.",
                # By the name of the function, since the type itself stands in no module.
                "__reduce__": lambda values: (_restore, (index_name(index), tuple(values))),
            },
        )
        _types[index] = made
    return _types[index]


def make(index: int, values: Iterable[Any]) -> tuple[Any, ...]:
    """Make the named tuple of a function."""
    return tuple.__new__(result_type(index), values)


def index_name(index: int) -> tuple[str, str]:
    """Return the module and the name of a function."""
    function = _native.describe(index)
    return function["module"], function["name"]


def _restore(name: tuple[str, str], values: tuple[Any, ...]) -> tuple[Any, ...]:
    for function in _native.FUNCTIONS:
        if index_name(function.index) == name:
            return make(function.index, values)
    raise LookupError(f"orvex has no function {name[1]}")
