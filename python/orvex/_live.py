"""Series that grow: a record is appended or revised, and what is kept on the series is up to date."""

from __future__ import annotations

import datetime
from collections.abc import Callable, Mapping
from typing import Any, TypedDict, Unpack

import numpy as np
import numpy.typing as npt

from orvex import _columns, _native, _results
from orvex._call import _real, _whole, description_of
from orvex._errors import OrvexError

PRICES = ("open", "high", "low", "close", "volume")


class Record(TypedDict, total=False):
    """The prices of one record, and its date for what begins anew with each session."""

    open: float
    high: float
    low: float
    close: float
    volume: float
    date: str | datetime.date | np.datetime64


class Kept:
    """A call that is kept on a live series, as ``Live.keep`` returns it.

    ``kept["macd_signal"]`` is one column of several, by its name in the result, to keep another call on.
    """

    __module__ = "orvex"

    def __init__(self, function: _native.Function, result: _native.LiveResult, column: int | None = None) -> None:
        self._function = function
        self._result = result
        self._column = column

    def __repr__(self) -> str:
        return f"<orvex.{self._function.__name__} kept on {len(self)} records>"

    def __len__(self) -> int:
        """Tell how many records the values are of: those of the series, or fewer where the last change has failed."""
        return self._result.count

    @property
    def error(self) -> OrvexError | None:
        """What the last change has failed with, or None. The values are those of the records before."""
        return self._result.error

    @property
    def values(self) -> Any:
        """The column as an array, or a named tuple of the columns, NaN in rows that are not computed.

        An array is a view that cannot be written. It stays as long as it is: records that come, and revisions, show in
        a new one. What it has for the last record may change with a revision.
        """
        return self._each(self._array)

    @property
    def last(self) -> Any:
        """The last value, or a named tuple of the last values of the columns; None where there is none yet."""
        if self._result.columns == 0:
            return None
        return self._each(self._result.last)

    def __getitem__(self, name: str) -> Kept:
        """Return one column of the result by its name."""
        fields = [column["attribute"] for column in description_of(self._function)["columns"]]
        if name not in fields:
            raise KeyError(f"{name!r}: the columns are {', '.join(map(repr, fields))}")
        return Kept(self._function, self._result, fields.index(name))

    def _each(self, take: Callable[[int], Any]) -> Any:
        count = len(description_of(self._function)["columns"])
        if self._column is not None:
            return take(self._column)
        if count == 1:
            return take(0)
        return _results.make(self._function.index, [take(column) for column in range(count)])

    def _array(self, column: int) -> npt.NDArray[np.float64]:
        # Before the first call has succeeded there is none.
        return self._result.array(column) if self._result.columns else np.empty(0)

    def _as_argument(self) -> tuple[_native.LiveResult, int]:
        if self._column is None and len(description_of(self._function)["columns"]) > 1:
            raise TypeError(f"{self._function.__name__} has several columns; name one of them: kept['...']")
        return self._result, self._column or 0


class Live:
    """Prices that grow, and calls that are kept on them.

    Only records that are new are computed, with the same bits as a call on all of them: a change costs the same
    however long the series is. One thread at a time may use a series and what is kept on it.

    Parameters
    ----------
    prices
        What there is already: a frame or a mapping with columns ``open``, ``high``, ``low``, ``close`` and
        ``volume``, in capitals or not, as far as it has them. What it does not have the series never has. Without it
        the series is empty. A column ``date``, or the dates of the rows, tell where sessions begin.

    Examples
    --------
    >>> live = Live()
    >>> average = live.keep(orvex.simple_moving_average, periods=2)
    >>> for close in (1.0, 2.0, 4.0):
    ...     live.append(close=close)
    >>> average.last
    3.0
    >>> live.revise(close=6.0)
    >>> average.last
    4.0
    """

    __module__ = "orvex"

    def __init__(self, prices: Any = None) -> None:
        columns = {} if prices is None else _price_columns(prices)
        self._series = _native.LiveSeries(columns)
        self._prices = [name for name in PRICES if prices is None or name in columns]
        self._results: list[_native.LiveResult] = []

    def __len__(self) -> int:
        """Tell how many records there are."""
        return self._series.count

    def append(self, prices: Any = None, /, **record: Unpack[Record]) -> None:
        """Add a record, ``append(close=10.5, volume=100)``, or all records of a frame.

        A frame has every column of the series: ValueError names those that it lacks. Prices that are left out of a
        record are those of ``close``, and its volume is 0. A ``date`` beside them is for what begins anew with each
        session, such as ``standard.vwap``.
        """
        if prices is None:
            self._series.append(*_values(record))
        elif record:
            raise TypeError("append() takes a frame, or the prices of one record")
        else:
            columns = _price_columns(prices)
            missing = [name for name in self._prices if name not in columns]
            if missing:
                raise ValueError(f"the series has columns that the frame lacks: {', '.join(missing)}")
            self._series.append_rows(columns)

    def revise(self, **record: Unpack[Record]) -> None:
        """Put another record in the place of the last one."""
        if len(self) == 0:
            raise IndexError("there is no record to revise")
        self._series.revise(*_values(record))

    def keep(self, function: Callable[..., Any], /, **arguments: Any) -> Kept:
        """Keep a call of one of the functions of this package, and compute it at once.

        A column is a price by its name, ``column="high"``, or what is kept already: the call then begins behind the
        rows that have no value. Other arguments are those of the function, without prices, ``by`` and ``warmup``. Where
        the call itself fails, now or later, that is told by ``error`` and not raised.
        """
        if not isinstance(function, _native.Function):
            raise TypeError(f"{function!r} is no function of orvex")
        description = description_of(function)
        if not description["columns"]:
            raise TypeError(f"{function.__name__} gives no columns to keep")
        for key, value in arguments.items():
            if isinstance(value, Kept) and not self._keeps(value):
                raise ValueError(f"{key} is kept on another series, or was dropped")
        result = self._series.keep(function, _arguments(function.__name__, description, arguments))
        self._results.append(result)
        return Kept(function, result)

    def drop(self, kept: Kept, /) -> None:
        """Let go of a call that is kept: it is not computed any further, and its values stay as they are.

        ValueError for one that is not kept on this series, or that another call is kept on: drop that one before.
        """
        if not isinstance(kept, Kept):
            raise TypeError(f"{kept!r} is not what keep() has returned")
        if not self._keeps(kept):
            raise ValueError("the call is kept on another series, or was dropped")
        try:
            self._series.drop(kept._result)
        except ValueError:
            raise ValueError("another call is kept on this one; drop that one before") from None
        self._results = [result for result in self._results if result is not kept._result]

    def _keeps(self, kept: Kept) -> bool:
        return any(result is kept._result for result in self._results)


def _arguments(name: str, description: Mapping[str, Any], given: Mapping[str, Any]) -> dict[str, Any]:
    parameters = {
        parameter["name"]: parameter
        for parameter in description["parameters"]
        if parameter["kind"] in ("column", "whole", "real", "alias")
    }
    bound: dict[str, Any] = {}
    for key, value in given.items():
        if key not in parameters:
            raise TypeError(f"{name} has no argument {key!r} to be kept with; it has {', '.join(parameters)}")
        match parameters[key]["kind"]:
            case "column":
                if not isinstance(value, str | Kept):
                    raise TypeError(f"{key} is the name of a price or what is kept already, not {value!r}")
                bound[key] = value._as_argument() if isinstance(value, Kept) else value
            case "whole":
                bound[key] = float(_whole(value, parameters[key]))
            case "real":
                bound[key] = _real(value, key)
            case _:
                bound[key] = str(value)
    return bound


def _values(record: Record) -> tuple[float, float, float, float, float, str]:
    unknown = [name for name in record if name not in (*PRICES, "date")]
    if unknown:
        raise TypeError(f"a record has no {unknown[0]!r}; it has {', '.join(PRICES)} and date")
    if "close" not in record:
        raise TypeError("a record needs its close")
    close = float(record["close"])
    return (
        float(record.get("open", close)),
        float(record.get("high", close)),
        float(record.get("low", close)),
        close,
        float(record.get("volume", 0.0)),
        _columns.date_text(record.get("date", "")),
    )


def _price_columns(prices: Any) -> dict[str, npt.NDArray[np.float64] | list[str]]:
    if not _columns.is_frame(prices):
        raise TypeError(f"prices must be a frame or a mapping of columns, not {type(prices).__name__}")
    columns: dict[str, npt.NDArray[np.float64] | list[str]] = {}
    for name in PRICES:
        spelling = _columns.find_name(prices, name)
        if spelling is not None:
            columns[name] = _columns.to_array(_columns.column_of(prices, spelling), name)
    if not columns:
        raise ValueError(f"prices have none of the columns {', '.join(PRICES)}")
    dates = _columns.dates_of(prices)
    if dates is not None:
        columns["date"] = dates
    if len({len(column) for column in columns.values()}) > 1:
        raise ValueError("the columns of prices differ in length")
    return columns
