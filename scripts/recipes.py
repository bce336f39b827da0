# SPDX-License-Identifier: MIT
"""Tries the recipes in tests/recipes on a copy of the project. See scripts/try-recipes.sh.

A recipe is a folder of patches, one for each step. The file of a step begins with

    Step: what is done
    Without: a regular expression for the message if the step is omitted

The last step of every recipe is to run scripts/model.sh, so it has no patch.
"""

from __future__ import annotations

import argparse
import os
import re
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass
from pathlib import Path

TOP = Path(__file__).resolve().parents[1]
RECIPES = TOP / "tests" / "recipes"
TREE = Path(os.environ.get("RECIPES_TREE", TOP / "build" / "recipes" / "tree")).resolve()
BUILD = TREE / "build" / "ci"

TARGETS = ("test_module", "test_every_class", "test_framework", "test_values", "test_tuner", "test_schema",
           "test_tools", "test_html", "test_snippets", "interop_host", "tunerproperties", "tunerproperties_model",
           "tunerproperties_translations")
# All tests of these programs, and those of the lists; not those that measure, exchange thousands of documents or install.
TESTS = (r"^(tst_(Classes|Names|MetaTypes|Examples|Debug|Visit|Hash|SlotOrder|Errors|Problems|Merge|EveryClass(State|"
         r"Encodings|Visit|Members)|ValueItem|ValueItemEncodings|BandwidthSelection|Component|Schema\w*|AuthorSchema|Html|ToolShow|"
         r"ToolNew|ToolJson|JsonForm|DiffCompleteness)|interop_lists|interop_page|model_is_current|"
         r"model_keeps_what_is_released|schemas_offer_every_member|json_schema_describes_documents|exports_of_TunerProperties|pages_and_examples_are_whole)$")
MODEL_SCRIPT = r"share/model\.json:\d+: .*run scripts/model\.sh"


@dataclass
class Step:
    file: Path
    what: str
    without: str

    @staticmethod
    def read(file: Path) -> Step:
        head = file.read_text(encoding="utf-8").split("\n--- ")[0]
        said = dict(re.findall(r"^(Step|Without): (.*)$", head, re.MULTILINE))
        return Step(file, said["Step"], said["Without"])

    def files(self) -> list[str]:
        return re.findall(r"^\+\+\+ b/(\S+)", self.file.read_text(encoding="utf-8"), re.MULTILINE)


def run(*command: str | Path, **options) -> subprocess.CompletedProcess:
    return subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          **options)


def project_files() -> dict[str, bytes]:
    listed = run("git", "ls-files", "-z", "--cached", "--others", "--exclude-standard", cwd=TOP).stdout
    return {name: (TOP / name).read_bytes() for name in listed.split("\0") if name and (TOP / name).is_file()}


def carried_out(steps: list[Step], base: dict[str, bytes]) -> dict[str, bytes]:
    """The files that the steps change, as they are afterwards."""
    names = {name for step in steps for name in step.files()}
    with tempfile.TemporaryDirectory() as scratch:
        for name in names & set(base):
            copy = Path(scratch) / name
            copy.parent.mkdir(parents=True, exist_ok=True)
            copy.write_bytes(base[name])
        for step in steps:
            done = run("patch", "-p1", "--no-backup-if-mismatch", "--fuzz=0", "-i", step.file, cwd=scratch)
            if done.returncode != 0:
                sys.exit(f"{step.file.relative_to(TOP)} does not apply:\n{done.stdout}")
        return {name: (Path(scratch) / name).read_bytes() for name in names}


def steps_of(name: str) -> list[Step]:
    return [Step.read(file) for file in sorted((RECIPES / name).glob("*.patch"))]


def check_patches(names: list[str]) -> None:
    """That every recipe still applies, as a whole and without any one of its steps."""
    for name in names:
        steps = steps_of(name)
        touched = {file for step in steps for file in step.files()}
        base = {file: (TOP / file).read_bytes() for file in touched if (TOP / file).exists()}
        for left_out in (None, *steps):
            carried_out([step for step in steps if step is not left_out], base)
        print(f"{name}: {len(steps)} steps in {len(touched)} files")


class Tree:
    """A copy of the project, in which only files that change get a new time, so that little is built anew."""

    def __init__(self, base: dict[str, bytes]) -> None:
        self._base = base
        self._known = set(base)

    def become(self, steps: list[Step]) -> None:
        """The project with these steps carried out, and nothing else."""
        files = {**self._base, **carried_out(steps, self._base)}
        for name in self._known - set(files):
            (TREE / name).unlink(missing_ok=True)
        self._known |= set(files)
        for name, content in files.items():
            self._write(name, content)

    def _write(self, name: str, content: bytes) -> None:
        file = TREE / name
        if file.exists() and file.read_bytes() == content:
            return
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(content)
        mode = (TOP / name).stat().st_mode if (TOP / name).exists() else 0o644
        file.chmod(mode)

    def note_new_files(self) -> None:
        listed = run("git", "ls-files", "-z", "--others", "--exclude-standard", cwd=TREE).stdout
        self._known |= {name for name in listed.split("\0") if name}


class Trial:
    def __init__(self, jobs: str) -> None:
        self._jobs = jobs

    def model_script(self) -> str | None:
        """Runs scripts/model.sh; returns its output if it fails."""
        done = run("scripts/model.sh", cwd=TREE, env=self._environment())
        return done.stdout if done.returncode != 0 else None

    def build_and_test(self) -> str | None:
        """Returns what is reported if something fails."""
        built = run("cmake", "--build", BUILD, "-j", self._jobs, "--target", *TARGETS, cwd=TREE)
        if built.returncode != 0:
            return built.stdout
        tested = run("ctest", "--test-dir", BUILD, "-j", self._jobs, "--output-on-failure", "-R", TESTS, cwd=TREE)
        if "No tests were found" in tested.stdout:
            sys.exit("none of the quick tests was found")
        return tested.stdout if tested.returncode != 0 else None

    def check_of_the_model(self) -> str | None:
        built = run("cmake", "--build", BUILD, "-j", self._jobs, "--target", "tunerproperties_model", cwd=TREE)
        if built.returncode != 0:
            return built.stdout
        tested = run("ctest", "--test-dir", BUILD, "--output-on-failure", "-R", "^model_is_current$", cwd=TREE)
        return tested.stdout if tested.returncode != 0 else None

    @staticmethod
    def _environment() -> dict[str, str]:
        return {**os.environ, "MODEL_BUILD": str(BUILD)}


class Recipe:
    def __init__(self, folder: Path, tree: Tree, trial: Trial) -> None:
        self._name = folder.name
        self._steps = steps_of(folder.name)
        self._tree = tree
        self._trial = trial
        self._wrong = 0

    def attempt(self) -> int:
        files = sorted({name for step in self._steps for name in step.files()})
        print(f"\n{self._name}: {len(self._steps)} steps in {len(files)} files, and scripts/model.sh")
        self._tree.become(self._steps)
        self._expect("without running scripts/model.sh", MODEL_SCRIPT, self._trial.check_of_the_model())
        start = time.monotonic()
        failure = self._trial.model_script() or self._trial.build_and_test()
        self._tree.note_new_files()
        self._report("the whole recipe", "passes" if failure is None else f"FAILS\n{tail(failure)}", failure is None, start)
        if failure is not None:
            return self._wrong
        for left_out in self._steps:
            self._tree.become([step for step in self._steps if step is not left_out])
            start = time.monotonic()
            failure = self._trial.model_script() or self._trial.build_and_test()
            self._expect(f"without {left_out.what}", left_out.without, failure, start)
        return self._wrong

    def _expect(self, what: str, expected: str, failure: str | None, start: float | None = None) -> None:
        if failure is None:
            self._report(what, "PASSES, although it should not", False, start)
            return
        named = re.search(expected, failure)
        line = failure[failure.rfind("\n", 0, named.start()) + 1 :].split("\n")[0] if named else ""
        report = f"fails: {line.strip()[:150]}" if named else f"FAILS WITHOUT SAYING {expected}\n{tail(failure)}"
        self._report(what, report, named is not None, start)

    def _report(self, what: str, outcome: str, good: bool, start: float | None) -> None:
        seconds = f" ({time.monotonic() - start:.0f} s)" if start else ""
        print(f"  {what}: {outcome}{seconds}", flush=True)
        self._wrong += 0 if good else 1


def tail(text: str, lines: int = 60) -> str:
    return "\n".join(f"    | {line[:300]}" for line in text.splitlines()[-lines:])


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("recipes", nargs="*", help="by default all in tests/recipes")
    parser.add_argument("--jobs", default="2")
    parser.add_argument("--patches", action="store_true", help="only check that the patches apply")
    arguments = parser.parse_args()
    names = arguments.recipes or sorted(folder.name for folder in RECIPES.iterdir() if folder.is_dir())

    if arguments.patches:
        check_patches(names)
        return 0

    tree = Tree(project_files())
    TREE.mkdir(parents=True, exist_ok=True)
    if not (TREE / ".git").exists():
        run("git", "init", "--quiet", cwd=TREE)
    for left in run("git", "ls-files", "-z", "--cached", "--others", "--exclude-standard", cwd=TREE).stdout.split("\0"):
        if left and not (TOP / left).exists():
            (TREE / left).unlink(missing_ok=True)
    tree.become([])
    configured = run("cmake", "--preset", "ci", cwd=TREE)
    if configured.returncode != 0:
        sys.exit(configured.stdout)
    trial = Trial(arguments.jobs)
    wrong = sum(Recipe(RECIPES / name, tree, trial).attempt() for name in names)
    tree.become([])
    print(f"\n{len(names)} recipes, {wrong} outcomes that should not be")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
