"""Breaks the sources in one place at a time and runs the tests until one of them notices. See mutate.sh."""

import argparse
import difflib
import hashlib
import json
import signal
import sys
import time
from collections import Counter, defaultdict
from pathlib import Path

import mutants as rules
from trials import Trials
from workshop import BuildFailure, Workshop

LEAST_COMPILED = 1000
KILLED = ("failed", "crashed", "too long")
OUTCOMES = (*KILLED, "survived", "passed quick tests", "same code", "same optimised code", "not compiled")


def say(text):
    print(text, flush=True)


class Progress:
    """One line per mutant, appended as soon as it is tried; an interrupted run continues after the last one."""

    def __init__(self, path):
        self.path = path
        self.records = {}
        if path.exists():
            for line in path.read_text(encoding="utf-8").splitlines():
                try:
                    record = json.loads(line)
                    self.records[record["id"]] = record
                except (ValueError, KeyError):
                    pass  # cut off by the interruption

    def add(self, record):
        self.records[record["id"]] = record
        with self.path.open("a", encoding="utf-8") as file:
            file.write(json.dumps(record) + "\n")

    def of(self, mutant, digest):
        """The outcome of the mutant, if its file is unchanged since then."""
        record = self.records.get(mutant.identity)
        return record if record and record["source"] == digest else None


class UnknownEntries(Exception):
    """Entries on the list of equivalents that match no mutant."""


def read_equivalents(path, mutants):
    """The reasons by the identities of the mutants: paragraphs of `FILE: SCOPE`, the change, and the reason.

    Raises UnknownEntries if one of them matches nothing."""
    known = {(m.path, m.scope, m.change): m.identity for m in mutants}
    found, unknown = {}, []
    text = "\n".join(line for line in path.read_text(encoding="utf-8").splitlines() if not line.startswith("#"))
    for paragraph in filter(None, (part.strip() for part in text.split("\n\n"))):
        place, change, *reason = (line.strip() for line in paragraph.splitlines())
        source, _, scope = place.partition(":")
        key = (source, scope.strip(), change)
        if not reason:
            unknown.append(f"{place}: {change}\n    has no reason")
        elif key in known:
            found[known[key]] = " ".join(reason)
        else:
            near = [f"{m.path}: {m.scope}" for m in mutants if m.change == change]
            hint = f"; the same change is possible in {', '.join(near)}" if near else ""
            unknown.append(f"{place}\n    {change}\n    matches no mutant{hint}")
    if unknown:
        raise UnknownEntries(
            f"{path.name}: {len(unknown)} entries to correct or to remove:\n" + "\n".join(unknown)
        )
    return found


def entry(mutant):
    """How the list of equivalents names the mutant."""
    return f"{mutant.path}: {mutant.scope}".rstrip() + f"\n    {mutant.change}"


def difference(mutant, source):
    mutated = mutant.applied_to(source)
    lines = difflib.unified_diff(source.splitlines(), mutated.splitlines(), f"a/{mutant.path}", f"b/{mutant.path}",
                                 n=1, lineterm="")  # fmt: skip
    return "\n".join("    " + line for line in lines)


class Session:
    def __init__(self, options):
        self.options = options
        self.project = Path.cwd()
        self.folder = Path(options.folder).resolve()
        self.folder.mkdir(parents=True, exist_ok=True)
        self.equivalents_path = Path(__file__).with_name("equivalents.txt")
        self.workshop = Workshop(self.project, self.folder, options.jobs, say)
        self.progress = Progress(self.folder / "progress.jsonl")
        self.digests = {}
        self.begin = time.monotonic()

    def prepare(self):
        if self.options.list or self.options.report:
            self.workshop.use_project()  # as it is now; a run may be under way in the copy
        else:
            self.workshop.copy_tree(self.options.as_copied)
        self.all = rules.all_mutants(self.workshop.tree, self.workshop.sources)
        self.equivalents = read_equivalents(self.equivalents_path, self.all)
        self.chosen = self._chosen()
        for path in self.workshop.sources:
            self.digests[path] = hashlib.sha256(self.workshop.source(path).encode()).hexdigest()[:16]

    def _chosen(self):
        """All mutants that were named, or those of the named files, or the first of the seed's order."""
        mutants = rules.in_order(self.all, self.options.seed)
        if self.options.only:
            return [m for m in mutants if m.identity in self.options.only]
        if self.options.files:
            wanted = self._wanted_files()
            mutants = [m for m in mutants if m.path in wanted]
        if self.options.without:
            mutants = [m for m in mutants if not any(part in m.path for part in self.options.without)]
        if self.options.category:
            mutants = [m for m in mutants if m.category in self.options.category]
        return mutants if self.options.all else mutants[: self.options.count]

    def _wanted_files(self):
        """The sources among the files and folders that were named."""
        wanted = set()
        for name in self.options.files:
            path = (Path.cwd() / name).resolve()
            relative = path.relative_to(self.project).as_posix() if path.is_relative_to(self.project) else name
            matching = [s for s in self.workshop.sources if s == relative or s.startswith(relative.rstrip("/") + "/")]
            if not matching:
                raise BuildFailure(f"'{name}' is neither a source file of the libraries nor a folder with one; they are in src/")
            wanted.update(matching)
        return wanted

    def record(self, mutant):
        return self.progress.of(mutant, self.digests[mutant.path])

    def _to_do(self):
        again = set(self.options.again or ())
        for mutant in self.chosen:
            record = self.record(mutant)
            outcome = record and record["outcome"]
            if outcome is None or mutant.identity in self.options.only or outcome in again:
                yield mutant
            elif self._is_open(mutant, record) and not self.options.quick:
                yield mutant

    def _is_open(self, mutant, record):
        return record["outcome"] == "passed quick tests" and mutant.identity not in self.equivalents

    def _meets_quick_tests(self, mutant):
        outcome = (self.record(mutant) or {}).get("outcome")
        anew = mutant.identity in self.options.only or outcome in (self.options.again or ())
        return anew or outcome != "passed quick tests"

    def run(self):
        waiting = list(self._to_do())
        say(f"{len(self.all)} mutants are possible, {len(self.chosen)} are chosen (seed {self.options.seed}), "
            f"{len(waiting)} are still to be tried.")  # fmt: skip
        if not waiting:
            return
        self.workshop.build_tree(self.options.as_copied)
        self.trials = Trials(self.workshop, self.options.jobs, self.options.slow, self.options.exclude, say)
        self.trials.measure()
        for name, why in self.trials.left_out.items():
            say(f"Left out: {name} ({why})")
        say(f"{len(self.trials.tests)} tests, {sum(t.cpu_seconds for t in self.trials.tests):.0f} s of processor time with nothing broken")
        self.workshop.build_counting()
        self.trials.find_reached()
        # They look at the library itself; a mutant that is built in one compilation meets them after all others.
        self.sensitive = self.workshop.unite(self.trials.failing_tests, self.trials.libraries())
        if self.sensitive:
            say(f"Last, if the library is made in one compilation: {', '.join(sorted(self.sensitive))}")
        for record in self.progress.records.values():
            if record.get("by"):
                self.trials.remember(record["path"], record["by"])
        # Nearly all are killed by a quick test, so that only few have to meet the others.
        self.quick = True
        if self._try_all([m for m in waiting if self._meets_quick_tests(m)]) and not self.options.quick:
            self.quick = False
            # One that is shown to make no difference need not meet them.
            self._try_all([m for m in waiting if self.record(m)["outcome"] == "passed quick tests"
                           and m.identity not in self.equivalents])  # fmt: skip

    def _try_all(self, mutants):
        for number, mutant in enumerate(mutants, 1):
            if self.options.minutes and time.monotonic() - self.begin > 60 * self.options.minutes:
                say("The time is up; call again to go on.")
                return False
            self._try(mutant, f"{number}/{len(mutants)}")
        return True

    def _try(self, mutant, place):
        started = time.monotonic()
        try:
            outcome, by = self._outcome(mutant)
        finally:
            self.workshop.restore()
        if by and not self.trials.passes(by):
            raise BuildFailure(f"{by} fails with nothing broken as well, so it has not killed {mutant.identity}")
        if outcome == "survived" and self.quick:
            outcome = "passed quick tests"
        elif outcome == "survived" and self.workshop.same_when_optimised(mutant):
            outcome = "same optimised code"
        seconds = round(time.monotonic() - started, 1)
        self.progress.add({"id": mutant.identity, "path": mutant.path, "line": mutant.line, "outcome": outcome, "by": by,
                           "category": mutant.category, "seconds": seconds,
                           "source": self.digests[mutant.path]})  # fmt: skip
        say(f"[{place}] {mutant.identity} {mutant.path}:{mutant.line} {mutant.category}: {outcome}"
            f"{' by ' + by if by else ''} ({seconds} s)")  # fmt: skip
        if outcome == "survived" and mutant.identity not in self.equivalents:
            say(difference(mutant, self.workshop.source(mutant.path)))

    def _outcome(self, mutant):
        built = self.workshop.build_mutant(mutant)
        if built == "not compiled" or (built == "same code" and not mutant.path.endswith(".h")):
            return built, None
        # The same code from a different header: tests in which the compiler refuses wrong tables may still fail.
        united = self.workshop.is_united(mutant.path)
        failure = self.trials.first_failure(mutant, self.quick, without=self.sensitive if united else ())
        if not failure and not self.quick and united and self.sensitive and built == "built":
            self.workshop.restore()
            if self.workshop.build_mutant(mutant, apart=True) == "built":
                failure = self.trials.first_failure(mutant, False, only=self.sensitive)
        if failure:
            test, verdict = failure
            return verdict.how, test.name
        return ("survived" if built == "built" or self.quick else built), None

    # --- The report ---

    def report(self):
        records = {m: self.record(m) for m in self.chosen}
        tried = {m: r for m, r in records.items() if r}
        counts = Counter(r["outcome"] for r in tried.values())
        passed = [m for m, r in tried.items() if r["outcome"] in ("survived", "passed quick tests")]
        listed = [m for m in passed if m.identity in self.equivalents]
        unlisted = [m for m in passed if tried[m]["outcome"] == "survived" and m not in listed]
        open_ = [m for m, r in tried.items() if self._is_open(m, r)]
        same = counts["same code"] + counts["same optimised code"]
        compiled = len(tried) - counts["not compiled"]
        killed = sum(counts[how] for how in KILLED)
        different = compiled - same - len(listed) - len(open_)

        say("")
        self._table(tried)
        say("")
        say(f"seed {self.options.seed}: {len(self.chosen)} of {len(self.all)} chosen, {len(tried)} tried, "
            f"{counts['not compiled']} not compiled, {compiled} compiled")  # fmt: skip
        say(f"killed: {killed} ({counts['failed']} by a failed test, {counts['crashed']} by a crash, "
            f"{counts['too long']} by taking too long)")  # fmt: skip
        say(f"equivalent: {same + len(listed)} ({same} make the same code, {len(listed)} are on the list)")
        say(f"survived: {len(unlisted)}")
        if open_:
            say(f"passed the quick tests, not the others yet: {len(open_)}")
        if different:
            say(f"score: {killed} of {different} = {100 * killed / different:.1f} %")
        for mutant in sorted([*unlisted, *open_], key=lambda m: (m.path, m.line)):
            say(f"\n{'SURVIVED' if mutant in unlisted else 'OPEN'} {mutant.identity} {mutant.path}:{mutant.line} ({mutant.category})")
            say(entry(mutant))
            say(difference(mutant, self.workshop.source(mutant.path)))
        return self._complaints(tried, unlisted, open_, compiled)

    def _table(self, tried):
        rows = defaultdict(Counter)
        for mutant, record in tried.items():
            rows[mutant.category][record["outcome"]] += 1
        say(f"{'category':<12}" + "".join(f"{outcome:>21}" for outcome in OUTCOMES))
        for category in sorted(rows):
            say(f"{category:<12}" + "".join(f"{rows[category][outcome]:>21}" for outcome in OUTCOMES))

    def _complaints(self, tried, unlisted, open_, compiled):
        complaints = []
        if unlisted:
            complaints.append(f"{len(unlisted)} mutants survived that are not on the list of equivalents")
        left = len(self.chosen) - len(tried) + len(open_)
        if left:
            complaints.append(f"{left} mutants are still to be tried, or to be tried with all tests")
        whole = not (self.options.only or self.options.files or self.options.category)
        if whole and compiled < LEAST_COMPILED:
            complaints.append(f"only {compiled} mutants compiled; at least {LEAST_COMPILED} are required")
        for mutant, record in tried.items():
            if mutant.identity in self.equivalents and record["outcome"] in KILLED:
                complaints.append(f"{mutant.identity} is on the list of equivalents, but {record['by']} kills it")
        return complaints


def parse_arguments():
    parser = argparse.ArgumentParser(prog="mutate.sh", description=__doc__, add_help=True)
    parser.add_argument("--seed", type=int, default=1, help="which mutants come first (default: %(default)s)")
    parser.add_argument("--count", type=int, default=1300, help="how many mutants (default: %(default)s)")
    parser.add_argument("--all", action="store_true", help="every mutant that the rules can make")
    parser.add_argument("files", nargs="*", metavar="FILE", help="only mutants of these source files, or of those in these folders")
    parser.add_argument("--without", action="append", metavar="PART", help="no mutants of files with this in their path")
    parser.add_argument("--category", action="append", help="only mutants of this category")
    parser.add_argument("--only", action="append", default=[], metavar="IDENTITY", help="just this mutant, tried again")
    parser.add_argument("--again", action="append", choices=OUTCOMES, help="try those anew that ended so: survived, ...")
    parser.add_argument("--jobs", type=int, default=1, help="tests at a time (default: %(default)s)")
    parser.add_argument("--minutes", type=float, help="stop after so many minutes")
    parser.add_argument("--slow", type=float, default=40, metavar="SECONDS",
                        help="leave out tests that take more processor time (default: %(default)s)")
    parser.add_argument("--as-copied", action="store_true", help="go on with the copy of the tree as it was built last")
    parser.add_argument("--quick", action="store_true", help="only the quick tests; the others the next time")
    parser.add_argument("--exclude", metavar="REGEX", help="leave out tests of this name")
    parser.add_argument("--folder", default="build/mutate", help="where to work (default: %(default)s)")
    parser.add_argument("--list", action="store_true", help="only list the mutants")
    parser.add_argument("--report", action="store_true", help="only report what is known")
    return parser.parse_args()


def main():
    options = parse_arguments()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    session = Session(options)
    try:
        session.prepare()
    except (BuildFailure, UnknownEntries) as failure:
        say(f"mutate.sh: {failure}")
        return 2
    if options.list:
        for mutant in session.chosen:
            say(f"{mutant.identity} {mutant.path}:{mutant.line} ({mutant.category})")
            say(entry(mutant))
            say(difference(mutant, session.workshop.source(mutant.path)))
        return 0
    if not options.report:
        try:
            session.run()
        except BuildFailure as failure:
            say(f"mutate.sh: {failure}")
            return 2
        except KeyboardInterrupt:
            say("\nInterrupted; call again to go on.")
            return 130
    complaints = session.report()
    for complaint in complaints:
        say(f"mutate.sh: {complaint}")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
