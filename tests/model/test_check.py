#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that scripts/model detects every generated part that does not match the model: test_check.py PROGRAM"""

from __future__ import annotations

import json
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
PROGRAM = sys.argv.pop(1)
SCRIPT = [sys.executable, "-B", PROJECT / "scripts/model"]
MADE = subprocess.run([*SCRIPT, "--list", PROGRAM], check=True, capture_output=True, text=True).stdout.split()
UNCHANGED = {"fuzz/Tags.inc", "translations/TunerProperties_en.ts", "bench/reference/Model.h"}  # no change below tries them
COMPARED = {"docs/json.md", "tests/model/released.json", "bench/reference/PlainStructs.cpp"}  # with nothing generated
HEADERS = [str(path.relative_to(PROJECT)) for path in PROJECT.glob("include/jobxml/*.h")]


class Check(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.top = Path(folder.name)
        for path in {*MADE, *COMPARED, *HEADERS}:
            (self.top / path).parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(PROJECT / path, self.top / path)

    def run_model(self, *options: str) -> subprocess.CompletedProcess:
        return subprocess.run([*SCRIPT, "--top", self.top, *options, PROGRAM],
                              capture_output=True, text=True)

    def change(self, path: str, old: str, new: str) -> int:
        """Replaces the only line with this text; returns its number."""
        lines = (self.top / path).read_text(encoding="utf-8").split("\n")
        (index,) = (index for index, line in enumerate(lines) if line == old)
        lines[index : index + 1] = [new] if new else []
        (self.top / path).write_text("\n".join(lines), encoding="utf-8")
        return index + 1

    def test_the_project_as_it_is_needs_nothing(self) -> None:
        check = self.run_model("--check")
        self.assertEqual((check.returncode, check.stdout, check.stderr), (0, "", ""))

    def test_each_made_part_is_compared_and_the_first_differing_line_named(self) -> None:
        bandwidth = ("| 1 | `MaxBandwidth` | double | 0 | yes | element | `0xA723FFDA` | always | always |",
                     "| 1 | `MaxBandwidth` | float | 0 | yes | element | `0xA723FFDA` | always | always |")
        version = '  "version": "1.1",'
        required = '    <xs:attribute name="optional" type="Boolean" use="required">'
        text = "template <> inline char *toString(const JobXml::Node &object) { return JobXml::testText(object); }"
        accessors = ('    use(Value<T, double>{"MaxBandwidth", &T::GetMaxBandwidth, &T::SetMaxBandwidth, '
                     "&T::IsMaxBandwidthSet, &T::ResetMaxBandwidth, &T::GetDefaultMaxBandwidth});")
        changes = (
            ("share/model.json", version, '  "version": "1.0",'),
            ("docs/formats.md", *bandwidth),
            ("docs/formats.md", "| 2 | `FFP` | `MScan` |", "| 2 | `FFP` | `Scan` |"),
            ("docs/formats.md", "                ── BandwidthSelection*", ""),
            ("share/tuner-properties.xsd", required, required.replace(' use="required"', "")),
            ("share/tuner-properties.xsd", '  <xs:element name="Node" type="NodeType"/>', ""),
            ("share/tuner-properties.xsd", '      <xs:enumeration value="FFP"/>', ""),
            ("share/tuner-properties-author.xsd", '      <xs:field xpath="@displayName|displayName"/>', ""),
            ("share/tuner-properties-author.xsd",
             '          <xs:documentation>A direction finder.</xs:documentation>', ""),
            ("share/tuner-properties.schema.json",
             '        {"const": "FFM", "description": "Measuring at a fixed frequency."},', ""),
            ("fuzz/dictionaries/records.dict", r'"\xA7\x23\xFF\xDA"', ""),
            ("fuzz/dictionaries/xml.dict", '"<MaxBandwidth>"', ""),
            ("fuzz/dictionaries/json.dict", r'"\"MaxBandwidth\":"', ""),
            ("fuzz/dictionaries/paths.dict", '"MaxBandwidth"', ""),
            ("include/jobxml/QtTest.h", text, ""),
            ("tests/Members.inc", accessors, ""),
            ("packaging/contents/libtunerproperties-common-dev.txt",
             "-rw-r--r-- root/root /usr/include/jobxml/Node.h", ""),
            ("tests/compile_failures/ignored_results.cpp", "    JobXml::Node::fromXml(text); // warned", ""),
            ("docs/pages/index.md", "| JobXml::StringItem | One text of a list. |", ""),
        )
        self.assertEqual({*MADE} - {path for path, _, _ in changes}, UNCHANGED)
        for path, old, new in changes:
            with self.subTest(f"{path}: {old}"):
                before = (self.top / path).read_text(encoding="utf-8")
                line = self.change(path, old, new)
                check = self.run_model("--check")
                self.assertEqual(check.returncode, 1)
                self.assertIn(f"{path}:{line}: does not match the model; run scripts/model.sh\n", check.stderr)
                self.assertIn(f"  should be {old}\n", check.stderr)
                made = self.run_model()
                self.assertEqual((made.returncode, made.stdout), (0, f"written: {path}\n"))
                self.assertEqual((self.top / path).read_text(encoding="utf-8"), before)

    def test_a_missing_file_is_made(self) -> None:
        (self.top / "fuzz/Tags.inc").unlink()
        self.assertIn("fuzz/Tags.inc:1: does not match the model", self.run_model("--check").stderr)
        self.assertEqual(self.run_model().stdout, "written: fuzz/Tags.inc\n")

    def test_what_the_schema_lacks_is_taken_from_the_header(self) -> None:
        documented = "          <xs:documentation>The name of the bandwidth.</xs:documentation>"
        self.change("share/tuner-properties.xsd", documented, "          <xs:documentation></xs:documentation>")
        self.assertIn(f"  should be {documented}\n", self.run_model("--check").stderr)

    def test_a_member_that_nobody_documents_is_named(self) -> None:
        self.change("share/tuner-properties.xsd",
                    "          <xs:documentation>The name of the bandwidth.</xs:documentation>",
                    "          <xs:documentation></xs:documentation>")
        self.change("include/jobxml/BandwidthSelection.h",
                    "    /// The name of the bandwidth; mandatory, null until set. A child element in XML.", "")
        for options in ((), ("--check",)):
            check = self.run_model(*options)
            self.assertEqual(check.returncode, 1)
            self.assertEqual(check.stderr, "".join(
                f"share/{schema}: BandwidthSelection.Name has no documentation; write it in the header of the class\n"
                for schema in ("tuner-properties-author.xsd", "tuner-properties.schema.json", "tuner-properties.xsd")))

    def test_an_enumerator_that_nobody_documents_is_named(self) -> None:
        self.change("include/jobxml/StartupModes.h", "        FFM, ///< measuring at a fixed frequency", "        FFM,")
        check = self.run_model()
        self.assertEqual(check.returncode, 1)
        self.assertEqual(check.stderr, "".join(
            f"share/{schema}: StartupModes::StartupMode::FFM has no documentation; write it in the header of the class\n"
            for schema in ("tuner-properties-author.xsd", "tuner-properties.schema.json")))

    def test_a_kind_of_member_that_the_page_on_json_lacks_is_named(self) -> None:
        self.change("docs/json.md", "| boolean | `true`, `false` |", "")
        check = self.run_model("--check")
        self.assertEqual((check.returncode, check.stderr),
                         (1, "docs/json.md: the table has no row for members of the kind 'boolean'\n"))

    def test_a_released_member_that_the_reference_of_the_benchmark_lacks_is_named(self) -> None:
        structs = self.top / "bench/reference/PlainStructs.cpp"
        structs.write_text(structs.read_text(encoding="utf-8").replace("GetMaxBandwidth", "GetName"), encoding="utf-8")
        check = self.run_model("--check")
        self.assertEqual((check.returncode, check.stderr),
                         (1, "bench/reference/PlainStructs.cpp: reads no BandwidthSelection.MaxBandwidth\n"))

    def test_a_lost_place_is_named(self) -> None:
        self.change("fuzz/dictionaries/json.dict", "# Names of members, generated by scripts/model.sh", "# Names of members")
        self.assertRegex(self.run_model().stderr, "^fuzz/dictionaries/json.dict: has 0 matches of ")

    def test_the_model_is_documented_as_it_is(self) -> None:
        model = json.loads((PROJECT / "share/model.json").read_text(encoding="utf-8"))
        page = (PROJECT / "docs/model.md").read_text(encoding="utf-8")
        listed = set()
        for chapter in page.split("\n## ")[1:]:
            listed |= {name for line in chapter.splitlines() if line.startswith("| `")
                     for name in line.split("|")[1].replace("`", "").replace(" ", "").split(",")}
        members = [member for cls in model["classes"] for member in cls["members"]]
        used = {key for part in (model, *model["classes"], *members) for key in part}
        traits = {trait for member in members for trait in member["traits"]}
        self.assertEqual(listed, used | traits)
        for kind in {member["kind"] for member in members}:
            self.assertIn(f"`{kind}`", page)
        example = json.loads(page.split("```json\n")[1].split("```")[0])
        self.assertEqual({**model, "classes": [cls for cls in model["classes"] if cls["name"] == "BandwidthSelection"]},
                         example)


if __name__ == "__main__":
    unittest.main()
