#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""compare.py accepts the same results, and no others."""

import os
import subprocess
import sys
import tempfile
import unittest

COMPARE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "compare.py")
ROWS = (
    "xml\t0\ttext\tread\t0:0\taa\tbb\tcc\t",
    "xml\t0\tbytes\trefused\t3:7\taa\tbb\tcc\tdocument:3:7: Unexpected '<'.",
    "xml\t1\ttext\tthrown\t3:7\taa\tbb\tdd\tOutOfRangeException: no",
)


class CompareTest(unittest.TestCase):
    def compare(self, left, right, documents=2):
        with tempfile.TemporaryDirectory() as folder:
            paths = []
            for name, rows in (("left", left), ("right", right)):
                paths.append(os.path.join(folder, name))
                with open(paths[-1], "w", encoding="utf-8") as file:
                    file.writelines(row + "\n" for row in rows)
            return subprocess.run([sys.executable, "-B", COMPARE, *paths, "--documents", str(documents)],
                                  capture_output=True, text=True, check=False)

    def test_same_results_are_accepted(self):
        done = self.compare(ROWS, ROWS)
        self.assertEqual(done.stderr, "")
        self.assertEqual(done.returncode, 0)
        self.assertEqual(done.stdout, "2 documents, 3 times read: 1 read, 1 refused, 1 thrown\n")

    def test_a_difference_in_any_column_is_refused(self):
        names = ("form", "number", "way", "outcome", "place", "state", "problems", "document", "message")
        for column, name in enumerate(names):
            cells = ROWS[1].split("\t")
            cells[column] += "x"
            done = self.compare(ROWS, (ROWS[0], "\t".join(cells), ROWS[2]))
            self.assertEqual(done.returncode, 1, name)
            self.assertEqual(done.stderr, "1 differences\n")
            self.assertIn(f"xml 0 bytes: different {name}\n", done.stdout)

    def test_missing_results_are_refused(self):
        for left, right, documents in ((ROWS, ROWS[:2], 2), (ROWS[:2], ROWS, 2), (ROWS, ROWS, 3), ((), (), 0)):
            self.assertNotEqual(self.compare(left, right, documents).returncode, 0)

    def test_results_without_read_or_without_refused_documents_are_refused(self):
        for outcome, rows in (("read", ROWS[1:]), ("refused", (ROWS[0], ROWS[0].replace("\t0\t", "\t1\t", 1)))):
            self.assertEqual(self.compare(rows, rows).stderr, f"no document was {outcome}\n")

    def test_other_columns_are_refused(self):
        rows = [row + "\tmore" for row in ROWS]
        self.assertEqual(self.compare(rows, rows).stderr, "a row has other columns\n")


if __name__ == "__main__":
    unittest.main()
