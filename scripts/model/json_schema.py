# SPDX-License-Identifier: MIT
"""share/tuner-properties.schema.json, the schema of documents as JSON."""

from __future__ import annotations

import json

from headers import Documentation
from model import Model

PATH = "share/tuner-properties.schema.json"

INT32 = (-2**31, 2**31 - 1)
INT64 = (-2**63, 2**63 - 1)
UINT64 = (0, 2**64 - 1)
INT8 = (-2**7, 2**7 - 1)
UINT8 = (0, 2**8 - 1)
BEYOND_FLOAT = 2**128 - 2**103
"""The least number that is not rounded to a finite number of 32 bits."""

NOT_FINITE = {"enum": ["NaN", "Infinity", "-Infinity"]}
NOT_IN_XML = r"\u0000-\u0008\u000B\u000C\u000E-\u001F\uFFFE\uFFFF"


def upto(greatest: int) -> str:
    """A pattern of the whole numbers up to the greatest: those that equal it up to a smaller digit, and shorter ones."""
    digits = str(greatest)
    patterns = [digits]
    for place, digit in enumerate(digits):
        least = 1 if place == 0 else 0
        if int(digit) > least:
            rest = len(digits) - place - 1
            patterns.append(f"{digits[:place]}[{least}-{int(digit) - 1}]" + (f"[0-9]{{{rest}}}" if rest else ""))
    return "|".join([*patterns, f"[1-9][0-9]{{0,{len(digits) - 2}}}", "0"])


def whole(bounds: tuple[int, int]) -> dict:
    return {"type": "integer", "minimum": bounds[0], "maximum": bounds[1]}


def whole_or_text(bounds: tuple[int, int]) -> dict:
    least, greatest = bounds
    pattern = f"^(?:{upto(greatest)})$" if least == 0 else f"^(?:-?(?:{upto(greatest)})|{least})$"
    return {"anyOf": [whole(bounds), {"type": "string", "pattern": pattern}]}


SCALARS = {
    "text": {"description": "A text; null if it is set to null.", "type": ["string", "null"]},
    "boolean": {"description": "A truth value.", "type": "boolean"},
    "int32": {"description": "A whole number of 32 bits, without a decimal point or an exponent.", **whole(INT32)},
    "int64": {"description": "A whole number of 64 bits, without a decimal point or an exponent; beyond 2^53 as a string, "
                             "since many programs keep only 53 bits of a number.", **whole_or_text(INT64)},
    "uint64": {"description": "A whole number of 64 bits without a sign, without a decimal point or an exponent; beyond "
                              "2^53 as a string, since many programs keep only 53 bits of a number.",
               **whole_or_text(UINT64)},
    "float": {"description": "A floating-point number of 32 bits.",
              "anyOf": [{"type": "number", "exclusiveMinimum": -BEYOND_FLOAT, "exclusiveMaximum": BEYOND_FLOAT},
                        NOT_FINITE]},
    "double": {"description": "A floating-point number of 64 bits.", "anyOf": [{"type": "number"}, NOT_FINITE]},
}
NAMES = {"enumeration": "TunerType", "enumeration list": "StartupModeName"}
NAMED = {"enumeration": "tuner type", "enumeration list": "start-up mode"}


def names(documented: dict[str, str], numbers: tuple[int, int]) -> list[dict]:
    return [*({"const": name, "description": said} for name, said in documented.items()),
            {"type": "null", "description": "The invalid value."},
            {**whole(numbers), "description": "The number of a value, for one that has no name."}]


def reference(name: str) -> dict:
    return {"$ref": f"#/definitions/{name}"}


class Class:
    def __init__(self, model: Model, cls: dict, documentation: Documentation) -> None:
        self._model = model
        self._cls = cls
        self._documentation = documentation

    def definition(self) -> dict:
        members = {row["name"]: self._member(row) for row in self._cls["members"]}
        return {
            "description": self._documentation.of_class(self._cls),
            "type": "object",
            "properties": {**self._version(), **self._choice(), **members, "unset": self._unset()},
            "additionalProperties": False,
            "not": {
                "description": "A member is either in \"unset\" or outside it.",
                "anyOf": [{"required": [name, "unset"], "properties": {"unset": {"type": "object", "required": [name]}}}
                          for name in members],
            },
        }

    def _member(self, row: dict) -> dict:
        """A description beside a reference would be ignored, so that the reference is in a list of its own."""
        return {"description": self._documentation.of_member(self._cls, row), **self._value(row)}

    def _value(self, row: dict) -> dict:
        match row["kind"]:
            case "object list":
                return {"type": "array", "items": reference(row["class"])}
            case "enumeration list":
                return {"type": "array", "items": reference(NAMES[row["kind"]])}
            case "object" | "alternative":
                return {"allOf": [reference(row["class"])]}
            case kind:
                return {"allOf": [reference(NAMES.get(kind, kind))]}

    def _unset(self) -> dict:
        return {
            "description": "Values of members that are not set, other than their defaults. Only programs and snapshots "
                           "leave a document in such a state.",
            "type": "object",
            "properties": {row["name"]: self._value(row) for row in self._cls["members"]},
            "additionalProperties": False,
        }

    def _version(self) -> dict:
        if "version" not in self._cls:
            return {}
        version = self._cls["version"]
        return {version["attribute"]: {
            "description": f"The version of the document. A document of a version below {version['value']}, or without "
                           "one, is reset to its defaults before it is read.",
            "type": "string",
            "pattern": f"^[^{NOT_IN_XML}]*$",
            "examples": [version["value"]],
        }}

    def _choice(self) -> dict:
        alternatives = [row for row in self._cls["members"] if row["kind"] == "alternative"]
        if not alternatives:
            return {}
        documented = {row["name"]: self._documentation.of_member(self._cls, row) for row in alternatives}
        return {f"Choice{self._cls['name']}": {
            "description": "The alternative that is chosen; may be omitted if there is only one.",
            "anyOf": names(documented, UINT8),
        }}


def layout(value, indent: str = "", before: int = 0) -> str:
    """As documents are laid out: a value is on one line if it fits, and indented otherwise."""
    compact = json.dumps(value, ensure_ascii=False)
    if not isinstance(value, (dict, list)) or len(indent) + before + len(compact) <= 118:
        return compact
    deeper = f"{indent}  "
    if isinstance(value, list):
        parts, ends = [layout(item, deeper) for item in value], "[]"
    else:
        keys = [f"{json.dumps(key)}: " for key in value]
        parts, ends = [key + layout(item, deeper, len(key)) for key, item in zip(keys, value.values())], "{}"
    return f"{ends[0]}\n{deeper}" + f",\n{deeper}".join(parts) + f"\n{indent}{ends[1]}"


def make(model: Model, read, _complain) -> dict[str, str]:
    documentation = Documentation(PATH, read)
    document = model.classes[0]["name"]
    enumerations = {
        NAMES[row["kind"]]: {"description": f"The name of a {NAMED[row['kind']]}, with these upper and lower case letters.",
                             "anyOf": names(documentation.of_enumerators(cls, row), INT8)}
        for cls, row in model.members if row["kind"] in NAMES
    }
    kinds = {row["kind"] for _, row in model.members}
    schema = {
        "$schema": "http://json-schema.org/draft-07/schema#",
        "$comment": "SPDX-License-Identifier: MIT. Generated from the model and its headers by scripts/model.sh.",
        "title": document,
        "description": f"Description of one radio tuner resource of a measurement job, version {model.version}, as JSON. "
                       "Which members are mandatory is not checked here, since JSON stores incomplete documents too: "
                       "`tunerproperties validate` checks it.",
        "type": "object",
        "properties": {
            "$schema": {"description": "Where the schema of this document is, for editors. Readers ignore it.",
                        "type": "string"},
            document: reference(document),
        },
        "required": [document],
        "additionalProperties": False,
        "definitions": {
            **{cls["name"]: Class(model, cls, documentation).definition() for cls in model.classes},
            **enumerations,
            **{kind: definition for kind, definition in SCALARS.items() if kind in kinds},
        },
    }
    return {PATH: layout(schema) + "\n"}
