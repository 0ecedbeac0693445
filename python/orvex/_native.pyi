# The types of the compiled module.
from collections.abc import Callable, Sequence
from inspect import Signature
from typing import Any

import numpy as np
import numpy.typing as npt

from orvex._errors import OrvexError

class Column:
    @property
    def name(self) -> str: ...
    @property
    def first(self) -> int: ...
    @property
    def last(self) -> int: ...
    def numpy(self) -> npt.NDArray[np.float64]: ...
    def __arrow_c_array__(self, requested_schema: object = None) -> tuple[object, object]: ...

class Function:
    __name__: str
    __signature__: Signature
    @property
    def index(self) -> int: ...
    def __call__(self, *args: Any, **kwargs: Any) -> Any: ...
    def columns(self, *args: Any, **kwargs: Any) -> Any: ...

FUNCTIONS: tuple[Function, ...]

def describe(index: int) -> dict[str, Any]: ...
def make_groups(
    codes: npt.NDArray[np.int64], count: int
) -> tuple[npt.NDArray[np.int64] | None, npt.NDArray[np.int64]]: ...
def run_groups(
    studies: Sequence[tuple[Function, dict[str, Any]]],
    rows: int,
    order: npt.NDArray[np.int64] | None,
    offsets: npt.NDArray[np.int64],
    threads: int,
    tick: Callable[[int], None],
) -> tuple[list[list[npt.NDArray[np.float64]]], list[tuple[int, int, OrvexError]]]: ...
def read_prices(
    content: bytes, options: dict[str, Any]
) -> tuple[
    npt.NDArray[np.int64] | list[str] | None, list[tuple[str, npt.NDArray[np.float64] | list[str]]], list[str]
]: ...
