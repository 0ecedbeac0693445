"""Price files become frames."""

from __future__ import annotations

import gzip
from pathlib import Path
from typing import Any

import numpy as np
import pandas as pd
import polars as pl
import pytest
from conftest import ROOT

import orvex as ox

LINES = ["2020-01-02;1,5;2,5;1,25;2;1000", "2020-01-03;2;3;1,75;2,5;1200", "2020-01-06;2,5;3,5;2;3;900"]
CLOSE = [2.0, 2.5, 3.0]


@pytest.fixture
def path(tmp_path: Path) -> Path:
    path = tmp_path / "prices.txt"
    path.write_text("\n".join(["Datum;Open;High;Low;Close;Volume", *LINES]))
    return path


def test_frames_of_each_kind(path: Path) -> None:
    frame = ox.read(path)
    assert list(frame.columns) == ["Open", "High", "Low", "Close", "Volume"]
    assert frame.index.equals(pd.DatetimeIndex(["2020-01-02", "2020-01-03", "2020-01-06"], name="Date"))
    assert frame["Close"].tolist() == CLOSE
    in_polars = ox.read(path, frame="polars")
    assert in_polars.schema["Date"] == pl.Datetime("us")
    assert in_polars["Close"].to_list() == CLOSE
    arrays = ox.read(path, frame="numpy")
    assert arrays["Date"][1] == np.datetime64("2020-01-03")
    assert arrays["Close"].tolist() == CLOSE
    packed = path.with_suffix(".gz")
    packed.write_bytes(gzip.compress(path.read_bytes()))
    assert ox.read(packed)["Close"].tolist() == CLOSE


def test_the_sample_is_what_pandas_reads() -> None:
    names = ["Open", "High", "Low", "Close", "Volume"]
    sample = ROOT / "examples" / "prices.csv"
    expected = pd.read_csv(sample, names=["Date", *names], index_col="Date", parse_dates=True)
    frame = ox.read(sample)
    np.testing.assert_array_equal(frame[names].to_numpy(), expected.to_numpy(dtype=float))
    assert (frame.index == expected.index).all()


def test_what_was_decided_is_a_warning(path: Path) -> None:
    path.write_text("\n".join(["Date;Open;High;Low;Close;Volume", *LINES[::-1]]))
    with pytest.warns(UserWarning, match="prices.txt"):
        assert ox.read(path)["Close"].tolist() == CLOSE
    assert ox.read(path, order="keep")["Close"].tolist() == CLOSE[::-1]


def test_options_and_errors(path: Path) -> None:
    assert ox.read(path, first="2020-01-03")["Close"].tolist() == CLOSE[1:]
    assert ox.read(path, tail=1)["Close"].tolist() == CLOSE[2:]
    assert ox.read(path, columns={"close": "High"})["Close"].tolist() == [2.5, 3.0, 3.5]
    with pytest.raises(ValueError, match="columns= names"):
        ox.read(path, columns={"klose": "High"})
    path.write_text(path.read_text().replace("2,5;3,5;2;3", "2,5;oops;2;3"))
    with pytest.raises(ox.OrvexError, match="oops") as caught:
        ox.read(path)
    assert caught.value.number == 1012
    with pytest.raises(FileNotFoundError):
        ox.read(path.with_name("nowhere"))


@pytest.mark.parametrize("delimiter", ["\t", "tab", "\\t", "|", "ü"])
def test_what_stands_between_the_columns(delimiter: str, path: Path) -> None:
    path.write_text(path.read_text().replace(";", "\t" if delimiter in ("tab", "\\t") else delimiter))
    assert ox.read(path, delimiter=delimiter)["Close"].tolist() == CLOSE


@pytest.mark.parametrize(
    ("option", "values", "message"),
    [
        ("delimiter", ["", ",,", "\n", '"', 5], "delimiter is .* or 'tab', not"),
        ("decimal", ["", "comma", 5], "decimal is '.' or ',', not"),
        ("frame", ["panda", "", 5], "frame is 'pandas' or 'polars' or 'numpy', not"),
        ("missing", ["Skip", None], "missing is 'refuse' or 'skip' or 'previous', not"),
        ("order", ["Keep", ""], "order is 'check' or 'keep', not"),
        ("tail", [-1, 2.0, "2", True], "tail is a .*number"),
    ],
)
def test_options_that_are_none_say_what_is(option: str, values: list[Any], message: str, path: Path) -> None:
    for value in values:
        with pytest.raises((TypeError, ValueError), match=message):
            ox.read(path, **{option: value})
