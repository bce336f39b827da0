#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares how both sides read documents that they would not write: other versions, unknown content, odd texts, damage."""

from __future__ import annotations

import random
import struct
import zlib
from html import escape

import mutations
from exchange import ExchangeTest
from host import FORMS, REFUSED, Outcome, Python, Request
from random_documents import random_object
from tuner_formats.classes import CLASSES, COMPRESSED_WORD, DOUBLE, FLOAT, INT32, INT64, UINT64
from tuner_formats.records import compress

DOCUMENT = "TunerProperties"

# A member of each type of number at least: class and member.
NUMBERS = (
    ("ValueInt", "value"), ("ValueInt64", "value"), ("ValueFloat", "value"), ("SelectionItem", "value"),
    ("BandwidthSelection", "MaxBandwidth"), ("ValueSelection", "index"), (DOCUMENT, "quantity"),
    (DOCUMENT, "MaxFFPDelay"), ("ValueNumericInt", "min"), ("ValueNumericInt64", "max"), ("ValueNumericFloat", "step"),
)
BOOLEANS = (
    ("ValueBoolean", "value"), ("Component", "optional"), (DOCUMENT, "hwProcessing"), (DOCUMENT, "HRPANSupported"),
)


def attribute(class_name: str, member: str, text: str) -> bytes:
    escaped = "".join(f"&#{ord(character)};" if character in "\t\n\r" else escape(character) for character in text)
    return f'<{class_name} Version="1.1" {member}="{escaped}"/>'.encode()


def element(class_name: str, member: str, text: str) -> bytes:
    return f'<{class_name} Version="1.1"><{member}>{escape(text)}</{member}></{class_name}>'.encode()


def attributes(count: int, further: bytes = b"") -> bytes:
    """An element with this number of attributes, and others."""
    return b"<ValueString " + b" ".join(b'a%d=""' % number for number in range(count)) + b" " + further + b"/>"


def text_record(class_name: str, member: str, text: str) -> bytes:
    cls = CLASSES[class_name]
    utf8 = text.encode()
    record = mutations.record(cls.by_name[member].tag, struct.pack(">i", len(utf8)) + utf8)
    return mutations.record(cls.identifier, record)


class Documents:
    """Seeded random documents in the forms in which Python writes them."""

    def __init__(self, seed: int) -> None:
        self.source = random.Random(seed)

    def next(self, form: str, class_name: str | None = None, careless: bool | None = None) -> tuple[str, bytes]:
        """The name of its class, and a document that can be written in the form."""
        while True:
            name = class_name or (DOCUMENT if self.source.random() < 0.5 else self.source.choice(list(CLASSES)))
            seed = self.source.getrandbits(32)
            is_careless = self.source.random() < 0.3 if careless is None else careless
            outcome = Python().write(random_object(name, seed, is_careless), False, form)[form]
            if outcome.is_done:
                return name, compress(outcome.content) if form == "c" else outcome.content

    def coin(self) -> bool:
        return self.source.random() < 0.5


class Reading(ExchangeTest):
    def compare_texts(self, members, texts, validate: bool = True) -> None:
        self.run_both(Request(class_name, validate, (("x", form(class_name, member, text)),), forms="s")
                      for class_name, member in members for text in texts for form in (attribute, element))

    # --- Texts ---

    def test_every_type_of_number_is_among_them(self) -> None:
        every = {member.type for of in CLASSES.values() for member in of.members} & {INT32, INT64, UINT64, FLOAT, DOUBLE}
        self.assertEqual({CLASSES[name].by_name[member].type for name, member in NUMBERS}, every)

    def test_numbers_are_read_from_the_same_texts(self) -> None:
        texts = [*mutations.NUMBERS, *mutations.random_number_texts(random.Random(1), 100)]
        self.compare_texts(NUMBERS, texts)
        self.run_both(Request(class_name, True, (("t", text_record(class_name, member, text)),), forms="s")
                      for class_name, member in NUMBERS
                      if CLASSES[class_name].by_name[member].type in ("float", "double")
                      for text in (*texts, "7\0", "\u001C7"))  # characters that XML cannot represent

    def test_booleans_are_read_from_the_same_texts(self) -> None:
        for validate in (True, False):
            self.compare_texts(BOOLEANS, mutations.BOOLEANS, validate)

    def test_names_are_read_from_the_same_texts(self) -> None:
        names = ("Scan", "scan", " Scan", "Stop", "MSearch", "FFM", "", "MCP", "mcp", "DirectionFinder", "Receiver ")
        for validate in (True, False):
            self.compare_texts([(DOCUMENT, "type")], names, validate)
            self.run_both(Request("StartupModes", validate, (("x", element("StartupModes", "StartupMode", name)),))
                          for name in names)
            self.run_both(Request(DOCUMENT, validate, (("t", text_record(DOCUMENT, "type", name)),)) for name in names)

    def test_texts_of_records_need_not_be_well_formed(self) -> None:
        source = random.Random(2)
        leads = (b"a", b"\x80", b"\xC0", b"\xC3", b"\xA9", b"\xE2\x82", b"\xAC", b"\xED", b"\xA0", b"\xEF\xBB\xBF",
                 b"\xF0\x9F", b"\x98\x80", b"\xF4\x90", b"\xF5", b"\xFF", b"\0", b"\xE0\x80", b"\xEF\xBF\xBE")
        texts = [b"".join(source.choices(leads, k=source.randint(1, 5))) for _ in range(300)]
        self.run_both(
            Request("StringItem", True, (("t", mutations.record(0xEBB03A60, mutations.record(
                0xCEFF51BA, struct.pack(">i", len(text)) + text))),), forms="ts") for text in texts)

    # --- Versions and unknown content ---

    def test_versions_reset_what_is_older(self) -> None:
        documents = Documents(3)
        requests = []
        for version in mutations.VERSIONS:
            for validate in (True, False):
                before = documents.next("s", DOCUMENT, careless=False)[1]
                utf16 = version.encode("utf-16-be")
                string = struct.pack(">i", len(utf16)) + utf16
                xml = documents.next("x", DOCUMENT, careless=False)[1]
                tagged = documents.next("t", DOCUMENT, careless=False)[1]
                members = mutations.record(0xCCFEDFA1, string) + tagged[26:]
                snapshot = documents.next("s", DOCUMENT, careless=False)[1]
                after = {
                    "x": xml.replace(b' Version="1.1"', f' Version="{version}"'.encode(), 1),
                    "t": mutations.record(0xC10CBB5F, members),
                    "s": snapshot[:2] + string + snapshot[12:],
                }
                requests += (Request(DOCUMENT, validate, (("s", before), step))
                             for step in after.items() if "\0" not in version or step[0] != "x")
        self.run_both(requests)

    def test_unknown_elements_and_attributes_are_skipped(self) -> None:
        documents = Documents(4)
        requests = []
        for _ in range(600):
            class_name, document = documents.next("x")
            mutated = mutations.with_unknown_content(document.decode(), documents.source)
            requests.append(Request(class_name, documents.coin(), (("x", mutated.encode()),)))
        answers = self.run_both(requests)
        self.assertGreater(sum(answer.steps.is_done for answer in answers), 300)
        self.assertFalse(any(answer.steps.content.startswith(b"XML text") for answer in answers), "all are well-formed")

    def test_records_may_be_rearranged_and_unknown(self) -> None:
        documents = Documents(5)
        requests = []
        for _ in range(600):
            class_name, document = documents.next("t")
            cls = CLASSES[class_name]
            rearranged = mutations.record(cls.identifier, mutations.rearranged(cls, document[8:], documents.source))
            requests.append(Request(class_name, documents.coin(), (("t", rearranged),)))
        answers = self.run_both(requests)
        self.assertGreater(sum(answer.steps.is_done for answer in answers), 300)

    def test_items_are_appended_to_existing_ones(self) -> None:
        documents = Documents(6)
        requests = []
        for _ in range(300):
            class_name, first = documents.next("s")
            steps = [("s", first)]
            for _ in range(documents.source.randint(1, 2)):
                form = documents.source.choice(FORMS)
                steps.append((form, documents.next(form, class_name)[1]))
            requests.append(Request(class_name, documents.coin(), tuple(steps)))
        self.run_both(requests)

    def test_flags_of_snapshots_are_read_unchanged(self) -> None:
        documents = Documents(14)
        requests = []
        for cls in CLASSES.values():
            size = 1 if len(cls.members) <= 8 else 2
            all_flags = range(1 << len(cls.members)) if size == 1 else documents.source.sample(range(1 << 16), 100)
            for flags in (*all_flags, *(1 << bit for bit in range(8 * size))):
                _, snapshot = documents.next("s", cls.name, careless=False)
                requests.append(Request(cls.name, documents.coin(),
                                        (("s", flags.to_bytes(size, "little") + snapshot[size:]),)))
        self.run_both(requests)

    # --- XML ---

    def test_xml_may_be_written_in_other_ways(self) -> None:
        text = '<?xml version="1.0" encoding="UTF-16"?>\n<ValueString id="\u03A9 \U0001F600" value="a"/>'
        document = ('<!DOCTYPE Any PUBLIC "p" "s">\n<!-- a --><ValueString id=" a\n\tb&#10;&#9;c&apos; " value="1">'
                    "<![CDATA[<value>]]><?p q?><value>\r\nx\ry<!-- z --><![CDATA[<&]]>&#x1F600;<id>no</id>"
                    "]]&gt;</value></ValueString>\n<?p?> ")
        documents = (
            text.encode("utf-16"), b"\xFE\xFF" + text.encode("utf-16-be"), b"\xFF\xFE" + text.encode("utf-16-le"),
            b"\xEF\xBB\xBF" + text.replace("UTF-16", "UTF-8").encode(), text.split("\n")[1].encode(),
            b'<?xml version="1.0" encoding="ISO-8859-1"?><ValueString id="\xE9" value="\xFF"/>',
            b'<?xml version="1.0" encoding="US-ASCII"?><ValueString id="a&#233;" value=""/>',
            b"<?xml version='1.0' standalone='yes' ?>\n\n <ValueString\n\tid = 'a\"b' \n value='' ></ValueString >",
            b'<p:ValueString xmlns:p="urn:p" id="a" p:value="b"><p:value p:id="c">d</p:value></p:ValueString>',
            b'<ValueString xmlns="urn:d" id="a"><value xmlns="urn:e">b</value></ValueString>',
            document.encode(), b'<!DOCTYPE a SYSTEM "[1"><ValueString id="a" value="b"/>',
            b"<!DOCTYPE ValueString>" + attributes(1024), attributes(1023, b'xmlns:x="urn:x"'),
        )
        answers = self.run_both(Request("ValueString", True, (("f", document),)) for document in documents)
        self.assertTrue(all(answer.steps.is_done for answer in answers))

    def test_xml_that_is_not_well_formed_is_refused(self) -> None:
        faults = (
            b"", b" ", b"text", b"<ValueString", b'<ValueString id="a"', b'<ValueString id="a">',
            b"<ValueString id=a/>",
            b'<ValueString id="a" id="b"/>', b'<ValueString id="<"/>', b"<ValueString/><ValueString/>",
            b"<ValueString/>text", b"<ValueString></Node>", b"<ValueString><a></ValueString></a>", b"<p:ValueString/>",
            b"<ValueString>&nbsp;</ValueString>", b"<ValueString>&#0;</ValueString>",
            b"<!DOCTYPE a SYSTEM 'x'><ValueString>&nbsp;</ValueString>",
            b"<!DOCTYPE a SYSTEM 'x'><ValueString id='a'><value>b&nbsp;</value></ValueString>",
            b"<ValueString>&#11;</ValueString>", b"<ValueString>]]></ValueString>", b"<ValueString>\1</ValueString>",
            b"<ValueString><!-- -- --></ValueString>",
            b'<?xml version="1.1"?><ValueString/>', b' <?xml version="1.0"?><ValueString/>',
            b'<ValueString id="a" value="b"/><!--',
        )
        answers = self.run_both(Request("ValueString", False, (("x", fault),)) for fault in faults)
        self.assertEqual({answer.steps.kind for answer in answers}, {REFUSED})

    def test_some_xml_is_refused_although_well_formed(self) -> None:
        documents = (
            b'<?xml version="1.0"?>\n<Node id="a"/>', attributes(1025), attributes(1024, b'xmlns="urn:d"'),
            b'<!DOCTYPE a [<!ENTITY e "x">]><ValueString id="&e;"/>', b"<!DOCTYPE a []><ValueString/>",
            b'<!DOCTYPE a SYSTEM "b" []><ValueString/>',
        )
        answers = self.run_both(Request("ValueString", False, ((kind, document),))
                                for document in documents for kind in "xf")
        self.assertEqual({answer.steps.kind for answer in answers}, {REFUSED})
        self.assertFalse(any(answer.steps.content.endswith(b"well-formed") for answer in answers))

    def test_a_truncated_document_is_read_up_to_its_end(self) -> None:
        documents = Documents(7)
        requests = []
        for _ in range(600):
            class_name, document = documents.next("x")
            steps = [("s", documents.next("s", class_name)[1])] if documents.coin() else []
            cut = document[: documents.source.randint(0, document.rindex(b">"))]
            requests.append(Request(class_name, documents.coin(), (*steps, ("x", cut))))
        self.assertTrue(all(not answer.steps.is_done for answer in self.run_both(requests)))

    # --- Representations ---

    def test_damaged_representations_have_the_same_outcome(self) -> None:
        self.damage("t", first_seed=8, first_byte=0, count=300)
        self.damage("t", first_seed=9, first_byte=8, count=900)  # after leading word and length

    def test_damaged_snapshots_have_the_same_outcome(self) -> None:
        self.damage("s", first_seed=10, first_byte=0, count=1200)

    def damage(self, form: str, first_seed: int, first_byte: int, count: int) -> None:
        documents = Documents(first_seed)
        requests = []
        for _ in range(count):
            class_name, document = documents.next(form)
            damaged = mutations.damaged(document, documents.source, first_byte)
            if form == "t" and first_byte and documents.coin():
                damaged = damaged[:4] + struct.pack(">i", len(damaged) - 8) + damaged[8:]
            requests.append(Request(class_name, documents.coin(), ((form, damaged),)))
        self.run_both(requests)

    def test_damaged_compressed_forms_are_refused(self) -> None:
        documents = Documents(11)
        requests = []
        for _ in range(300):
            class_name, document = documents.next("c")
            damaged = mutations.damaged(document, documents.source, documents.source.choice((0, 8)))
            if documents.coin():
                damaged = damaged[:4] + struct.pack(">i", len(damaged) - 8) + damaged[8:]
            requests.append(Request(class_name, True, (("c", damaged),), forms="s"))
        self.run_both(requests)

    def test_every_level_of_compression_is_read(self) -> None:
        _, plain = Documents(12).next("t", DOCUMENT, careless=False)
        answers = self.run_both(Request(DOCUMENT, True, (("c", compress(plain, level)),)) for level in range(-1, 10))
        self.assertTrue(all(answer.steps.is_done for answer in answers))

    def test_compressed_forms_declare_their_size(self) -> None:
        _, plain = Documents(13).next("t", DOCUMENT, careless=False)
        stream = zlib.compress(plain)
        size = len(plain)

        def compressed(declared: int, content: bytes) -> bytes:
            return mutations.record(COMPRESSED_WORD, struct.pack(">I", declared) + content)

        good = compressed(size, stream)
        most = 1100 * (len(stream) + 4)
        raw = zlib.compressobj(wbits=-15)
        gzip = zlib.compressobj(wbits=31)
        zeros = zlib.compress(bytes(1 << 20))
        refused = (
            compressed(size - 1, stream), compressed(size + 1, stream), compressed(0, stream), compressed(most, stream),
            compressed(most + 1, stream), compressed(1 << 30, stream), compressed((1 << 30) + 1, stream),
            compressed(0xFFFFFFFF, stream), compressed(size, stream + b"\0"), compressed(size, stream[:-1]),
            compressed(size, b""), compressed(0, b""), compressed(0, zlib.compress(b"")),
            compressed(size, raw.compress(plain) + raw.flush()), compressed(size, gzip.compress(plain) + gzip.flush()),
            compressed(len(good), zlib.compress(good)), compressed(size + 1, zlib.compress(plain + b"\0")),
            compressed(size - 1, zlib.compress(plain[:-1])), compressed(1 << 20, zeros),
            *(mutations.record(COMPRESSED_WORD, bytes(length)) for length in range(5)),
            good[:4] + struct.pack(">i", -1) + good[8:],
        )
        answers = self.run_both(Request(DOCUMENT, True, (("c", content),), forms="s") for content in refused)
        self.assertEqual({answer.steps.kind for answer in answers}, {REFUSED})
        (answer,) = self.run_both([Request(DOCUMENT, True, (("c", good),))])
        self.assertEqual(answer.steps, Outcome("d"))


if __name__ == "__main__":
    Reading.run_all(__doc__, least_documents=11000)
