# SPDX-License-Identifier: MIT
"""The classes and their members: share/model.json, with the terms of docs/formats.md."""

from __future__ import annotations

import json
from dataclasses import dataclass, field
from pathlib import Path

COMPRESSED_WORD = 0x52475A31  # "RGZ1"

# What a member can be, besides "list of X" and X itself.
TEXT = "text"
BOOLEAN = "boolean"
INT32 = "int32"
INT64 = "int64"
UINT64 = "uint64"
FLOAT = "float"
DOUBLE = "double"
TUNER_TYPE = "tuner type"
MODE_LIST = "modes"

ATTRIBUTE = "attribute"
ELEMENT = "element"

# When XML and tagged records contain a member.
ALWAYS = "always"
WHEN_SET = "when set"
UNLESS_EMPTY = "unless empty"
WHEN_CHOSEN = "when chosen and set"

# When snapshots do, besides ALWAYS and WHEN_SET.
SET_ALWAYS = "set / always"
ITEMS_WHEN_SET = "items when set"
ITEMS_SET_ALWAYS = "items set / always"
CHOSEN = "chosen: set / always"

NO_CHOICE = 255

Value = object
"""None or str for a text; bool; int; float; a list of int for modes; a list of Object; an Object."""

DEFAULTS: dict[str, Value] = {
    TEXT: None, BOOLEAN: False, INT32: 0, INT64: 0, UINT64: 0, FLOAT: 0.0, DOUBLE: 0.0, TUNER_TYPE: -1,
}


@dataclass(frozen=True)
class Member:
    """One row of a table. `bit` is its index."""

    name: str
    type: str
    mandatory: bool
    xml: str
    tag: int
    written: str
    snapshot: str
    default: Value = None
    bit: int = 0

    item_class: str = field(init=False, default="")
    """The class of the items of a list, or of the object; empty if the member is neither."""
    is_list: bool = field(init=False, default=False)

    def __post_init__(self) -> None:
        is_list = self.type.startswith("list of ")
        child = self.type.removeprefix("list of ") if self.type not in DEFAULTS and self.type != MODE_LIST else ""
        object.__setattr__(self, "is_list", is_list)
        object.__setattr__(self, "item_class", child)
        if self.default is None:
            object.__setattr__(self, "default", DEFAULTS.get(self.type))


@dataclass(frozen=True)
class Class:
    name: str
    identifier: int
    members: tuple[Member, ...]  # in bit order

    written_order: tuple[Member, ...] = field(init=False)
    attributes: tuple[Member, ...] = field(init=False)
    elements: tuple[Member, ...] = field(init=False)
    by_tag: dict[int, Member] = field(init=False)
    by_name: dict[str, Member] = field(init=False)
    mandatory: tuple[Member, ...] = field(init=False)

    def __post_init__(self) -> None:
        attributes = tuple(member for member in self.members if member.xml == ATTRIBUTE)
        elements = tuple(member for member in self.members if member.xml == ELEMENT)
        for name, value in {
            "attributes": attributes,
            "elements": elements,
            "written_order": attributes + elements,
            "by_tag": {member.tag: member for member in self.members},
            "by_name": {member.name: member for member in self.members},
            "mandatory": tuple(member for member in self.members if member.mandatory),
        }.items():
            object.__setattr__(self, name, value)

    @property
    def has_version(self) -> bool:
        return self.name == "TunerProperties"

    @property
    def is_choice(self) -> bool:
        return self.name == "ValueItem"


MODEL = json.loads((Path(__file__).parents[3] / "share" / "model.json").read_text(encoding="utf-8"))


def _names(kind: str) -> tuple[str, ...]:
    """The names of the only enumeration of that kind."""
    (names,) = (row["names"] for cls in MODEL["classes"] for row in cls["members"] if row["kind"] == kind)
    return tuple(names)


TUNER_TYPES = _names("enumeration")
MODES = _names("enumeration list")

OWN_VERSION = MODEL["version"]
VERSION_TAG = int(MODEL["classes"][0]["version"]["tag"], 16)

_SCALARS = {"text", "boolean", "int32", "int64", "uint64", "float", "double"}


def _type(row: dict) -> str:
    match row["kind"]:
        case "enumeration":
            return TUNER_TYPE
        case "enumeration list":
            return MODE_LIST
        case "object list":
            return f"list of {row['class']}"
        case "object" | "alternative":
            return row["class"]
        case kind if kind in _SCALARS:
            return kind
        case kind:
            raise ValueError(f"unknown kind of member '{kind}'")


def _default(row: dict) -> Value:
    default = row["default"]
    return int(default) if row["kind"] in ("int64", "uint64") else None if default in ([], {}) else default


def _member(row: dict) -> Member:
    return Member(row["name"], _type(row), row["mandatory"], row["xml"], int(row["tag"], 16), row["written"],
                  row["snapshot"], _default(row), row["bit"])


CLASSES: dict[str, Class] = {
    cls["name"]: Class(cls["name"], int(cls["identifier"], 16), tuple(map(_member, cls["members"])))
    for cls in MODEL["classes"]
}
