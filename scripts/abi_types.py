# SPDX-License-Identifier: MIT
"""The public types of two descriptions by abidw, compared member by member.

abidiff compares what functions, and members of what they take and return, refer to. It does not see types that are only
arguments of a template, such as the items of a QVector."""

from __future__ import annotations

import difflib
import xml.etree.ElementTree as ElementTree
from pathlib import Path
from xml.etree.ElementTree import Element

FOREIGN_NAMESPACES = {"std", "__gnu_cxx", "__cxxabiv1", "QtPrivate"}
CLASSES = {"class-decl", "union-decl"}
DEFINED = CLASSES | {"enum-decl"}
# How types that are made of another one are written after it.
SUFFIXES = {"pointer-type-def": " *", "reference-type-def": " &", "qualified-type-def": " const"}


def is_foreign(element: Element, parent: Element) -> bool:
    """Whether the standard library or Qt declares it."""
    name = element.get("name", "")
    if element.tag == "namespace-decl":
        return name in FOREIGN_NAMESPACES
    return element.tag in CLASSES and parent.tag == "abi-instr" and name.startswith("Q")


class PublicTypes:
    """The lines that describe each type; a type may be described several times, by several sources of the library."""

    def __init__(self, file: Path) -> None:
        root = ElementTree.parse(file).getroot()
        self._types = {element.get("id"): element for element in root.iter() if element.get("id")}
        self.lines: dict[str, set[tuple[str, ...]]] = {}
        self._find(root, [])

    def _find(self, parent: Element, scope: list[str]) -> None:
        for child in parent:
            name = child.get("name", "")
            if is_foreign(child, parent):
                continue
            if child.tag in DEFINED and name and child.get("is-declaration-only") != "yes":
                self.lines.setdefault("::".join([*scope, name]), set()).add(tuple(self._describe(child)))
            if child.tag in DEFINED or child.tag == "namespace-decl":
                self._find(child, [*scope, name])
            elif child.tag in ("abi-instr", "member-type"):
                self._find(child, scope)

    def _describe(self, element: Element) -> list[str]:
        if element.tag == "enum-decl":
            return [f"{one.get('name')} = {one.get('value')}" for one in element.iter("enumerator")]
        lines = [f"{element.get('size-in-bits')} bits"]
        lines += [f"derived from {self._name(one.get('type-id'))}" for one in element.findall("base-class")]
        for one in element.findall("data-member"):
            variable, offset = one.find("var-decl"), one.get("layout-offset-in-bits")
            if offset is None or variable is None:
                continue  # static
            # The name of a private member is free.
            name = "private" if one.get("access") == "private" else f"{one.get('access')} {variable.get('name')}"
            lines.append(f"{name}: {self._name(variable.get('type-id'))}, at bit {offset}")
        return lines

    def _name(self, identifier: str | None) -> str:
        element = self._types.get(identifier)
        if element is None:
            return "unknown"
        return element.get("name") or self._name(element.get("type-id")) + SUFFIXES.get(element.tag, "")


def is_addition(before: tuple[str, ...], after: tuple[str, ...]) -> bool:
    """Whether only enumerators were added."""
    return bool(before) and all(" = " in line for line in before) and set(before) < set(after)


def type_changes(record: Path, description: Path) -> tuple[list[str], list[str]]:
    """Lines about types that were removed or changed, and about those that were added to."""
    before, after = PublicTypes(record).lines, PublicTypes(description).lines
    changes, additions = [], []
    for name in sorted(before.keys() | after.keys()):
        old, new = before.get(name), after.get(name)
        if old == new:
            continue
        if old is None:
            additions.append(f"type {name} was added")
        elif new is None:
            changes.append(f"type {name} was removed")
        else:
            first, second = max(old - new, default=()), max(new - old, default=())
            listed = additions if is_addition(first, second) else changes
            listed.append(f"type {name} has changed:")
            listed += [f"  {line}" for line in difflib.ndiff(first, second) if line[0] in "-+"]
    return changes, additions
