"""Price files as frames."""

from __future__ import annotations

import gzip
import importlib.util
import operator
import os
import sys
import warnings
from collections.abc import Mapping, Sequence
from pathlib import Path
from typing import Any, Literal, SupportsIndex

import numpy as np

from orvex import _native

_GZIP = b"\x1f\x8b"


def _frame_kind(frame: str | None) -> str:
    if frame is not None:
        return frame
    for name in ("pandas", "polars"):
        if importlib.util.find_spec(name) is not None:
            return name
    return "numpy"


def _check_choice(name: str, value: object, choices: Sequence[str]) -> None:
    if value not in choices:
        raise ValueError(f"{name} is {' or '.join(map(repr, choices))}, not {value!r}")


def _delimiter(value: object) -> str | None:
    if value is None:
        return None
    if value in ("tab", "\\t"):
        return "\t"
    if not isinstance(value, str):
        raise TypeError(f"delimiter is a text of one character, or 'tab', not {value!r}")
    if len(value) != 1 or value in '\r\n"':
        raise ValueError(f"delimiter is one character that ends no line and quotes no cell, or 'tab', not {value!r}")
    return value


def _tail(value: object) -> int | None:
    if value is None:
        return None
    if isinstance(value, bool | np.bool_) or not isinstance(value, SupportsIndex):
        raise TypeError(f"tail is a whole number of records, not {value!r}")
    if operator.index(value) < 0:
        raise ValueError(f"tail is a number of records from 0, not {value!r}")
    return min(operator.index(value), sys.maxsize)


def read(
    path: str | os.PathLike[str],
    *,
    frame: Literal["pandas", "polars", "numpy"] | None = None,
    delimiter: str | None = None,
    decimal: Literal[".", ","] | None = None,
    order: Literal["check", "keep"] = "check",
    missing: Literal["refuse", "skip", "previous"] = "refuse",
    columns: Mapping[str, str | int] | None = None,
    first: str | int | None = None,
    last: str | int | None = None,
    tail: int | None = None,
) -> Any:
    """Read a price file into a frame, the oldest record first.

    Encoding, delimiter, decimal sign, header, column names and the form of dates are found out, and every line is
    checked: what cannot be understood is an error that names line and cell, never another number. What was decided and
    is not certain, such as the reversal of a file that begins with the newest record, is a warning.

    Parameters
    ----------
    path : path
        A text file, or one that gzip has compressed.
    frame : {"pandas", "polars", "numpy"}, optional
        What comes back: a frame with the dates as its index (pandas) or first column (polars), or a mapping of arrays.
        Left out, the first of them that is installed.
    delimiter : str, optional
        One character, or "tab", in place of what is found out.
    decimal : {".", ","}, optional
        The decimal sign, in place of what is found out.
    order : {"check", "keep"}
        "keep" takes records as they stand, whatever their dates say.
    missing : {"refuse", "skip", "previous"}
        What becomes of a record that lacks a price between records that have it: an error, left out, or given the
        price of the record before.
    columns : mapping, optional
        Which columns stand for which, ``{"open": "first", "close": 5}``, where the file's names do not tell.
    first, last : str or int, optional
        The records to take: dates or the beginning of one ("2020-06"), or numbers from 1.
    tail : int, optional
        Of those, only so many at the end.

    Raises
    ------
    OrvexError
        1012 for what is no price file.
    ValueError, TypeError
        For an argument that is none of those above.
    """
    if frame is not None:
        _check_choice("frame", frame, ("pandas", "polars", "numpy"))
    if decimal is not None:
        _check_choice("decimal", decimal, (".", ","))
    _check_choice("order", order, ("check", "keep"))
    _check_choice("missing", missing, ("refuse", "skip", "previous"))
    separator, most = _delimiter(delimiter), _tail(tail)
    content = Path(path).read_bytes()
    if content.startswith(_GZIP):
        content = gzip.decompress(content)
    options = {
        "delimiter": separator,
        "decimal": decimal,
        "order": order,
        "missing": missing,
        "columns": dict(columns or {}),
        "first": None if first is None else str(first),
        "last": None if last is None else str(last),
        "tail": most,
    }
    dates, table, remarks = _native.read_prices(content, options)
    for remark in remarks:
        warnings.warn(f"{os.fspath(path)}: {remark}", stacklevel=2)
    if isinstance(dates, np.ndarray):
        dates = dates.view("M8[us]")
    kind = _frame_kind(frame)
    if kind == "pandas":
        import pandas as pd

        index = None if dates is None else pd.Index(dates, name="Date")
        return pd.DataFrame(dict(table), index=index)
    whole = ({} if dates is None else {"Date": dates}) | dict(table)
    if kind == "polars":
        import polars as pl

        return pl.DataFrame(whole)
    return {name: np.asarray(values) for name, values in whole.items()}
