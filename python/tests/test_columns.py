"""What goes in comes out."""

from __future__ import annotations

from decimal import Decimal
from typing import Any

import hypothesis.extra.numpy as hnp
import numpy as np
import numpy.typing as npt
import pandas as pd
import polars as pl
import pyarrow as pa
import pytest
from conftest import Prices, make_call, make_prices
from hypothesis import given, settings
from hypothesis import strategies as st

import orvex as ox
from orvex import _native

AVERAGE = ox.simple_moving_average
COLUMNS = [function for function in _native.FUNCTIONS if _native.describe(function.index)["columns"]]


def address(values: Any) -> int:
    return int(values.__array_interface__["data"][0])


KINDS = {
    "list": lambda x: x.tolist(),
    "tuple": lambda x: tuple(x.tolist()),
    "strided": lambda x: np.repeat(x, 3)[::3],
    "reversed twice": lambda x: x[::-1].copy()[::-1],
    "read only": lambda x: (y := x.copy(), y.setflags(write=False))[0],
    "big endian": lambda x: x.astype(">f8"),
    "objects": lambda x: x.astype(object),
    "decimals": lambda x: [Decimal(repr(value)) for value in x.tolist()],
    "pandas": lambda x: pd.Series(x, index=pd.date_range("2020-01-01", periods=len(x)), name="Close"),
    "pandas nullable": lambda x: pd.Series(x, dtype="Float64"),
    "pandas arrow": lambda x: pd.Series(x, dtype="double[pyarrow]"),
    "polars": lambda x: pl.Series("close", x),
    "polars chunks": lambda x: pl.Series("close", x[:50]).append(pl.Series("close", x[50:])),
    "arrow": pa.array,
    "arrow chunks": lambda x: pa.chunked_array([x[:50], x[50:]]),
}
OUT = {
    "list": list,
    "tuple": list,
    "decimals": list,
    "pandas": pd.Series,
    "pandas nullable": pd.Series,
    "pandas arrow": pd.Series,
    "polars": pl.Series,
    "polars chunks": pl.Series,
    "arrow": pa.Array,
    "arrow chunks": pa.Array,
}


@pytest.mark.parametrize("kind", KINDS)
def test_every_kind_comes_out_as_it_went_in(kind: str, prices: Prices) -> None:
    close = prices["close"]
    result = AVERAGE(KINDS[kind](close), periods=20)
    assert isinstance(result, OUT.get(kind, np.ndarray))
    values = result.to_numpy(zero_copy_only=False) if isinstance(result, pa.Array) else np.asarray(result, dtype=float)
    np.testing.assert_array_equal(values, AVERAGE(close, periods=20))
    several = ox.macd(KINDS[kind](close))
    assert len(several.columns if hasattr(several, "columns") else several) == 3


def test_pandas_keeps_the_index_and_names_the_result(prices: Prices) -> None:
    frame = pd.DataFrame(prices, index=pd.date_range("2020-01-01", periods=300, name="day")).rename(columns=str.title)
    average = AVERAGE(frame["Close"], alias="average")
    assert average.name == "average"
    assert average.index.equals(frame.index)
    bands = ox.bollinger_bands(frame)
    assert bands.index.equals(frame.index)
    assert list(bands) == ["BollingerBandsMedian", "BollingerBandsTop", "BollingerBandsBottom"]
    assert ox.macd(frame, alias="m").columns.tolist() == ["m", "mSignal", "mHistogram"]


@pytest.mark.parametrize("make", [pd.DataFrame, pl.DataFrame, pa.table, dict], ids=lambda make: make.__name__)
@pytest.mark.parametrize("spell", [str.lower, str.upper, str.title], ids=lambda spell: spell.__name__)
def test_prices_by_name_in_any_capitals(make: Any, spell: Any, prices: Prices) -> None:
    frame = make({spell(name): values for name, values in prices.items()})
    expected = ox.average_true_range(high=prices["high"], low=prices["low"], close=prices["close"])
    np.testing.assert_array_equal(np.asarray(ox.average_true_range(frame), dtype=float), expected)
    np.testing.assert_array_equal(np.asarray(AVERAGE(frame), dtype=float), AVERAGE(prices["close"]))
    volume = ox.on_balance_volume(prices["close"], prices["volume"])
    np.testing.assert_array_equal(np.asarray(ox.on_balance_volume(frame), dtype=float), volume)


def test_prices_that_are_not_read_may_be_missing(prices: Prices) -> None:
    """Or without values, or begin later: a series without volumes has its ranges all the same."""
    expected = ox.true_range(prices)
    frame = pd.DataFrame(prices).assign(volume=np.nan)
    np.testing.assert_array_equal(ox.true_range(frame), expected)
    np.testing.assert_array_equal(ox.true_range(frame.drop(columns=["open", "volume"])), expected)
    with pytest.raises(TypeError, match="needs 'low', 'close'"):
        ox.true_range(high=prices["high"])


def test_records_of_numpy_are_a_frame(prices: Prices) -> None:
    table = np.rec.fromarrays(list(prices.values()), names=list(prices))
    np.testing.assert_array_equal(ox.true_range(table), ox.true_range(prices))


@pytest.mark.parametrize("function", COLUMNS, ids=lambda function: function.__name__)
def test_rows_that_are_not_computed(function: Any, prices: Prices) -> None:
    """NaN at both ends and nowhere else; nulls in polars, Arrow; in all the library's own with warmup="zero"."""
    args, kwargs = make_call(function, prices)
    as_tuple = lambda result: result if isinstance(result, tuple) else (result,)  # noqa: E731
    results = as_tuple(function(*args, **kwargs))
    frame = pl.DataFrame(prices)
    columns = {name: pl.Series(value) if isinstance(value, np.ndarray) else value for name, value in kwargs.items()}
    as_series = lambda result: [result] if isinstance(result, pl.Series) else result.get_columns()  # noqa: E731
    series = as_series(function(frame, **columns))
    zeros = as_tuple(function(*args, **kwargs, warmup="zero"))
    for zero, kept in zip(zeros, as_series(function(frame, **columns, warmup="zero")), strict=True):
        assert kept.null_count() == 0
        np.testing.assert_array_equal(kept.to_numpy(), zero)
    for values, nulls, zero in zip(results, series, zeros, strict=True):
        computed = np.flatnonzero(~np.isnan(values))
        assert len(computed) == 0 or len(computed) == computed[-1] - computed[0] + 1
        assert nulls.is_nan().sum() == 0
        np.testing.assert_array_equal(nulls.is_null().to_numpy(), np.isnan(values))
        np.testing.assert_array_equal(nulls.to_numpy(), values)
        assert not np.isnan(zero).any()
        np.testing.assert_array_equal(zero[computed], values[computed])


@pytest.mark.parametrize("dtype", ["f8", "f4", "i8", "u1", ">f8", object])
def test_what_is_masked_has_no_value(dtype: Any) -> None:
    masked = np.ma.masked_array([7, 1, 2, 4, 9], mask=[True, False, False, False, True], dtype=dtype)
    expected = AVERAGE(np.array([np.nan, 1.0, 2.0, 4.0, np.nan]), periods=2)
    np.testing.assert_array_equal(AVERAGE(masked, periods=2), expected)


def test_nothing_is_copied(prices: Prices) -> None:
    """The library looks at the rows that were handed in and hands out the rows that it made."""
    source = prices["close"]
    for column in (pd.Series(source, copy=False), pl.Series(source), pa.array(source)):
        array = ox._columns.to_array(column, "close")
        start = (
            address(column.to_numpy())
            if not isinstance(column, pl.Series)
            else address(column.to_numpy(allow_copy=False))
        )
        assert address(array) == start
    column = AVERAGE.columns(source)[0]
    rows = address(column.numpy())
    assert pl.Series(column).to_arrow().buffers()[1].address == rows
    assert pa.array(column).buffers()[1].address == rows
    assert address(ox._columns.PandasKind(pd.RangeIndex(300)).column(column).to_numpy()) == rows


def test_chaining_skips_the_rows_without_a_value(prices: Prices) -> None:
    close = prices["close"]
    strength = ox.relative_strength_index(close)
    first = int(np.flatnonzero(~np.isnan(strength))[0])
    chained = ox.exponential_moving_average(strength, periods=10)
    np.testing.assert_array_equal(chained[first:], ox.exponential_moving_average(strength[first:].copy(), periods=10))
    assert np.isnan(chained[:first]).all()
    # Williams %R never has its last row, so what is computed of it has not either.
    percent = ox.williams_pct_r(prices)
    smooth = AVERAGE(percent, periods=5)
    assert np.isnan(percent[-1])
    assert np.isnan(smooth[-1])
    assert not np.isnan(smooth[-2])
    in_polars = ox.exponential_moving_average(ox.relative_strength_index(pl.Series(close)), periods=10)
    np.testing.assert_array_equal(in_polars.to_numpy(), chained)


def moved(values: npt.NDArray[Any], distance: int) -> npt.NDArray[Any]:
    """Return the values where memory begins that many bytes behind a multiple of eight."""
    memory = bytearray(distance) + values.tobytes() + bytearray(1)
    return np.ndarray(len(values), values.dtype, memory, distance)


@settings(max_examples=200, deadline=None)
@given(
    data=st.data(),
    function=st.sampled_from(COLUMNS),
    count=st.integers(0, 60),
    dtype=st.sampled_from(["f8", "f4", "i8", "i4", "u2", ">f8"]),
    step=st.sampled_from([1, 2, -1]),
    distance=st.sampled_from([0, 4, 5]),
    edges=st.tuples(st.integers(0, 8), st.integers(0, 8)),
)
def test_any_array(
    data: Any, function: Any, count: int, dtype: str, step: int, distance: int, edges: tuple[int, int]
) -> None:
    """Strides, places in memory, types and rows without values at the ends change only where the result stands."""
    prices = {name: (100 * values[:count]).astype(np.dtype(dtype)) for name, values in make_prices(60).items()}
    keep = data.draw(st.sampled_from(["close", "volume", "high"]))
    prices[keep] = data.draw(
        hnp.arrays(np.dtype(dtype), count, elements=st.integers(1, 1000).map(lambda value: np.dtype(dtype).type(value)))
    )
    plain = {name: np.ascontiguousarray(values, dtype=np.float64) for name, values in prices.items()}
    turn = -1 if step < 0 else 1
    strided = {name: moved(np.repeat(values[::turn], abs(step)), distance)[::step] for name, values in prices.items()}
    padded = {name: np.pad(values, edges, constant_values=np.nan) for name, values in plain.items()}
    outcomes = []
    for table in (plain, strided, padded):
        args, kwargs = make_call(function, table)
        try:
            result = function(*args, **kwargs)
        except ox.OrvexError as error:
            outcomes.append((error.number, error.source))
            continue
        columns = result if isinstance(result, tuple) else (result,)
        assert all(len(column) == len(table["close"]) for column in columns)
        if table is padded:
            assert all(np.isnan(column[: edges[0]]).all() for column in columns)
            columns = tuple(column[edges[0] : edges[0] + count] for column in columns)
            described = _native.describe(function.index)["columns"]
            # Numbers of records are those of the whole column.
            columns = tuple(
                column - edges[0] if one["record"] else column for column, one in zip(columns, described, strict=True)
            )
        outcomes.append(tuple(column.tobytes() for column in columns))
    assert outcomes[0] == outcomes[1]
    assert outcomes[0] == outcomes[2]


@pytest.mark.parametrize("kind", ["numpy", "polars", "pandas"])
@pytest.mark.parametrize("values", [[], [np.nan] * 5], ids=["empty", "no values"])
def test_nothing_to_compute(kind: str, values: list[float]) -> None:
    make = {"numpy": np.array, "polars": lambda x: pl.Series(x, dtype=pl.Float64), "pandas": pd.Series}[kind]
    result = AVERAGE(make(np.array(values, dtype=float)))
    assert len(result) == len(values)
    assert np.isnan(np.asarray(result, dtype=float)).all()


@pytest.mark.parametrize(
    ("column", "message"),
    [
        (np.array(["1", "2"]), "no numbers"),
        (np.array([True, False]), "no numbers"),
        (np.array(["2020-01-01"], dtype="M8[D]"), "no numbers"),
        (np.array([1 + 2j]), "no numbers"),
        (np.ones((3, 2)), "2 dimensions"),
        (np.ma.masked_array([True, False]), "no numbers"),
        (np.ma.masked_array(["2020-01-01"], dtype="M8[D]"), "no numbers"),
        (np.ma.masked_array(["1", "2"]), "no numbers"),
        (np.ma.masked_array(["1", 2.0], dtype=object), "'1' is no number"),
        (["1.5", 2.0], "'1.5' is no number"),
        ([True, 2.0], "True is no number"),
        (pl.Series(["a"]), "no numbers"),
        (pa.array(["a"]), "no numbers"),
        (pd.Series(["a"]), "no number"),
        (pd.Series([True]), "no numbers"),
        (3.5, "must be a column"),
        ("Close", "must be a column"),
        (None, "needs 'source'"),
    ],
    ids=str,
)
def test_what_is_no_column_is_refused(column: Any, message: str) -> None:
    with pytest.raises((TypeError, ValueError), match=message):
        AVERAGE(column)


def test_calls_that_do_not_fit_say_what_would(prices: Prices) -> None:
    close = prices["close"]
    unaligned: dict[str, Any] = {"high": pd.Series(close), "low": close, "close": pd.Series(close).sort_values()}
    cases: list[tuple[Any, type[Exception], str]] = [
        (lambda: ox.macd(close, periods=3), TypeError, "macd.*unexpected keyword.*periods"),
        (ox.macd, TypeError, "macd.*source"),
        (lambda: AVERAGE(close, periods=2.5), TypeError, "periods must be a whole number, not 2.5"),
        (lambda: AVERAGE(close, periods=True), TypeError, "whole number"),
        (lambda: AVERAGE(close, periods=2**40), OverflowError, "^periods must be a whole number from -2147483648 to"),
        (lambda: AVERAGE(close, warmup="blank"), ValueError, "'nan' or 'zero'"),
        (lambda: ox.bollinger_bands(close, ma_type="simpel"), ValueError, "'simple', 'exponential'"),
        (lambda: ox.true_range(close), TypeError, "frame or a mapping.*high="),
        (ox.true_range, TypeError, "needs prices"),
        (lambda: ox.true_range({"x": close}), ValueError, "no column 'high'; it has 'x'"),
        (lambda: AVERAGE(pd.DataFrame({"Price": close})), ValueError, "no column 'Close'; it has 'Price'"),
        (
            lambda: AVERAGE(pd.DataFrame({"Close": close, "CLOSE": close}).rename(columns={"Close": "cLose"})),
            ValueError,
            "could each be",
        ),
        (lambda: ox.on_balance_volume(close), TypeError, "needs 'volume'"),
        (lambda: ox.on_balance_volume(close, close[:9]), ValueError, "differ in length: source 300, volume 9"),
        (
            lambda: ox.on_balance_volume(pd.Series(close), pd.Series(close, index=range(1, 301))),
            ValueError,
            "different indexes",
        ),
        (
            lambda: ox.true_range(unaligned),
            ValueError,
            "the columns have different indexes",
        ),
        (
            lambda: AVERAGE(pd.Series(close), by=pd.Series(["A", "B"] * 150).sort_values()),
            ValueError,
            "columns and by= have different indexes",
        ),
        (lambda: AVERAGE(close, by="symbol"), TypeError, "a frame must be handed in"),
    ]
    for call, error, message in cases:
        with pytest.raises(error, match=message):
            call()


def test_choices_by_name(prices: Prices) -> None:
    expected = ox.bollinger_bands(prices["close"], ma_type=3)
    for name in ("time_series", "TimeSeries", "time-series", np.int64(3)):
        np.testing.assert_array_equal(ox.bollinger_bands(prices["close"], ma_type=name), expected)


def test_numbers_of_records_are_those_of_what_was_handed_in(prices: Prices) -> None:
    close = prices["close"]
    late = np.concatenate((np.full(10, np.nan), close))
    assert (
        ox.max_value(late, start_period=15, end_period=40).period
        == ox.max_value(close, start_period=5, end_period=30).period + 10
    )
    places = ox.standard.maxindex(late, periods=20)
    np.testing.assert_array_equal(places[29:], ox.standard.maxindex(close, periods=20)[19:] + 10)


def test_dates_begin_sessions(prices: Prices) -> None:
    """A session each day, by the zone of the dates; as a column, as the frame's own, as its index."""
    stamps = pd.date_range("2020-01-01 03:00", periods=300, freq="5h", tz="America/New_York")
    days = np.floor((3 + 5 * np.arange(300)) / 24)
    expected = ox.standard.vwap(prices, days)
    frame = pd.DataFrame(prices)
    told = pl.Series(stamps)
    for result in (
        ox.standard.vwap(frame.set_index(stamps)),
        ox.standard.vwap(frame.assign(Date=stamps)),
        ox.standard.vwap(frame, session=pd.Series(stamps)),
        ox.standard.vwap(pl.DataFrame(prices), session=told),
        ox.standard.vwap(pl.DataFrame(prices).with_columns(date=told).lazy()).collect().to_series(),
        ox.standard.vwap(prices, stamps.tz_localize(None).to_numpy()),
        ox.standard.vwap(prices, pa.array(stamps.tz_localize(None))),
    ):
        np.testing.assert_array_equal(np.asarray(result), expected)
    with pytest.raises(ValueError, match="neither dates nor a column 'Session'"):
        ox.standard.vwap(frame)
