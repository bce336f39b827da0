#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Figures of whole processes are those of the process, and there are none if a program does not do its work."""

from __future__ import annotations

import contextlib
import io
import json
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROJECT = Path(__file__).parents[2]
SCRIPT = PROJECT / "bench" / "processes.py"
sys.path.insert(0, str(SCRIPT.parent))
import processes  # noqa: E402

DOCUMENT = '<TunerProperties Version="1.1" type="SCP"></TunerProperties>'

# Programs that refuse the documents that are damaged, and nothing else. The page is as long as the document.
CHECK = 'grep -q Toaster "$file" && exit 1; grep -q "</" "$file" || exit 1'
XMLLINT = 'for file; do :; done; [ "$2" != --schema ] || { ' + CHECK + '; }; grep -q "</" "$file" || exit 1'
TOOL = 'for file; do :; done; case $1 in convert) cp "$2" "$3" ;; validate) ' + CHECK + """ ;;
show) [ "$(wc -c <"$file")" -lt 50 ] || { echo "in.xml: cannot show more than 1 objects" >&2; exit 3; }
    echo '<html></html>' ;;
lint) exit 1 ;;
get) case $3 in *'*'*) printf 'x\\tPATH\\t6\\nx\\tPATH/value\\t7\\n' ;; *) cut -d ' ' -f 2 "$2" ;; esac ;;
diff) cmp -s "$2" "$3" || echo '~ PATH/value: 7 -> 8' ;;
set) echo "</ ${3#PATH/value=}" >"$2" ;; esac"""
BENCH = 'head -c "$(($4 / 1000))" /dev/zero >"$2"; echo "</" >>"$2"'
# A million instructions for each argument.
VALGRIND = 'out=${2#*=}; for file; do :; done; shift 2; "$@"; status=$?; echo "totals: $#000000" >"$out"; exit $status'


class Processes(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.write("example.xml", DOCUMENT)
        for name, body in (("tool", TOOL), ("bench", BENCH), ("xmllint", XMLLINT), ("valgrind", VALGRIND)):
            self.program(name, body)

    def write(self, name: str, text: str) -> Path:
        path = self.folder / name
        path.write_text(text, encoding="utf-8")
        return path

    def program(self, name: str, body: str) -> None:
        self.write(name, "#!/bin/sh\n" + body + "\n").chmod(0o700)

    def measure(self, path: str = "") -> subprocess.CompletedProcess:
        environment = {**os.environ, "PATH": path or f"{self.folder}:{os.environ['PATH']}"}
        files = {name: self.folder / name for name in ("tool", "bench", "schema", "output")}
        options = [str(word) for name, value in files.items() for word in (f"--{name}", value)]
        return subprocess.run([sys.executable, "-B", SCRIPT, *options, "--example", self.folder / "example.xml"],
                              capture_output=True, text=True, env=environment)

    def refusal(self) -> str:
        measured = self.measure()
        self.assertNotEqual(measured.returncode, 0)
        self.assertFalse((self.folder / "output").exists())
        return measured.stderr

    def test_programs_that_do_their_work_are_measured(self) -> None:
        measured = self.measure()
        self.assertEqual(measured.stderr, "")
        figures = json.loads((self.folder / "output").read_text(encoding="utf-8"))
        commands = "validate", "lint", "get", "diff", "set"
        self.assertEqual(list(figures), ["show --format html, 15,000 nodes", "show --format html, 100,000 nodes",
                                         "validate -j1, 500 files", "validate, one file",
                                         *(f"{name}, 10,000 nodes, instructions" for name in commands),
                                         *(f"{name}, 100,000 nodes, CPU" for name in commands),
                                         "set beside get, 100,000 nodes, instructions",
                                         "set beside get, 100,000 nodes, CPU"])
        self.assertEqual(figures["show --format html, 15,000 nodes"]["reference"], 14 / 1e6)
        self.assertEqual(figures["lint, 10,000 nodes, instructions"], {"figure": 3, "reference": 3})
        self.assertEqual(figures["set beside get, 100,000 nodes, instructions"], {"figure": 4, "reference": 4})
        self.assertEqual(figures["show --format html, 100,000 nodes"], {"refused": True})
        for name in ("validate -j1, 500 files", "validate, one file"):
            self.assertGreater(figures[name]["figure"], 0)
            self.assertGreater(figures[name]["reference"], 0)

    def test_each_process_has_a_target(self) -> None:
        targets = json.loads((PROJECT / "bench" / "targets.json").read_text(encoding="utf-8"))
        self.measure()
        figures = json.loads((self.folder / "output").read_text(encoding="utf-8"))
        self.assertEqual({row["process"] for row in targets["processes"]}, set(figures))

    def test_a_tool_that_accepts_invalid_documents_is_not_measured(self) -> None:
        self.program("tool", TOOL.replace("Toaster", "Kettle"))
        self.assertRegex(self.refusal(), r"tool validate -j1 .*/invalid\.xml: a damaged document is accepted\n")

    def test_a_tool_that_accepts_truncated_documents_is_not_measured(self) -> None:
        self.program("tool", TOOL.replace('"</"', '"<"'))
        self.assertRegex(self.refusal(), r"tool validate -j1 .*/truncated\.xml: a damaged document is accepted\n")

    def test_an_xmllint_that_ignores_the_schema_is_not_measured(self) -> None:
        self.program("xmllint", XMLLINT.replace("Toaster", "Kettle"))
        self.assertRegex(self.refusal(), r"--schema .*/invalid\.xml: a damaged document is accepted\n")

    def test_a_tool_that_fails_is_reported_with_its_message(self) -> None:
        self.program("tool", 'echo "out of paper" >&2; exit 4')
        self.assertRegex(self.refusal(), r"tool show --format html .*: exit status 4, or no whole page\nout of paper\n")

    def test_an_example_that_the_tool_cannot_convert_is_reported(self) -> None:
        self.program("tool", TOOL.replace('cp "$2" "$3"', "echo no >&2; exit 1"))
        self.assertRegex(self.refusal(), r"tool convert .*: exit status 1 instead of 0\nno\n")

    def test_a_page_that_ends_early_is_reported(self) -> None:
        self.program("tool", TOOL.replace("<html></html>", "<html>"))
        self.assertRegex(self.refusal(), r"exit status 0, or no whole page")

    def test_a_document_without_the_value_that_is_changed_is_reported(self) -> None:
        self.program("tool", TOOL.replace("printf", "true"))
        self.assertEqual(self.refusal(), "document-1000.xml has no value for "
                                         "Component[*]/Node[*]/ValueItem[*]/ValueInt/value\n")

    def test_a_set_that_stores_nothing_is_not_measured(self) -> None:
        self.program("tool", TOOL.replace("${3#PATH/value=}", "7"))
        self.assertRegex(self.refusal(), r"tool set .*=8: 'get' does not print the value\n")

    def test_a_diff_that_finds_nothing_is_not_measured(self) -> None:
        self.program("tool", TOOL.replace("cmp -s", "true"))
        self.assertRegex(self.refusal(), r"tool diff .*: there is not one difference\n")

    def test_a_lint_that_finds_nothing_is_not_measured(self) -> None:
        self.program("tool", TOOL.replace("lint) exit 1", "lint) exit 0"))
        self.assertRegex(self.refusal(), r"tool lint .*: exit status 0 instead of 1\n")

    def test_instructions_that_were_not_counted_are_reported(self) -> None:
        self.program("valgrind", VALGRIND.replace("totals", "nothing"))
        self.assertRegex(self.refusal(), r"tool validate .*: callgrind has counted nothing\n")

    def test_a_missing_xmllint_is_named(self) -> None:
        self.assertEqual(self.measure(path=str(self.folder / "nowhere")).stderr,
                         "xmllint is missing; install it first (Debian: libxml2-utils)\n")

    def test_time_of_the_processor_is_not_time_spent_waiting(self) -> None:
        busy = processes.run([sys.executable, "-c", "import time\nwhile time.process_time() < 0.2: pass"])
        waiting = processes.run([sys.executable, "-c", "import time; time.sleep(0.2)"])
        self.assertGreaterEqual(busy.cpu, 200)
        self.assertGreaterEqual(waiting.clock, 200)
        self.assertGreaterEqual(waiting.clock - waiting.cpu, 100)

    def test_the_peak_is_that_of_the_process_alone(self) -> None:
        large = processes.run([sys.executable, "-c", "memory = b'x' * 200_000_000; del memory"])
        small = processes.run([sys.executable, "-c", ""])
        self.assertGreaterEqual(large.peak, 200)
        self.assertLess(small.peak, 200)

    def test_runs_of_a_program_and_its_reference_alternate(self) -> None:
        log = self.folder / "log"
        commands = [["/bin/sh", "-c", f"echo {name} >>{log}"] for name in ("tool", "reference")]
        tool, reference = processes.in_turn(2, *commands)
        self.assertEqual(log.read_text(encoding="utf-8").split(), ["tool", "reference"] * 3)  # the first are left out
        self.assertEqual((len(tool), len(reference)), (2, 2))

    def test_a_run_that_fails_ends_the_measuring(self) -> None:
        with contextlib.redirect_stderr(io.StringIO()), self.assertRaises(SystemExit) as failure:
            processes.in_turn(1, ["/bin/sh", "-c", "echo broken >&2; exit 7"])
        self.assertEqual(failure.exception.code, "/bin/sh -c echo broken >&2; exit 7: exit status 7 instead of 0\nbroken\n")


if __name__ == "__main__":
    unittest.main()
