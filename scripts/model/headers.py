# SPDX-License-Identifier: MIT
"""What the public headers say about classes, members and enumerators, in a sentence."""

from __future__ import annotations

import re

from model import GenerationError


def _sentence(text: str) -> str:
    """The first one, up to the semicolon before defaults and refusals."""
    found = re.match(r"[^;.]*(?:\.\w[^;.]*)*", " ".join(text.split()))
    return f"{found[0].strip()}." if found and found[0].strip() else ""


def of_class(header: str, name: str) -> str:
    found = re.search(rf"((?:^///[^\n]*\n)+)class JOBXML_EXPORT {name}\b", header, re.MULTILINE)
    return _sentence(found[1].replace("///", "")) if found else ""


def of_member(header: str, name: str) -> str:
    found = re.search(rf"^ *///\s*\\name {name}\n((?: *///(?! *@)[^\n]*\n)*)", header, re.MULTILINE)
    return _sentence(found[1].replace("///", "")) if found else ""


def of_enumerator(header: str, enumeration: str, name: str) -> str:
    found = re.search(rf"^ *enum class {enumeration} [^{{]*\{{[^}}]*?^ *{name},[ ]*///<([^\n]*)$", header, re.MULTILINE)
    sentence = _sentence(found[1]) if found else ""
    return sentence[:1].upper() + sentence[1:]


class Documentation:
    """What a generated file says about the model. Nothing may be without documentation."""

    def __init__(self, path: str, read) -> None:
        self._path = path
        self._read = read

    def of_class(self, cls: dict) -> str:
        return self._required(of_class(self._header(cls), cls["name"]), cls["name"])

    def of_member(self, cls: dict, row: dict) -> str:
        """With whether the member is required, and what it is if it is absent."""
        said = self._required(of_member(self._header(cls), row["name"]), f"{cls['name']}.{row['name']}")
        return f"{said} {self._presence(row)}".rstrip()

    def of_enumerators(self, cls: dict, row: dict) -> dict[str, str]:
        """By name, in the order of the model."""
        header = self._header(cls)
        return {name: self._required(of_enumerator(header, row["name"], name), f"{cls['name']}::{row['name']}::{name}")
                for name in row["names"]}

    @staticmethod
    def _presence(row: dict) -> str:
        if row["kind"] == "alternative":
            return ""
        if row["mandatory"]:
            return "Mandatory, one at least." if row["kind"].endswith("list") else "Mandatory."
        default = row["default"]
        if default is None or isinstance(default, (dict, list)):
            return "Optional."
        return f"Optional; {str(default).lower()} if absent."

    def _header(self, cls: dict) -> str:
        return self._read(f"include/jobxml/{cls['name']}.h")

    def _required(self, said: str, what: str) -> str:
        if not said:
            raise GenerationError(f"{self._path}: {what} has no documentation; write it in the header of the class")
        return said
