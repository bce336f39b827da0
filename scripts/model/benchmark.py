# SPDX-License-Identifier: MIT
"""The tags and names in the references of the benchmark."""

from __future__ import annotations

from model import Model

HEADER = "bench/reference/Model.h"


def names(name: str, values: list[str]) -> list[str]:
    return [f"constexpr std::array {name}{{", *(f'    "{value}",' for value in values), "};"]


def tags_of(cls: dict) -> list[str]:
    constants = [f"constexpr quint32 {row['name']} = {row['tag']};" for row in cls["members"]]
    return [f"namespace {cls['name']} {{", *constants, f"}} // namespace {cls['name']}"]


def header(model: Model) -> str:
    alternatives = [row["tag"] for _, row in model.members if row["kind"] == "alternative"]
    lines = ["// SPDX-License-Identifier: MIT", "// The tags and names of the model, made by scripts/model.sh.",
             "// clang-format off", "#pragma once", "", "#include <array>", "", "#include <QtGlobal>", "",
             "namespace Bench::Tag {", "",
             f"constexpr quint32 document = {model.classes[0]['identifier']};",
             f"constexpr quint32 version = {model.version_record[1]};", ""]
    for cls in model.classes:
        lines += [*tags_of(cls), ""]
    lines += ["/// Of the alternatives, in the order of their bits.", "constexpr quint32 alternatives[] = {",
              *(f"    {tag}," for tag in alternatives), "};", "", "} // namespace Bench::Tag", "",
              "namespace Bench {", "", *names("typeNames", model.types_of_tuners), "",
              *names("modeNames", model.modes), "",
              "} // namespace Bench", ""]
    return "\n".join(lines)


def make(model: Model, _read, _complain) -> dict[str, str]:
    return {HEADER: header(model)}
