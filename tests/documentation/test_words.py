#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""scripts/words.py finds each phrase that it lists, wherever it is, and nothing else."""

from __future__ import annotations

import contextlib
import io
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from unittest import mock

sys.path.insert(0, str(Path(__file__).parents[2] / "scripts"))
import words  # noqa: E402

# For each rule: texts in which it finds the phrase after the arrow, and texts that pass.
EXAMPLES = {
    "tells, is told": (
        ["the header tells all -> tells", "who is told first -> told", "as far as it can tell -> tell"],
        ["std::tellg", "the retelling", "it documents all"]),
    "behind": (["the word behind it -> behind"], ["the word after it"]),
    "stands": (
        ["the rule stands in Member.h -> stands", "a bit stood for it -> stood", "as they stand -> stand",
         "long-standing by then -> standing"],
        ["the standard", "it understands", "a stand-in"]),
    "hands over, hands down": (
        ["the parent hands over its logger -> hands over", "hands the flag down to all -> hands the flag down",
         "flags are handed over -> handed over", "void handOver(); -> hand Over", "handing them on -> handing them on"],
        ["worked out by hand", "on the other hand, on the left", "at hand", "a handle on it"]),
    "takes over": (
        ["the copy takes over the flag -> takes over", "what is taken over -> taken over", "takeDown(x) -> take Down"],
        ["the walk over the tree takes an hour", "takes overlapping ranges"]),
    "gives back": (["what it gives back -> gives back", "given back -> given back"], ["gives a reason"]),
    "giveText": (["giveText(output) -> give Text"], ["the text"]),
    "takeOther": (["takeOther(block) -> take Other"], ["another"]),
    "holdsTheInvalid": (["holdsTheInvalid() -> holds The Invalid"], ["isInvalid()"]),
    "gets": (["the item gets a bit -> gets"], ["fgets(line)", "widgets", "get"]),
    "is given": (
        ["if no name is given -> is given", "the pointer was given twice -> was given", "is not given -> is not given"],
        ["any given name", "isGivenness"]),
    "mends": (["a patch mends it -> mends", "mended -> mended"], ["amended", "recommends"]),
    "the memory does not suffice": (
        ["the memory does not suffice -> suffice", "what suffices -> suffices"], ["a sufficient size", "not enough"]),
    "what is wrong with it": (
        ["returns what is wrong with it -> what is wrong", "what was wrong -> what was wrong"],
        ["a wrong answer", "what is right"]),
    "holds against": (
        ["holds it against the schema -> holds it against", "held against Qt -> held against"],
        ["holds two items", "an attack against it"]),
    "asks": (
        ["asks an object whether it validates -> asks", "that is asked for -> asked", "ask for each -> ask"],
        ["the task", "a mask", "a basket"]),
    "breaks off": (["where the data break off -> break off", "broken off -> broken off"], ["a break", "broken"]),
    "goes by": (["equality goes by the flag -> goes by", "to go by -> go by"], ["it goes back", "a day went"]),
    "by the letter of": (["by the letter of the rule -> by the letter"], ["exactly as in the rule"]),
    "likewise, thereby, whereof": (
        ["likewise -> likewise", "and thereby -> thereby", "whereof one -> whereof", "what is therein -> therein"],
        ["nearby", "therefore", "wherever"]),
    "for who needs": (["for who needs one alone -> for who"], ["for whom", "for whole trees"]),
    "X is no number": (
        ["'x' is no number -> is no number", "isNoCommand -> is No Command", "bytes that are no text -> are no text"],
        ["there is no number", "there are no numbers", "it is no longer open", "it is not a number"]),
    "in front": (["a blank in front of it -> in front"], ["in the front row", "before it"]),
    "all the same": (["it is read all the same -> all the same"], ["all of them are the same", "nevertheless"]),
    "passes over": (["which is passed over -> passed over", "passOver(name) -> pass Over"], ["pass it", "the overpass"]),
    "what becomes of it": (["whatever becomes of it -> becomes of", "what came of it -> came of"], ["it becomes a text"]),
    "what it makes of it": (["what Qt makes of it -> makes of it"], ["a list made of texts"]),
    "whoever": (["whoever reads it -> whoever"], ["those who read it"]),
    "Not that": (["Fails. Not that it matters -> . Not that"], ["is not that text", "it fails; not that one"]),
    "that is another one": (
        ["a value that is another one -> that is another one"], ["a value that is another type's", "another one"]),
}


def found_in(content: str, path: str = "page.md", allowed: tuple = ()) -> list[tuple[int, str]]:
    return [(finding.line, finding.found) for finding in words.findings(path, content, allowed)]


class Phrases(unittest.TestCase):
    def test_everyRuleHasExamples(self):
        self.assertEqual(sorted(EXAMPLES), sorted(rule.phrase for rule in words.RULES))

    def test_examplesAreFoundOnlyByTheirRule(self):
        for rule in words.RULES:
            for example in EXAMPLES[rule.phrase][0]:
                text, found = example.split(" -> ")
                with self.subTest(example):
                    self.assertEqual([(finding.found, finding.instead) for finding in words.findings("page.md", text)],
                                     [(found, rule.instead)])

    def test_otherTextsPass(self):
        for phrase, (_, passing) in EXAMPLES.items():
            for text in passing:
                with self.subTest(phrase=phrase, text=text):
                    self.assertEqual(found_in(text), [])

    def test_lineBreaksInCommentsDivideNoPhrase(self):
        self.assertEqual(found_in("int a;\n    /// Returns what is\n    /// wrong with it.\n"), [(2, "what is wrong")])
        self.assertEqual(found_in("# What is\n# wrong\n"), [(1, "What is wrong")])
        self.assertEqual(found_in("- a flag that is taken\n  over\n"), [(1, "taken over")])

    def test_endsOfLiteralsDivideNoPhrase(self):
        self.assertEqual(found_in('    print("what is "\n          "wrong");\n'), [(1, "what is wrong")])
        self.assertEqual(found_in('    print("the data break o"\n          "ff");\n'), [(1, "break off")])

    def test_wordsOfIdentifiersAreFound(self):
        self.assertEqual(found_in("\n\nvoid aLoggerGetsTheText();\n"), [(3, "Gets")])
        self.assertEqual(found_in("def what_stands_there():\n"), [(1, "stands")])
        self.assertEqual(found_in("class HandOver;\n"), [(1, "Hand Over")])

    def test_messageNamesPlacePhraseAndWhatToWrite(self):
        self.assertEqual([str(finding) for finding in words.findings("docs/paths.md", "steps\nare behind it")],
                         ["docs/paths.md:2: 'behind'; write instead: after; prefixed with; followed by"])


class Exceptions(unittest.TestCase):
    ALLOWED = (words.Allowed("src/*.cpp", "one thing stands for another", "the model's own text"),)

    def test_allowedTextPassesInItsFiles(self):
        self.assertEqual(found_in('"one thing stands for another"', "src/a/Texts.cpp", self.ALLOWED), [])
        self.assertEqual(found_in('"one thing stands "\n"for another"', "src/a/Texts.cpp", self.ALLOWED), [])

    def test_allowedTextIsFoundInOtherFiles(self):
        self.assertEqual(found_in('"one thing stands for another"', "docs/a.md", self.ALLOWED), [(1, "stands")])

    def test_samePhraseInOtherWordsIsFound(self):
        self.assertEqual(found_in("one thing stands for another\nall stands for another", "src/a.cpp", self.ALLOWED),
                         [(2, "stands")])

    def test_everyAllowedTextHasAReason(self):
        for entry in words.ALLOWED:
            with self.subTest(entry.text):
                self.assertGreater(len(entry.reason), 10)
                self.assertNotEqual(found_in(entry.text), [], "no rule rejects it")


@unittest.skipUnless(shutil.which("git"), "git is missing")
class Repository(unittest.TestCase):
    """The script, in a repository of its own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(folder.name)
        subprocess.run(["git", "init", "--quiet"], check=True)
        self.commit("good.md", "The header documents all.\n")

    def commit(self, path: str, content: str):
        Path(path).parent.mkdir(parents=True, exist_ok=True)
        Path(path).write_text(content, encoding="utf-8")
        subprocess.run(["git", "add", path], check=True)

    def run_with(self, *arguments: str, exempt: tuple = (), allowed: tuple = ()) -> tuple[int, str]:
        errors = io.StringIO()
        with mock.patch.multiple(words, EXEMPT=exempt, ALLOWED=allowed), contextlib.redirect_stderr(errors):
            status = words.main(arguments)
        return status, errors.getvalue()

    def test_goodTextsPass(self):
        self.assertEqual(self.run_with(), (0, ""))

    def test_listedPhraseFails(self):
        self.commit("src/Bad.cpp", "int a;\n// The header tells all.\n")
        self.assertEqual(self.run_with(), (1, "src/Bad.cpp:2: 'tells'; write instead: "
                                              "returns, reports, describes, documents; receives; see X\n"))

    def test_exemptPathPasses(self):
        self.commit("src/Bad.cpp", "// The header tells all.\n")
        self.assertEqual(self.run_with(exempt=("src/",)), (0, ""))

    def test_exemptPathFailsIfNamed(self):
        self.commit("src/Bad.cpp", "// The header tells all.\n")
        self.assertEqual(self.run_with("src/Bad.cpp", exempt=("src/",))[0], 1)

    def test_uselessExemptionFails(self):
        self.assertEqual(self.run_with(exempt=("src/",)),
                         (1, "scripts/words.py: 'src/' needs no exemption; remove it from EXEMPT\n"))

    def test_uselessAllowedTextFails(self):
        self.assertEqual(self.run_with(allowed=(words.Allowed("*", "it stands", "for no reason"),)),
                         (1, "scripts/words.py: no file contains 'it stands'; remove it from ALLOWED\n"))

    def test_dataPasses(self):
        self.commit("tests/data/one.hex", "Told")
        self.commit("fuzz/corpus/record/stands.bin", "stands")
        self.assertEqual(self.run_with(), (0, ""))

    def test_filesThatAreNotTextPass(self):
        Path("image").write_bytes(b"\xff stands")
        subprocess.run(["git", "add", "image"], check=True)
        self.assertEqual(self.run_with(), (0, ""))


if __name__ == "__main__":
    unittest.main()
