"""The table of speeds: what it tells of figures, and of peers that are missing. No time is measured here."""

import pathlib
import subprocess
import sys

import pytest

TABLE = pathlib.Path(__file__).resolve().parents[2] / "benchmarks/table"
sys.path.insert(0, str(TABLE))

import document  # noqa: E402  from the folder above
import measure  # noqa: E402
import rows  # noqa: E402


def row(due: float = 0.5, memory: float | None = None) -> rows.Row:
    return rows.Row("one", [rows.Line("some work", due)], lambda bench: [], memory, "the peer does less")


def test_a_row_tells_the_middle_the_spread_and_whether_it_is_reached() -> None:
    told = document.table([(row(), [measure.Figure([0.4, 0.9, 0.3])])])
    assert told[-1] == "| some work | 0.40 | 0.30 to 0.90 | 0.50 | yes |  |"


def test_a_row_that_misses_is_told_with_its_reason() -> None:
    page = document.page([(row(), [measure.Figure([0.6])])], 1, 0.0)
    assert "| 0.60 | 0.60 to 0.60 | 0.50 | no |" in page
    assert "- some work: the peer does less" in page


def test_too_much_memory_asks_for_a_reason_too() -> None:
    assert document.misses(row(memory=160), [measure.Figure([0.1], 170)])
    assert not document.misses(row(memory=160), [measure.Figure([0.1], 150)])


def test_a_peer_that_is_missing_is_reported_and_no_figure_is_made_up() -> None:
    page = document.page([(row(), measure.Missing("gdal_translate is not there"))], 1, 0.0)
    assert "| some work | not measured |" in page
    assert "- some work: gdal_translate is not there" in page


def test_a_program_that_is_missing_or_fails_is_told_by_its_name() -> None:
    with pytest.raises(measure.Missing, match="no_such_program is not there"):
        measure.cost(["/no_such_program"])
    with pytest.raises(measure.Missing, match="false ended with code 1"):
        measure.cost(["false"])
    with pytest.raises(measure.Missing, match="sh ended with code 3: why"):
        measure.run(["sh", "-c", "echo why >&2; exit 3"])


def test_programs_are_run_in_turns_and_the_first_round_does_not_count() -> None:
    calls = []

    def call(name: str, seconds: float) -> measure.Cost:
        calls.append(name)
        return measure.Cost(seconds, 10.0 if len(calls) > 2 else 99.0)

    figure = measure.in_turns(lambda: call("ours", 1), lambda: call("peer", 2), 2)
    assert calls == ["ours", "peer"] * 3
    assert figure.values == [0.5, 0.5] and figure.megabytes == 10


def told(name: str, seconds: float, **more: object) -> dict[str, object]:
    return {"run_name": name, "run_type": "iteration", "cpu_time": seconds, "real_time": 10 * seconds, **more}


def test_functions_are_found_by_names_that_tell_how_their_time_was_taken() -> None:
    figure = measure.ratios([told("list/10", 3), told("peer/10/iterations:3/manual_time", 1)], "list/10", "peer/10")
    assert figure.values == [0.3]
    with pytest.raises(measure.Missing, match="does not know list/1 or peer/10"):
        measure.ratios([told("list/10", 3), told("peer/10", 1)], "list/1", "peer/10")


def test_a_function_that_was_skipped_is_missing_with_its_reason() -> None:
    skipped = told("peer", 0, error_occurred=True, error_message="OWSLib is not there")
    with pytest.raises(measure.Missing, match="OWSLib is not there"):
        measure.ratios([told("list", 3), skipped], "list", "peer")


def test_printed_numbers_are_read_round_by_round() -> None:
    figures = measure.printed(["echo", "a 1.5 b 2"], r"a ([\d.]+) b ([\d.]+)", 2)
    assert [figure.values for figure in figures] == [[1.5, 1.5], [2.0, 2.0]]
    with pytest.raises(measure.Missing, match="echo tells nothing of it"):
        measure.printed(["echo", "a"], r"(\d)", 1)


def test_every_row_has_a_name_of_its_own_and_the_lines_that_it_measures() -> None:
    names = [one.name for one in rows.ROWS]
    assert len(names) == len(set(names))
    assert all(line.due > 0 for one in rows.ROWS for line in one.lines)


def test_a_row_that_is_unknown_is_refused_with_those_that_are_known() -> None:
    done = subprocess.run([sys.executable, TABLE / "run.py", "nowhere", "slowness"], capture_output=True, text=True)
    assert done.returncode == 2 and "unknown row slowness" in done.stderr
