# SPDX-License-Identifier: MIT
"""Reads model.json and replaces parts of files."""

from __future__ import annotations

import json
import re


class GenerationError(Exception):
    """A file cannot be generated from the model."""


class Model:
    def __init__(self, text: str) -> None:
        parsed = json.loads(text)
        self.version: str = parsed["version"]
        self.classes: list[dict] = parsed["classes"]
        self.members: list[tuple[dict, dict]] = [(cls, row) for cls in self.classes for row in cls["members"]]

    @property
    def class_names(self) -> list[str]:
        return [cls["name"] for cls in self.classes]

    @property
    def kinds(self) -> set[str]:
        """The classes of the alternatives."""
        return {row["class"] for _, row in self.members if row["kind"] == "alternative"}

    def enumeration(self, kind: str) -> list[str]:
        found = [row["names"] for _, row in self.members if row["kind"] == kind]
        if len(found) != 1:
            raise GenerationError(f"the model has {len(found)} members of the kind '{kind}'; scripts/model supports "
                              "exactly one")
        return found[0]

    @property
    def types_of_tuners(self) -> list[str]:
        return self.enumeration("enumeration")

    @property
    def modes(self) -> list[str]:
        return self.enumeration("enumeration list")

    @property
    def version_record(self) -> tuple[str, str]:
        """Name and tag."""
        (version,) = (cls["version"] for cls in self.classes if "version" in cls)
        return version["attribute"], version["tag"]


def unique(values) -> list:
    return list(dict.fromkeys(values))


def replaced(path: str, text: str, pattern: str, replacement: str) -> str:
    """The text with the only match of the pattern replaced. Groups named "before" and "after" are kept."""
    found = list(re.finditer(pattern, text, re.MULTILINE | re.DOTALL))
    if len(found) != 1:
        raise GenerationError(f"{path}: has {len(found)} matches of {pattern!r} instead of one")
    groups = found[0].groupdict()
    return (text[: found[0].start()] + groups.get("before", "") + replacement + groups.get("after", "")
            + text[found[0].end() :])


def between_marks(path: str, text: str, comment: str, what: str, lines: list[str]) -> str:
    """The text with the lines between two comments replaced."""
    first = f"{comment} {what}, made by scripts/model.sh"
    last = f"{comment} end of what is made"
    return replaced(path, text, rf"(?P<before>^{re.escape(first)}\n).*?(?P<after>^{re.escape(last)}\n)",
                    "".join(f"{line}\n" for line in lines))
