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
        self.recorded = self.folder / "liblamp1.symbols"

    def compare(self, source: str, *options: str, version: str = "1.0.0") -> tuple[int, str]:
        """The status and the message for a library with this source."""
        file, library = self.folder / "library.cpp", self.folder / "libLamp.so.1.0.0"
        file.write_text(f"namespace JobXml {{ {source} }}\n", encoding="utf-8")
        subprocess.run([COMPILER, "-shared", "-fPIC", "-o", library, file], check=True)
        run = subprocess.run([sys.executable, "-B", SCRIPT, "--nm", NM, "--version", version, library, self.recorded, *options],
                             capture_output=True, text=True)
        return run.returncode, run.stderr

    def names(self) -> list[str]:
        return [line for line in self.recorded.read_text(encoding="utf-8").splitlines() if "(c++)" in line]

    def test_recorded_names_are_accepted(self) -> None:
        self.assertEqual(self.compare("void use(int) {}", "--record"), (0, ""))
        self.assertEqual(self.names(), [' (c++)"JobXml::use(int)@Base" 1.0.0'])
        self.assertEqual(self.compare("void use(int) {}"), (0, ""))

    def test_record_is_for_the_package_of_the_library(self) -> None:
        self.compare("void use(int) {}", "--record")
        self.assertEqual(self.recorded.read_text(encoding="utf-8").splitlines()[0], "libLamp.so.1 liblamp1 #MINVER#")

    def test_names_keep_the_version_that_has_introduced_them(self) -> None:
        self.compare("void use(int) {}", "--record")
        self.compare("void use(int) {} void useAll() {}", "--record", version="1.1.0")
        expected = [' (c++)"JobXml::use(int)@Base" 1.0.0', ' (c++)"JobXml::useAll()@Base" 1.1.0']
        self.assertEqual(self.names(), expected)
        self.assertEqual(self.compare("void use(int) {} void useAll() {}", version="1.2.0"), (0, ""))

    def test_name_that_is_not_recorded_is_reported(self) -> None:
        self.compare("void use(int) {}", "--record")
        status, message = self.compare("void use(int) {} void useAll() {}")
        self.assertEqual(status, 1)
        self.assertIn('\n+ (c++)"JobXml::useAll()@Base" 1.0.0\n', message)

    def test_names_are_spelled_as_with_qt_6(self) -> None:
        source = ("} struct QStringList; template <class> struct QVector; namespace JobXml { struct Lamp; "
                  "void use(QStringList &, QVector<Lamp> &) {} unsigned qHash(const Lamp &, unsigned) { return 0; }")
        self.recorded = self.folder / "liblamp-qt6-1.symbols"
        self.assertEqual(self.compare(source, "--record", "--as-qt6"), (0, ""))
        self.assertTrue(self.recorded.read_text(encoding="utf-8").startswith("libLamp-qt6.so.1 liblamp-qt6-1 #MINVER#\n"))
        self.assertEqual(self.names(), [' (c++)"JobXml::qHash(JobXml::Lamp const&, unsigned long)@Base" 1.0.0',
                                        ' (c++)"JobXml::use(QList<QString>&, QList<JobXml::Lamp>&)@Base" 1.0.0'])

    def test_internals_are_refused_even_when_recording(self) -> None:
        source = "class Block; void use(Block &) {} void use(int) {}"
        for options in ((), ("--record",)):
            status, message = self.compare(source, *options)
            self.assertEqual((status, message), (1, "libLamp.so.1.0.0 exports internals, which programs cannot use:\n"
                                                    "  JobXml::use(JobXml::Block&)\n"))
        self.assertFalse(self.recorded.exists())


if __name__ == "__main__":
    unittest.main()
