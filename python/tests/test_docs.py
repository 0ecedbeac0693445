"""The documents' programs run."""

from __future__ import annotations

import re
from typing import Any

import nbformat
import pytest
from conftest import ROOT
from nbclient import NotebookClient

from orvex import _chart


@pytest.mark.parametrize("page", ["docs/python.md", "docs/scale.md", "docs/live.md", "README.md", "python/README.md"])
def test_each_block_runs(page: str, monkeypatch: pytest.MonkeyPatch, capsys: pytest.CaptureFixture[str]) -> None:
    """In one namespace, in their order, as a reader would type them, in the repository's folder."""
    monkeypatch.chdir(ROOT)
    # What the studio is made of stands for it.
    monkeypatch.setattr(_chart, "_STUDIO", ROOT / "web" / "studio" / "index.html")
    blocks = re.findall(r"^```python\n(.*?)^```", (ROOT / page).read_text(), re.MULTILINE | re.DOTALL)
    assert blocks
    names: dict[str, Any] = {"__name__": "docs"}
    for block in blocks:
        exec(compile(block, page, "exec"), names)
    assert bool(capsys.readouterr().out) == any("print(" in block for block in blocks)


def test_the_notebook_runs() -> None:
    path = ROOT / "examples" / "orvex.ipynb"
    notebook = nbformat.read(path, as_version=4)
    NotebookClient(notebook, timeout=120, resources={"metadata": {"path": str(path.parent)}}).execute()
    printed = [cell.outputs for cell in notebook.cells if cell.cell_type == "code"]
    assert all(printed)
