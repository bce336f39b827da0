# SPDX-License-Identifier: MIT
"""Makes a description by abidw smaller, and the same on every machine.

abidw describes all types that are reached from an interface, which includes the insides of the standard library and of Qt.
Their sizes and members matter, since ours contain them, but their functions belong to other libraries."""

from __future__ import annotations

import xml.etree.ElementTree as ElementTree
from pathlib import Path
from xml.etree.ElementTree import Element

FOREIGN_NAMESPACES = {"std", "__gnu_cxx", "__cxxabiv1", "QtPrivate"}
SCOPES = {"abi-instr", "namespace-decl", "member-type"}
CLASSES = {"class-decl", "union-decl"}
TEMPLATES = {"function-template-decl", "class-template-decl"}
TYPES = CLASSES | {"enum-decl", "typedef-decl", "pointer-type-def", "reference-type-def", "qualified-type-def",
                   "array-type-def", "function-type", "type-decl"}


def is_foreign(element: Element, parent: Element) -> bool:
    """Whether the standard library or Qt declares it."""
    name = element.get("name", "")
    if element.tag == "namespace-decl":
        return name in FOREIGN_NAMESPACES
    return element.tag in CLASSES and parent.tag == "abi-instr" and name.startswith("Q")


def remove_foreign_functions(parent: Element, foreign: bool = False) -> None:
    """Removes what the library does not export: functions of foreign classes, and declarations."""
    for child in list(parent):
        is_declaration = child.tag in ("function-decl", "var-decl") and not child.get("elf-symbol-id")
        if child.tag in TEMPLATES or (is_declaration and parent.tag in SCOPES):
            parent.remove(child)
        elif foreign and child.tag in ("member-function", "member-template"):
            parent.remove(child)
        else:
            remove_foreign_functions(child, foreign or is_foreign(child, parent))


def is_used(element: Element, used: set[str]) -> bool:
    """Whether something refers to the type or to a type in it, or the library exports a function of it."""
    return any(part.get("id") in used or part.get("elf-symbol-id") for part in element.iter())


def remove_unused_types(parent: Element, used: set[str]) -> bool:
    """Whether anything was removed."""
    removed = False
    for child in list(parent):
        if child.tag in TYPES and parent.tag in SCOPES and not is_used(child, used):
            parent.remove(child)
            removed = True
        else:
            removed = remove_unused_types(child, used) or removed
            if child.tag in SCOPES and len(child) == 0:
                parent.remove(child)
    return removed


def references(root: Element) -> set[str]:
    """The identifiers of the types that something refers to."""
    return {value for element in root.iter() for key, value in element.items()
            if key.endswith("-id") and key != "elf-symbol-id"}


def compact(file: Path) -> None:
    tree = ElementTree.parse(file)
    root = tree.getroot()
    remove_foreign_functions(root)
    while remove_unused_types(root, references(root)):
        pass
    for unit in root.iter("abi-instr"):
        unit.set("path", Path(unit.get("path", "")).name)  # without the folder of this machine
    ElementTree.indent(tree, " ")
    tree.write(file, encoding="utf-8")
    with file.open("a", encoding="utf-8") as text:
        text.write("\n")
