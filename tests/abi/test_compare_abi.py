#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What compare_abi.py finds in small libraries: test_compare_abi.py COMPILER COMPARE_ABI"""

from __future__ import annotations

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SCRIPT = sys.argv.pop()
COMPILER = sys.argv.pop()

# A structure that a program creates, a class that it derives from, and functions that it calls. QItems is named like the
# templates of Qt, of which a library exports nothing.
HEADER = """
#include "Types.h"
struct Options
{
    int size;
    bool isStrict;
};
enum class Kind { Text, Number };
template <class Item>
class QItems
{
public:
    typedef Item value_type;
    typedef const Item *const_iterator;
    __attribute__((visibility("hidden"))) const Item &first() const;
    const_iterator begin() const { return &first(); }
private:
    struct Data;
    Data *d;
};
struct Mark
{
    int begin;
    int end;
};
struct Line
{
    enum Form { Plain, Dotted };
    QItems<Form> forms;
};
class Reader
{
public:
    Reader();
    virtual ~Reader();
    virtual void open();
    virtual void close();
private:
    class Private;
    Private *d;
};
int read(const Options &options, int limit = 10);
int write(const Options &options, Kind kind);
QItems<Mark> marks();
QItems<Line> lines();
"""

# What is not declared in a public header is free to change.
SOURCE = """
#include "tried/Interface.h"
class Reader::Private
{
    int state;
};
Reader::Reader() : d(new Private()) {}
Reader::~Reader() { delete d; }
void Reader::open() {}
void Reader::close() {}
int read(const Options &options, %s limit) { return options.size + int(limit); }
int write(const Options &options, Kind kind) { return options.size + int(kind); }
template <class Item>
struct QItems<Item>::Data
{
    Item item;
};
template <class Item>
const Item &QItems<Item>::first() const { return d->item; }
QItems<Mark> marks() { QItems<Mark> all; all.first(); return all; }
QItems<Line> lines() { QItems<Line> all; all.first(); return all; }
"""


class Comparison(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.headers = self.folder / "include"
        (self.headers / "tried").mkdir(parents=True)
        (self.headers / "tried" / "Types.h").write_text("", encoding="utf-8")
        self.recorded = self.folder / "recorded.abi"
        self.assertEqual(self.compare("--record"), (0, f"{self.recorded} is recorded.\n", ""))

    def compare(self, *options: str, header: str = HEADER, source: str = SOURCE % "int",
                soname: str = "libtried.so.1") -> tuple[int, str, str]:
        """The status, the report and the error for a library with this header and this source."""
        (self.headers / "tried" / "Interface.h").write_text(header, encoding="utf-8")
        file, library = self.folder / "library.cpp", self.folder / "libtried.so"
        file.write_text(source, encoding="utf-8")
        subprocess.run([COMPILER, "-g", "-shared", "-fPIC", f"-Wl,-soname,{soname}", "-I", self.headers, "-o", library,
                        file], check=True)
        run = subprocess.run([sys.executable, "-B", SCRIPT, *options, "--headers", self.headers, library, self.recorded],
                             capture_output=True, text=True, check=False)
        return run.returncode, run.stdout, run.stderr

    def edited(self, text: str, before: str, after: str) -> str:
        self.assertEqual(text.count(before), 1)
        return text.replace(before, after)

    def assertBreaks(self, *reported: str, header: str = HEADER, source: str = SOURCE % "int") -> None:
        """Checks that this is refused, naming change and remedy, and is not recorded either."""
        record = self.recorded.read_bytes()
        for options in ((), ("--record",)):
            status, report, error = self.compare(*options, header=header, source=source)
            self.assertEqual(status, 1)
            for text in reported:
                self.assertIn(text, report)
            self.assertEqual(error, "compare_abi.py: libtried.so has changed incompatibly, see above: programs that were "
                                    "built with it before would fail. Revert the change and add to the interface instead, "
                                    "or raise the major version in project() and with it the SONAME.\n")
        self.assertEqual(self.recorded.read_bytes(), record)

    def test_same_interface_is_accepted(self) -> None:
        self.assertEqual(self.compare(), (0, "libtried.so is as recorded.\n", ""))

    def test_member_added_to_a_structure_is_refused(self) -> None:
        header = self.edited(HEADER, "    bool isStrict;\n", "    bool isStrict;\n    double factor;\n")
        self.assertBreaks("'double factor'", header=header)

    def test_member_added_where_the_size_stays_is_refused(self) -> None:
        header = self.edited(HEADER, "    bool isStrict;\n", "    bool isStrict;\n    bool isFast;\n")
        self.assertBreaks("'bool isFast'", header=header)

    # Only a list contains these, which does not show in any function or member.

    def test_member_added_to_an_item_of_a_list_is_refused(self) -> None:
        header = self.edited(HEADER, "    int begin;\n", "    int begin;\n    int middle;\n")
        self.assertBreaks("type Mark has changed:\n  - 64 bits\n  + 96 bits\n  + public middle: int, at bit 32\n"
                          "  - public end: int, at bit 32\n", header=header)

    def test_member_of_an_item_of_a_list_that_is_renamed_is_refused(self) -> None:
        header = self.edited(HEADER, "    int end;\n", "    int last;\n")
        self.assertBreaks("type Mark has changed:\n  - public end: int, at bit 32\n  + public last: int, at bit 32\n",
                          header=header)

    def test_other_value_of_an_enumerator_in_a_list_is_refused(self) -> None:
        header = self.edited(HEADER, "Dotted }", "Dotted = 3 }")
        self.assertBreaks("type Line::Form has changed:\n  - Dotted = 1\n  + Dotted = 3\n", header=header)

    def test_enumerator_added_in_a_list_is_reported_and_accepted(self) -> None:
        header = self.edited(HEADER, "Dotted }", "Dotted, Dashed }")
        status, report, _ = self.compare(header=header)
        self.assertEqual(status, 0)
        self.assertEqual(report, "type Line::Form has changed:\n  + Dashed = 2\n"
                                 "libtried.so has additions, see above, and is compatible. "
                                 "Record them by scripts/abi.sh --record.\n")

    def test_removed_type_is_refused(self) -> None:
        header = self.edited(HEADER, "QItems<Mark> marks();\n", "QItems<int> marks();\n")
        header = self.edited(header, "struct Mark\n{\n    int begin;\n    int end;\n};\n", "")
        source = SOURCE.replace("Mark", "int") % "int"
        self.assertBreaks("type Mark was removed\n", header=header, source=source)

    def test_moved_virtual_slot_is_refused(self) -> None:
        header = self.edited(HEADER, "    virtual void open();\n    virtual void close();\n",
                             "    virtual void close();\n    virtual void open();\n")
        self.assertBreaks("virtual void Reader::open()", header=header)

    def test_added_virtual_slot_is_refused(self) -> None:
        header = self.edited(HEADER, "    virtual void close();\n",
                             "    virtual void close();\n    virtual void flush();\n")
        self.assertBreaks("virtual void Reader::flush()", header=header,
                          source=SOURCE % "int" + "void Reader::flush() {}\n")

    def test_removed_function_is_refused(self) -> None:
        header = self.edited(HEADER, "int write(const Options &options, Kind kind);\n", "")
        source = self.edited(SOURCE % "int", "int write(", "static int write(")
        self.assertBreaks("1 Removed", "write(const Options&, Kind)", header=header, source=source)

    def test_other_type_of_a_parameter_with_a_default_is_refused(self) -> None:
        header = self.edited(HEADER, "int limit = 10", "long limit = 10")
        self.assertBreaks("read(const Options&, int)", header=header, source=SOURCE % "long")

    def test_other_type_of_a_result_is_refused(self) -> None:
        header = self.edited(HEADER, "int write(", "long write(")
        source = self.edited(SOURCE % "int", "int write(", "long write(")
        self.assertBreaks("return type changed", header=header, source=source)

    def test_other_value_of_an_enumerator_is_refused(self) -> None:
        self.assertBreaks("'Kind::Number' from value '1' to '2'",
                          header=self.edited(HEADER, "Number }", "Number = 2 }"))

    def test_added_function_is_reported_and_accepted(self) -> None:
        added = "int append(const Options &options, int limit);\n"
        header, source = HEADER + added, SOURCE % "int" + added.replace(";", " { return limit; }")
        status, report, error = self.compare(header=header, source=source)
        self.assertEqual((status, error), (0, ""))
        self.assertIn("1 Added function", report)
        self.assertIn("append(const Options&, int)", report)
        self.assertTrue(report.endswith("libtried.so has additions, see above, and is compatible. "
                                        "Record them by scripts/abi.sh --record.\n"))
        self.assertEqual(self.compare("--record", header=header, source=source)[0], 0)
        self.assertEqual(self.compare(header=header, source=source)[:2], (0, "libtried.so is as recorded.\n"))

    def test_added_enumerator_is_reported_and_accepted(self) -> None:
        status, report, _ = self.compare(header=self.edited(HEADER, "Number }", "Number, List }"))
        self.assertEqual(status, 0)
        self.assertIn("'Kind::List' value '2'", report)

    def test_private_class_is_free_to_change(self) -> None:
        source = self.edited(SOURCE % "int", "    int state;\n", "    int state;\n    double more;\n")
        self.assertEqual(self.compare(source=source), (0, "libtried.so is as recorded.\n", ""))

    def test_type_of_an_internal_header_of_the_same_name_is_free_to_change(self) -> None:
        states = "QItems<State> states() { QItems<State> all; all.first(); return all; }\n"
        source = '#include "Types.h"\n' + SOURCE % "int" + states
        for line in ("struct State { int value; };\n", "struct State { int value; int more; };\n"):
            (self.folder / "Types.h").write_text(line, encoding="utf-8")
            status, report, _ = self.compare("--record", source=source)
            self.assertEqual((status, report), (0, f"{self.recorded} is recorded.\n"))
            text = self.recorded.read_text(encoding="utf-8")
            self.assertIn('class-decl name="QItems&lt;State&gt;"', text)
            self.assertNotIn('class-decl name="State" size', text)

    def test_other_soname_has_to_be_recorded(self) -> None:
        header = self.edited(HEADER, "    bool isStrict;\n", "    bool isStrict;\n    double factor;\n")
        status, _, error = self.compare(header=header, soname="libtried.so.2")
        self.assertEqual((status, error), (1, "compare_abi.py: the SONAME libtried.so.1 is now libtried.so.2; "
                                              "run scripts/abi.sh --record\n"))
        self.assertEqual(self.compare("--record", header=header, soname="libtried.so.2")[0], 0)
        self.assertEqual(self.compare(header=header, soname="libtried.so.2")[0], 0)

    def test_missing_record_is_refused(self) -> None:
        self.recorded.unlink()
        self.assertEqual(self.compare(), (1, "", f"compare_abi.py: {self.recorded} is missing; run scripts/abi.sh "
                                                 "--record\n"))

    def test_record_names_no_place_of_this_machine(self) -> None:
        self.assertNotIn(str(self.folder), self.recorded.read_text(encoding="utf-8"))


if __name__ == "__main__":
    unittest.main()
