"""Compares the names that a library exports with those recorded: exports.py LIBRARY RECORDED [--record | --record-model MODEL]

The record contains all names of our own. A library also exports instantiations of templates and inline
functions of Qt and the standard library, which differ from compiler to compiler. They are ignored as long as they are
weak, so that they do not conflict with those of others.
"""

import argparse
import difflib
import json
import pathlib
import re
import subprocess
import sys

OUR_NAMES = (
    "JobXml",
    "REPORTGENERATOR",
    "TunerDocuments",
    "TranslationCenter",
    "ReportException",
    "RGException",
    "OutOfRangeException",
    "InvalidXmlException",
    "BinaryParsingException",
    "IncompleteDefinitionException",
)

# What programs cannot use, because no installed header defines it. Exporting it would make each change of it a change of
# the binary interface.
INTERNAL = re.compile(r"\b(?:Behavior|BinaryReader|BinaryWriter|Block|BlockOf|ClassInfo|Composition|JsonForm|Member|ObjectAccess|ObjectState|"
                      r"Propagation|VisitedMember|WriteTarget|XmlDocument|XmlOutput)\b")

# The names are checked in mangled form: demangled, a template's name follows its return type. The name may be prefixed
# with letters for a table of virtual functions, a type or a guard, for a local entity of a function (Z), and for a
# nested (N) and const (K) name.
START = r"_Z(?:T[VTIS]|GV)?Z?N?K?"
OURS = re.compile(START + "(?:" + "|".join(f"{len(name)}{name}" for name in OUR_NAMES) + ")")
# std, its abbreviations and the compiler's namespace; classes and functions of Qt; operators.
FOREIGN = re.compile(START + r"(?:S[tabsiod]|9__gnu_cxx|\d+[Qq][A-Zt]|[a-z][a-zA-Z])")


def exported_symbols(nm, library):
    """The kind, the name and the demangled name of each symbol."""
    def lines(*options):
        command = [nm, "--dynamic", "--defined-only", "--no-sort", *options, library]
        return subprocess.run(command, check=True, capture_output=True, text=True).stdout.splitlines()

    for plain, demangled in zip(lines(), lines("--demangle"), strict=True):
        _, kind, name = plain.split(" ", 2)
        yield kind, name, demangled.split(" ", 2)[2]


def from_the_model(model, recorded):
    """A function that says whether a name follows from the model: an accessor of a member, or anything of a new class."""
    classes = json.loads(model.read_text(encoding="utf-8"))["classes"]
    accessor = r"(?:Get|GetDefault|GetInvalid|Set|Append|Is|IsValid|Reset)"
    patterns = []
    for cls in classes:
        name = cls["name"]
        if any(f"JobXml::{name}::{name}(" in line for line in recorded):
            members = "|".join(row["name"] for row in cls["members"])
            patterns.append(rf"JobXml::{name}::{accessor}(?:{members})(?:Set)?\(")
        else:
            patterns.append(rf".*\bJobXml::{name}\b")
    pattern = re.compile("|".join(patterns))
    return lambda name: pattern.match(name) is not None


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("library", type=pathlib.Path)
    parser.add_argument("recorded", type=pathlib.Path)
    parser.add_argument("--nm", default="nm")
    parser.add_argument("--record", action="store_true", help="write down the names as they are now")
    parser.add_argument("--record-model", type=pathlib.Path, metavar="MODEL",
                        help="write down those that follow from model.json: accessors of members, and new classes")
    arguments = parser.parse_args()

    ours, unintended = set(), set()
    for kind, name, demangled in exported_symbols(arguments.nm, arguments.library):
        if OURS.match(name):
            ours.add(demangled)
        elif not (kind in "WV" and FOREIGN.match(name)):
            unintended.add(f"{kind} {demangled}")
    if not ours:
        sys.exit(f"{arguments.library} exports no name of ours")

    if unintended:
        sys.exit("\n  ".join([f"{arguments.library.name} exports what is neither ours nor weak:", *sorted(unintended)]))
    internal = sorted(name for name in ours if INTERNAL.search(name))
    if internal:
        sys.exit("\n  ".join([f"{arguments.library.name} exports internals, which programs cannot use:", *internal]))
    if arguments.record:
        arguments.recorded.write_text("".join(f"{name}\n" for name in sorted(ours)), encoding="utf-8")
        return
    recorded = arguments.recorded.read_text(encoding="utf-8").splitlines()
    if arguments.record_model:
        follows = from_the_model(arguments.record_model, recorded)
        kept = {name for name in recorded if name in ours or not follows(name)}
        new = {name for name in ours if follows(name)}
        arguments.recorded.write_text("".join(f"{name}\n" for name in sorted(kept | new)), encoding="utf-8")
        return
    difference = list(difflib.unified_diff(recorded, sorted(ours), "recorded", "exported", n=0, lineterm=""))
    if difference:
        sys.exit("\n".join([f"{arguments.library.name} exports other names than recorded. If that is meant, build the "
                            "target record_exports.", *difference]))


if __name__ == "__main__":
    main()
