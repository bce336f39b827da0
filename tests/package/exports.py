"""Compares the names that a library exports with those recorded: exports.py LIBRARY RECORDED [--record | --record-model MODEL]

The record is the file from which Debian's packages learn which version of the library has which names. It contains all names
of our own, with the version of the project that has introduced them. A library also exports instantiations of templates and
inline functions of Qt and the standard library, which differ from compiler to compiler. They are ignored as long as they are
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
FOREIGN = re.compile("^" + START + r"(?:S[tabsiod]|9__gnu_cxx|\d+[Qq][A-Zt]|[a-z][a-zA-Z])")


# How names that are built with Qt 5 are spelled if they are built with Qt 6.
AS_QT6 = ((re.compile(r"\bQVector<"), "QList<"), (re.compile(r"\bQStringList\b"), "QList<QString>"),
          (re.compile(r"(?<=, )unsigned int(?=\)$)"), "unsigned long"))  # the seed of qHash()


def as_qt6(name):
    for pattern, spelling in AS_QT6:
        name = pattern.sub(spelling, name)
    return name


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


class Record:
    """The names in a file RECORDED, which is named as the package of the library and has the format of deb-src-symbols."""

    NAME = re.compile(r' \(c\+\+\)"(?P<name>.*)@Base" (?P<version>\S+)')

    def __init__(self, path, library, version):
        self.path, self.version = path, version
        self.text = path.read_text(encoding="utf-8") if path.exists() else ""
        self.versions = {line["name"]: line["version"] for line in map(self.NAME.fullmatch, self.text.splitlines()) if line}
        name, major = re.fullmatch(r"(.*?)(?:-qt6)?\.so\.(\d+).*", library.resolve().name).groups()
        suffix = "-qt6" if "-qt6" in path.stem else ""
        self.head = [f"{name}{suffix}.so.{major} {path.stem} #MINVER#",
                     f"* Build-Depends-Package: libtunerproperties{suffix}-dev",
                     "# Not ours: what the compiler has instantiated from templates and inline functions of others.",
                     f' (regex|optional)"{FOREIGN.pattern}.*@Base$" 1.0.0']

    def with_names(self, names):
        """The text of the file with these names. Those that are new belong to the present version."""
        lines = [f' (c++)"{name}@Base" {self.versions.get(name, self.version)}' for name in sorted(names)]
        return "".join(f"{line}\n" for line in [*self.head, *lines])

    def write(self, names):
        self.path.write_text(self.with_names(names), encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("library", type=pathlib.Path)
    parser.add_argument("recorded", type=pathlib.Path)
    parser.add_argument("--nm", default="nm")
    parser.add_argument("--version", required=True, help="of the project")
    parser.add_argument("--record", action="store_true", help="write down the names as they are now")
    parser.add_argument("--record-model", type=pathlib.Path, metavar="MODEL",
                        help="write down those that follow from model.json: accessors of members, and new classes")
    parser.add_argument("--as-qt6", action="store_true", help="spell the names of a library for Qt 5 as with Qt 6")
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
    if arguments.as_qt6:
        ours = {as_qt6(name) for name in ours}
    record = Record(arguments.recorded, arguments.library, arguments.version)
    if arguments.record:
        record.write(ours)
        return
    if arguments.record_model:
        follows = from_the_model(arguments.record_model, record.versions)
        record.write({name for name in record.versions if name in ours or not follows(name)}
                     | {name for name in ours if follows(name)})
        return
    difference = list(difflib.unified_diff(record.text.splitlines(), record.with_names(ours).splitlines(), "recorded",
                                           "exported", n=0, lineterm=""))
    if difference:
        sys.exit("\n".join([f"{arguments.library.name} exports other names than recorded. If that is meant, build the "
                            "target record_exports.", *difference]))


if __name__ == "__main__":
    main()
