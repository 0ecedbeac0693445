"""Many symbols in one table."""

from __future__ import annotations

import os
import signal
import subprocess
import sys
import textwrap
import time
import warnings
from functools import partial
from typing import Any

import numpy as np
import pandas as pd
import polars as pl
import pytest
from conftest import make_call, make_symbols

import orvex as ox
from orvex import _groups, _native

COLUMNS = [function for function in _native.FUNCTIONS if _native.describe(function.index)["columns"]]


@pytest.fixture(scope="module")
def table() -> pd.DataFrame:
    return make_symbols(5, 120)


def as_frame(result: Any) -> pd.DataFrame:
    if isinstance(result, pl.Series | pl.DataFrame):
        result = result.to_frame() if isinstance(result, pl.Series) else result
        return pd.DataFrame({name: result[name].to_numpy() for name in result.columns})
    return result.to_frame() if isinstance(result, pd.Series) else result


@pytest.mark.parametrize("function", COLUMNS, ids=lambda function: function.__name__)
def test_each_symbol_by_itself(function: Any, table: pd.DataFrame) -> None:
    """Mixed or together, pandas or polars, the same bits as one symbol after the other, at the original rows."""
    _, kwargs = make_call(function, table)
    second = {name for name, value in kwargs.items() if isinstance(value, pd.Series)}
    plain = {name: value for name, value in kwargs.items() if name not in second}
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", ox.SymbolWarning)
        result = as_frame(function(table, **kwargs, by="symbol"))
        assert result.index.equals(table.index)
        together = table.sort_values("symbol", kind="stable")
        sorted_result = as_frame(function(together, **plain, **dict.fromkeys(second, together["open"]), by="symbol"))
        pd.testing.assert_frame_equal(sorted_result.loc[table.index], result, check_exact=True)
        in_polars = pl.from_pandas(table)
        other = as_frame(function(in_polars, **plain, **dict.fromkeys(second, in_polars["open"]), by="symbol"))
        np.testing.assert_array_equal(other.to_numpy(), result.to_numpy())
    for _, rows in table.groupby("symbol"):
        try:
            alone = as_frame(function(rows, **plain, **dict.fromkeys(second, rows["open"])))
        except ox.OrvexError:
            assert result.loc[rows.index].isna().all(axis=None)
        else:
            pd.testing.assert_frame_equal(result.loc[rows.index], alone, check_exact=True)


KEYS = {
    "text": lambda keys: keys,
    "categorical": lambda keys: keys.astype("category"),
    "whole number": lambda keys: keys.str[1:].astype(int),
    "date": lambda keys: pd.to_datetime("2020-01-01") + pd.to_timedelta(keys.str[1:].astype(int), unit="D"),
}


@pytest.mark.parametrize("kind", KEYS)
def test_keys_of_any_kind(kind: str, table: pd.DataFrame) -> None:
    expected = ox.relative_strength_index(table, by="symbol")
    keyed = table.assign(symbol=KEYS[kind](table["symbol"]), market="X")
    pd.testing.assert_series_equal(ox.relative_strength_index(keyed, by="symbol"), expected)
    pd.testing.assert_series_equal(ox.relative_strength_index(keyed, by=["market", "symbol"]), expected)
    pd.testing.assert_series_equal(ox.relative_strength_index(keyed["close"], by=keyed["symbol"]), expected)
    in_polars = pl.from_pandas(keyed)
    for result in (
        ox.relative_strength_index(in_polars, by="symbol"),
        ox.relative_strength_index(in_polars, by=["market", "symbol"]),
        ox.relative_strength_index(in_polars["close"], by=in_polars["symbol"]),
    ):
        np.testing.assert_array_equal(result.to_numpy(), expected.to_numpy())
    arrays = {name: keyed[name].to_numpy() for name in ("close", "symbol")}
    np.testing.assert_array_equal(ox.relative_strength_index(arrays, by="symbol"), expected.to_numpy())


def test_rows_of_no_symbol_have_no_values(table: pd.DataFrame) -> None:
    lost = table.assign(symbol=table["symbol"].where(table["symbol"] != "S002"))
    result = ox.momentum(lost, by="symbol")
    assert result[lost["symbol"].isna()].isna().all()
    assert result[lost["symbol"] == "S001"].notna().any()


@pytest.fixture
def damaged(table: pd.DataFrame) -> pd.DataFrame:
    """Two symbols with a gap, the first in its eighth record."""
    damaged = table.copy()
    for symbol in ("S001", "S003"):
        damaged.loc[damaged.index[damaged["symbol"] == symbol][7], "close"] = np.nan
    return damaged


def test_symbols_that_cannot_be_computed_are_one_warning(damaged: pd.DataFrame) -> None:
    with pytest.warns(ox.SymbolWarning, match="2 symbols .*: S001, S003") as caught:
        result = ox.relative_strength_index(damaged, by="symbol")
    assert len(caught) == 1
    assert caught[0].filename == __file__
    assert result[damaged["symbol"].isin(["S001", "S003"])].isna().all()
    assert result[damaged["symbol"] == "S002"].notna().any()


def test_or_an_error_that_names_symbol_and_row(damaged: pd.DataFrame) -> None:
    with pytest.raises(ox.OrvexError) as caught:
        ox.relative_strength_index(damaged, by="symbol", errors="raise")
    gap = damaged.index[damaged["symbol"] == "S001"][7]
    assert (caught.value.symbol, caught.value.record, caught.value.label) == ("S001", 8, gap)
    assert "symbol S001: An unexpected error has occured (error 1105, Index.R" in str(caught.value)
    assert str(caught.value).endswith(f"row 7, index {gap}")


def test_wrong_names_say_what_is_there(table: pd.DataFrame) -> None:
    with pytest.raises(ValueError, match="no column 'ticker' for by="):
        ox.macd(table, by="ticker")


@pytest.mark.parametrize(
    "keys",
    [["A"] * 3, ["A"] * 6, [None, "A", "A", "A"], [None] * 1000 + ["A"] * 3],
    ids=["short", "long", "short with nulls", "long with nulls"],
)
def test_keys_are_as_many_as_the_rows(keys: list[Any]) -> None:
    for by in (pd.Series(keys, dtype=object), pl.Series(keys, dtype=pl.String)):
        with pytest.raises(ValueError, match=rf"by= has {len(keys)} rows and the columns have 5"):
            ox.simple_moving_average(np.arange(5.0), periods=2, by=by)


@pytest.mark.parametrize(
    ("order", "offsets", "threads"),
    [
        (None, [0, 6], 1),
        (None, [-1, 5], 1),
        (None, [0, 4, 2], 1),
        (None, [], 1),
        ([0, 1, 5], [0, 3], 1),
        ([0, -1], [0, 2], 1),
        ([0, 1], [0, 3], 1),
        (None, [0, 5], 0),
    ],
)
def test_no_group_leaves_the_table(order: list[int] | None, offsets: list[int], threads: int) -> None:
    place = None if order is None else np.array(order, dtype=np.int64)
    study = (ox.simple_moving_average, {"source": np.arange(5.0), "periods": 2})
    with pytest.raises(ValueError, match=r"rise from 0|more rows|not there|one thread"):
        _native.run_groups([study], 5, place, np.array(offsets, dtype=np.int64), threads, lambda done: None)  # type: ignore[list-item]


def test_several_indicators_in_one_pass(table: pd.DataFrame) -> None:
    which = {"rsi": ox.relative_strength_index, "macd": ox.macd, "slow": partial(ox.simple_moving_average, periods=50)}
    result = ox.indicators(table, which, by="symbol")
    assert list(result) == ["rsi", "macd", "macd_signal", "macd_histogram", "slow"]
    pd.testing.assert_series_equal(result["rsi"], ox.relative_strength_index(table, by="symbol"), check_names=False)
    pd.testing.assert_series_equal(
        result["slow"], ox.simple_moving_average(table, periods=50, by="symbol"), check_names=False
    )
    in_polars = ox.indicators(pl.from_pandas(table), which, by="symbol")
    np.testing.assert_array_equal(in_polars.to_numpy(), result.to_numpy())
    whole = ox.indicators(table, which)
    pd.testing.assert_series_equal(whole["rsi"], ox.relative_strength_index(table), check_names=False)


@pytest.mark.parametrize(
    ("which", "options", "error", "message"),
    [
        ({"x": np.mean}, {}, TypeError, "x: .*no function of orvex"),
        ({}, {}, ValueError, "empty"),
        ({"x": partial(ox.momentum, by="symbol")}, {}, TypeError, "x: by= holds for all"),
        ({"x": partial(ox.momentum, warmup="zero")}, {"by": "symbol"}, TypeError, "x: warmup= holds for all"),
        ({"x": partial(ox.momentum, errors="raise")}, {"by": "symbol"}, TypeError, "x: errors= holds for all"),
        ({"x": ox.momentum}, {"errors": "rais"}, ValueError, "errors is 'warn' or 'raise'"),
        ({"x": ox.momentum}, {"by": "symbol", "warmup": "blank"}, ValueError, "warmup is 'nan' or 'zero'"),
        ({"macd": ox.macd, "macd_signal": ox.momentum}, {}, ValueError, "column 'macd_signal' already"),
    ],
)
def test_indicators_that_do_not_fit_say_why(which: Any, options: Any, error: type[Exception], message: str) -> None:
    for make in (pd.DataFrame, pl.from_pandas):
        with pytest.raises(error, match=message):
            ox.indicators(make(make_symbols(2, 40)), which, **options)


def test_any_number_of_threads_gives_the_same(table: pd.DataFrame, monkeypatch: pytest.MonkeyPatch) -> None:
    results = []
    for threads in ("1", "2", "7"):
        monkeypatch.setenv("ORVEX_THREADS", threads)
        results.append(ox.bollinger_bands(table, by="symbol"))
    for other in results[1:]:
        pd.testing.assert_frame_equal(other, results[0], check_exact=True)
    for wrong in ("0", "-1", "abc", "2.5", "1" * 5000):
        monkeypatch.setenv("ORVEX_THREADS", wrong)
        with pytest.raises(ValueError, match="ORVEX_THREADS must be a whole number from 1"):
            ox.bollinger_bands(table, by="symbol")


def test_progress_shows_from_a_second_on(monkeypatch: pytest.MonkeyPatch, capsys: pytest.CaptureFixture[str]) -> None:
    monkeypatch.setattr(sys.stderr, "isatty", lambda: True)
    bar = _groups._Progress(10)
    bar(1)
    assert bar.bar is None
    monkeypatch.setattr(bar, "start", time.monotonic() - 2)
    bar(3)
    bar.close()
    assert "symbols" in capsys.readouterr().err


@pytest.mark.measures
@pytest.mark.parametrize("symbols", [4000, 1])
def test_an_interrupt_ends_it_at_once(symbols: int) -> None:
    """Many symbols, or a single long one: within half a second, with no thread left."""
    program = f"""
        import os, sys, time, threading
        import numpy as np, orvex as ox
        close = np.random.default_rng(1).normal(size=8_000_000).cumsum() + 10_000
        symbol = np.repeat(np.arange({symbols}), 8_000_000 // {symbols})
        print("ready", flush=True)
        try:
            ox.indicators_of = [ox.neural_indicator({{"close": close}}, periods=20, by=symbol) for _ in range(9)]
        except KeyboardInterrupt:
            print(time.time(), len(os.listdir("/proc/self/task")), flush=True)
    """
    environment = {**os.environ, "OPENBLAS_NUM_THREADS": "1"}
    with subprocess.Popen(
        [sys.executable, "-P", "-c", textwrap.dedent(program)], stdout=subprocess.PIPE, text=True, env=environment
    ) as process:
        assert process.stdout is not None
        assert process.stdout.readline() == "ready\n"
        time.sleep(1)
        interrupted = time.time()
        process.send_signal(signal.SIGINT)
        stopped, threads = process.stdout.readline().split()
        assert process.wait() == 0
    assert float(stopped) - interrupted < 0.5
    assert int(threads) == 1
