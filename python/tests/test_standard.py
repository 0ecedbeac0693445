"""The book's definitions give TA-Lib's values: every function that both have, on random series and arguments.

ORVEX_PEER_CALLS=2000 makes that many calls of each.
"""

from __future__ import annotations

import os
from typing import Any

import numpy as np
import numpy.typing as npt
import pytest
import talib
from talib import abstract

import orvex as ox
from orvex import _native

Table = dict[str, npt.NDArray[np.float64]]

CALLS = int(os.environ.get("ORVEX_PEER_CALLS", "40"))
DESCRIPTIONS = [_native.describe(function.index) for function in _native.FUNCTIONS]
SHARED = [entry for entry in DESCRIPTIONS if entry["talib"]]
AVERAGE_BY_EFFICIENCY = 6  # KAMA
AVERAGE_BY_PHASE = 7  # MAMA

# Arguments that only one of the two has.
OURS = {"avwap": {"anchor": 1}}
THEIRS = {"vosc": {"matype": 0}}

# In a stretch of equal prices these divide what rounding has left of something that is 0: two ways to compute it leave
# different things. The same holds for any method whose average is the one that goes by the phase of a cycle.
UNSTEADY = {"mama", "ht_dcperiod", "ht_dcphase", "ht_phasor", "ht_sine", "ht_trendmode", "ht_trendline", "stoch_rsi"}


def make_series(random: np.random.Generator, count: int, flat: bool) -> Table:
    """Return prices: smooth, in whole steps, with stretches where nothing moves, with records without volume."""
    kinds = ["smooth", "smooth", "unsold"] + ["steps", "steps with ranges", "flat"] * flat
    kind = random.choice(kinds)
    close = np.abs(50 + random.normal(size=count).cumsum() * random.choice([0.01, 0.5, 2])) + 1
    spread = random.random((2, count)) * random.choice([0.1, 1])
    body = random.normal(size=count) * 0.3
    if kind.startswith("steps"):
        close, body, spread = np.round(close), np.round(body), np.round(2 * spread) / 2
    stretches = [slice(start := int(random.integers(count)), start + int(random.integers(1, 80))) for _ in range(3)]
    for stretch in stretches * (kind == "flat"):
        close[stretch] = close[stretch.start]
        body[stretch] = spread[:, stretch] = 0
    open_ = close + body
    volume = np.round(1000 + random.random(count) * 1000)
    if kind == "unsold":
        volume[random.random(count) < 0.1] = 0
    return {
        "open": open_,
        "high": np.maximum(open_, close) + spread[0],
        "low": np.minimum(open_, close) - spread[1],
        "close": close,
        "volume": volume,
    }


def make_numbers(random: np.random.Generator, entry: dict[str, Any], count: int) -> dict[str, Any]:
    """Return the numbers that a function takes, awkward ones among them."""
    numbers: dict[str, Any] = {}
    ends = [count - 1, count, count + 1] * (random.random() < 0.5)
    for parameter in entry["parameters"]:
        if parameter["kind"] == "whole":
            lengths = [1, 2, 3, 5, 14, 20, random.integers(1, 60), *ends]
            kinds = list(parameter["choices"].values())
            if "stoch" in entry["name"] and kinds:
                # A stochastic stays at its ends: the phase of what does not move is that of a rounding.
                kinds = [kind for kind in kinds if kind != AVERAGE_BY_PHASE]
            numbers[parameter["name"]] = int(random.choice(kinds or lengths))
        elif parameter["kind"] == "real":
            usual = parameter["usual"]
            numbers[parameter["name"]] = float(random.choice([usual, 0, random.uniform(0, 2 * usual or 1)]))
    return numbers | OURS.get(entry["name"], {})


def without_variance(entry: dict[str, Any], prices: Table, periods: int) -> npt.NDArray[np.bool_]:
    """Tell in which rows a window varies by little more than rounding: a running sum leaves its variance few digits."""
    rows = np.zeros(len(prices["close"]), dtype=bool)
    columns = [prices["high"], prices["low"]]
    if entry["name"] == "beta":
        columns = [np.concatenate(([0], np.diff(column) / column[:-1])) for column in columns]
    for column in columns:
        if len(column) >= periods:
            spread = np.lib.stride_tricks.sliding_window_view(column, periods).var(axis=1)
            rows[periods - 1 :] |= spread <= 1e-7 * np.abs(column).max() ** 2
    return rows


def without_moves(prices: Table, periods: int) -> npt.NDArray[np.bool_]:
    """Tell in which rows Wilder's means have shrunk, by moves of 0, to numbers that are hardly told from 0."""
    rows = np.arange(len(prices["close"]))
    moved = np.diff(prices["close"], prepend=np.nan) != 0
    unmoved = rows - np.maximum.accumulate(np.where(moved, rows, 0))
    return np.asarray(unmoved * np.log2(periods / (periods - 1)) > 960)


def tolerance(entry: dict[str, Any], prices: Table) -> float:
    """Return how far apart two values of a function may be."""
    largest = max(1.0, *(float(np.abs(prices[name]).max()) for name in ("high", "low", "volume")))
    if not any(parameter["name"] == "volume" for parameter in entry["parameters"]):
        largest = max(1.0, float(np.abs(prices["high"]).max()), float(np.abs(prices["low"]).max()))
    if entry["name"] == "var":
        return 1e-9 * largest**2
    if entry["name"] == "ht_dcphase":
        return 1e-8 * 360  # of a circle: where the sums over a cycle cancel, they are left with few digits
    # The root of a variance that is computed within 1e-15.
    return 1e-7 * largest if entry["name"] in ("stddev", "bbands") else 1e-9 * largest


def as_columns(result: Any) -> list[npt.NDArray[Any]]:
    return list(result) if isinstance(result, tuple | list) else [result]


@pytest.mark.parametrize("entry", SHARED, ids=lambda entry: entry["name"])
def test_the_values_are_those_of_talib(entry: dict[str, Any]) -> None:
    random = np.random.default_rng(1)
    ours = getattr(ox.standard, entry["name"])
    peer = abstract.Function(entry["talib"])
    compared = 0
    for _ in range(CALLS):
        # Half of the calls on series that most arguments leave rows of.
        count = int(random.choice([1, 2, 3, random.integers(1, 120), *random.integers(1, 3000, 4)]))
        numbers = make_numbers(random, entry, count)
        by_phase = any(numbers[name] == AVERAGE_BY_PHASE for name in numbers if name.endswith("ma_type"))
        # A difference of averages is one of roundings where prices are equal, and efficiency takes it for a move.
        by_moves = numbers.get("signal_ma_type") == AVERAGE_BY_EFFICIENCY
        prices = make_series(random, count, flat=not by_phase and not by_moves and entry["name"] not in UNSTEADY)
        if entry["name"] == "natr" and numbers["periods"] == 1:
            continue  # theirs is the true range itself there, not in percent
        if entry["name"] == "vosc":
            # Here averages of one record are averages, and the faster one is that which is called so.
            numbers = dict(zip(numbers, sorted(max(2, number) for number in numbers.values()), strict=True))
        told = f"{numbers} on {count} records"
        shared = [value for name, value in numbers.items() if name not in OURS.get(entry["name"], {})]
        parameters = dict(zip(peer.parameters, shared, strict=False)) | THEIRS.get(entry["name"], {})
        try:
            expected = as_columns(peer(prices, **parameters))
        except Exception:
            with pytest.raises(ox.OrvexError, match=r"110[0-6]"):
                ours(prices, **numbers)
            continue
        try:
            columns = as_columns(ours(prices, **numbers))
        except ox.OrvexError as error:
            # A window without volume has no price; theirs is not-a-number in the middle of the column.
            assert entry["name"] == "vwma", f"{told}: {error}"
            windows = np.lib.stride_tricks.sliding_window_view(prices["volume"], numbers["periods"])
            assert (windows.sum(axis=1) == 0).any(), f"{told}: {error}"
            continue
        skipped = np.zeros(count, dtype=bool)
        if entry["name"] in ("beta", "correl"):
            skipped = without_variance(entry, prices, numbers["periods"])
        if entry["name"] in ("rsi", "cmo"):
            skipped = without_moves(prices, numbers["periods"])
        for described, column, theirs in zip(entry["columns"], columns, expected, strict=True):
            values = theirs
            if theirs.dtype.kind == "i":
                # Whole numbers have no not-a-number: rows that are not computed are 0.
                computed = ~np.isnan(column)
                assert not theirs[~computed].any(), told
                values = np.where(computed, theirs + described["record"], np.nan)
            np.testing.assert_array_equal(np.isnan(column), np.isnan(values), err_msg=told)
            exact = described["record"] or described["style"] == "Marks"
            np.testing.assert_allclose(
                column[~skipped],
                values[~skipped],
                rtol=0 if exact else 1e-9,
                atol=0 if exact else tolerance(entry, prices),
                err_msg=told,
            )
            compared += int((~np.isnan(column)).sum())
    assert compared > 5 * CALLS


def make_candles(random: np.random.Generator, count: int) -> Table:
    """Return candles out of which patterns are made: few sizes, gaps, equal ends, rows of one colour."""
    size = random.choice([0, 0, 1, 2, 5, 8], count) * random.choice([-1, 1], count)
    size = np.where(random.random(count) < 0.4, np.abs(size) * np.sign(np.roll(size, 1)), size)
    steps = random.choice([1.0, 2.0, 4.0]) * 0.5
    open_, close = np.empty(count), np.empty(count)
    before, last = 200.0, 200.0
    for row in range(count):
        start = random.random()
        open_[row] = last + random.choice([0, 0, 0, -3, -1, 1, 3]) * steps
        if start < 0.25:
            open_[row] = before if start < 0.12 else (before + last) / 2
        close[row] = open_[row] + 2 * steps * size[row]
        if not 50 < close[row] < 400:
            open_[row], close[row] = 200, 200 + steps
        before, last = open_[row], close[row]
    shadows = random.choice([0, 0, 0, 1, 2, 6], (2, count)) * random.choice([0.5, 1], (2, count)) * steps * 2
    return {
        "open": open_,
        "high": np.maximum(open_, close) + shadows[0],
        "low": np.minimum(open_, close) - shadows[1],
        "close": close,
    }


def test_candlestick_patterns_are_those_of_talib() -> None:
    peers = sorted(name for name in talib.get_functions() if name.startswith("CDL"))
    choices = next(entry for entry in DESCRIPTIONS if entry["name"] == "candle")["parameters"][1]["choices"]
    assert len(peers) == len(choices) == 61
    random = np.random.default_rng(2)
    found: dict[str, int] = {}
    for charts in range(max(20, CALLS // 4)):
        prices = make_candles(random, int(random.choice([1, 5, 13, 14, 15, 40])) if charts % 4 == 0 else 3000)
        count = len(prices["close"])
        signals = {}
        for (pattern, number), peer in zip(choices.items(), peers, strict=True):
            signals[pattern] = ox.standard.candle(prices, number, warmup="zero")
            expected = getattr(talib, peer)(*prices.values())
            np.testing.assert_array_equal(signals[pattern], expected, err_msg=f"{pattern}, {peer}")
            found[pattern] = found.get(pattern, 0) + int(np.count_nonzero(expected))
        for row in random.integers(0, count, 5):
            note = ox.standard.candles(prices, int(row) + 1)
            assert note.value == sum(signal[row] != 0 for signal in signals.values())
            assert sorted(word.split()[1] for word in note.note.split(", ") if word) == sorted(
                str(int(signal[row])) for signal in signals.values() if signal[row]
            )
    # What is never found would not show a wrong rule.
    assert sum(count > 0 for count in found.values()) >= 55, [name for name, count in found.items() if not count]
