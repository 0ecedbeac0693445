"""polars expressions, eager and lazy."""

from __future__ import annotations

from typing import Any

import numpy as np
import polars as pl
import pytest
from conftest import Prices, make_symbols

import orvex as ox


@pytest.fixture(scope="module")
def table() -> pl.DataFrame:
    return pl.from_pandas(make_symbols(3, 80))


@pytest.mark.parametrize("lazy", [False, True], ids=["eager", "lazy"])
def test_an_expression_over_symbols(table: pl.DataFrame, lazy: bool) -> None:
    frame: Any = table.lazy() if lazy else table
    result = frame.with_columns(
        ox.relative_strength_index(pl.col("close")).over("symbol").alias("rsi"),
        ox.macd(pl.col("close"), short_cycle=5, long_cycle=10, signal_periods=3).over("symbol").alias("macd"),
        ox.average_true_range(high=pl.col("high"), low=pl.col("low"), close=pl.col("close")).over("symbol"),
    )
    result = result.collect() if lazy else result
    expected = ox.relative_strength_index(table, by="symbol")
    assert result["rsi"].equals(expected.alias("rsi"))
    assert (
        result["macd"]
        .struct.unnest()
        .equals(ox.macd(table, short_cycle=5, long_cycle=10, signal_periods=3, by="symbol"))
    )
    assert result["ATR"].equals(ox.average_true_range(table, by="symbol"))
    assert result.columns[: len(table.columns)] == table.columns


def test_expressions_chain_and_aggregate(table: pl.DataFrame) -> None:
    chained = ox.exponential_moving_average(ox.relative_strength_index(pl.col("close")), periods=5)
    one = table.filter(pl.col("symbol") == "S001")
    expected = ox.exponential_moving_average(ox.relative_strength_index(one["close"]), periods=5)
    assert one.select(chained).to_series().equals(expected)
    last = table.group_by("symbol", maintain_order=True).agg(chained.last().alias("last"))
    assert last.filter(pl.col("symbol") == "S001")["last"][0] == expected[-1]


def test_a_lazy_frame_stays_lazy(table: pl.DataFrame) -> None:
    lazy = ox.bollinger_bands(table.lazy(), by="symbol")
    assert isinstance(lazy, pl.LazyFrame)
    assert lazy.collect_schema().names() == ["BollingerBandsMedian", "BollingerBandsTop", "BollingerBandsBottom"]
    assert lazy.collect().equals(ox.bollinger_bands(table, by="symbol"))
    assert ox.true_range(table.lazy(), by="symbol").collect().to_series().equals(ox.true_range(table, by="symbol"))


def test_errors_come_out_of_expressions(table: pl.DataFrame) -> None:
    broken = table.with_columns(close=pl.when(pl.int_range(pl.len()) == 30).then(0.0).otherwise("close"))
    told = r"price_roc: .* \(error 1105, .*division by zero in row "
    with pytest.raises(ox.OrvexError, match=told):
        broken.select(ox.price_roc(pl.col("close"), periods=1))
    with pytest.raises(ox.OrvexError, match=r"symbol S000.*division by zero"):
        ox.price_roc(broken.lazy(), periods=1, by="symbol", errors="raise").collect()
    with pytest.warns(ox.SymbolWarning, match="1 symbol .*: S000"):
        lazy = ox.price_roc(broken.lazy(), periods=1, by="symbol").collect().to_series()
    with pytest.warns(ox.SymbolWarning, match="1 symbol"):
        assert lazy.equals(ox.price_roc(broken, periods=1, by="symbol"))
    both = ox.macd(table.lazy(), by=["symbol", pl.col("symbol").str.len_chars()]).collect()
    assert both.equals(ox.macd(table, by="symbol"))


def test_what_cannot_be_an_expression_says_so(table: pl.DataFrame, prices: Prices) -> None:
    with pytest.raises(TypeError, match="over"):
        ox.macd(pl.col("close"), by="symbol")
    with pytest.raises(TypeError, match="volume is no expression"):
        ox.on_balance_volume(pl.col("close"), prices["volume"])
    with pytest.raises(TypeError, match="no column"):
        ox.max_value(pl.col("close"), start_period=1, end_period=2)
    empty = table.clear().with_columns(ox.macd(pl.col("close")).over("symbol"))
    assert len(empty) == 0
    assert len(ox.momentum(np.empty(0))) == 0
