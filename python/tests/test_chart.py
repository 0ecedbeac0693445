"""Pages with charts: what is in them, and what is told before they are written."""

from __future__ import annotations

import csv
import functools
import html
import io
import json
import re
from pathlib import Path
from typing import Any

import numpy as np
import pandas as pd
import polars as pl
import pytest
from conftest import ROOT, Prices

import orvex as ox
from orvex import _chart


@pytest.fixture(autouse=True)
def studio(monkeypatch: pytest.MonkeyPatch) -> str:
    """Stand in for the built studio by the page that it is made of."""
    page = ROOT / "web" / "studio" / "index.html"
    monkeypatch.setattr(_chart, "_STUDIO", page)
    return page.read_text()


def data_of(page: str) -> dict[str, Any]:
    """Return what a page has in its place for a chart."""
    (inside,) = re.findall(r'<script type="application/json" id="orvex-chart">([^<]*)</script>', page)
    data: dict[str, Any] = json.loads(inside)
    return data


def rows_of(page: str) -> list[dict[str, str]]:
    return list(csv.DictReader(io.StringIO(data_of(page)["prices"])))


def test_prices_of_every_kind_are_in_the_page(prices: Prices) -> None:
    days = pd.date_range("2020-01-01", periods=300)
    frame = pd.DataFrame(prices, index=days)
    for given in (
        frame,
        frame.reset_index(names="Date"),
        frame.tz_localize("America/New_York"),
        pl.DataFrame({"Date": days.to_numpy(), **prices}),
        {"Date": days.to_numpy(), **prices},
        pl.DataFrame({"Date": days.to_numpy(), **prices}).to_arrow(),
    ):
        rows = rows_of(ox.chart(given).page)
        assert [row["Date"] for row in rows[:2]] == ["2020-01-01", "2020-01-02"]
        # Every digit that matters, without one that does not.
        assert [float(row["close"]) for row in rows] == prices["close"].tolist()
        assert rows[0]["volume"].isdigit()
    hours = rows_of(ox.chart(frame.set_index(pd.date_range("2020-01-01 09:30", periods=300, freq="h"))).page)
    assert hours[1]["Date"] == "2020-01-01 10:30:00"
    assert list(rows_of(ox.chart(prices["close"]).page)[0]) == ["Close"]


def test_studies_are_told_in_the_names_of_the_catalogue(prices: Prices) -> None:
    page = ox.chart(
        prices,
        ox.macd,
        (ox.simple_moving_average, {"periods": 5, "source": "MACD"}),
        (ox.bollinger_bands, {"ma_type": "exponential"}),
        functools.partial(ox.relative_strength_index, periods=9),
        ox.identify_pattern,
        name="my prices",
    ).page
    data = data_of(page)
    assert data["name"] == "my prices"
    assert data["studies"] == [
        {"method": "Oscillator.MACD", "arguments": {}},
        {"method": "MovingAverage.SimpleMovingAverage", "arguments": {"Source": "MACD", "Periods": 5}},
        {"method": "Bands.BollingerBands", "arguments": {"MA_Type": 2}},
        {"method": "Index.RelativeStrengthIndex", "arguments": {"Periods": 9}},
        {"method": "CandleStick.IdentifyPattern", "arguments": {}},
    ]


def test_what_cannot_be_drawn_is_told_before_a_page_is_made(prices: Prices) -> None:
    with pytest.raises(ox.OrvexError, match="BollingerBands"):
        ox.chart(prices, (ox.bollinger_bands, {"periods": 0}))
    with pytest.raises(TypeError, match=r"no argument 'period'; it has .*periods"):
        ox.chart(prices, (ox.simple_moving_average, {"period": 5}))
    with pytest.raises(ValueError, match=r"no column 'MACD'; there are .*'Close'"):
        ox.chart(prices, (ox.simple_moving_average, {"source": "MACD"}), ox.macd)
    with pytest.raises(TypeError, match="name of a column"):
        ox.chart(prices, (ox.simple_moving_average, {"source": prices["close"]}))
    with pytest.raises(TypeError, match="function of orvex"):
        ox.chart(prices, np.mean)
    with pytest.raises(TypeError, match="compute or collect"):
        ox.chart(pl.LazyFrame(prices))
    damaged = prices | {"close": np.where(np.arange(300) == 100, np.nan, prices["close"])}
    with pytest.raises(ox.OrvexError, match='no value in column "Close"'):
        ox.chart(damaged)


def test_no_cell_and_no_name_becomes_part_of_the_page(prices: Prices, studio: str) -> None:
    evil = "</script><script>alert(1)</script><!--"
    page = ox.chart({**prices, evil: [evil] * 300}, name=evil).page
    assert data_of(page)["name"] == evil
    assert rows_of(page)[7][evil] == evil
    assert page.count("<script") == studio.count("<script")


def test_a_notebook_shows_the_page_and_a_file_keeps_it(prices: Prices, tmp_path: Path) -> None:
    chart = ox.chart(prices, ox.macd, height=500)
    frame = re.fullmatch(r'<iframe [^>]*height: 500px[^>]*srcdoc="([^"]*)"></iframe>', chart._repr_html_())
    assert frame is not None
    assert html.unescape(frame[1]) == chart.page
    assert chart.save(tmp_path / "chart.html").read_text(encoding="utf-8") == chart.page


def test_a_build_without_the_studio_says_how_to_get_it(prices: Prices, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(_chart, "_STUDIO", ROOT / "nowhere" / "orvex-studio.html")
    with pytest.raises(FileNotFoundError, match="scripts/site"):
        ox.chart(prices)
