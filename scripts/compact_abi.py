# SPDX-License-Identifier: MIT
"""Makes a description by abidw smaller, and the same on every machine.

abidw describes all types that are reached from an interface, which includes the insides of the standard library and of Qt.
Their sizes and members matter, since ours contain them, but their functions belong to other libraries. What a public header
defines is kept even if no function refers to it, such as the items of a list."""

from __future__ import annotations

import xml.etree.ElementTree as ElementTree
from pathlib import Path
from xml.etree.ElementTree import Element

from abi_types import CLASSES, DEFINED, is_foreign

SCOPES = {"abi-instr", "namespace-decl", "member-type"}
TEMPLATES = {"function-template-decl", "class-template-decl"}
TYPES = DEFINED | {"typedef-decl", "pointer-type-def", "reference-type-def", "qualified-type-def",
                   "array-type-def", "function-type", "type-decl"}
PUBLIC = "is-public"  # an attribute of our own, which is not written


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


def is_public(element: Element, headers: Path) -> bool:
    """Whether a public header defines the type. abidw states paths as the compiler received them."""
    if element.tag not in DEFINED or element.get("is-declaration-only") == "yes" or not element.get("filepath"):
        return False
    parts = Path(element.get("filepath")).parts
    return any(headers.joinpath(*parts[first:]).is_file() for first in range(len(parts)) if parts[first] not in ("/", ".."))


def remember_places(root: Element, headers: Path) -> None:
    """Notes which types are public, in place of where each is declared, which changes with every edit."""
    for element in root.iter():
        if is_public(element, headers):
            element.set(PUBLIC, "yes")
        for attribute in ("filepath", "line", "column"):
            element.attrib.pop(attribute, None)


def is_used(element: Element, used: set[str]) -> bool:
    """Whether the type or a type in it is public or referred to, or the library exports a function of it."""
    return any(part.get("id") in used or part.get("elf-symbol-id") or part.get(PUBLIC) for part in element.iter())


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


def compact(file: Path, headers: Path) -> None:
    """`headers` is the folder with the public headers."""
    tree = ElementTree.parse(file)
    root = tree.getroot()
    remember_places(root, headers)
    remove_foreign_functions(root)
    while remove_unused_types(root, references(root)):
        pass
    for element in root.iter():
        element.attrib.pop(PUBLIC, None)
    for unit in root.iter("abi-instr"):
        unit.set("path", Path(unit.get("path", "")).name)  # without the folder of this machine
    ElementTree.indent(tree, " ")
    tree.write(file, encoding="utf-8")
    with file.open("a", encoding="utf-8") as text:
        text.write("\n")
