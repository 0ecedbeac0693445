"""Write the type stubs of the package: a function each of the catalogue, with overloads for each kind of column.

Usage: write_stubs.py FOLDER, with the compiled module in Python's path. The build runs it.
"""

from __future__ import annotations

import importlib.util
import inspect
import sys
import textwrap
from collections.abc import Mapping, Sequence
from pathlib import Path
from typing import Any

import _native  # type: ignore[import-not-found]

HERE = Path(__file__).parent
_WIDTH = 100
HEAD = """# Made from the catalogue by write_stubs.py when the package is built.
from collections.abc import Mapping, Sequence
from typing import Any, Generic, Literal, NamedTuple, Protocol, SupportsIndex, TypeAlias, TypeVar, overload

import dask.dataframe as dd
import numpy as np
import numpy.typing as npt
import pandas as pd
import polars as pl

"""
PACKAGE = """from orvex._chart import Chart as Chart
from orvex._chart import chart as chart
from orvex._errors import OrvexError as OrvexError
from orvex._errors import SymbolWarning as SymbolWarning
from orvex._groups import indicators as indicators
from orvex._live import Kept as Kept
from orvex._live import Live as Live
from orvex._reader import read as read
from orvex._results import Note as Note

def catalogue() -> list[dict[str, Any]]: ...

"""
ALIASES = """_Values = TypeVar("_Values")
_Array: TypeAlias = npt.NDArray[np.float64]
_AnyArray: TypeAlias = npt.NDArray[Any]

class _ArrowArray(Protocol):
    def __arrow_c_array__(self, requested_schema: object = None) -> tuple[object, object]: ...

class _ArrowStream(Protocol):
    def __arrow_c_stream__(self, requested_schema: object = None) -> object: ...

_ArrowColumn: TypeAlias = _ArrowArray | _ArrowStream
_Column: TypeAlias = (
    npt.NDArray[Any] | Sequence[float | None] | pd.Series[Any] | pl.Series | pl.Expr | _ArrowColumn
)
_Prices: TypeAlias = pd.DataFrame | pl.DataFrame | _ArrowStream | Mapping[str, Any] | _AnyArray
"""
# What stands for a column, what for a frame, what one result column becomes and what several do.
KINDS = (
    ("Sequence[float | None]", "Mapping[str, Sequence[float | None]]", "list[float]", "{results}[list[float]]"),
    ("_AnyArray", "Mapping[str, _AnyArray] | _AnyArray", "_Array", "{results}[_Array]"),
    ("pd.Series[Any]", "pd.DataFrame", "pd.Series[float]", "pd.DataFrame"),
    ("pl.Series", "pl.DataFrame", "pl.Series", "pl.DataFrame"),
    ("pl.Expr", "Mapping[str, pl.Expr]", "pl.Expr", "pl.Expr"),
    (None, "pl.LazyFrame", "pl.LazyFrame", "pl.LazyFrame"),
    (None, "dd.DataFrame", "dd.DataFrame", "dd.DataFrame"),
    # pyarrow has no types: what it has is told by its interface.
    ("_ArrowColumn", "_ArrowStream", "Any", "Any"),
)
VALUES = {"Note": "Note", "Boolean": "bool", "Double": "float", "Integer": "int", "Long": "int"}


def load_docs() -> Any:
    """Import orvex/_docs.py without the package, which is not there yet."""
    spec = importlib.util.spec_from_file_location("docs", HERE / "orvex" / "_docs.py")
    assert spec is not None
    assert spec.loader is not None
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    return module


def annotate(parameter: Mapping[str, Any], column: str | None, frame: str, *, first: bool) -> str:
    """Return the type of a parameter in the overload for a kind of column."""
    match parameter["kind"]:
        case "prices":
            return f"{frame} | None"
        case "column" if first:
            return frame if column is None else f"{column} | {frame}"
        case "column":
            return "_Column | str | None"
        case "price":
            return "_Column | None" if column is None else f"{column} | None"
        case "whole":
            types = "SupportsIndex"
            if parameter["choices"]:
                types = f"Literal[{', '.join(repr(choice) for choice in parameter['choices'])}] | {types}"
            return f"{types} | None" if isinstance(parameter["usual"], str) else types
        case "real":
            return "float"
        case "alias":
            return "str | None"
        case "by":
            return "str | Sequence[str] | _Column | None"
        case "warmup":
            return 'Literal["nan", "zero"]'
    return 'Literal["warn", "raise"]'


def parameters(function: Mapping[str, Any], docs: Any, column: str | None, frame: str) -> list[str]:
    """Return the parameters of a function as the stub has them."""
    by_name = {parameter["name"]: parameter for parameter in function["parameters"]}
    parts: list[str] = []
    keyword_only = False
    for place, (name, parameter) in enumerate(docs.signature(function).parameters.items()):
        if parameter.kind is inspect.Parameter.KEYWORD_ONLY and not keyword_only:
            parts.append("*")
            keyword_only = True
        text = f"{name}: {annotate(by_name[name], column, frame, first=place == 0)}"
        if parameter.default is not inspect.Parameter.empty:
            text += f" = {parameter.default!r}"
        parts.append(text)
    return parts


def write_head(name: str, arguments: Sequence[str], returned: str) -> str:
    """Return the line with which the stub of a function begins, or as many lines as are read with ease."""
    line = f"def {name}({', '.join(arguments)}) -> {returned}:"
    if len(line) <= _WIDTH:
        return line
    return f"def {name}(\n" + "".join(f"    {argument},\n" for argument in arguments) + f") -> {returned}:"


def write_function(function: Mapping[str, Any], docs: Any) -> str:
    """Return the stub of a function."""
    name = function["name"]
    body = textwrap.indent('"""' + docs.docstring(function).replace("\\", "\\\\") + '\n"""', "    ")
    if not function["columns"]:
        arguments = parameters(function, docs, "_Column", "_Prices")
        return f"{write_head(name, arguments, VALUES[function['returns']])}\n{body}\n"
    several = len(function["columns"]) > 1
    result = "".join(part.capitalize() for part in name.split("_")) + "Result"
    text = ""
    if several:
        fields = "".join(f"    {column['attribute']}: _Values\n" for column in function["columns"])
        text += f"class {result}(NamedTuple, Generic[_Values]):\n{fields}\n"
    for place, (column, frame, one, more) in enumerate(KINDS):
        last = place == len(KINDS) - 1
        returned = more.format(results=result) if several else one
        arguments = parameters(function, docs, column, frame)
        text += f"@overload\n{write_head(name, arguments, returned)}" + (f"\n{body}\n" if last else " ...\n")
    return text


def main() -> None:
    """Write a stub for each module of the package that has functions."""
    docs = load_docs()
    folder = Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    texts = {"": HEAD + PACKAGE + ALIASES}
    for function in _native.FUNCTIONS:
        description = _native.describe(function.index)
        module = description["module"]
        texts.setdefault(module, HEAD + "from orvex._results import Note as Note\n\n" + ALIASES)
        texts[module] += "\n" + write_function(description, docs)
    modules = sorted(module for module in texts if module)
    texts[""] += "".join(f"\nfrom orvex import {module} as {module}" for module in modules)
    for module, text in texts.items():
        (folder / f"{module or '__init__'}.pyi").write_text(text)


if __name__ == "__main__":
    main()
