"""Calls with anything but plain arrays: the way from columns of every kind to arrays and back."""

from __future__ import annotations

import functools
import operator
from collections.abc import Mapping, Sequence
from dataclasses import dataclass, field
from typing import Any

import numpy as np

from orvex import _columns, _docs, _native, _results
from orvex._columns import FrameKind, Kind, NumpyKind
from orvex._errors import OrvexError


@functools.cache
def description_of(function: _native.Function) -> dict[str, Any]:
    """Return the description of a function; it must not be changed."""
    return _native.describe(function.index)


@functools.cache
def signature_of(function: _native.Function) -> Any:
    """Return the signature of a function."""
    return _docs.signature(description_of(function))


@dataclass
class Call:
    """What a caller has asked for, before any column is looked into."""

    function: _native.Function
    columns: dict[str, Any]  # by parameter: columns of any kind
    plain: dict[str, Any]  # by parameter: numbers, texts and the warm-up
    inputs: list[Any] = field(default_factory=list)  # what was handed in, in the order of the parameters
    by: Any = None
    errors: str = "warn"

    @property
    def titles(self) -> list[str]:
        """The names of the result's columns."""
        description = description_of(self.function)
        alias = self.plain.get("alias")
        titles = [column["name"] for column in description["columns"]]
        if alias is None:
            return titles
        usual = next(p["usual"] for p in description["parameters"] if p["kind"] == "alias")
        return [alias + title.removeprefix(usual) if title.startswith(usual) else title for title in titles]


def _whole(value: Any, parameter: Mapping[str, Any]) -> int:
    name, choices = parameter["name"], parameter["choices"]
    if isinstance(value, str) and choices:
        word = value.replace("_", "").replace("-", "").replace(" ", "").casefold()
        for choice, code in choices.items():
            if word == choice.replace("_", ""):
                return int(code)
        raise ValueError(f"{name} is one of {', '.join(map(repr, choices))}, not {value!r}")
    if isinstance(value, bool | np.bool_):
        raise TypeError(f"{name} must be a whole number, not {value!r}")
    try:
        return operator.index(value)
    except TypeError:
        raise TypeError(f"{name} must be a whole number, not {value!r}") from None


def _real(value: Any, name: str) -> float:
    if isinstance(value, bool | str | bytes):
        raise TypeError(f"{name} must be a number, not {value!r}")
    try:
        return float(value)
    except TypeError:
        raise TypeError(f"{name} must be a number, not {value!r}") from None


def _price_of(frame: Any, name: str, function: str) -> Any:
    spelling = _columns.find_name(frame, name)
    if spelling is None:
        names = ", ".join(map(repr, _columns.column_names(frame)))
        raise ValueError(f"{function}: the frame has no column {name!r}; it has {names}")
    return _columns.column_of(frame, spelling)


def _bind_columns(call: Call, given: Mapping[str, Any], parameters: Sequence[Mapping[str, Any]]) -> None:
    name = call.function.__name__
    frame = None
    prices = [parameter["name"] for parameter in parameters if parameter["kind"] == "price"]
    for parameter in parameters:
        value = given.get(parameter["name"])
        if value is not None and parameter["kind"] in ("prices", "column", "price"):
            call.inputs.append(value)
        match parameter["kind"]:
            case "prices" if value is not None:
                if not _columns.is_frame(value):
                    by_keyword = ", ".join(f"{price}=" for price in prices)
                    raise TypeError(
                        f"{name}: prices must be a frame or a mapping of columns, not {type(value).__name__}; "
                        f"single columns are given by keyword: {by_keyword}"
                    )
                frame = value
                call.columns |= {price: _price_of(value, price, name) for price in prices if price not in given}
            case "price" if value is not None:
                call.columns[parameter["name"]] = value
            case "column":
                if value is not None and _columns.is_frame(value):
                    frame, value = value, None
                if isinstance(value, str) and frame is not None:
                    value = _price_of(frame, value, name)
                elif value is None and frame is not None and parameter["session"]:
                    value = _columns.session_of(frame)
                elif value is None and frame is not None:
                    value = _price_of(frame, parameter["usual"] or parameter["name"], name)
                if value is None:
                    raise TypeError(f"{name}() needs {parameter['name']!r}, a column")
                call.columns[parameter["name"]] = value
    missing = [price for price in prices if price not in call.columns]
    if missing and len(missing) == len(prices):
        by_keyword = ", ".join(f"{price}=" for price in prices)
        raise TypeError(f"{name}() needs prices: a frame, or columns by keyword: {by_keyword}")
    if missing:
        raise TypeError(f"{name}() needs {', '.join(map(repr, missing))} beside the prices that are given")


def check_errors(value: Any) -> str:
    """Return what becomes of symbols that cannot be computed; ValueError for what is none of it."""
    if value not in ("warn", "raise"):
        raise ValueError(f"errors is 'warn' or 'raise', not {value!r}")
    return str(value)


def bind(function: _native.Function, args: Sequence[Any], kwargs: Mapping[str, Any]) -> Call:
    """Bring the arguments of a call into order. TypeError and ValueError for those that do not fit."""
    description = description_of(function)
    try:
        given = signature_of(function).bind(*args, **kwargs).arguments
    except TypeError as error:
        raise TypeError(f"{function.__name__}() {error}") from None
    call = Call(function, {}, {})
    for parameter in description["parameters"]:
        name, kind = parameter["name"], parameter["kind"]
        value = given.get(name)
        if value is None:
            continue
        if kind == "whole":
            call.plain[name] = _whole(value, parameter)
        elif kind == "real":
            call.plain[name] = _real(value, name)
        elif kind == "alias":
            if not isinstance(value, str):
                raise TypeError(f"{name} must be a text, not {value!r}")
            call.plain[name] = value
        elif kind == "warmup":
            if value not in ("nan", "zero"):
                raise ValueError(f"warmup is 'nan' or 'zero', not {value!r}")
            call.plain[name] = value
        elif kind == "errors":
            call.errors = check_errors(value)
        elif kind == "by":
            call.by = value
    _bind_columns(call, given, description["parameters"])
    return call


def arrays_of(call: Call) -> dict[str, Any]:
    """Return the columns of a call as arrays of one length."""
    parameters = description_of(call.function)["parameters"]
    sessions = {parameter["name"] for parameter in parameters if parameter.get("session")}
    arrays = {
        name: _columns.to_sessions(column, name) if name in sessions else _columns.to_array(column, name)
        for name, column in call.columns.items()
    }
    lengths = {name: len(array) for name, array in arrays.items()}
    if len(set(lengths.values())) > 1:
        told = ", ".join(f"{name} {length}" for name, length in lengths.items())
        raise ValueError(f"{call.function.__name__}: the columns differ in length: {told}")
    return arrays


def check_indexes(call: Call, by: Any = None) -> None:
    """Refuse pandas columns, and pandas keys, whose rows do not stand beside each other."""
    given = (*call.inputs, *call.columns.values(), by)
    indexes = [value.index for value in given if _columns.is_a(value, "pandas", "Series", "DataFrame")]
    if any(not index.equals(indexes[0]) for index in indexes[1:]):
        what = "columns and by=" if _columns.is_a(by, "pandas", "Series") else "columns"
        raise ValueError(f"{call.function.__name__}: the {what} have different indexes; align them first")


def pack(call: Call, kind: NumpyKind | FrameKind, columns: Sequence[Any]) -> Any:
    """Return the columns of a result as one object."""
    if len(columns) == 1:
        return columns[0]
    if isinstance(kind, NumpyKind):
        return _results.make(call.function.index, columns)
    return kind.frame(call.titles, columns)


def columns_of(call: Call, kind: Kind) -> Any:
    """Return what the library makes of a call on columns in memory: columns, or a single value."""
    try:
        return call.function.columns(**arrays_of(call), **call.plain)
    except OrvexError as error:
        if error.record is None:
            raise
        raise error.located(label=kind.label(error.record - 1)) from None


def compute(call: Call) -> Any:
    """Make a call on columns that are in memory."""
    check_indexes(call)
    kind = _columns.kind_of(call.inputs)
    results = columns_of(call, kind)
    if not description_of(call.function)["columns"]:
        return results
    return pack(call, kind, [kind.column(column) for column in results])


def general(function: _native.Function, args: Sequence[Any], kwargs: Mapping[str, Any]) -> Any:
    """Make any call that the fast way does not take."""
    call = bind(function, args, kwargs)
    if any(_columns.is_dask(value) for value in call.inputs):
        from orvex import _dask

        return _dask.compute(call)
    if any(_columns.is_expression(column) for column in call.columns.values()):
        from orvex import _polars

        return _polars.compute(call)
    if call.by is not None:
        from orvex import _groups

        return _groups.compute(call)
    return compute(call)
