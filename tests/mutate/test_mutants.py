#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Mutants are identified by their content, so that the list of those that make no difference survives moved code."""

from __future__ import annotations

import runpy
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from types import SimpleNamespace

PROJECT = Path(__file__).parents[2]
TOOL = PROJECT / "scripts" / "mutate"
LIST = TOOL / "equivalents.txt"

sys.path.insert(0, str(TOOL))
import mutants  # noqa: E402
import reach  # noqa: E402
import trials  # noqa: E402
import workshop  # noqa: E402

SOURCE = """// SPDX-License-Identifier: MIT
#include "Lamp.h"

namespace {

constexpr int most = 4096;

enum Traits : unsigned {
    Attribute = 1 << 0,
    Mandatory = 1 << 1,
};

template <class Items>
class Row
{
public:
    bool isPresent(int size) const { return size > 0; }
};

} // namespace

int Lamp::within(int count) const
{
    if (count < 0)
        return 0;
    return std::min(count, most);
}

bool Lamp::isLit() const
{
    if (m_watts < 0 || m_watts > most)
        return false;
    return m_lit;
}
"""


def known(text: str) -> dict[str, tuple[str, str]]:
    return {m.identity: (m.scope, m.change) for m in mutants.Source("src/Lamp.cpp", text).mutants}


def run(folder: Path, *arguments: str) -> subprocess.CompletedProcess[str]:
    return subprocess.run([sys.executable, "-B", TOOL, "--list", "--folder", folder / "work", *arguments],
                          cwd=PROJECT, capture_output=True, text=True)  # fmt: skip


def main_module():
    return SimpleNamespace(**runpy.run_path(str(TOOL / "__main__.py"), run_name="mutate_main"))


class Mutants(unittest.TestCase):
    def test_a_mutant_is_named_by_its_function_and_change(self) -> None:
        named = set(known(SOURCE).values())
        self.assertIn(("", "constexpr int most=[4096 -> 4097];"), named)
        self.assertIn(("Traits", "Mandatory=1<<[1 -> 2],"), named)
        self.assertIn(("Row::isPresent", "return size[> -> >=]0;"), named)
        self.assertIn(("Lamp::within", "return std::[min -> max](count,most);"), named)
        self.assertIn(("Lamp::isLit", "if(m_watts<0[|| -> &&]m_watts>most)return false;"), named)

    def test_lines_before_a_scope_leave_the_names(self) -> None:
        moved = SOURCE.replace("#include", "// A comment.\n#include <algorithm>\n\n#include", 1)
        self.assertEqual(known(moved), known(SOURCE))

    def test_functions_that_change_places_leave_the_names(self) -> None:
        head, within, is_lit = SOURCE.split("\n\nint Lamp")[0], *SOURCE.split("\n\nint Lamp")[1].split("\n\nbool Lamp")
        self.assertEqual(known(f"{head}\n\nbool Lamp{is_lit}\nint Lamp{within}\n"), known(SOURCE))

    def test_another_layout_leaves_the_names(self) -> None:
        other = SOURCE.replace("if (m_watts < 0 || m_watts > most)", "if (m_watts < 0 // dark\n        || m_watts > most)")
        self.assertNotEqual(other, SOURCE)
        self.assertEqual(known(other), known(SOURCE))

    def test_an_equal_line_in_another_function_leaves_the_names(self) -> None:
        grown = SOURCE.replace("int Lamp::within", "int Lamp::first(int count) const\n{\n    if (count < 0)\n        return 0;"
                               "\n    return 1;\n}\n\nint Lamp::within")  # fmt: skip
        self.assertLess(set(known(SOURCE).items()), set(known(grown).items()))

    def test_changed_code_has_other_names(self) -> None:
        changed = SOURCE.replace("std::min(count, most)", "std::min(count, least)")
        gone = {known(SOURCE)[name] for name in set(known(SOURCE)) - set(known(changed))}
        self.assertEqual(gone, {("Lamp::within", "return std::[min -> max](count,most);")})

    def test_no_two_mutants_of_the_libraries_have_one_name(self) -> None:
        paths = [str(p.relative_to(PROJECT)) for p in (PROJECT / "src").rglob("*") if p.suffix in (".h", ".cpp")]
        names = [(m.path, m.scope, m.change) for m in mutants.all_mutants(PROJECT, paths)]
        self.assertGreater(len(names), 3000)
        self.assertEqual(len(names), len(set(names)))

    def test_every_entry_of_the_list_matches_a_mutant(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            result = run(Path(folder), "--count", "1")
        self.assertEqual(result.returncode, 0, result.stdout)

    def test_an_entry_that_matches_nothing_is_refused(self) -> None:
        module = main_module()
        listed = mutants.Source("src/Lamp.cpp", SOURCE).mutants
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "equivalents.txt"
            good = "src/Lamp.cpp: Lamp::within\n    return std::[min -> max](count,most);\n    A reason.\n"
            path.write_text(f"# What it is.\n\n{good}", encoding="utf-8")
            self.assertEqual(list(module.read_equivalents(path, listed).values()), ["A reason."])
            for wrong, complaint in (
                (good.replace("most", "least"), "matches no mutant"),
                (good.replace("Lamp::within", "Lamp::without"), "the same change is possible in src/Lamp.cpp: Lamp::within"),
                (good.replace("    A reason.\n", ""), "has no reason"),
            ):
                path.write_text(wrong, encoding="utf-8")
                with self.assertRaisesRegex(module.UnknownEntries, complaint):
                    module.read_equivalents(path, listed)

    def test_objects_of_a_static_library_are_linked_by_themselves(self) -> None:
        link = workshop.without_archives("c++ a.o -o lib/a.so src/x/libx.a lib/b.so src/x/libx.a", {
            "src/x/libx.a": ["x/1.o", "x/2.o"], "libx.a": ["other.o"]})  # fmt: skip
        self.assertEqual(link.split(), "c++ a.o -o lib/a.so -Wl,--start-lib x/1.o x/2.o -Wl,--end-lib lib/b.so".split())

    def test_every_folder_of_the_libraries_is_broken(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            listed = run(Path(folder), "--all").stdout
        for source in ("src/documents/paths/Path.cpp", "src/json/JsonText.cpp", "src/text/Suggestion.cpp",
                       "src/framework/Check.cpp", "src/tuner/Node.cpp"):  # fmt: skip
            self.assertIn(f" {source}:", listed)

    def test_a_mutant_meets_the_tests_that_execute_its_function(self) -> None:
        measured = reach.Reach()
        measured.add("tst_Lamp", {"src/Lamp.cpp": [(22, 27), (29, 34)]})
        measured.add("tst_Within", {"src/Lamp.cpp": [(22, 27)], "src/Other.cpp": [(30, 31)]})
        measured.add("tst_Other", {"src/Other.cpp": [(30, 31)]})
        self.assertEqual(measured.tests_of("src/Lamp.cpp", 22), {"tst_Lamp", "tst_Within"})
        self.assertEqual(measured.tests_of("src/Lamp.cpp", 34), {"tst_Lamp"})
        self.assertIsNone(measured.tests_of("src/Lamp.cpp", 28), "outside of all functions")
        self.assertIsNone(measured.tests_of("src/Unknown.cpp", 22))
        measured.add("tst_NotToBeMeasured", None)
        self.assertEqual(measured.tests_of("src/Lamp.cpp", 30), {"tst_Lamp", "tst_NotToBeMeasured"})
        self.assertIsNone(measured.tests_of("src/Lamp.cpp", 28))

    def test_functions_that_a_program_executes_are_found(self) -> None:
        program = """#include "Lamp.h"
int main(int count, char **)
{
    return count > 1 ? lit() : unlit();
}
"""
        header = """inline int lit()
{
    return 1;
}
inline int unlit()
{
    return 0;
}
"""
        with tempfile.TemporaryDirectory() as folder:
            tree, build = Path(folder, "tree"), Path(folder, "build")
            (tree / "src").mkdir(parents=True)
            build.mkdir()
            (tree / "src/main.cpp").write_text(program, encoding="utf-8")
            (tree / "src/Lamp.h").write_text(header, encoding="utf-8")
            subprocess.run(["c++", "--coverage", tree / "src/main.cpp", "-o", "lamp"], cwd=build, check=True)
            counters = reach.Counters(build, tree)
            self.assertEqual(counters.executed(), {})
            subprocess.run([build / "lamp"], check=True)
            self.assertEqual(counters.executed(), {"src/main.cpp": [(2, 5)], "src/Lamp.h": [(5, 8)]})
            counters.clear()
            subprocess.run([build / "lamp", "lit"], check=False)
            self.assertEqual(counters.executed(), {"src/main.cpp": [(2, 5)], "src/Lamp.h": [(1, 4)]})

    def test_likely_killers_come_first(self) -> None:
        judged = object.__new__(trials.Trials)
        judged.compiler, judged.reach = "c++", reach.Reach()
        judged.kills_of_file, judged.kills_of_folder = {}, {}
        judged.tests = []
        for name, seconds, command in (("tst_Slow", 9, "slow"), ("tst_Quick", 1, "quick"), ("tst_LampShade", 20, "shade"),
                                       ("tst_Socket", 12, "socket"), ("refused_by_the_compiler", 2, "c++"),
                                       ("tst_Elsewhere", 0.1, "elsewhere")):  # fmt: skip
            test = trials.Test({"name": name, "command": [command]})
            test.cpu_seconds = seconds
            judged.tests.append(test)
            if name != "tst_Elsewhere":
                judged.reach.add(name, {"src/Lamp.cpp": [(22, 34)]})

        def order(path: str, line: int) -> list[str]:
            return [test.name for test in judged.order_for(SimpleNamespace(path=path, line=line))]

        self.assertEqual(order("src/Lamp.cpp", 30), ["tst_LampShade", "tst_Quick", "tst_Slow", "tst_Socket"])
        judged.remember("src/Bulb.cpp", "tst_Slow")
        judged.remember("src/Bulb.cpp", "tst_Slow")
        judged.remember("src/elsewhere/Bulb.cpp", "tst_Socket")
        for _ in range(8):
            judged.remember("src/Bulb.cpp", "tst_Slow")
        self.assertEqual(order("src/Lamp.cpp", 30), ["tst_LampShade", "tst_Slow", "tst_Quick", "tst_Socket"])
        judged.remember("src/Lamp.cpp", "tst_Socket")
        self.assertEqual(order("src/Lamp.cpp", 30), ["tst_Socket", "tst_LampShade", "tst_Slow", "tst_Quick"])
        self.assertEqual(order("src/Lamp.cpp", 1)[-1], "tst_Quick", "reached by nobody, so that all meet it")
        self.assertIn("tst_Elsewhere", order("src/Lamp.cpp", 1))
        self.assertIn("refused_by_the_compiler", order("src/Lamp.h", 1))

    def test_files_and_folders_restrict_what_is_tried(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            one = run(Path(folder), "--all", "src/reportbase/Logger.cpp", "src/tavikappstartup")
            none = run(Path(folder), "README.md")
        paths = {line.split()[1].split(":")[0] for line in one.stdout.splitlines() if line[:1] in "0123456789abcdef"}
        self.assertIn("src/tavikappstartup/TranslationCenter.cpp", paths)
        self.assertTrue(all(path.startswith(("src/reportbase/Logger.cpp", "src/tavikappstartup/")) for path in paths))
        self.assertEqual(none.returncode, 2)
        self.assertIn("'README.md' is neither a source file of the libraries", none.stdout)


if __name__ == "__main__":
    unittest.main()
