"""The table of speeds: what it tells of figures, and of peers that are missing. No time is measured here."""

import pathlib
import subprocess
import sys

import pytest

TABLE = pathlib.Path(__file__).resolve().parents[2] / "benchmarks/table"
sys.path.insert(0, str(TABLE))

import document  # noqa: E402  from the folder above
import measure  # noqa: E402
import results  # noqa: E402
import rows  # noqa: E402


def row(due: float = 0.5, memory: float | None = None) -> rows.Row:
    return rows.Row("one", [rows.Line("some work", due)], lambda bench: [], memory)


def page(one: rows.Row, outcome: results.Outcome) -> str:
    return document.page([results.Result(one, outcome, 3, "2026-01-02")])


def test_a_row_tells_the_middle_the_spread_and_whether_it_is_reached() -> None:
    told = document.lines_of(row(), [measure.Figure([0.4, 0.9, 0.3])])
    assert told == ["| some work | 0.40 | 0.30 to 0.90 | 0.50 | yes |  |"]


def test_a_line_that_misses_is_told_with_its_reason(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setitem(rows.REASONS, ("one", 0), "the peer does less")
    told = page(row(), [measure.Figure([0.6])])
    assert "| 0.60 | 0.60 to 0.60 | 0.50 | no |" in told
    assert "- some work: the peer does less" in told
    assert "the peer does less" not in page(row(), [measure.Figure([0.4])])


def test_too_much_memory_is_not_reached_either() -> None:
    assert "| 0.50 | no | 170 MB of 160 |" in page(row(memory=160), [measure.Figure([0.1], 170)])
    assert "| 0.50 | yes | 150 MB of 160 |" in page(row(memory=160), [measure.Figure([0.1], 150)])


def test_a_peer_that_is_missing_is_reported_and_no_figure_is_made_up() -> None:
    told = page(row(), measure.Missing("gdal_translate is not there"))
    assert "| some work | not measured |" in told
    assert "- some work: gdal_translate is not there" in told


def test_a_program_that_is_missing_or_fails_is_told_by_its_name() -> None:
    with pytest.raises(measure.Missing, match="no_such_program is not there"):
        measure.cost(["/no_such_program"])
    with pytest.raises(measure.Missing, match="false ended with code 1"):
        measure.cost(["false"])
    with pytest.raises(measure.Missing, match="sh ended with code 3: why"):
        measure.run(["sh", "-c", "echo why >&2; exit 3"])


def test_programs_are_run_in_turns() -> None:
    calls = []

    def call(name: str, seconds: float) -> measure.Cost:
        calls.append(name)
        return measure.Cost(seconds, 10.0 * len(calls))

    figure = measure.in_turns(lambda: call("ours", 1), lambda: call("peer", 2), 2)
    assert calls == ["ours", "peer"] * 2
    assert figure.values == [0.5, 0.5] and figure.megabytes == 30


def test_what_a_peer_has_to_do_besides_counts_to_it() -> None:
    assert measure.Cost(1, 20).then(measure.Cost(0.5, 10)) == measure.Cost(1.5, 20)


def told(name: str, seconds: float, **more: object) -> dict[str, object]:
    return {"run_name": name, "run_type": "iteration", "cpu_time": seconds, "real_time": 10 * seconds,
            "time_unit": "ms", **more}


def test_functions_are_found_by_names_that_tell_how_their_time_was_taken() -> None:
    entries = [told("list/10", 3, peak_MB=7), told("peer/10/iterations:3/manual_time", 1)]
    assert measure.seconds(entries, "list/10") == [0.003]
    assert measure.seconds(entries, "peer/10") == [0.01]
    assert measure.counters(entries, "list/10", "peak_MB") == [7]
    assert measure.ratios([3], [10]).values == [0.3]
    with pytest.raises(measure.Missing, match="does not know list/1$"):
        measure.seconds(entries, "list/1")


def test_a_function_that_was_skipped_is_missing_with_its_reason() -> None:
    skipped = told("peer", 0, error_occurred=True, error_message="OWSLib is not there")
    with pytest.raises(measure.Missing, match="OWSLib is not there"):
        measure.seconds([told("list", 3), skipped], "peer")


def test_printed_numbers_are_read_round_by_round() -> None:
    figures = measure.printed(["echo", "a 1.5 b 2"], r"a ([\d.]+) b ([\d.]+)", 2)
    assert [figure.values for figure in figures] == [[1.5, 1.5], [2.0, 2.0]]
    with pytest.raises(measure.Missing, match="echo tells nothing of it"):
        measure.printed(["echo", "a"], r"(\d)", 1)


def test_the_largest_number_of_each_part_is_found() -> None:
    text = "first\n  all 1.5\n  part 2.5\nsecond\n  all 0.5\n"
    assert measure.largest_in_parts(text, ["first", "second"], r"([\d.]+)$") == [2.5, 0.5]
    with pytest.raises(measure.Missing, match="nothing is told of third"):
        measure.largest_in_parts(text, ["first", "third"], r"([\d.]+)$")


def test_what_was_measured_is_kept_row_by_row_and_replaced(tmp_path: pathlib.Path) -> None:
    kept = results.Results(tmp_path / "build/figures.json")
    one, other = rows.ROWS[0], rows.ROWS[1]
    figures = [measure.Figure([0.5], 100) for _ in one.lines]
    kept.keep(one, [measure.Figure([0.9], 100) for _ in one.lines], 3)
    kept.keep(one, figures, 3)
    kept.keep(other, measure.Missing("gdal_translate is not there"), 3)
    outcomes = [result.outcome for result in kept.all()]
    assert outcomes[0] == figures
    assert str(outcomes[1]) == "gdal_translate is not there"
    assert all(str(outcome) == "not asked for in these goes" for outcome in outcomes[2:])


def test_reasons_are_of_lines_that_are_measured() -> None:
    lines = {(one.name, number) for one in rows.ROWS for number in range(len(one.lines))}
    assert rows.REASONS.keys() <= lines


def test_every_row_has_a_name_of_its_own_and_the_lines_that_it_measures() -> None:
    names = [one.name for one in rows.ROWS]
    assert len(names) == len(set(names))
    assert all(line.due > 0 for one in rows.ROWS for line in one.lines)


def run(*words: str) -> "subprocess.CompletedProcess[str]":
    return subprocess.run([sys.executable, TABLE / "run.py", *words], capture_output=True, text=True)


def test_a_row_that_is_unknown_is_refused_with_those_that_are_known() -> None:
    done = run("nowhere", "--rounds", "1", "slowness")
    assert done.returncode == 2 and "unknown row slowness" in done.stderr


def test_the_page_can_be_written_without_measuring(tmp_path: pathlib.Path) -> None:
    done = run(str(tmp_path), "--only-page", "--page", str(tmp_path / "page.md"))
    assert done.returncode == 0, done.stderr
    assert "not asked for" in (tmp_path / "page.md").read_text(encoding="utf-8")
