# SPDX-License-Identifier: MIT
"""Lists of classes and members that C++ code cannot derive from the tables."""

from __future__ import annotations

from model import Model, GenerationError, between_marks

QT_TEST = "include/jobxml/QtTest.h"


MEMBERS = "tests/Members.inc"
TYPES = {"text": "QString", "boolean": "bool", "int32": "int", "int64": "qint64", "uint64": "quint64", "float": "float",
         "double": "double"}


def accessors_of(row: dict) -> str:
    """The accessors of a member, in the form of tests/Members.h. Enumerations are named like their members."""
    name = row["name"]
    one = f"&T::Is{name}Set, &T::Reset{name}"
    match row["kind"]:
        case "object" | "alternative":
            return (f'Child<T, {row["class"]}>{{"{name}", &T::Get{name}, &T::Get{name}, &T::Set{name}, {one}, '
                    f"&T::IsValid{name}}}")
        case "object list":
            return (f'List<T, {row["class"]}>{{"{name}", &T::Get{name}, &T::Get{name}, &T::Set{name}, &T::Append{name}, '
                    f"{one}}}")
        case "enumeration list":
            return (f'List<T, T::{name}, T::{name}>{{"{name}", &T::Get{name}, &T::Get{name}, &T::Set{name}, '
                    f"&T::Append{name}, {one}}}")
        case kind:
            return f'Value<T, {TYPES.get(kind, f"T::{name}")}>{{"{name}", &T::Get{name}, &T::Set{name}, {one}, &T::GetDefault{name}}}'


def members_file(model: Model) -> str:
    lines = ["// SPDX-License-Identifier: MIT", "// The members of each class, made by scripts/model.sh.", "",
             "namespace Members {", ""]
    for cls in model.classes:
        lines += ["template <class Use>", f"void forEach(Use &use, JobXml::ClassTag<JobXml::{cls['name']}>)", "{",
                  "    using namespace JobXml;", f"    using T = JobXml::{cls['name']};",
                  *(f"    use({accessors_of(row)});" for row in cls["members"]), "}", ""]
    return "\n".join([*lines, "} // namespace Members", ""])


CONTENTS = "packaging/contents/libtunerproperties-dev.txt"
INSTALLED = "-rw-r--r-- root/root /usr/include/jobxml/"


def contents(model: Model, text: str) -> str:
    """What a package holds, with a header for each class."""
    lines = text.splitlines()
    headers = {line for line in lines if line.startswith(INSTALLED)}
    first = next((number for number, line in enumerate(lines) if line in headers), None)
    if first is None:
        raise GenerationError(f"{CONTENTS}: has no headers")
    others = [line for line in lines if line not in headers]
    headers |= {f"{INSTALLED}{name}.h" for name in model.class_names}
    return "".join(f"{line}\n" for line in [*others[:first], *sorted(headers), *others[first:]])


def make(model: Model, read, _complain) -> dict[str, str]:
    lines = [f"template <> inline char *toString(const JobXml::{name} &object) {{ return JobXml::testText(object); }}"
             for name in model.class_names]
    return {QT_TEST: between_marks(QT_TEST, read(QT_TEST), "//", "A text for each class", lines),
            CONTENTS: contents(model, read(CONTENTS)), MEMBERS: members_file(model)}
