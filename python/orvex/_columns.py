"""Columns and frames of every kind: as arrays on the way in, as what they were on the way out.

pandas, polars, pyarrow and Dask are looked at only where the caller has imported them: whoever hands in a column of one
of them has.
"""

from __future__ import annotations

import numbers
import sys
from collections.abc import Iterable, Iterator, Mapping, Sequence
from typing import Any, Protocol, TypeAlias

import numpy as np
import numpy.typing as npt

from orvex import _native

Array: TypeAlias = npt.NDArray[np.float64]


def _module(name: str) -> Any:
    return sys.modules.get(name)


def is_a(value: Any, module: str, *names: str) -> bool:
    """Tell whether a value is of one of these classes of a package, without importing it."""
    found = _module(module)
    return found is not None and isinstance(value, tuple(getattr(found, name) for name in names))


def is_expression(value: Any) -> bool:
    """Tell whether a value is a polars expression."""
    return is_a(value, "polars", "Expr")


def is_dask(value: Any) -> bool:
    """Tell whether a value is a Dask frame or column."""
    return is_a(value, "dask.dataframe", "DataFrame", "Series")


def is_lazy(value: Any) -> bool:
    """Tell whether a value is a lazy polars frame."""
    return is_a(value, "polars", "LazyFrame")


def is_frame(value: Any) -> bool:
    """Tell whether a value holds columns by name."""
    return (
        isinstance(value, Mapping)
        or is_a(value, "pandas", "DataFrame")
        or is_a(value, "polars", "DataFrame", "LazyFrame")
        or is_a(value, "pyarrow", "Table", "RecordBatch")
        or is_a(value, "dask.dataframe", "DataFrame")
        or (isinstance(value, np.ndarray) and value.dtype.names is not None)
    )


def column_names(frame: Any) -> list[Any]:
    """Return the names of a frame's columns."""
    if isinstance(frame, Mapping):
        return list(frame)
    if isinstance(frame, np.ndarray):
        return list(frame.dtype.names or ())
    if is_lazy(frame):
        return list(frame.collect_schema().names())
    if is_a(frame, "pyarrow", "Table", "RecordBatch"):
        return list(frame.schema.names)
    return list(frame.columns)


def column_of(frame: Any, name: Any) -> Any:
    """Return a column of a frame; of a lazy one, the expression that stands for it."""
    if is_lazy(frame):
        return _module("polars").col(name)
    return frame[name]


def find_name(frame: Any, name: str) -> Any:
    """Return the frame's own spelling of a column's name, or None: exactly, or in other capitals if only one is."""
    names = column_names(frame)
    if name in names:
        return name
    alike = [one for one in names if isinstance(one, str) and one.casefold() == name.casefold()]
    if len(alike) > 1:
        raise ValueError(f"the columns {' and '.join(map(repr, alike))} could each be {name!r}")
    return alike[0] if alike else None


def session_of(frame: Any) -> Any:
    """Return what tells the sessions of a frame: its column Session or Date, or the dates of its rows."""
    for name in ("session", "date"):
        spelling = find_name(frame, name)
        if spelling is not None:
            return column_of(frame, spelling)
    if _has_dated_rows(frame):
        return frame.index
    raise ValueError("the frame has neither dates nor a column 'Session'; session= takes a column of either")


def _number(value: Any) -> float:
    if value is None or (not isinstance(value, bool | np.bool_) and isinstance(value, numbers.Number)):
        return np.nan if value is None else float(value)  # type: ignore[arg-type]
    if value is getattr(_module("pandas"), "NA", value) and value is not None and _module("pandas") is not None:
        return np.nan
    if type(value).__name__ == "Decimal":
        return float(value)
    raise TypeError(f"{value!r} is no number")


def _from_numpy(values: npt.NDArray[Any], name: str) -> Array:
    if values.ndim != 1:
        raise ValueError(f"{name} has {values.ndim} dimensions; a column has one")
    if isinstance(values, np.ma.MaskedArray) and values.dtype.kind in "fiuO":
        values = np.where(np.ma.getmaskarray(values), np.nan, values.data)
    if values.dtype.kind in "fiu":
        # What has travelled, or lies in a file, may begin at any byte.
        return np.asarray(np.require(values, np.float64, ["C", "A"]))
    if values.dtype.kind == "O":
        try:
            return np.array([_number(value) for value in values], dtype=np.float64)
        except TypeError as error:
            raise TypeError(f"{name}: {error}") from None
    raise TypeError(f"{name} holds {values.dtype}, which are no numbers")


def _times(column: Any) -> npt.NDArray[np.datetime64] | None:
    """Return a column of dates as NumPy has them, in their own clock, or None for a column of others."""
    if is_a(column, "pandas", "Series", "Index") and column.dtype.kind == "M":
        dates = _module("pandas").DatetimeIndex(column)
        column = (dates if dates.tz is None else dates.tz_localize(None)).to_numpy()
    elif is_a(column, "polars", "Series") and isinstance(
        column.dtype, _module("polars").Date | _module("polars").Datetime
    ):
        column = column.dt.date().to_numpy()
    elif is_a(column, "pyarrow", "Array", "ChunkedArray") and _module("pyarrow").types.is_temporal(column.type):
        column = column.cast(_module("pyarrow").date32()).to_numpy(zero_copy_only=False)
    return column if isinstance(column, np.ndarray) and column.dtype.kind == "M" else None


def _days(column: Any) -> Array | None:
    """Return the number of each date's day, or None for a column of no dates."""
    times = _times(column)
    return None if times is None else np.where(np.isnat(times), np.nan, times.astype("M8[D]").astype(np.float64))


def date_text(date: Any) -> str:
    """Return a date as the library reads it; a text as it is."""
    return str(date.astype("M8[us]") if isinstance(date, np.datetime64) else date)


def dates_of(frame: Any) -> list[str] | None:
    """Return the dates of a frame as texts: its column Date or the dates of its rows; None where it has neither."""
    spelling = find_name(frame, "date")
    if spelling is None and not _has_dated_rows(frame):
        return None
    column = frame.index if spelling is None else column_of(frame, spelling)
    times = _times(column)
    if times is not None:
        return [str(text) for text in np.datetime_as_string(times.astype("M8[us]"))]
    return [date_text(date) for date in column]


def _has_dated_rows(frame: Any) -> bool:
    return is_a(frame, "pandas", "DataFrame") and frame.index.dtype.kind == "M"


def to_sessions(column: Any, name: str) -> Array:
    """Return a column whose changes of value begin sessions; dates are told apart by their days."""
    days = _days(column)
    return to_array(column, name) if days is None else days


def to_array(column: Any, name: str) -> Array:
    """Return a column as doubles in one piece, NaN where it has no value; without a copy where it is that already."""
    if isinstance(column, np.ndarray):
        return _from_numpy(column, name)
    if is_a(column, "pandas", "Series", "Index"):
        if column.dtype.kind in "fiu":
            return _from_numpy(column.to_numpy(dtype=np.float64, na_value=np.nan), name)
        return _from_numpy(column.to_numpy(), name)
    if is_a(column, "polars", "Series"):
        polars = _module("polars")
        if not (column.dtype.is_numeric() or column.dtype == polars.Null):
            raise TypeError(f"{name} holds {column.dtype}, which are no numbers")
        return _from_numpy(column.cast(polars.Float64).to_numpy(), name)
    if is_a(column, "pyarrow", "Array", "ChunkedArray"):
        types = _module("pyarrow").types
        if not (types.is_floating(column.type) or types.is_integer(column.type) or types.is_decimal(column.type)):
            raise TypeError(f"{name} holds {column.type}, which are no numbers")
        numbers_only = column.cast(_module("pyarrow").float64(), safe=False)
        if numbers_only.null_count:
            numbers_only = numbers_only.fill_null(np.nan)
        if is_a(numbers_only, "pyarrow", "ChunkedArray"):
            return _from_numpy(numbers_only.to_numpy(), name)
        return _from_numpy(numbers_only.to_numpy(zero_copy_only=False), name)
    if isinstance(column, str | bytes | numbers.Number) or column is None:
        raise TypeError(f"{name} must be a column, not {column!r}")
    if isinstance(column, Iterable) and not hasattr(column, "__array__"):
        if isinstance(column, Iterator):
            column = list(column)
        try:
            return np.array([_number(value) for value in column], dtype=np.float64)
        except TypeError as error:
            raise TypeError(f"{name}: {error}") from None
    return _from_numpy(np.asarray(column), name)


class Kind(Protocol):
    """What results become: the kind of what was handed in."""

    def column(self, result: _native.Column) -> Any:
        """Return one result column."""

    def from_array(self, values: Array, name: str) -> Any:
        """Return an array in which NaN means that a row is not computed."""

    def label(self, row: int) -> Any:
        """Return the label of a row, or None."""


class FrameKind(Kind, Protocol):
    """A kind that has frames."""

    def frame(self, names: Sequence[str], columns: Sequence[Any]) -> Any:
        """Return several columns as one object."""


class NumpyKind:
    """Arrays, several of which are a named tuple."""

    def column(self, result: _native.Column) -> Any:
        return result.numpy()

    def from_array(self, values: Array, name: str) -> Any:
        return values

    def label(self, row: int) -> Any:
        return None


class ListKind(NumpyKind):
    """Lists of Python's own numbers."""

    def column(self, result: _native.Column) -> Any:
        return result.numpy().tolist()

    def from_array(self, values: Array, name: str) -> Any:
        return values.tolist()


class PandasKind:
    """pandas columns with the index that was handed in."""

    def __init__(self, index: Any) -> None:
        self.index = index
        self.pandas = _module("pandas")

    def column(self, result: _native.Column) -> Any:
        return self.from_array(result.numpy(), result.name)

    def frame(self, names: Sequence[str], columns: Sequence[Any]) -> Any:
        return self.pandas.DataFrame(dict(zip(names, columns, strict=True)), index=self.index, copy=False)

    def from_array(self, values: Array, name: str) -> Any:
        return self.pandas.Series(values, index=self.index, name=name, copy=False)

    def label(self, row: int) -> Any:
        return self.index[row]


class PolarsKind:
    """polars columns."""

    def __init__(self) -> None:
        self.polars = _module("polars")

    def column(self, result: _native.Column) -> Any:
        return self.polars.Series(result.name, result)

    def frame(self, names: Sequence[str], columns: Sequence[Any]) -> Any:
        return self.polars.DataFrame([column.alias(name) for name, column in zip(names, columns, strict=True)])

    def from_array(self, values: Array, name: str) -> Any:
        return self.polars.Series(name, values).fill_nan(None)

    def label(self, row: int) -> Any:
        return None


class ArrowKind:
    """Arrow arrays."""

    def __init__(self) -> None:
        self.pyarrow = _module("pyarrow")

    def column(self, result: _native.Column) -> Any:
        return self.pyarrow.array(result)

    def frame(self, names: Sequence[str], columns: Sequence[Any]) -> Any:
        return self.pyarrow.table(dict(zip(names, columns, strict=True)))

    def from_array(self, values: Array, name: str) -> Any:
        return self.pyarrow.array(values, from_pandas=True)

    def label(self, row: int) -> Any:
        return None


def kind_of(inputs: Sequence[Any]) -> NumpyKind | FrameKind:
    """Return the kind that results take after: that of the first input that is more than an array or a list."""
    for value in inputs:
        if isinstance(value, Mapping):
            return kind_of(list(value.values()))
        if is_a(value, "pandas", "Series", "DataFrame"):
            return PandasKind(value.index)
        if is_a(value, "polars", "Series", "DataFrame"):
            return PolarsKind()
        if is_a(value, "pyarrow", "Array", "ChunkedArray", "Table", "RecordBatch"):
            return ArrowKind()
    if inputs and all(isinstance(value, list | tuple) for value in inputs):
        return ListKind()
    return NumpyKind()
