#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What exports.py says about small libraries: test_exports.py COMPILER NM"""

from __future__ import annotations

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

NM = sys.argv.pop()
COMPILER = sys.argv.pop()
SCRIPT = Path(__file__).with_name("exports.py")


class Exports(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.recorded = self.folder / "recorded.txt"

    def compare(self, source: str, *options: str) -> tuple[int, str]:
        """The status and the message for a library with this source."""
        file, library = self.folder / "library.cpp", self.folder / "library.so"
        file.write_text(f"namespace JobXml {{ {source} }}\n", encoding="utf-8")
        subprocess.run([COMPILER, "-shared", "-fPIC", "-o", library, file], check=True)
        run = subprocess.run([sys.executable, "-B", SCRIPT, "--nm", NM, library, self.recorded, *options],
                             capture_output=True, text=True)
        return run.returncode, run.stderr

    def test_recorded_names_are_accepted(self) -> None:
        self.assertEqual(self.compare("void use(int) {}", "--record"), (0, ""))
        self.assertEqual(self.recorded.read_text(encoding="utf-8"), "JobXml::use(int)\n")
        self.assertEqual(self.compare("void use(int) {}"), (0, ""))

    def test_name_that_is_not_recorded_is_reported(self) -> None:
        self.compare("void use(int) {}", "--record")
        status, message = self.compare("void use(int) {} void useAll() {}")
        self.assertEqual(status, 1)
        self.assertIn("\n+JobXml::useAll()\n", message)

    def test_internals_are_refused_even_when_recording(self) -> None:
        source = "class Block; void use(Block &) {} void use(int) {}"
        for options in ((), ("--record",)):
            status, message = self.compare(source, *options)
            self.assertEqual((status, message), (1, "library.so exports internals, which programs cannot use:\n"
                                                    "  JobXml::use(JobXml::Block&)\n"))
        self.assertFalse(self.recorded.exists())


if __name__ == "__main__":
    unittest.main()
