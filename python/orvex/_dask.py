"""Dask frames: the same call for each partition, when all rows of a symbol are in one."""

from __future__ import annotations

import functools
import sys
import warnings
from collections.abc import Callable, Mapping, Sequence
from dataclasses import replace
from typing import Any

import dask.dataframe as dd
import numpy as np
import pandas as pd
from dask.base import tokenize

from orvex import _call, _groups
from orvex._errors import SymbolWarning

# Where a row stood before the shuffle, which keeps no order: partitions arrive as they are ready.
_PLACE = "__orvex_place"
_ROWS_A_PARTITION = 1 << 40
# A partition is shuffled in pieces: of what is shuffled at a time there are several copies for a moment, split, in the
# form that travels, and as it has come; of a whole partition a worker has no room for as many.
_PIECES = 16


def _add_places(part: pd.DataFrame, partition_info: Mapping[str, Any] | None = None) -> pd.DataFrame:
    number = partition_info["number"] if partition_info else 0
    return part.assign(**{_PLACE: np.arange(len(part), dtype=np.int64) + number * _ROWS_A_PARTITION})


def _sort(part: pd.DataFrame) -> pd.DataFrame:
    if not part[_PLACE].is_monotonic_increasing:
        part = part.sort_values(_PLACE)
    return part.drop(columns=_PLACE)


def _tell(caught: Sequence[warnings.WarningMessage]) -> None:
    """Warn where the caller sees it: through the scheduler, on a worker."""
    distributed = sys.modules.get("distributed")
    for one in caught:
        if distributed is not None and hasattr(distributed, "warn"):
            distributed.warn(str(one.message), one.category)
        else:
            warnings.warn(str(one.message), one.category, stacklevel=2)


def _compute_part(
    part: pd.DataFrame,
    calls: Sequence[_call.Call],
    names: Sequence[str],
    by: Sequence[str],
    errors: str,
    on_index: bool,
) -> pd.DataFrame:
    """Compute the symbols of a partition on one thread: the scheduler has others at work beside it."""
    if _PLACE in part:
        part = _sort(part)
        if on_index:
            part = part.set_index(by[0])
    keys: Any = part.index.to_series() if on_index else list(by)
    here = [
        replace(call, columns={name: part[column] for name, column in call.columns.items()}, inputs=[part])
        for call in calls
    ]
    with warnings.catch_warnings(record=True) as caught:
        warnings.simplefilter("always", SymbolWarning)
        results = _groups.run(here, part, keys, errors, threads=1)
    _tell(caught)
    columns = [column for columns in results for column in columns]
    computed = pd.DataFrame(dict(zip(names, columns, strict=True)), index=part.index, copy=False)
    return computed if on_index else pd.concat([part[list(by)], computed], axis=1)


def _check_columns(frame: Any, call: _call.Call) -> None:
    """Refuse columns that are not the frame's own: of one that only bears the name of one, that would be computed."""
    for name, column in call.columns.items():
        own = isinstance(column, dd.Series) and column.name in frame.columns
        if not own or tokenize(column) != tokenize(frame[column.name]):
            raise TypeError(
                f"{call.function.__name__}: {name} is no column of the Dask frame; make it one before, "
                f"frame.assign(...), and hand in that frame with it"
            )


def _lazily(frame: Any, calls: Sequence[_call.Call], names: Sequence[str], by: Any, errors: str) -> Any:
    if by is None:
        raise TypeError("a Dask frame takes by=: the column that names each row's symbol")
    keys = [by] if isinstance(by, str) else list(by)
    on_index = len(keys) == 1 and keys[0] == frame.index.name and keys[0] not in frame.columns
    missing = [] if on_index else [key for key in keys if key not in frame.columns]
    if missing:
        raise ValueError(f"the frame has no column {missing[0]!r} for by=; it has {list(frame.columns)}")
    for call in calls:
        _check_columns(frame, call)
    # What travels is names: the columns themselves are those of each partition.
    calls = [
        replace(call, columns={name: column.name for name, column in call.columns.items()}, inputs=[], by=None)
        for call in calls
    ]
    needed = list(dict.fromkeys(column for call in calls for column in call.columns.values()))
    part = frame[needed if on_index else [*keys, *(name for name in needed if name not in keys)]]
    compute = functools.partial(_compute_part, calls=calls, names=names, by=keys, errors=errors, on_index=on_index)
    meta = compute(part._meta)
    if on_index and frame.known_divisions:
        return part.map_partitions(compute, meta=meta)
    pieces = part.clear_divisions().repartition(npartitions=_PIECES * frame.npartitions)
    # What travels has no index: an index of symbols would travel twice.
    pieces = pieces.reset_index() if on_index else pieces
    placed = pieces.map_partitions(_add_places, meta=_add_places(pieces._meta))
    return placed.shuffle(on=keys).map_partitions(compute, meta=meta)


def compute(call: _call.Call) -> Any:
    """Return the lazy frame of a call for each symbol: the symbols' names, then the columns of the result."""
    frame = next((value for value in call.inputs if isinstance(value, dd.DataFrame)), None)
    if frame is None:
        raise TypeError(f"{call.function.__name__}: of Dask hand in a frame, and by= for its symbols")
    if not call.titles:
        raise TypeError(f"{call.function.__name__}: what is no column cannot be computed from a Dask frame")
    return _lazily(frame, [call], call.titles, call.by, call.errors)


def indicators(frame: Any, which: Mapping[str, Callable[..., Any]], *, by: Any, warmup: str, errors: str) -> Any:
    """Return the lazy frame of several indicators."""
    calls, names = _groups.bind_all(frame, which, warmup, errors)
    return _lazily(frame, calls, names, by, errors)
