# SPDX-License-Identifier: MIT
"""The elements and types of share/tuner-properties.xsd. Its documentation is kept; new ones come from the header."""

from __future__ import annotations

import re
from xml.sax.saxutils import escape

import headers
from model import Model, replaced

PATH = "share/tuner-properties.xsd"
TYPES = {"text": "Text", "boolean": "Boolean", "int32": "Int", "int64": "Int64", "uint64": "UnsignedInt64",
         "float": "Float", "double": "Double", "enumeration": "TunerType", "enumeration list": "StartupModeName"}


class Class:
    """The declaration of a class: generated from the model, with the documentation that the schema contains."""

    def __init__(self, model: Model, cls: dict, declared: str, header: str, complain) -> None:
        self._cls = cls
        self._kinds = model.kinds
        self._declared = declared
        self._header = header
        self._complain = complain

    def text(self) -> str:
        name = self._cls["name"]
        lines = [f'  <xs:complexType name="{name}Type">', *self._annotation("    ", self._own_documentation(), name, headers.of_class(self._header, name)),
                 *self._comments(), *self._elements(), *self._attributes(), "  </xs:complexType>"]
        return "".join(f"{line}\n" for line in lines)

    def _own_documentation(self) -> str:
        found = re.match(r".*?\n    <xs:annotation>\n(.*?)\n    </xs:annotation>", self._declared, re.DOTALL)
        return found[1] if found else ""

    def _documentation(self, kind: str, name: str) -> str:
        found = re.search(rf' *<xs:{kind} (?:name|ref)="{name}"[^>]*[^/]>\n *<xs:annotation>\n(.*?)\n *</xs:annotation>',
                          self._declared, re.DOTALL)
        return found[1] if found else ""

    def _member_annotation(self, indent: str, kind: str, name: str) -> list[str]:
        return self._annotation(indent, self._documentation(kind, name), f"{self._cls['name']}.{name}",
                                headers.of_member(self._header, name))

    def _annotation(self, indent: str, documentation: str, what: str, in_header: str) -> list[str]:
        if not re.search(r"<xs:documentation>\s*[^\s<]", documentation):
            if not in_header:
                self._complain(f"{PATH}: {what} has no documentation; write it in the header of the class")
            documentation = f"{indent}  <xs:documentation>{escape(in_header)}</xs:documentation>"
        return [f"{indent}<xs:annotation>", documentation, f"{indent}</xs:annotation>"]

    def _comments(self) -> list[str]:
        """The comments after the documentation."""
        found = re.search(r"\n    </xs:annotation>\n((?:    <!--.*?-->\n)+)", self._declared, re.DOTALL)
        return found[1].splitlines() if found else []

    def _elements(self) -> list[str]:
        rows = [row for row in self._cls["members"] if row["xml"] == "element"]
        if not rows:
            return []
        if all(row["kind"] == "alternative" for row in rows):
            return ["    <xs:choice>", *(f'      <xs:element ref="{row["name"]}"/>' for row in rows),
                    "    </xs:choice>"]
        lines = ["    <xs:sequence>"]
        for row in rows:
            declared = f'ref="{row["name"]}"' if "class" in row else f'name="{row["name"]}" type="{TYPES[row["kind"]]}"'
            if not row["mandatory"]:
                declared += ' minOccurs="0"'
            if row["kind"].endswith("list"):
                declared += ' maxOccurs="unbounded"'
            lines += [f"      <xs:element {declared}>", *self._member_annotation("        ", "element", row["name"]),
                      "      </xs:element>"]
        return [*lines, "    </xs:sequence>"]

    def _attributes(self) -> list[str]:
        lines = []
        if "version" in self._cls:
            lines += self._attribute(self._cls["version"]["attribute"], "Version", True)
        for row in self._cls["members"]:
            if row["xml"] != "attribute":
                continue
            if row["name"] == "id" and self._cls["name"] in self._kinds:
                lines.append('    <xs:attributeGroup ref="Identified"/>')
            else:
                lines += self._attribute(row["name"], TYPES[row["kind"]],
                                         row["mandatory"] or row["written"] == "always")
        return lines

    def _attribute(self, name: str, declared_type: str, required: bool) -> list[str]:
        use = ' use="required"' if required else ""
        return [f'    <xs:attribute name="{name}" type="{declared_type}"{use}>',
                *self._member_annotation("      ", "attribute", name), "    </xs:attribute>"]


def make(model: Model, read, complain) -> dict[str, str]:
    text = read(PATH)
    elements = "".join(f'  <xs:element name="{name}" type="{name}Type"/>\n' for name in model.class_names)
    text = replaced(PATH, text, r"(?P<before>^  <!-- The elements -->\n\n)(?:  <xs:element [^\n]*\n)*", elements)
    previous = None
    for cls in model.classes:
        declaration = rf'^  <xs:complexType name="{cls["name"]}Type">\n.*?^  </xs:complexType>\n'
        found = re.search(declaration, text, re.MULTILINE | re.DOTALL)
        made = Class(model, cls, found[0] if found else "", read(f"include/jobxml/{cls['name']}.h"),
                     complain).text()
        if found:
            text = replaced(PATH, text, declaration, made)
        else:
            text = replaced(PATH, text, rf'(?P<before>^  <xs:complexType name="{previous}Type">\n.*?'
                                        r"^  </xs:complexType>\n)", f"\n{made}")
        previous = cls["name"]
    for name, values in {"TunerType": model.types_of_tuners, "StartupModeName": model.modes}.items():
        text = replaced(PATH, text, rf'(?P<before>^  <xs:simpleType name="{name}">\n(?:(?!</xs:simpleType>).)*?'
                                    r'<xs:restriction base="xs:string">\n)(?:      <xs:enumeration [^\n]*\n)*',
                        "".join(f'      <xs:enumeration value="{value}"/>\n' for value in values))
    return {PATH: text}
