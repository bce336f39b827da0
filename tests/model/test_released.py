#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that existing documents stay readable, and that the changelog announces new members.

released.json is the model that existing documents use. When a version is released, share/model.json takes its place.
"""

from __future__ import annotations

import json
import re
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]


def model(path: Path) -> dict[str, dict]:
    return {cls["name"]: cls for cls in json.loads(path.read_text(encoding="utf-8"))["classes"]}


def members(cls: dict) -> dict[str, dict]:
    return {row["name"]: row for row in cls["members"]}


RELEASED = model(PROJECT / "tests/model/released.json")
PRESENT = model(PROJECT / "share/model.json")


class Released(unittest.TestCase):
    def test_every_released_member_is_where_it_was(self) -> None:
        for name, released in RELEASED.items():
            self.assertIn(name, PRESENT)
            present = PRESENT[name]
            self.assertEqual(present["identifier"], released["identifier"], name)
            for row in released["members"]:
                with self.subTest(f"{name}.{row['name']}"):
                    now = members(present).get(row["name"], {})
                    for key in ("kind", "class", "bit", "tag", "xml", "default", "mandatory", "written", "snapshot", "traits"):
                        self.assertEqual(now.get(key), row.get(key), key)
                    self.assertEqual(now.get("names", [])[: len(row.get("names", []))], row.get("names", []))

    def test_classes_keep_their_order(self) -> None:
        self.assertEqual(list(PRESENT)[: len(RELEASED)], list(RELEASED))  # in which the library builds their statics

    def test_a_tag_goes_with_name_and_type(self) -> None:
        tags: dict[str, set[tuple]] = {}
        for cls in PRESENT.values():
            for row in cls["members"]:
                tags.setdefault(row["tag"], set()).add((row["name"], row["kind"], row.get("class")))
        self.assertEqual({tag: uses for tag, uses in tags.items() if len(uses) > 1}, {})

    def test_what_is_new_is_in_the_changelog(self) -> None:
        changelog = re.sub(r"\s+", " ", (PROJECT / "CHANGELOG.md").read_text(encoding="utf-8"))
        for name, cls in PRESENT.items():
            with self.subTest(name):
                if name not in RELEASED:
                    self.assertRegex(changelog, rf"\b{name}\b", f"CHANGELOG.md does not mention the new class {name}")
                    continue
                for member in members(cls).keys() - members(RELEASED[name]).keys():
                    if members(cls)[member]["kind"] == "alternative":
                        continue  # its class is new as well
                    self.assertRegex(changelog, rf"\b{name}\b[^.]*\b{member}\b|\b{member}\b[^.]*\b{name}\b",
                                     f"CHANGELOG.md does not mention the new member {name}.{member}")


if __name__ == "__main__":
    unittest.main()
