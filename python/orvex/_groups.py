"""Many symbols in one table: each is computed by itself, on all cores."""

from __future__ import annotations

import functools
import os
import re
import sys
import time
import warnings
from collections.abc import Callable, Mapping, Sequence
from dataclasses import dataclass
from typing import Any

import numpy as np
import numpy.typing as npt

from orvex import _call, _columns, _native
from orvex._errors import OrvexError, SymbolWarning

_SHOWS_PROGRESS_AFTER = 1.0
_NAMED_SYMBOLS = 10


@dataclass
class Groups:
    """Which rows of a table belong to which symbol."""

    order: npt.NDArray[np.int64] | None  # the rows, symbol after symbol; None where they stand so
    offsets: npt.NDArray[np.int64]
    symbol: Callable[[int], Any]  # the symbol of a group
    rows: int  # of the table, those without a symbol included

    @property
    def covers(self) -> bool:
        """Tell whether every row has a symbol."""
        return int(self.offsets[-1]) == self.rows


def _from_codes(codes: npt.NDArray[Any], symbols: Any) -> Groups:
    codes = np.ascontiguousarray(codes, dtype=np.int64)
    order, offsets = _native.make_groups(codes, len(symbols))
    return Groups(order, offsets, lambda group: symbols[group], len(codes))


def _pandas_groups(keys: Any) -> Groups:
    pandas = sys.modules["pandas"]
    if isinstance(keys, pandas.DataFrame):
        grouped = keys.groupby(list(keys.columns), sort=False, observed=True)
        return _from_codes(grouped.ngroup().to_numpy(), list(grouped.size().index))
    if isinstance(keys.dtype, pandas.CategoricalDtype):
        return _from_codes(keys.cat.codes.to_numpy(), keys.cat.categories)
    return _from_codes(*pandas.factorize(keys))


def _polars_groups(keys: Any) -> Groups:
    polars = sys.modules["polars"]
    names = keys.columns
    row = "\0row"
    rows = keys.with_columns(polars.int_range(polars.len(), dtype=polars.Int64).alias(row))
    grouped = rows.group_by(names, maintain_order=True).agg(polars.col(row))
    lengths = grouped[row].list.len().to_numpy()
    offsets = np.concatenate(([0], np.cumsum(lengths, dtype=np.int64)))
    order = grouped[row].explode().to_numpy() if len(keys) else np.empty(0, np.int64)
    symbols = grouped.select(names)
    return Groups(
        np.ascontiguousarray(order),
        offsets,
        lambda group: symbols.row(group) if len(names) > 1 else symbols.row(group)[0],
        rows=len(keys),
    )


def _other_groups(keys: npt.NDArray[Any]) -> Groups:
    symbols, codes = np.unique(keys, return_inverse=True)
    return _from_codes(codes, symbols)


def find_groups(table: Any, by: Any) -> Groups:
    """Return the groups of a table by a column's name, several names, or a column of keys."""
    names = [by] if isinstance(by, str) else by
    named = isinstance(names, list | tuple) and all(isinstance(name, str) for name in names)
    if named and table is None:
        raise TypeError("by= names a column, so a frame must be handed in; or hand a column of symbols to by=")
    if named:
        missing = [name for name in names if name not in _columns.column_names(table)]
        if missing:
            raise ValueError(f"the frame has no column {missing[0]!r} for by=; it has {_columns.column_names(table)}")
    if _columns.is_a(table, "pandas", "DataFrame") and named:
        return _pandas_groups(table[names[0]] if len(names) == 1 else table[list(names)])
    if _columns.is_a(table, "polars", "DataFrame") and named:
        return _polars_groups(table.select(names))
    if named:
        if len(names) > 1:
            raise TypeError("several names for by= take a pandas or polars frame")
        by = table[names[0]]
    if _columns.is_a(by, "pandas", "Series"):
        return _pandas_groups(by)
    if _columns.is_a(by, "polars", "Series"):
        return _polars_groups(by.to_frame())
    return _other_groups(np.asarray(by))


class _Progress:
    """A bar on a terminal, from a second on, where tqdm is installed."""

    def __init__(self, total: int) -> None:
        self.total = total
        self.start = time.monotonic()
        self.bar: Any = None
        self.given_up = not sys.stderr.isatty()

    def __call__(self, done: int) -> None:
        if self.bar is None and not self.given_up and time.monotonic() - self.start > _SHOWS_PROGRESS_AFTER:
            try:
                from tqdm.auto import tqdm

                self.bar = tqdm(total=self.total, unit=" symbols", leave=False)
            except ImportError:
                self.given_up = True
        if self.bar is not None:
            self.bar.update(done - self.bar.n)

    def close(self) -> None:
        if self.bar is not None:
            self.bar.close()


def cores() -> int:
    """Return the number of threads that symbols are computed on: that of the cores the process may use.

    The environment variable ORVEX_THREADS sets another. ValueError where it is not a whole number from 1.
    """
    given = os.environ.get("ORVEX_THREADS", "").strip()
    if not given:
        return len(os.sched_getaffinity(0))
    if not re.fullmatch("0*[1-9][0-9]{0,5}", given):
        raise ValueError(f"ORVEX_THREADS must be a whole number from 1 to 999999, not {given!r}")
    return int(given)


def _report(failures: Sequence[tuple[int, int, OrvexError]], groups: Groups, kind: Any, errors: str) -> None:
    def located(group: int, error: OrvexError) -> OrvexError:
        label = None
        if error.record is not None:
            place = int(groups.offsets[group]) + error.record - 1
            label = kind.label(place if groups.order is None else int(groups.order[place]))
        return error.located(label=label, symbol=groups.symbol(group))

    if not failures:
        return
    first = located(failures[0][0], failures[0][2])
    if errors == "raise":
        raise first
    symbols = list(dict.fromkeys(groups.symbol(group) for group, _, _ in failures))
    named = ", ".join(map(str, symbols[:_NAMED_SYMBOLS]))
    if len(symbols) > _NAMED_SYMBOLS:
        named += f" and {len(symbols) - _NAMED_SYMBOLS} more"
    plural = "symbol" if len(symbols) == 1 else "symbols"
    level = 2
    frame = sys._getframe(1)
    while frame is not None and frame.f_globals.get("__name__", "").startswith("orvex."):
        frame, level = frame.f_back, level + 1  # type: ignore[assignment]
    warnings.warn(
        f"{len(symbols)} {plural} could not be computed and have no values: {named}. The first error: {first}",
        SymbolWarning,
        stacklevel=level,
    )


def run(
    calls: Sequence[_call.Call], table: Any, by: Any, errors: str, threads: int | None = None
) -> list[list[npt.NDArray[np.float64]]]:
    """Make calls for each symbol; the result columns of each call stand in the rows of the table."""
    threads = threads or cores()
    groups = find_groups(table, by)
    studies = []
    rows = None
    for call in calls:
        _call.check_indexes(call, by)
        arrays = _call.arrays_of(call)
        studies.append((call.function, {**arrays, **call.plain}))
        rows = len(next(iter(arrays.values())))
    kind = _columns.kind_of(calls[0].inputs)
    assert rows is not None
    if groups.rows != rows:
        raise ValueError(f"by= has {groups.rows} rows and the columns have {rows}; it takes the symbol of each row")
    progress = _Progress(len(groups.offsets) - 1)
    try:
        results, failures = _native.run_groups(studies, rows, groups.order, groups.offsets, threads, progress)
    finally:
        progress.close()
    if not groups.covers:
        without = np.ones(rows, dtype=bool)
        without[groups.order if groups.order is not None else slice(0, int(groups.offsets[-1]))] = False
        for columns in results:
            for column in columns:
                column[without] = np.nan
    _report(failures, groups, kind, errors)
    return results


def compute(call: _call.Call) -> Any:
    """Make a call for each symbol."""
    table = next((value for value in call.inputs if _columns.is_frame(value)), None)
    (results,) = run([call], table, call.by, call.errors)
    kind = _columns.kind_of(call.inputs)
    return _call.pack(call, kind, [kind.from_array(*pair) for pair in zip(results, call.titles, strict=True)])


def _names(key: str, call: _call.Call) -> list[str]:
    attributes = [column["attribute"] for column in _call.description_of(call.function)["columns"]]
    if len(attributes) == 1:
        return [key]
    return [name if name == key or name.startswith(key + "_") else f"{key}_{name}" for name in attributes]


def bind_all(
    prices: Any, which: Mapping[str, Callable[..., Any]], warmup: str, errors: str
) -> tuple[list[_call.Call], list[str]]:
    """Return the calls of several indicators of a frame and the names of all their columns."""
    _call.check_errors(errors)
    calls = []
    names: list[str] = []
    for key, given in which.items():
        function, args, kwargs = given, (), {}
        if isinstance(given, functools.partial):
            function, args, kwargs = given.func, given.args, given.keywords
        if not isinstance(function, _native.Function):
            raise TypeError(f"{key}: {function!r} is no function of orvex, nor functools.partial of one")
        for option in ("by", "warmup", "errors"):
            if option in kwargs:
                raise TypeError(f"{key}: {option}= holds for all indicators; give it to indicators() itself")
        call = _call.bind(function, (prices, *args), {**kwargs, "warmup": warmup})
        if not call.titles:
            raise TypeError(f"{key}: {function.__name__} does not return columns")
        calls.append(call)
        for name in _names(key, call):
            if name in names:
                raise ValueError(f"{key}: there is a column {name!r} already; name the indicator otherwise")
            names.append(name)
    if not calls:
        raise ValueError("which indicators? The mapping is empty")
    return calls, names


def indicators(
    prices: Any,
    which: Mapping[str, Callable[..., Any]],
    *,
    by: Any = None,
    warmup: str = "nan",
    errors: str = "warn",
) -> Any:
    """Compute several indicators of one frame in one pass over its symbols.

    Parameters
    ----------
    prices : frame
        pandas, polars or Dask.
    which : mapping of str to function
        By the name of its column, each indicator: a function of this package, or ``functools.partial`` of one where
        its arguments are not the usual ones.
    by, warmup, errors
        As for each function; they hold for all of them.

    Returns
    -------
    frame
        Of the kind of `prices`, with its rows. An indicator of several columns has a column for each, named
        ``name_column``.

    Raises
    ------
    OrvexError
        What cannot be computed, without `by` or with ``errors="raise"``.
    TypeError, ValueError
        For arguments that do not fit, and for two columns of one name.

    Examples
    --------
    >>> ox.indicators(prices, {"rsi": ox.relative_strength_index,
    ...                        "slow": partial(ox.simple_moving_average, periods=200)}, by="symbol")
    """
    if _columns.is_dask(prices):
        from orvex import _dask

        return _dask.indicators(prices, which, by=by, warmup=warmup, errors=errors)
    if not (_columns.is_a(prices, "pandas", "DataFrame") or _columns.is_a(prices, "polars", "DataFrame")):
        raise TypeError(f"prices must be a pandas, polars or Dask frame, not {type(prices).__name__}")
    calls, names = bind_all(prices, which, warmup, errors)
    kind = _columns.kind_of([prices])
    assert not isinstance(kind, _columns.NumpyKind)
    if by is None:
        columns: list[Any] = []
        for call in calls:
            _call.check_indexes(call)
            columns += [kind.column(column) for column in _call.columns_of(call, kind)]
    else:
        columns = [kind.from_array(column, "") for results in run(calls, prices, by, errors) for column in results]
    return kind.frame(names, columns)
