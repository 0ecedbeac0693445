"""Errors name what is to blame, and travel."""

from __future__ import annotations

import copy
import pickle
from typing import Any

import numpy as np
import pandas as pd
import polars as pl
import pytest
from conftest import Prices, make_call

import orvex as ox
from orvex import _native

COLUMNS = [function for function in _native.FUNCTIONS if _native.describe(function.index)["columns"]]


@pytest.mark.parametrize("function", COLUMNS, ids=lambda function: function.__name__)
def test_a_gap_is_an_error_that_names_it(function: Any, prices: Prices) -> None:
    """Or makes no difference, where the method does not look at that row."""
    broken = {name: values.copy() for name, values in prices.items()}
    for values in broken.values():
        values[150] = np.nan
    args, kwargs = make_call(function, broken)
    try:
        function(*args, **kwargs)
    except ox.OrvexError as error:
        assert (error.record, error.row) == (151, 150)
        assert error.function == function.__name__
        assert f"{error.column} has no value in row 150" in str(error)
    else:
        zero = {name: np.where(np.isnan(values), 77.0, values) for name, values in broken.items()}
        results = [
            function(*make_call(function, table)[0], **make_call(function, table)[1]) for table in (broken, zero)
        ]
        np.testing.assert_array_equal(*results)


def test_a_gap_is_named_by_its_label(prices: Prices) -> None:
    close = prices["close"].copy()
    close[40] = np.nan
    dates = pd.date_range("2020-01-01", periods=300)
    with pytest.raises(ox.OrvexError, match=r"row 40, index 2020-02-10") as caught:
        ox.relative_strength_index(pd.Series(close, index=dates))
    assert caught.value.label == dates[40]
    with pytest.raises(ox.OrvexError, match="row 40"):
        ox.relative_strength_index(pl.Series(close).fill_nan(None))


def test_errors_say_number_source_and_description(prices: Prices) -> None:
    with pytest.raises(ValueError, match="Invalid Periods") as caught:
        ox.relative_strength_index(prices["close"], periods=0)
    error = caught.value
    assert isinstance(error, ox.OrvexError)
    assert (error.number, error.source) == (1101, "Index.RelativeStrengthIndex")
    prices["close"][150] = np.nan
    with pytest.raises(ox.OrvexError) as caught:
        ox.relative_strength_index(prices["close"], periods=0)
    assert (caught.value.record, caught.value.reason) == (None, None)


def test_errors_say_what_went_wrong_in_which_record() -> None:
    with pytest.raises(ox.OrvexError, match=r"division by zero in row 3, index d") as caught:
        ox.price_roc(pd.Series([1.0, 2.0, 0.0, 4.0, 5.0], index=list("abcde")), periods=1)
    error = caught.value
    assert (error.reason, error.record, error.label, error.column) == ("division by zero", 4, "d", None)
    both = pd.Series([1.0, 2.0, 3.0, 4.0, 5.0, 1.0, 2.0, 0.0, 4.0, 5.0])
    with pytest.raises(ox.OrvexError, match=r"symbol B.*division by zero in row 3, index 8"):
        ox.price_roc(both, periods=1, by=np.array(list("AAAAABBBBB")), errors="raise")


def test_errors_travel() -> None:
    error = ox.OrvexError(1105, "A.B", "No.", 7, "b", "close", "division by zero", pd.Timestamp("2020-01-01"), "XYZ")
    for other in (pickle.loads(pickle.dumps(error)), copy.copy(error), error.located("l", "s")):
        assert type(other) is ox.OrvexError
        assert (other.number, other.record, other.reason) == (1105, 7, "division by zero")
    assert str(pickle.loads(pickle.dumps(error))) == str(error)
    assert str(error) == "b: symbol XYZ: No. (error 1105, A.B): division by zero in row 6, index 2020-01-01 00:00:00"
