"""Every recipe of docs/python.md, as it stands there."""

from __future__ import annotations

import pathlib
import re

import pytest

PAGE = pathlib.Path(__file__).parents[2] / "docs" / "python.md"
RECIPES = re.findall(r"^## ([^\n]+)\n.*?```python\n(.*?)```", PAGE.read_text(), re.DOTALL | re.MULTILINE)


def test_there_are_six_recipes() -> None:
    assert len(RECIPES) == 6


@pytest.mark.parametrize(("title", "source"), RECIPES, ids=[title for title, _ in RECIPES])
def test_a_recipe_runs(title: str, source: str, capsys: pytest.CaptureFixture[str]) -> None:
    assert 8 <= len([line for line in source.splitlines() if line.strip()]) <= 16
    exec(compile(source, f"{PAGE.name}: {title}", "exec"), {"__name__": "recipe"})
    told = capsys.readouterr().out
    expected = {
        "List the services": "World/EGM96_Geoid",
        "Read metadata": "EPSG:",
        "Draw into NumPy": "(1, 180, 360) float32",
        "Export an area": "alps.Tif 240",
        "Write a service": "of mine",
        "Sign in": "nothing is left",
    }
    (word,) = [word for beginning, word in expected.items() if title.startswith(beginning)]
    assert word in told
