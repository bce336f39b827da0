#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measures whole processes of the command-line tool, as users start them, beside xmllint or each other.

scripts/bench.sh runs it. The result is written to --output as JSON, for table.py. Each process runs in turn with its
reference, and the figures are medians; instructions are counted by callgrind.

The document for xmllint is the example as the tool writes it, since the schema describes written documents. Before
anything is measured, both programs have to accept it and to refuse damaged copies of it. The commands that read large
documents have to do their work on the smallest of them.
"""

import argparse
import json
import os
import pathlib
import re
import shutil
import statistics
import sys
import tempfile
import time
from typing import NamedTuple

COPIES = 500
CPU_RUNS = 5
START_RUNS = 101
PAGE_NODES = 15000, 100000
COMMAND_RUNS = 5
COMMAND_NODES = 1000, 10000, 100000


class Process(NamedTuple):
    """What the system reports of a process that has ended."""

    status: int
    errors: str
    cpu: float  # milliseconds, those of the system included
    clock: float  # milliseconds from start to end
    peak: float  # megabytes of memory, at least those of this script


class Task(NamedTuple):
    """A command of the tool on a document, and the exit status that it has because of what is in the document."""

    arguments: list
    status: int = 0


def run(command, output=os.devnull):
    """Runs a program whose output goes to a file."""
    arguments = [str(argument) for argument in command]
    with tempfile.TemporaryFile() as errors:
        actions = [(os.POSIX_SPAWN_OPEN, 0, os.devnull, os.O_RDONLY, 0),
                   (os.POSIX_SPAWN_OPEN, 1, os.fspath(output), os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o600),
                   (os.POSIX_SPAWN_DUP2, errors.fileno(), 2)]
        start = time.perf_counter()
        child = os.posix_spawn(arguments[0], arguments, os.environ, file_actions=actions)
        _, status, usage = os.wait4(child, 0)
        clock = time.perf_counter() - start
        errors.seek(0)
        messages = errors.read().decode(errors="replace")
    return Process(os.waitstatus_to_exitcode(status), messages, (usage.ru_utime + usage.ru_stime) * 1e3, clock * 1e3,
                   usage.ru_maxrss * 1024 / 1e6)


def shown(command):
    return " ".join(map(str, command[:8]))


def succeed(command, output=os.devnull, status=0):
    process = run(command, output)
    if process.status != status:
        sys.exit(f"{shown(command)}: exit status {process.status} instead of {status}\n{process.errors[-2000:]}")
    return process


def in_turn(runs, *commands):
    """The processes of each command, which alternate. A first run of each fills the system's cache and is left out."""
    for command in commands:
        succeed(command)
    rounds = [[succeed(command) for command in commands] for _ in range(runs)]
    return list(zip(*rounds))


def median(processes, figure):
    return statistics.median(getattr(process, figure) for process in processes)


def verify_both_detect_problems(programs, folder, example):
    """A figure is worthless if a program does not read the files, or does not check what it reads."""
    text = example.read_text(encoding="utf-8")
    without_end, _, _ = text.rpartition("</")
    invalid = re.sub(r'\btype="\w+"', 'type="Toaster"', text, count=1)
    for name, content, refusing in (("truncated.xml", without_end, programs), ("invalid.xml", invalid, programs[:2])):
        if content in ("", text):
            sys.exit(f"{example} has no type of a tuner, or no end tag")
        path = folder / name
        path.write_text(content, encoding="utf-8")
        for program in refusing:
            if run([*program, path]).status == 0:
                sys.exit(f"{shown([*program, path])}: a damaged document is accepted")


def measure_validate(options, xmllint, folder):
    """Yields the name and the figures of each measure."""
    validate = [options.tool, "validate", "-j1"]
    check_schema = [xmllint, "--noout", "--schema", options.schema]
    check_form = [xmllint, "--noout"]
    example = folder / "example.xml"
    succeed([options.tool, "convert", options.example, example])
    verify_both_detect_problems([validate, check_schema, check_form], folder, example)

    copies = [folder / f"{number:03}.xml" for number in range(COPIES)]
    for copy in copies:
        shutil.copyfile(example, copy)
    tool, reference = in_turn(CPU_RUNS, [*validate, *copies], [*check_schema, *copies])
    yield (f"validate -j1, {COPIES} files",
           {"figure": median(tool, "cpu"), "reference": median(reference, "cpu")})
    tool, reference = in_turn(START_RUNS, [options.tool, "validate", example], [*check_form, example])
    yield "validate, one file", {"figure": median(tool, "clock"), "reference": median(reference, "clock")}


def last_bytes(path):
    with path.open("rb") as file:
        file.seek(max(0, path.stat().st_size - 100))
        return file.read()


def measure_page(options, folder, nodes):
    """The peak of memory and the output, in megabytes, or that the tool refuses so large a page."""
    document, page = folder / f"{nodes}.xml", folder / f"{nodes}.html"
    succeed([options.bench, "--save", document, "--nodes", nodes])
    command = [options.tool, "show", "--format", "html", document]
    process = run(command, page)
    if process.status == 3 and "cannot show more than" in process.errors:
        return {"refused": True}
    if process.status != 0 or not last_bytes(page).rstrip().endswith(b"</html>"):
        sys.exit(f"{shown(command)}: exit status {process.status}, or no whole page\n{process.errors[-2000:]}")
    return {"figure": process.peak, "reference": page.stat().st_size / 1e6}


class Documents:
    """A generated document of so many nodes, and a copy with another value in the last node that has an integer."""

    PATTERN = "Component[*]/Node[*]/ValueItem[*]/ValueInt/value"

    def __init__(self, options, folder, nodes):
        self.tool, self.folder = options.tool, folder
        self.document, self.changed, self.edited = (folder / f"{name}-{nodes}.xml"
                                                    for name in ("document", "changed", "edited"))
        succeed([options.bench, "--save", self.document, "--nodes", nodes])
        last = self.printed("get", self.document, self.PATTERN).rstrip("\n").rpartition("\n")[2]
        if last.count("\t") != 2:
            sys.exit(f"{self.document.name} has no value for {self.PATTERN}")
        _, self.path, value = last.split("\t")
        self.value = str(int(value) + 1)
        self.restore()
        succeed(self.commands()["set"].arguments)
        shutil.copyfile(self.edited, self.changed)

    def commands(self):
        return {"validate": Task([self.tool, "validate", self.document]),
                "lint": Task([self.tool, "lint", self.document], 1),
                "get": Task([self.tool, "get", self.document, self.path]),
                "diff": Task([self.tool, "diff", self.document, self.changed]),
                "set": Task([self.tool, "set", self.edited, f"{self.path}={self.value}"])}

    def restore(self):
        """For another run of 'set', which otherwise would have nothing to change."""
        shutil.copyfile(self.document, self.edited)

    def printed(self, *arguments):
        output = self.folder / "printed"
        succeed([self.tool, *arguments], output)
        return output.read_text(encoding="utf-8")

    def verify(self):
        """A figure is worthless if a command does not do its work."""
        if self.printed("get", self.changed, self.path) != self.value + "\n":
            sys.exit(f"{shown(self.commands()['set'].arguments)}: 'get' does not print the value")
        if self.printed(*self.commands()["diff"].arguments[1:]).count("\n") != 1:
            sys.exit(f"{shown(self.commands()['diff'].arguments)}: there is not one difference")


def instructions(task, folder):
    """Millions of instructions of a process."""
    counts = folder / "counts"
    succeed([shutil.which("valgrind"), "--tool=callgrind", f"--callgrind-out-file={counts}", *task.arguments],
            status=task.status)
    found = re.search(r"^(?:summary|totals): (\d+)$", counts.read_text(encoding="utf-8"), re.MULTILINE)
    if not found:
        sys.exit(f"{shown(task.arguments)}: callgrind has counted nothing")
    return int(found[1]) / 1e6


def count(documents, folder, names):
    """The millions of instructions of these commands."""
    counts = {}
    for name in names:
        documents.restore()
        counts[name] = instructions(documents.commands()[name], folder)
    return counts


def spend(documents):
    """The milliseconds of CPU of each command."""
    spent = {name: [] for name in documents.commands()}
    for _ in range(COMMAND_RUNS):
        for name, task in documents.commands().items():
            documents.restore()
            spent[name].append(succeed(task.arguments, status=task.status))
    return {name: median(processes, "cpu") for name, processes in spent.items()}


def ratios(names, kind, larger, smaller):
    for name in names:
        yield f"{name}, {kind}", {"figure": larger[name], "reference": smaller[name]}


def measure_commands(options, folder):
    """Yields how the cost of commands grows with the document, and that of changing a value beside that of reading it."""
    small, medium, large = (Documents(options, folder, nodes) for nodes in COMMAND_NODES)
    small.verify()
    names = list(small.commands())
    # Instructions of all commands at 100,000 nodes would take callgrind several minutes more.
    yield from ratios(names, f"{COMMAND_NODES[1]:,} nodes, instructions", count(medium, folder, names),
                      count(small, folder, names))
    at_large, at_medium = spend(large), spend(medium)
    yield from ratios(names, f"{COMMAND_NODES[2]:,} nodes, CPU", at_large, at_medium)
    of_both = count(large, folder, ("set", "get"))
    for kind, figures in (("instructions", of_both), ("CPU", at_large)):
        yield (f"set beside get, {COMMAND_NODES[2]:,} nodes, {kind}",
               {"figure": figures["set"], "reference": figures["get"]})


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tool", type=pathlib.Path, required=True)
    parser.add_argument("--bench", type=pathlib.Path, required=True, help="the program that makes large documents")
    parser.add_argument("--schema", type=pathlib.Path, required=True)
    parser.add_argument("--example", type=pathlib.Path, required=True, help="the document that is validated")
    parser.add_argument("--output", type=pathlib.Path, required=True)
    options = parser.parse_args()
    xmllint = shutil.which("xmllint")
    if not xmllint:
        sys.exit("xmllint is missing; install it first (Debian: libxml2-utils)")
    if not shutil.which("valgrind"):
        sys.exit("valgrind is missing; install it first")
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        # First, while this script is small: a child's peak is at least that of its parent.
        measured = {f"show --format html, {nodes:,} nodes": measure_page(options, folder, nodes)
                    for nodes in PAGE_NODES}
        measured.update(measure_validate(options, xmllint, folder))
        measured.update(measure_commands(options, folder))
    options.output.write_text(json.dumps(measured, indent=1) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
