#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Exchanges the example documents with the library."""

from __future__ import annotations

from pathlib import Path

from exchange import ExchangeTest
from host import Request, compressed

EXAMPLES = sorted((Path(__file__).parents[2] / "examples").glob("*.xml"))


class Examples(ExchangeTest):
    def test_every_example_is_the_same_in_every_encoding(self) -> None:
        self.assertGreaterEqual(len(EXAMPLES), 5)
        for example in EXAMPLES:
            with self.subTest(example.name):
                content = example.read_bytes()
                of_text, of_file = self.run_both(
                    Request("TunerProperties", True, ((kind, content),)) for kind in "xf")
                self.assertTrue(of_text.steps.is_done)
                self.assertEqual(of_text, of_file)

                forms = {**of_text.written, "c": compressed(of_text.written["c"], level=9)}
                again = self.run_both(
                    Request("TunerProperties", True, ((form, outcome.content),)) for form, outcome in forms.items())
                for answer in again:
                    self.assertEqual(answer.written["x"], of_text.written["x"])


if __name__ == "__main__":
    Examples.run_all(__doc__, least_documents=6 * len(EXAMPLES))
