"""The comparison of counts, on counts that are made up."""

import pathlib
import sys

import pytest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "benchmarks/counts"))

import count  # noqa: E402  from the folder above


def test_a_tenth_more_is_borne_and_no_more() -> None:
    assert count.problems({"list": 110}, {"list": 100}) == []
    assert count.problems({"list": 111}, {"list": 100}) == ["list: 111 instructions, 1.11 times the 100 that are kept"]


def test_fewer_are_no_problem() -> None:
    assert count.problems({"list": 10}, {"list": 100}) == []


def test_what_is_on_one_side_alone_is_told() -> None:
    assert count.problems({"list": 1, "new": 1}, {"list": 1, "old": 1}) == [
        "new is kept or counted, but not both", "old is kept or counted, but not both"]


def test_counts_are_read_as_they_are_written(tmp_path: pathlib.Path) -> None:
    (tmp_path / "counts.txt").write_text("Selection_bench answer/5000/100 123\nEngine_bench key 4\n", encoding="utf-8")
    assert count.read(tmp_path / "counts.txt") == {"Selection_bench answer/5000/100": 123, "Engine_bench key": 4}


def test_a_program_that_cannot_be_counted_is_a_failure(tmp_path: pathlib.Path) -> None:
    with pytest.raises(RuntimeError, match="nowhere_bench list could not be counted"):
        count.count(tmp_path, "nowhere_bench", "list")


def test_every_count_that_is_kept_is_taken() -> None:
    file = pathlib.Path(count.__file__).with_name("counts.txt")
    assert sorted(count.read(file)) == sorted(f"{program} {name}" for program, name in count.COUNTED)
