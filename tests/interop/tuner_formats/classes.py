# SPDX-License-Identifier: MIT
"""The classes and their members, row by row as the tables of docs/formats.md."""

from __future__ import annotations

from dataclasses import dataclass, field

TUNER_TYPES = ("MCP", "SCP", "FFP", "Receiver", "DirectionFinder")
MODES = ("Scan", "FastScan", "MScan", "FFM", "WFFM", "Step", "DF", "MSearch", "Polar", "Search", "Stop")

OWN_VERSION = "1.1"
VERSION_TAG = 0xCCFEDFA1
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

# When XML and tagged records hold a member.
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
    """One row of a table. `bit` is its place there."""

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


CLASSES: dict[str, Class] = {}


def _define(name: str, identifier: int, *rows: tuple) -> None:
    members = tuple(Member(*row, bit=bit) for bit, row in enumerate(rows))
    CLASSES[name] = Class(name, identifier, members)


YES = True
NO = False

_ID = ("id", TEXT, YES, ATTRIBUTE, 0x2B262DC9, ALWAYS, ALWAYS)


def _value_class(name: str, identifier: int, value_type: str, tag: int) -> None:
    _define(name, identifier, _ID, ("value", value_type, YES, ATTRIBUTE, tag, ALWAYS, ALWAYS))


def _range_class(name: str, identifier: int, value_type: str, tags: dict[str, int]) -> None:
    numbers = ((member, value_type, YES, ATTRIBUTE, tag, ALWAYS, ALWAYS) for member, tag in tags.items())
    _define(name, identifier, _ID, *numbers)


def _alternative(name: str, tag: int) -> tuple:
    return (name, name, NO, ELEMENT, tag, WHEN_CHOSEN, CHOSEN)


_define(
    "TunerProperties", 0xC10CBB5F,
    ("StartupModes", "StartupModes", NO, ELEMENT, 0x2A68BEF4, WHEN_SET, WHEN_SET),
    ("BandwidthSelection", "list of BandwidthSelection", NO, ELEMENT, 0xC2483BA3, UNLESS_EMPTY, WHEN_SET),
    ("MaxFFPDelay", UINT64, NO, ELEMENT, 0xC8B67267, WHEN_SET, WHEN_SET),
    ("HRPANSupported", BOOLEAN, NO, ELEMENT, 0xC82D81E1, WHEN_SET, WHEN_SET),
    ("Component", "list of Component", YES, ELEMENT, 0x66BA8E61, ALWAYS, ITEMS_WHEN_SET),
    ("name", TEXT, NO, ATTRIBUTE, 0xCB4CF645, WHEN_SET, WHEN_SET),
    ("type", TUNER_TYPE, YES, ATTRIBUTE, 0xA1F0EE2D, ALWAYS, ALWAYS),
    ("baseresource", TEXT, YES, ATTRIBUTE, 0xE0CFAE8E, ALWAYS, ALWAYS),
    ("connectableResources", TEXT, NO, ATTRIBUTE, 0x6ADAF7A6, WHEN_SET, WHEN_SET),
    ("quantity", INT32, NO, ATTRIBUTE, 0xA59D7D84, WHEN_SET, WHEN_SET, 1),
    ("parentBaseResource", TEXT, NO, ATTRIBUTE, 0x0BEE909A, WHEN_SET, WHEN_SET),
    ("hwProcessing", BOOLEAN, NO, ATTRIBUTE, 0x64D08C29, WHEN_SET, WHEN_SET),
)
_define(
    "StartupModes", 0xA7563754,
    ("StartupMode", MODE_LIST, YES, ELEMENT, 0x627B74CE, ALWAYS, ALWAYS),
)
_define(
    "BandwidthSelection", 0x09F7EAA9,
    ("Name", TEXT, YES, ELEMENT, 0x8C9FBCA8, ALWAYS, ALWAYS),
    ("MaxBandwidth", DOUBLE, YES, ELEMENT, 0xA723FFDA, ALWAYS, ALWAYS),
)
_define(
    "Component", 0x0ADD1857,
    ("Node", "list of Node", YES, ELEMENT, 0xC5E53936, ALWAYS, ITEMS_SET_ALWAYS),
    ("type", TEXT, YES, ATTRIBUTE, 0x0BAD2053, ALWAYS, ALWAYS),
    ("name", TEXT, YES, ATTRIBUTE, 0xCB4CF645, ALWAYS, ALWAYS),
    ("displayName", TEXT, NO, ATTRIBUTE, 0xA1939AA3, WHEN_SET, WHEN_SET),
    ("optional", BOOLEAN, YES, ATTRIBUTE, 0x44E09811, WHEN_SET, SET_ALWAYS),
)
_define(
    "Node", 0xC8131DB4,
    ("ValueItem", "list of ValueItem", YES, ELEMENT, 0x4F71131F, ALWAYS, ITEMS_SET_ALWAYS),
    _ID,
)
_define(
    "ValueItem", 0xA6C468CF,
    _alternative("ValueBoolean", 0xE8182C83),
    _alternative("ValueFloat", 0x07877B18),
    _alternative("ValueInt", 0x4ACA6514),
    _alternative("ValueInt64", 0xC7AF86A5),
    _alternative("ValueNumericFloat", 0x881D77BB),
    _alternative("ValueNumericInt", 0x07114506),
    _alternative("ValueNumericInt64", 0x8CD014A1),
    _alternative("ValueSelection", 0xAA5F786F),
    _alternative("ValueString", 0x022B9478),
    _alternative("ValueStringList", 0x491ED6FE),
)
_define(
    "ValueBoolean", 0xC8FC2661,
    _ID,
    ("value", BOOLEAN, YES, ATTRIBUTE, 0x89537E94, WHEN_SET, SET_ALWAYS),
)
_value_class("ValueFloat", 0x6440D555, FLOAT, 0xE3DF649D)
_value_class("ValueInt", 0x278DA93B, INT32, 0x0BA44238)
_value_class("ValueInt64", 0x4E82A0AA, INT64, 0x64A03F86)
_range_class(
    "ValueNumericFloat", 0x4BA90080, FLOAT,
    {"value": 0xE3DF649D, "min": 0x655BA9DC, "max": 0x81166ACB, "step": 0xA8D464CF},
)
_range_class(
    "ValueNumericInt", 0xC55D0588, INT32,
    {"value": 0x0BA44238, "min": 0x685654A1, "max": 0x25F6AFCC, "step": 0x43766B23},
)
_range_class(
    "ValueNumericInt64", 0x044D7AEC, INT64,
    {"value": 0x64A03F86, "min": 0x6A28E46A, "max": 0x86123363, "step": 0x27D34B73},
)
_define(
    "ValueSelection", 0x00C375A5,
    ("SelectionItem", "list of SelectionItem", YES, ELEMENT, 0x4FB19F31, ALWAYS, ITEMS_WHEN_SET),
    _ID,
    ("value", DOUBLE, YES, ATTRIBUTE, 0xC14D665E, ALWAYS, ALWAYS),
    ("text", TEXT, YES, ATTRIBUTE, 0xA323E10D, ALWAYS, ALWAYS),
    ("index", INT32, YES, ATTRIBUTE, 0x2128394B, ALWAYS, ALWAYS),
)
_define(
    "SelectionItem", 0x228141C0,
    ("name", TEXT, YES, ATTRIBUTE, 0xCB4CF645, ALWAYS, ALWAYS),
    ("value", DOUBLE, YES, ATTRIBUTE, 0xC14D665E, ALWAYS, ALWAYS),
)
_value_class("ValueString", 0xC5ECF92B, TEXT, 0xCEFF51BA)
_define(
    "ValueStringList", 0xC290BC31,
    ("StringItem", "list of StringItem", YES, ELEMENT, 0x2940EBDD, ALWAYS, ITEMS_WHEN_SET),
    _ID,
    ("value", TEXT, YES, ATTRIBUTE, 0xCEFF51BA, ALWAYS, ALWAYS),
)
_define(
    "StringItem", 0xEBB03A60,
    ("value", TEXT, YES, ATTRIBUTE, 0xCEFF51BA, ALWAYS, ALWAYS),
)
