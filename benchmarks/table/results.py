"""What was measured, kept in the build folder, so that rows can be measured one by one and make one page."""

from __future__ import annotations

import dataclasses
import datetime
import json
import pathlib

from measure import Figure, Missing
from rows import ROWS, Row

Outcome = list[Figure] | Missing


@dataclasses.dataclass(frozen=True)
class Result:
    row: Row
    outcome: Outcome
    rounds: int
    date: str


class Results:
    def __init__(self, file: pathlib.Path) -> None:
        self._file = file

    def keep(self, row: Row, outcome: Outcome, rounds: int) -> Result:
        """What another run of the row told is replaced."""
        kept = self._read()
        result = Result(row, outcome, rounds, datetime.date.today().isoformat())
        kept[row.name] = {"rounds": rounds, "date": result.date}
        if isinstance(outcome, Missing):
            kept[row.name]["missing"] = str(outcome)
        else:
            kept[row.name]["figures"] = [dataclasses.asdict(figure) for figure in outcome]
        self._file.parent.mkdir(parents=True, exist_ok=True)
        self._file.write_text(json.dumps(kept, indent=1), encoding="utf-8")
        return result

    def all(self) -> list[Result]:
        """In the order of the table; a row that was never measured says so."""
        kept = self._read()
        return [self._result(row, kept.get(row.name)) for row in ROWS]

    def _read(self) -> dict[str, dict[str, object]]:
        if not self._file.exists():
            return {}
        kept: dict[str, dict[str, object]] = json.loads(self._file.read_text(encoding="utf-8"))
        return kept

    @staticmethod
    def _result(row: Row, kept: dict[str, object] | None) -> Result:
        if kept is None:
            return Result(row, Missing("not asked for in these goes"), 0, "")
        figures = kept.get("figures")
        outcome: Outcome = Missing(str(kept.get("missing")))
        if isinstance(figures, list):
            outcome = [Figure(**figure) for figure in figures]
            if len(outcome) != len(row.lines):
                outcome = Missing("what is kept has other lines; measure it again")
        return Result(row, outcome, int(str(kept["rounds"])), str(kept["date"]))
