# SPDX-License-Identifier: MIT
"""Changes documents into some that no writer writes, but for which readers have rules."""

from __future__ import annotations

import random
import re
import struct

from tuner_formats.classes import CLASSES, VERSION_TAG, Class
from tuner_formats.records import write_string

VERSIONS = (
    "1.1", "1.10", "1.0", "1", "0", "", "1.09", "1.0999999", "1.09999999", "1.2", "2", "10", "-1.1", " 1.1 ", "+1.1",
    "1.1.0", "1,1", "v1.1", "11e-1", "inf", "-inf", "nan", "1.1\0", "\u22121.1",
)
NUMBERS = (
    "", " ", "0", "-0", "+0", "7", "-7", "+7", "\u22127", "--7", "+-7", "- 7", "7-", "007", " 7", "7\t",
    "\u00A07\u3000", "\u20287\u0085", "\u200B7", "7\u180E", "7 7", "7_0", "7'0", "7,0", "7.", "7.0", ".7", "-.7", ".",
    "-", "+", "1e3", "1E+3", "1e-3", "1e\u22123", "1e", "e1", ".e1", "1.e1", "1e1.0", "1e1e1", "0x7", "0b1", "7f", "7L",
    "\u0667", "\uFF17", "7\uFF17", "inf", "INF", "+inf", "-Inf", "\u2212inf", "infinity", "nan", "NaN", "-nan", "+nan",
    "nan1", "2147483647", "2147483648", "-2147483648", "-2147483649", "4294967296", "4294967303",
    "9223372036854775807", "9223372036854775808", "-9223372036854775808", "-9223372036854775809",
    "18446744073709551615", "18446744073709551616", "0" * 30 + "7", "9" * 30, "9" * 400, "0." + "0" * 400 + "1",
    "1" + "0" * 309, "1e308", "1e309", "-1e309", "1e-323", "4.9e-324", "2.4e-324", "-2e-324", "-1e-400",
    "0e999999999999", "1e999999999999", "1e-999999999999", "3.4028234e38", "3.4028235e38",
    "340282346638528859811704183484516925440", "340282346638528859811704183484516925441", "-3.5e38", "1e39",
    "1.17549435e-38", "1.1754942e-38", "1.4e-45", "7e-46", "7.1e-46", "16777217", "16777219", "33554433.5", "0.1",
    "0.005", "1.005", "9007199254740993", "9007199254740992.9999999999999999999999999", "2.2250738585072011e-308",
)
BOOLEANS = ("", " ", "0", "1", "00", "-0", "0.0", "false", "FALSE", "FaLsE", " false", "false ", "true", "True", "no",
            "f", "fals\u00E9", "\u0130")


def random_number_texts(source: random.Random, count: int) -> list[str]:
    """Texts that resemble numbers."""
    pieces = ("1", "23", "0", "9876543210", ".", "-", "+", "e", "E", "e-", "inf", "nan", " ", "\u2212", ",")
    return ["".join(source.choices(pieces, k=source.randint(1, 6))) for _ in range(count)]


# --- XML -------------------------------------------------------------------------------------------------------------

_START_TAG = re.compile(r"<\w+[^<>]*?(?=/?>)")
_LINE_END = re.compile(r">\n(?=[^\n])")  # after a tag, but not after the document
_SNIPPETS = (
    "<extra/>", "<extra>text</extra>", '<extra a="1"><value>5</value></extra>', "<extra><extra/></extra>",
    '<extra><extra/><Name>inner</Name><id>inner</id><StringItem value="inner"/></extra>', "text", "<!-- a comment -->",
    "<?instruction?>", "<![CDATA[<id>no element</id>]]>", "&lt;id&gt;", "<id>other</id>", "<id>a<b>c</b>d</id>",
    "<id/>", "<value>7</value>", "<value><value>3</value></value>", "<name><!-- none --></name>",
    "<text>a&#13;&#10;\r\nb</text>",
    "<type>Receiver</type>", "<type>SCP</type>", "<type>radio</type>", "<optional>FALSE</optional>", "<optional/>",
    "<quantity> 12 </quantity>", "<hwProcessing>no</hwProcessing>", "<MaxFFPDelay>-1</MaxFFPDelay>",
    "<StartupModes/>", "<StartupModes><StartupMode>DF</StartupMode><extra/></StartupModes>",
    "<StartupMode>FFM</StartupMode>", "<StartupMode>scan</StartupMode>", "<StartupMode/>", "<Component/>",
    '<Component type="a" name="b" optional="0"><Node id="c"><ValueItem><ValueString id="d" value="e"/></ValueItem>'
    "</Node></Component>",
    "<BandwidthSelection/>", '<ValueInt id="a" value="1"/><ValueString id="b" value="c"/>',
    '<Node id="n"><extra><Node/></extra></Node>', "<ValueItem/>", '<SelectionItem name="n"/>', "<StringItem/>",
    "<TunerProperties/>", '<x:id xmlns:x="urn:x">prefixed</x:id>', '<x:extra xmlns:x="urn:x" id="i"/>',
)
_ATTRIBUTES = (
    'extra="1"', 'xml:lang="de"', 'xmlns:x="urn:x" x:id="other" x:value="3"', 'Extra="a&#10;b"', 'xmlns="urn:default"',
)


def with_unknown_content(document: str, source: random.Random) -> str:
    """The document with unknown or misplaced elements and attributes, and any version."""
    declaration, document = document.split("\n", 1)
    for _ in range(source.randint(1, 4)):
        line_ends = list(_LINE_END.finditer(document))
        if line_ends and source.random() < 0.75:
            place = source.choice(line_ends).end()
            document = document[:place] + source.choice(_SNIPPETS) + document[place:]
        else:
            tag = source.choice(list(_START_TAG.finditer(document)))
            attribute = source.choice(_ATTRIBUTES)
            if f" {attribute.split('=')[0]}=" not in tag[0]:
                document = f"{document[: tag.end()]} {attribute}{document[tag.end() :]}"
    if source.random() < 0.7:
        version = source.choice([version for version in VERSIONS if "\0" not in version])
        document = document.replace(' Version="1.1"', source.choice((f' Version="{version}"', "")), 1)
    return f"{declaration}\n{document}"


# --- Records ---------------------------------------------------------------------------------------------------------


def rearranged(cls: Class, members: bytes, source: random.Random) -> bytes:
    """The member records in any order, some twice, some missing, with unknown ones in between."""
    records = []
    position = 0
    while position < len(members):
        tag, length = struct.unpack_from(">Ii", members, position)
        payload = _rearranged_payload(cls, tag, members[position + 8 : position + 8 + length], source)
        records.append(record(tag, payload))
        position += 8 + length

    kind = source.random()
    if kind < 0.2:
        source.shuffle(records)
    elif kind < 0.3:
        records.append(source.choice(records) if records else b"")
    elif kind < 0.35 and records:
        records.pop(source.randrange(len(records)))
    elif kind < 0.5:
        unknown = record(source.getrandbits(32), source.randbytes(source.randint(0, 20)))
        records.insert(source.randint(0, len(records)), unknown)
    return b"".join(records)


def record(tag: int, payload: bytes) -> bytes:
    return struct.pack(">Ii", tag, len(payload)) + payload


def _rearranged_payload(cls: Class, tag: int, payload: bytes, source: random.Random) -> bytes:
    if tag == VERSION_TAG and source.random() < 0.3:
        return write_string(source.choice((None, *VERSIONS)))
    member = cls.by_tag.get(tag)
    if member is None or not member.item_class:
        return payload
    item_class = CLASSES[member.item_class]
    if not member.is_list:
        return rearranged(item_class, payload, source)
    (count,) = struct.unpack_from(">i", payload)
    items = [payload[:4]]
    position = 4
    for _ in range(count):
        (length,) = struct.unpack_from(">i", payload, position)
        position += 4
        item = rearranged(item_class, payload[position : position + length], source)
        items.append(struct.pack(">i", len(item)) + item)
        position += length
    return b"".join(items)


# --- Damage ----------------------------------------------------------------------------------------------------------

_WORDS = tuple(struct.pack(">I", word) for word in (
    0, 1, 2, 3, 4, 5, 8, 16, 255, 4096, 0x7FFFFFFF, 0x80000000, 0xFFFFFFF8, 0xFFFFFFFE, 0xFFFFFFFF))


def damaged(content: bytes, source: random.Random, first: int = 0) -> bytes:
    """Some bits, words or bytes after `first` changed, dropped or added, or the end truncated."""
    changed = bytearray(content)
    for _ in range(1 if source.random() < 0.7 else source.randint(2, 5)):
        place = source.randint(first, max(first, len(changed) - 1))
        kind = source.random()
        if kind < 0.35 and place < len(changed):
            changed[place] ^= 1 << source.randrange(8)
        elif kind < 0.7:
            changed[place : place + 4] = source.choice(_WORDS)
        elif kind < 0.8:
            del changed[place:]
        elif kind < 0.9:
            del changed[place : place + source.choice((1, 4, 8))]
        else:
            changed[place:place] = source.randbytes(source.choice((1, 4, 8)))
    return bytes(changed)
