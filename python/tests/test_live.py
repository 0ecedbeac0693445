"""Live series: what is kept is what a call on all prices gives."""

import datetime
from typing import Any

import numpy as np
import pandas as pd
import polars as pl
import pytest

import orvex as ox

DESCRIPTIONS = {str(one["name"]): one for one in ox.catalogue() if not one["module"]}


def prices(count: int) -> dict[str, np.ndarray]:
    random = np.random.default_rng(7)
    close = 100 + random.normal(scale=0.5, size=count).cumsum()
    spread = random.uniform(0.1, 1.0, count)
    return {
        "open": np.roll(close, 1),
        "high": np.maximum(close, np.roll(close, 1)) + spread,
        "low": np.minimum(close, np.roll(close, 1)) - spread,
        "close": close,
        "volume": random.integers(1_000, 9_000, count).astype(float),
    }


def part(columns: dict[str, np.ndarray], first: int, last: int) -> dict[str, np.ndarray]:
    return {name: column[first:last] for name, column in columns.items()}


def record(columns: dict[str, np.ndarray], row: int) -> dict[str, Any]:
    return {name: float(column[row]) for name, column in columns.items()}


def same(a: object, b: object) -> None:
    for x, y in zip(a if isinstance(a, tuple) else (a,), b if isinstance(b, tuple) else (b,), strict=True):
        np.testing.assert_array_equal(x, y)


@pytest.mark.parametrize("name", DESCRIPTIONS)
def test_every_function_is_kept_as_it_is_called(name: str) -> None:
    function = getattr(ox, name)
    description: dict[str, Any] = DESCRIPTIONS[name]
    live = ox.Live(part(prices(240), 0, 200))
    if not description["columns"]:
        with pytest.raises(TypeError, match="no columns"):
            live.keep(function)
        return
    columns = prices(240)
    kept = live.keep(function)
    live.append(part(columns, 200, 230))
    for row in range(230, 240):
        live.append(open=1.0, high=2.0, low=0.5, close=1.5, volume=10.0)
        live.revise(**record(columns, row))
    needed = [one["name"] for one in description["parameters"] if one["kind"] == "price"]
    if needed:
        fresh = function(**{price: columns[price] for price in needed})
    else:
        fields = [one for one in description["parameters"] if one["kind"] == "column"]
        fresh = function(*[columns[(one["usual"] or one["name"]).lower()] for one in fields])
    assert kept.error is None
    assert len(kept) == len(live) == 240
    same(kept.values, fresh)
    lasts = kept.last if isinstance(kept.last, tuple) else (kept.last,)
    np.testing.assert_array_equal(lasts, [column[-1] for column in (fresh if isinstance(fresh, tuple) else (fresh,))])


def test_a_view_stays_as_long_as_it_is() -> None:
    columns = prices(50)
    live = ox.Live(part(columns, 0, 20))
    kept = live.keep(ox.simple_moving_average, periods=3)
    old = kept.values
    expected = old.copy()
    for row in range(20, 50):
        live.append(**record(columns, row))
    np.testing.assert_array_equal(old, expected)
    assert len(kept.values) == 50
    del live, kept
    np.testing.assert_array_equal(old, expected)
    with pytest.raises(ValueError, match="read-only"):
        old[0] = 1.0


def test_a_call_on_what_is_kept_begins_behind_the_rows_without_a_value() -> None:
    columns = prices(80)
    live = ox.Live(part(columns, 0, 10))
    lines = live.keep(ox.macd, short_cycle=3, long_cycle=5, signal_periods=2)
    average = live.keep(ox.simple_moving_average, source=lines["macd_signal"], periods=4)
    for row in range(10, 80):
        live.append(**record(columns, row))
    signal = ox.macd(columns["close"], short_cycle=3, long_cycle=5, signal_periods=2).macd_signal
    same(average.values, ox.simple_moving_average(signal, periods=4))
    with pytest.raises(TypeError, match="several columns"):
        live.keep(ox.simple_moving_average, source=lines)


def test_a_call_that_is_dropped_stays_as_it_is() -> None:
    live = ox.Live(part(prices(20), 0, 10))
    lines = live.keep(ox.macd, short_cycle=3, long_cycle=5, signal_periods=2)
    average = live.keep(ox.simple_moving_average, source=lines["macd"], periods=2)
    with pytest.raises(ValueError, match="another call is kept on this one"):
        live.drop(lines)
    live.drop(average)
    live.drop(lines)
    live.append(part(prices(20), 10, 20))
    assert (len(live), len(lines), len(average)) == (20, 10, 10)
    with pytest.raises(ValueError, match="was dropped"):
        live.drop(lines)
    with pytest.raises(ValueError, match="was dropped"):
        live.keep(ox.momentum, source=lines["macd"])


def test_before_there_are_records() -> None:
    lines = ox.Live().keep(ox.macd)
    assert lines.last is None
    assert lines["macd_signal"].last is None
    assert [len(column) for column in lines.values] == [0, 0, 0]
    assert isinstance(lines["macd_signal"].values, np.ndarray)


def test_an_error_is_attached_until_a_revision_mends_it() -> None:
    live = ox.Live()
    kept = live.keep(ox.price_roc, periods=1)
    live.append(close=2.0)
    live.append(close=3.0)
    live.append(close=0.0)
    live.append(close=1.0)
    with pytest.raises(ox.OrvexError) as fresh:
        ox.price_roc(np.array([2.0, 3.0, 0.0, 1.0]), periods=1)
    assert str(kept.error) == str(fresh.value)
    assert len(kept) == 3
    assert kept.last == -100.0
    live.revise(close=float("nan"))
    assert kept.error is not None
    assert len(live) == 4


def test_sessions_begin_where_the_dates_of_records_and_frames_say() -> None:
    days = ["2020-01-30", "2020-01-30", "2020-01-31", "2020-01-31"]
    close = [1.0, 2.0, 4.0, 8.0]
    columns = {"high": close, "low": close, "close": close, "volume": [1.0] * 4}
    times = pd.to_datetime(days) + pd.to_timedelta([9, 23, 0, 1], unit="h")
    for begun in (
        ox.Live({**columns, "date": days}),
        ox.Live(pd.DataFrame(columns, index=times.tz_localize("America/New_York"))),
        ox.Live(pl.DataFrame({"Date": times.to_numpy(), **columns})),
    ):
        kept = begun.keep(ox.standard.vwap)
        begun.append(close=16.0, volume=1.0, date=datetime.date(2020, 2, 3))
        begun.append(close=32.0, volume=1.0, date=np.datetime64("2020-02-03T10:00", "ns"))
        begun.append(close=64.0, volume=1.0)
        assert len(kept) == 6
        begun.revise(close=64.0, volume=1.0, date="2020-02-04")
        np.testing.assert_array_equal(kept.values, [1.0, 1.5, 4.0, 6.0, 16.0, 24.0, 64.0])


@pytest.mark.parametrize(
    ("call", "error", "words"),
    [
        (lambda live: live.append(open=1.0), TypeError, "needs its close"),
        (lambda live: live.append(cloes=1.0), TypeError, "no .cloes."),
        (lambda live: live.append({"close": [1.0]}, close=1.0), TypeError, "a frame, or"),
        (lambda live: live.append({"colse": [1.0]}), ValueError, "none of the columns"),
        (lambda live: live.append(7), TypeError, "a frame or a mapping"),
        (lambda live: live.revise(close=1.0), IndexError, "no record"),
        (lambda live: live.keep(len), TypeError, "no function of orvex"),
        (lambda live: live.keep(ox.rsi), AttributeError, "rsi"),
        (lambda live: live.keep(ox.momentum, period=3), TypeError, "no argument 'period'"),
        (lambda live: live.keep(ox.momentum, source=[1.0]), TypeError, "the name of a price"),
        (lambda live: live.keep(ox.momentum, source="colse"), ox.OrvexError, "Invalid FieldName"),
        (lambda live: live.keep(ox.macd)["line"], KeyError, "the columns are"),
        (lambda live: live.append({"open": [1.0], "close": [1.0]}), ValueError, "frame lacks: high, low, volume"),
        (lambda live: ox.Live({"close": [1.0]}).append({"open": [1.0]}), ValueError, "frame lacks: close"),
        (lambda live: live.keep(ox.momentum, source=ox.Live().keep(ox.momentum)), ValueError, "on another series"),
        (lambda live: live.drop(ox.Live().keep(ox.momentum)), ValueError, "on another series"),
        (lambda live: live.drop("momentum"), TypeError, "not what keep"),
    ],
)
def test_what_fits_nothing_is_refused(call: object, error: type[Exception], words: str) -> None:
    with pytest.raises(error, match=words):
        call(ox.Live())  # type: ignore[operator]
