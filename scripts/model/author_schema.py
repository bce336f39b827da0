# SPDX-License-Identifier: MIT
"""share/tuner-properties-author.xsd, the schema of documents that are written by hand."""

from __future__ import annotations

from xml.sax.saxutils import escape

from headers import Documentation
from model import Model

PATH = "share/tuner-properties-author.xsd"
TYPES = {"text": "Text", "boolean": "Boolean", "int32": "Int", "int64": "Int64", "uint64": "UnsignedInt64",
         "float": "Float", "double": "Double", "enumeration": "TunerType", "enumeration list": "StartupModeName"}

HEAD = """\
<?xml version="1.0" encoding="UTF-8"?>
<!-- SPDX-License-Identifier: MIT -->
<!-- For people who write documents, and for editors. Generated from the model and its headers by scripts/model.sh. -->
<!--
  A value is an attribute or a child element of the same name, except those that readers accept only as an element.
  Child elements may be in any order. Attributes of other namespaces are refused, except xml:lang and the like and those
  for schema processors (xsi:...). The elements are in no namespace.

  Each "key" requires that a mandatory value is there once, in one of the two forms; each "unique" allows an optional
  value at most once. Elements that contain elements cannot have such rules.

  What a schema of this version (1.0) cannot express: that the root of a document is TunerProperties, since parts of
  documents are read too; that StartupModes is there once at most, if several of them add up; whether a number is in its
  range. `tunerproperties validate` and `tunerproperties lint` check more.

  Numbers may have any number of decimals. The library writes two of them.
-->
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" version="{version}">

  <xs:annotation>
    <xs:documentation xml:lang="en">
      Description of one radio tuner resource of a measurement job, version {version}, as people may write it.

      A document is checked by: xmllint --noout --schema tuner-properties-author.xsd receiver.xml

      tuner-properties.xsd describes the narrower form that the library writes. What it writes conforms to both, apart
      from a MaxFFPDelay of more than 63 bits, which readers take for 0.
    </xs:documentation>
  </xs:annotation>
"""

PLAIN_TYPES = r"""
  <!-- Texts, numbers and truth values, as readers take them without changing their meaning -->

  <xs:simpleType name="Text">
    <xs:annotation>
      <xs:documentation>Any text that XML can carry, also an empty one. Blanks at its ends belong to it.</xs:documentation>
    </xs:annotation>
    <xs:restriction base="xs:string"/>
  </xs:simpleType>

  <xs:simpleType name="Version">
    <xs:annotation>
      <xs:documentation>
        {version}, or a greater number: readers reset a document of an older version, and one without a version.
      </xs:documentation>
    </xs:annotation>
    <xs:union>
      <xs:simpleType>
        <xs:restriction base="xs:string">
          <xs:enumeration value="{version}">
            <xs:annotation>
              <xs:documentation>The version that this schema describes.</xs:documentation>
            </xs:annotation>
          </xs:enumeration>
        </xs:restriction>
      </xs:simpleType>
      <xs:simpleType>
        <xs:restriction base="xs:decimal">
          <xs:minInclusive value="{version}"/>
        </xs:restriction>
      </xs:simpleType>
    </xs:union>
  </xs:simpleType>

  <xs:simpleType name="Boolean">
    <xs:annotation>
      <xs:documentation>
        true, yes or 1; false or 0; in upper or lower case. Readers take every other text for true, even no.
      </xs:documentation>
    </xs:annotation>
    <xs:union>
      <xs:simpleType>
        <xs:restriction base="xs:string">
          <xs:enumeration value="true">
            <xs:annotation>
              <xs:documentation>Yes.</xs:documentation>
            </xs:annotation>
          </xs:enumeration>
          <xs:enumeration value="false">
            <xs:annotation>
              <xs:documentation>No.</xs:documentation>
            </xs:annotation>
          </xs:enumeration>
        </xs:restriction>
      </xs:simpleType>
      <xs:simpleType>
        <xs:restriction base="xs:string">
          <xs:pattern value="[Tt][Rr][Uu][Ee]|[Yy][Ee][Ss]|1|[Ff][Aa][Ll][Ss][Ee]|0"/>
        </xs:restriction>
      </xs:simpleType>
    </xs:union>
  </xs:simpleType>

  <xs:simpleType name="Int">
    <xs:annotation>
      <xs:documentation>A whole number of 32 bits in decimal: -2147483648 to 2147483647.</xs:documentation>
    </xs:annotation>
    <xs:restriction base="xs:int"/>
  </xs:simpleType>

  <xs:simpleType name="Int64">
    <xs:annotation>
      <xs:documentation>
        A whole number of 64 bits in decimal: -9223372036854775808 to 9223372036854775807.
      </xs:documentation>
    </xs:annotation>
    <xs:restriction base="xs:long"/>
  </xs:simpleType>

  <xs:simpleType name="UnsignedInt64">
    <xs:annotation>
      <xs:documentation>
        A whole number without a sign in decimal: 0 to 9223372036854775807. The number may have 64 bits, but readers of
        XML take it for a signed one, and greater numbers for 0.
      </xs:documentation>
    </xs:annotation>
    <xs:restriction base="xs:long">
      <xs:minInclusive value="0"/>
    </xs:restriction>
  </xs:simpleType>

  <xs:simpleType name="Float">
    <xs:annotation>
      <xs:documentation>
        A floating-point number of 32 bits, such as 12.5, -80 or 1e6, up to 340282346638528859811704183484516925440; or
        inf, -inf, nan.
      </xs:documentation>
    </xs:annotation>
    <xs:union memberTypes="NotFinite">
      <xs:simpleType>
        <xs:restriction base="Finite">
          <xs:minInclusive value="-340282346638528859811704183484516925440"/>
          <xs:maxInclusive value="340282346638528859811704183484516925440"/>
        </xs:restriction>
      </xs:simpleType>
    </xs:union>
  </xs:simpleType>

  <xs:simpleType name="Double">
    <xs:annotation>
      <xs:documentation>
        A floating-point number of 64 bits, such as 12.5, -80 or 1e6, up to 1.7976931348623157e308; or inf, -inf, nan.
      </xs:documentation>
    </xs:annotation>
    <xs:union memberTypes="NotFinite Finite"/>
  </xs:simpleType>

  <xs:simpleType name="Finite">
    <xs:annotation>
      <xs:documentation>A number with or without decimals and exponent.</xs:documentation>
    </xs:annotation>
    <xs:restriction base="xs:double">
      <xs:pattern value="[+\-]?([0-9]+(\.[0-9]*)?|\.[0-9]+)([eE][+\-]?[0-9]+)?"/>
      <xs:minInclusive value="-1.7976931348623157e308"/>
      <xs:maxInclusive value="1.7976931348623157e308"/>
    </xs:restriction>
  </xs:simpleType>

  <xs:simpleType name="NotFinite">
    <xs:annotation>
      <xs:documentation>An infinity, or no number, in upper or lower case.</xs:documentation>
    </xs:annotation>
    <xs:restriction base="xs:token">
      <xs:pattern value="[+\-]?[Ii][Nn][Ff]|[Nn][Aa][Nn]"/>
    </xs:restriction>
  </xs:simpleType>

</xs:schema>
"""


def annotation(indent: str, said: str) -> list[str]:
    return [f"{indent}<xs:annotation>", f"{indent}  <xs:documentation>{escape(said)}</xs:documentation>",
            f"{indent}</xs:annotation>"]


def annotated(indent: str, tag: str, attributes: str, said: str) -> list[str]:
    return [f"{indent}<xs:{tag} {attributes}>", *annotation(f"{indent}  ", said), f"{indent}</xs:{tag}>"]


def must_be_element(row: dict) -> bool:
    return row["mandatory"] and row["xml"] == "element"


def is_list(row: dict) -> bool:
    return row["kind"].endswith("list")


class Class:
    """The declarations of a class: its element with the rules about single values, its members and its type."""

    def __init__(self, cls: dict, documentation: Documentation) -> None:
        self._cls = cls
        self._name = cls["name"]
        self._documentation = documentation
        self._lists = [row for row in cls["members"] if is_list(row)]
        self._others = [row for row in cls["members"] if not is_list(row)]

    def element(self) -> list[str]:
        rules = []
        for row in self._cls["members"]:
            name = row["name"]
            rule = "key" if row["mandatory"] else "unique"
            if row["xml"] == "attribute":
                rules += self._rule(rule, name, f"@{name}|{name}")
            elif "class" not in row and not is_list(row) and self._lists:  # without lists, the content has the rule
                rules += self._rule(rule, name, name)
        return [f'  <xs:element name="{self._name}" type="{self._name}Type">',
                *annotation("    ", self._documentation.of_class(self._cls)), *rules, "  </xs:element>"]

    def _rule(self, rule: str, name: str, field: str) -> list[str]:
        return [f'    <xs:{rule} name="{self._name}.{name}">', '      <xs:selector xpath="."/>',
                f'      <xs:field xpath="{field}"/>', f"    </xs:{rule}>"]

    def types(self) -> list[str]:
        lines = [f'  <xs:complexType name="{self._name}Type">',
                 *annotation("    ", self._documentation.of_class(self._cls)), *self._content(), *self._attributes(),
                 '    <xs:anyAttribute namespace="http://www.w3.org/XML/1998/namespace" processContents="skip"/>',
                 "  </xs:complexType>"]
        if self._lists and self._others:
            lines += ["", f'  <xs:group name="{self._name}Values">', *self._children("    ", "choice", self._others),
                      "  </xs:group>"]
        return lines

    def _content(self) -> list[str]:
        if not self._lists:
            if all(row["kind"] == "alternative" for row in self._others):
                return self._children("    ", "choice", self._others)
            return self._children("    ", "all", self._others, lambda row: "" if must_be_element(row) else ' minOccurs="0"')
        required = [row for row in self._lists if row["mandatory"]]
        if len(required) != 1:
            return self._any_of("    ", self._lists)
        if required == self._cls["members"]:
            return self._children("    ", "sequence", required, lambda row: ' maxOccurs="unbounded"')
        # One item of the mandatory list at least, and anything before and after it.
        before = [row for row in self._lists if row not in required]
        return ["    <xs:sequence>", *self._any_of("      ", before), *self._child("      ", *required),
                *self._any_of("      ", self._lists), "    </xs:sequence>"]

    def _any_of(self, indent: str, lists: list[dict]) -> list[str]:
        """Any number of the values and of items of these lists."""
        repeated = ' minOccurs="0" maxOccurs="unbounded"'
        group = [f'{indent}  <xs:group ref="{self._name}Values"/>'] if self._others else []
        items = [line for row in lists for line in self._child(f"{indent}  ", row)]
        return [f"{indent}<xs:choice{repeated}>", *group, *items, f"{indent}</xs:choice>"]

    def _children(self, indent: str, order: str, rows: list[dict], occurs=lambda row: "") -> list[str]:
        lines = [line for row in rows for line in self._child(f"{indent}  ", row, occurs(row))]
        return [f"{indent}<xs:{order}>", *lines, f"{indent}</xs:{order}>"]

    def _child(self, indent: str, row: dict, occurs: str = "") -> list[str]:
        declared = f'ref="{row["name"]}"' if "class" in row else f'name="{row["name"]}" type="{TYPES[row["kind"]]}"'
        said = self._documentation.of_member(self._cls, row)
        if row["xml"] == "element" and "class" not in row and not is_list(row):
            said += " Only as an element."
        return annotated(indent, "element", declared + occurs, said)

    def _attributes(self) -> list[str]:
        lines = []
        if "version" in self._cls:
            name = self._cls["version"]["attribute"]
            lines += annotated("    ", "attribute", f'name="{name}" type="Version" use="required"',
                               "The version of the document. Mandatory, only as an attribute.")
        for row in self._cls["members"]:
            if row["xml"] == "attribute":
                lines += annotated("    ", "attribute", f'name="{row["name"]}" type="{TYPES[row["kind"]]}"',
                                   self._documentation.of_member(self._cls, row))
        return lines


def enumeration(cls: dict, row: dict, documentation: Documentation) -> list[str]:
    values = [line for name, said in documentation.of_enumerators(cls, row).items()
              for line in annotated("      ", "enumeration", f'value="{name}"', said)]
    return [f'  <xs:simpleType name="{TYPES[row["kind"]]}">',
            *annotation("    ", "One of these names, with these upper and lower case letters."),
            '    <xs:restriction base="xs:string">', *values, "    </xs:restriction>", "  </xs:simpleType>"]


def make(model: Model, read, _complain) -> dict[str, str]:
    documentation = Documentation(PATH, read)
    classes = [Class(cls, documentation) for cls in model.classes]
    parts = [["  <!-- The elements -->"], *(cls.element() for cls in classes),
             ["  <!-- What they contain -->"], *(cls.types() for cls in classes), ["  <!-- Names -->"],
             *(enumeration(cls, row, documentation) for cls, row in model.members
               if row["kind"].startswith("enumeration"))]
    version = model.version
    return {PATH: HEAD.replace("{version}", version) + "".join("\n" + "\n".join(part) + "\n" for part in parts)
            + PLAIN_TYPES.replace("{version}", version)}
