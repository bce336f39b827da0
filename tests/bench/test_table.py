#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The tables of the benchmark show what was measured, and its checks report what is missing, unknown or too high."""

from __future__ import annotations

import contextlib
import io
import json
import sys
import tempfile
import unittest
from pathlib import Path
from unittest import mock

sys.path.insert(0, str(Path(__file__).parents[2] / "bench"))
import table  # noqa: E402

TARGETS = {
    "times": [{"operation": "read", "reference": "walk", "reach": [2.5, 2.0, 1.5], "goal": [2.0, 1.5, 1.125]},
              {"operation": "write", "reference": "dump", "reach": [None, None, 1.5], "goal": [None, None, 1.0]}],
    "validation": [{"operation": "write", "reference": "write, off", "reach": [None, None, 1.04],
                    "goal": [None, None, 1.02]}],
    "instructions": [],
    "growth": {"reach": 1.03, "goal": 1.02},
    "peers": [{"operation": "read", "peer": "pugixml read", "reach": 3.0}],
    "heap": [{"figure": "bytes", "reach": 800, "goal": 600},
             {"figure": "excess", "operation": "XML text read", "reach": 1.15, "goal": 1.05}],
    "heap_of_peers": [],
    "processes": [{"process": "validate", "unit": "ms", "reference": "xmllint", "reach": 1.5, "goal": 1.0},
                  {"process": "show", "unit": "MB", "reach": 450, "goal": 300}],
}


def cells(line: str) -> list[str]:
    return [cell.strip() for cell in line.split("  ") if cell.strip()]


class Table(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        baseline = self.folder / "baseline.json"
        baseline.write_text("{}", encoding="utf-8")
        for name, value in (("TARGETS", TARGETS), ("BASELINE", baseline)):
            patch = mock.patch.object(table, name, value)
            patch.start()
            self.addCleanup(patch.stop)

    def printed(self, function, *arguments) -> list[list[str]]:
        """The cells of the lines that a function prints."""
        with contextlib.redirect_stdout(io.StringIO()) as output:
            function(*arguments)
        return [cells(line) for line in output.getvalue().splitlines()]

    def record(self, figures: dict) -> None:
        table.BASELINE.write_text(json.dumps(figures), encoding="utf-8")

    def write(self, name: str, content: object) -> Path:
        path = self.folder / name
        path.write_text(json.dumps(content), encoding="utf-8")
        return path

    def test_what_was_not_measured_is_a_dash(self) -> None:
        self.assertIn(["read", "walk", "-", "-", "-", "2.50 / 2.00 (1.50)", "2.00 / 1.50 (1.125)", "-"],
                      self.printed(table.times_table, {}, "tree"))
        self.assertIn(["bytes per node kept", *"------", "800.00", "600.00", "-"],
                      self.printed(table.heap_table, {}, 1000))
        processes = self.printed(table.processes_table, {})
        self.assertIn(["validate", "xmllint", "ms", "-", "-", "-", "1.50", "1.00", "-"], processes)
        self.assertIn(["show", "MB", "-", "-", "-", "450.00", "300.00", "-"], processes)

    def test_a_row_shows_its_ratios_and_the_worst_of_them(self) -> None:
        results = {"timed": {"read/tree/1000": 3, "walk/tree/1000": 2, "read/tree/10000": 5, "walk/tree/10000": 2},
                   "instructions": {"read/tree/1000": 11, "walk/tree/1000": 10}}
        self.assertIn(["read", "walk", "1.50", "2.50", "1.10", "2.50 / 2.00 (1.50)", "2.00 / 1.50 (1.125)", "missed"],
                      self.printed(table.times_table, results, "tree"))

    def test_validated_writing_is_compared_with_unvalidated(self) -> None:
        results = {"instructions": {"write/tree/1000": 21, "write, off/tree/1000": 20, "dump/tree/1000": 21}}
        self.assertIn(["write", "write, off", "-", "-", "1.05", "- / - (1.04)", "- / - (1.02)", "missed"],
                      self.printed(table.times_table, results, "tree"))
        self.assertIn("write: 1.050 of the instructions of 'write, off', reach is 1.04", table.above_reach(results))

    def test_an_operation_that_was_not_measured_is_reported(self) -> None:
        self.assertEqual(list(table.above_reach({"instructions": {"write/tree/1000": 1, "dump/tree/1000": 1}})),
                         ["read: instructions were not measured", "write: instructions were not measured"])

    def test_an_operation_that_is_not_recorded_is_reported(self) -> None:
        self.record({"instructions: read/tree": 5.0})
        results = {"instructions": {"read/tree/1000": 5000, "new/tree/1000": 1}}
        self.assertEqual(list(table.above_baseline(results)),
                         ["instructions: new/tree: measured, but not recorded in baseline.json"])

    def test_a_recorded_operation_that_was_not_measured_is_reported(self) -> None:
        self.record({"instructions: read/tree": 5.0})
        self.assertEqual(list(table.above_baseline({})), ["instructions: read/tree: recorded, but not measured"])

    def test_a_figure_more_than_five_percent_above_the_recorded_one_is_reported(self) -> None:
        self.record({"instructions: read/tree": 100.0, "instructions: write/tree": 100.0})
        results = {"instructions": {"read/tree/1000": 105000, "write/tree/1000": 105100}}
        self.assertEqual(list(table.above_baseline(results)),
                         ["instructions: write/tree: 105.1 instead of 100.0, which is more than 5 % above"])

    def test_a_check_with_findings_fails(self) -> None:
        with self.assertRaises(SystemExit) as failure:
            self.printed(table.check, {"instructions": {"new/tree/1000": 1}})
        self.assertEqual(failure.exception.code, 1)

    def run_main(self, *options: object) -> list[list[str]]:
        arguments = ["table.py", "--results", self.folder / "results.json", *options]
        with mock.patch.object(sys, "argv", [str(argument) for argument in arguments]):
            return self.printed(table.main)

    def test_the_script_checks_all_figures_that_were_kept(self) -> None:
        self.write("results.json", {"instructions": {"new/tree/1000": 1000}})
        self.run_main()
        with self.assertRaises(SystemExit):
            self.run_main("--check")

    def test_measuring_processes_keeps_the_other_figures(self) -> None:
        path = self.write("results.json", {"timed": {"read/tree/1000": 1}})
        lines = self.run_main("--processes", self.write("processes.json", {"show": {"figure": 7}}))
        self.assertIn(["show", "MB", "7.0", "-", "7.00", "450.00", "300.00", "goal"], lines)
        self.assertEqual(json.loads(path.read_text(encoding="utf-8")),
                         {"timed": {"read/tree/1000": 1}, "processes": {"show": {"figure": 7}}})

    def test_figures_of_an_allocator_are_kept_under_its_name(self) -> None:
        def run(time: int) -> dict:
            return {"benchmarks": [{"run_type": "iteration", "run_name": "read/tree/1000", "cpu_time": time}]}

        self.run_main("--allocator", "jemalloc", "--without", self.write("1.json", run(4)), self.write("2.json", run(6)),
                      "--with", self.write("3.json", run(1)))
        results = json.loads((self.folder / "results.json").read_text(encoding="utf-8"))
        self.assertEqual(results, {"allocators": {"jemalloc": {"without": {"read/tree/1000": 5},
                                                               "with": {"read/tree/1000": 1}}}})

    def test_heap_targets_of_one_reader_leave_out_the_others(self) -> None:
        count = {"bytes": 500000, "blocks": 10, "peak": 700000, "allocations": 10, "document": 100000}
        results = {"memory": {"XML text read/tree/1000": count}}
        self.assertIn(["peak beyond bytes kept, per byte of the document", "-", "-", "2.00", "-", "-", "-", "1.15", "1.05",
                       "missed"], self.printed(table.heap_table, results, 1000))
        self.assertIn("XML text read: peak beyond bytes kept, per byte of the document 2.000, reach is 1.15",
                      table.above_reach(results))

    def test_processes_have_ratios_or_limits(self) -> None:
        results = {"processes": {"validate": {"figure": 30, "reference": 24}, "show": {"figure": 299}}}
        processes = self.printed(table.processes_table, results)
        self.assertIn(["validate", "xmllint", "ms", "30.0", "24.0", "1.25", "1.50", "1.00", "reached"], processes)
        self.assertIn(["show", "MB", "299.0", "-", "299.00", "450.00", "300.00", "goal"], processes)

    def test_a_process_that_the_tool_refuses_is_marked(self) -> None:
        self.assertIn(["show", "MB", "-", "-", "-", "450.00", "300.00", "refused"],
                      self.printed(table.processes_table, {"processes": {"show": {"refused": True}}}))

    def test_times_are_medians_over_all_runs(self) -> None:
        def runs(*times: int) -> dict:
            return {"benchmarks": [{"run_type": "iteration", "run_name": "read/tree/1000", "cpu_time": time,
                                    "real_time": 0} for time in times]
                    + [{"run_type": "aggregate", "run_name": "read/tree/1000", "cpu_time": 1000, "real_time": 0}]}

        self.assertEqual(table.read_timed(self.write("1.json", runs(1, 9)), self.write("2.json", runs(2))),
                         {"read/tree/1000": 2})

    def test_saving_a_file_is_timed_by_the_clock(self) -> None:
        run = {"run_type": "iteration", "cpu_time": 1, "real_time": 2}
        names = "XML file/tree/1000", "XML file read/tree/1000"
        path = self.write("1.json", {"benchmarks": [{**run, "run_name": name} for name in names]})
        self.assertEqual(table.read_timed(path), {"XML file/tree/1000": 2, "XML file read/tree/1000": 1})

    def test_an_allocator_is_shown_beside_the_run_without_it(self) -> None:
        times = {"without": {"walk/tree/1000": 10, "read/tree/1000": 20, "read/tree/10000": 300},
                 "with": {"walk/tree/1000": 10, "read/tree/1000": 5, "read/tree/10000": 150}}
        lines = self.printed(table.allocator_table, {"allocators": {"jemalloc": times}}, "jemalloc", "tree")
        self.assertEqual(lines[-2:], [["read", "20", "5", "0.25", "300", "150", "0.50"],
                                      ["walk", "reference", "10", "10", "1.00", "-", "-", "-"]])


if __name__ == "__main__":
    unittest.main()
