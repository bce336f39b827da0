"""The tests of the built copy: the list, the order in which they are run on a mutant, and their limits."""

import functools
import hashlib
import json
import os
import re
import resource
import shutil
import signal
import subprocess
import time
from collections import Counter
from pathlib import Path

from reach import Counters, Reach

MOST_MEMORY = 6 << 30  # address space of a test; a mutant that reserves without end fails instead of eating the machine
QUICK = 0.2  # seconds of processor time
LARGEST_FILE = 16 << 30
MOST_NEEDED = 8  # tests that have to run before another one


class Test:
    def __init__(self, entry):
        properties = {p["name"]: p["value"] for p in entry.get("properties", [])}
        self.name = entry["name"]
        self.command = entry.get("command")
        self.environment = dict(line.split("=", 1) for line in properties.get("ENVIRONMENT", []))
        self.folder = properties.get("WORKING_DIRECTORY", ".")
        self.pass_texts = properties.get("PASS_REGULAR_EXPRESSION", [])
        self.fail_texts = properties.get("FAIL_REGULAR_EXPRESSION", [])
        self.will_fail = properties.get("WILL_FAIL", False)
        self.skip_code = properties.get("SKIP_RETURN_CODE")
        self.needs = set(properties.get("DEPENDS", []))
        self.fixtures = set(properties.get("FIXTURES_REQUIRED", []))
        self.sets_up = set(properties.get("FIXTURES_SETUP", []))
        self.disabled = properties.get("DISABLED", False)
        self.ctest_timeout = float(properties.get("TIMEOUT", 1500))
        self.seconds = None  # of wall time and of processor time, when nothing is broken
        self.cpu_seconds = None


class Verdict:
    def __init__(self, passed, how, output):
        self.passed = passed
        self.how = how  # "failed", "crashed", "too long"
        self.output = output


class Running:
    """A test under way, in a session of its own so that all it starts can be ended with it."""

    def __init__(self, test, folder, scratch, timeout, cpu_limit):
        self.test = test
        self.temporary = scratch / f"tmp-{test.name}"
        shutil.rmtree(self.temporary, ignore_errors=True)
        self.temporary.mkdir(parents=True)
        self.log_path = scratch / f"{test.name}.log"
        environment = {**os.environ, "TMPDIR": str(self.temporary), "QT_QPA_PLATFORM": "offscreen", **test.environment}
        self.log = self.log_path.open("wb")
        self.started = time.monotonic()
        self.deadline = self.started + timeout
        self.too_long = False

        def limit():
            resource.setrlimit(resource.RLIMIT_CPU, (cpu_limit, cpu_limit + 1))
            resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))
            resource.setrlimit(resource.RLIMIT_FSIZE, (LARGEST_FILE, LARGEST_FILE))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

        self.process = subprocess.Popen(test.command, cwd=folder / test.folder, env=environment, stdout=self.log,
                                        stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL, start_new_session=True,
                                        preexec_fn=limit)  # fmt: skip

    def poll(self):
        """The verdict, or None while it runs."""
        code = self.process.poll()
        if code is None:
            if time.monotonic() < self.deadline:
                return None
            self.too_long = True
        code = self.end()
        output = self.log_path.read_bytes()[-200000:].decode("utf-8", errors="replace")
        return self._judge(code, output)

    def _judge(self, code, output):
        test = self.test
        if self.too_long or code in (-signal.SIGXCPU, -signal.SIGKILL):
            return Verdict(False, "too long", output)
        if code < 0:
            return Verdict(False, "crashed", output)
        if test.skip_code is not None and code == int(test.skip_code):
            return Verdict(True, "", output)
        if test.pass_texts:
            passed = any(re.search(text, output) for text in test.pass_texts)
        else:
            passed = code == 0 and not any(re.search(text, output) for text in test.fail_texts)
        if test.will_fail:
            passed = not passed
        crashed = re.search(r"^Received signal|^FATAL|: QFATAL", output, re.MULTILINE)
        return Verdict(passed, "crashed" if crashed else "failed", output)

    def end(self):
        """Ends the remaining processes of the session."""
        try:
            os.killpg(self.process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        code = self.process.wait()
        self.log.close()
        shutil.rmtree(self.temporary, ignore_errors=True)
        return code


def tests_of_build(build):
    shown = subprocess.run(["ctest", "--show-only=json-v1"], cwd=build, check=True, stdout=subprocess.PIPE)
    return [Test(entry) for entry in json.loads(shown.stdout)["tests"]]


@functools.lru_cache(maxsize=None)
def digest(file):
    """Of what the file holds; not to be called for what may be broken in the meantime."""
    return hashlib.sha256(file.read_bytes()).hexdigest()[:16]


def prerequisites(test, tests):
    return [t for t in tests if t.name in test.needs or t.sets_up & test.fixtures]


class Trials:
    def __init__(self, workshop, jobs, slow, excluded, say):
        self.build = workshop.build
        self.scratch = workshop.folder / "tests"
        self.scratch.mkdir(parents=True, exist_ok=True)
        self.jobs = jobs
        self.slow = slow
        self.excluded = re.compile(excluded) if excluded else None
        self.say = say
        self.left_out = {}  # name: why
        self.workshop = workshop
        self.reach = Reach()
        self.kills_of_file = {}
        self.kills_of_folder = {}
        self.tests = tests_of_build(self.build)
        cache = (self.build / "CMakeCache.txt").read_text(encoding="utf-8")
        self.compiler = re.search(r"^CMAKE_CXX_COMPILER:\w+=(.*)$", cache, re.MULTILINE).group(1)

    # --- With nothing broken ---

    def measure(self):
        """Runs each test once, for the time it takes; one that does not pass now cannot judge. Results of a former run
        of the same program with the same libraries are used again."""
        known = self._read_times()
        usable = []
        for test in self.tests:
            why = self._unusable(test)
            if not why:
                key = self._state(test)
                former = known.get(test.name, {})
                # The limit may have been lower.
                if former.get("state") != key or (former["why"] or "").startswith("too long"):
                    known[test.name] = {"state": key, **self._measured(test)}
                    self._times_file.write_text(json.dumps(known, indent=1), encoding="utf-8")
                test.seconds, test.cpu_seconds = known[test.name]["seconds"], known[test.name]["cpu_seconds"]
                why = known[test.name]["why"]
                if not why and test.cpu_seconds > self.slow and not test.sets_up:
                    why = f"takes {test.cpu_seconds:.0f} s of processor time"
            if why:
                self.left_out[test.name] = why
            else:
                usable.append(test)
        self.tests = usable

    def find_reached(self):
        """Runs each test once in a build that counts what is executed; results of a former run with the same build are
        used again."""
        build = self.workshop.counting_build
        counters = Counters(build, self.workshop.tree)
        usable = {test.name: test for test in self.tests}
        known_file = self.scratch / "reached.jsonl"
        lines = known_file.read_text(encoding="utf-8").splitlines() if known_file.exists() else []
        known = {record["test"]: record for record in map(json.loads, lines)}
        all_tests = tests_of_build(build)
        with known_file.open("a", encoding="utf-8") as file:
            for test in all_tests:
                if test.name not in usable:
                    continue
                test.seconds, test.cpu_seconds = usable[test.name].seconds, usable[test.name].cpu_seconds
                key = self._state(test, build)
                record = known.get(test.name, {})
                if record.get("state") != key:
                    record = {"test": test.name, "state": key, "reached": self._reached(test, all_tests, counters)}
                    file.write(json.dumps(record) + "\n")
                    file.flush()
                self.reach.add(test.name, record["reached"])
                if record["reached"] is None:
                    self.say(f"Meets all mutants: {test.name}, which fails while what is executed is counted")

    def _reached(self, test, all_tests, counters):
        for needed in prerequisites(test, all_tests):
            self._run_leashed(needed, counters.build)
        counters.clear()
        passed = self._run_leashed(test, counters.build).passed
        return counters.executed() if passed else None

    @property
    def _times_file(self):
        return self.scratch / "times.json"

    def _read_times(self):
        return json.loads(self._times_file.read_text(encoding="utf-8")) if self._times_file.exists() else {}

    def _state(self, test, build=None):
        """What the result depends on: the program, its arguments and the built libraries."""
        program = shutil.which(test.command[0])
        parts = [*test.command, digest(Path(program)), self.libraries(build)]
        return hashlib.sha256("\n".join(parts).encode()).hexdigest()[:16]

    def libraries(self, build=None):
        """Changes when the code of a library does."""
        files = sorted(((build or self.build) / "lib").glob("lib*.so.*.*.*"))
        return " ".join(map(digest, files))

    def _measured(self, test):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        started = time.monotonic()
        limit = 2 * int(self.slow) + 5
        verdict = self._run_leashed(test, self.build, 20 * limit, limit)
        seconds = time.monotonic() - started
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        why = None
        if not verdict.passed:
            why = f"{verdict.how} with nothing broken"
            (self.scratch / f"{test.name}.unbroken.log").write_text(verdict.output, encoding="utf-8")
        cpu_seconds = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
        return {"why": why, "seconds": round(seconds, 3), "cpu_seconds": round(cpu_seconds, 3)}

    def _unusable(self, test):
        if test.disabled:
            return "disabled"
        if self.excluded and self.excluded.search(test.name):
            return "excluded"
        if len(test.needs) > MOST_NEEDED:
            return "looks at what all the others wrote"
        if not test.command or not (shutil.which(test.command[0]) or Path(test.command[0]).is_file()):
            return "not built"
        return None

    # --- With a mutant ---

    def order_for(self, mutant):
        """Those that reach it, the likely killers first: those that killed mutants of the file, those of its name, then
        the quick ones and those that often kill in its folder."""
        path = Path(mutant.path)
        here = self.kills_of_file.get(mutant.path, Counter())
        near = self.kills_of_folder.get(path.parent, Counter())
        reaching = self.reach.tests_of(mutant.path, mutant.line)
        tests = [t for t in self.tests if self._may_notice(t, path, reaching)]
        return sorted(tests, key=lambda t: (-here[t.name], not t.name.startswith(f"tst_{path.stem}"),
                                            t.cpu_seconds / (1 + near[t.name])))  # fmt: skip

    def _may_notice(self, test, path, reaching):
        if test.command[0] == self.compiler:
            return path.suffix == ".h"
        return reaching is None or test.name in reaching

    def first_failure(self, mutant, quick, without=(), only=None):
        """(test, verdict) of the first test that fails, or None if all pass."""
        waiting = [t for t in self.order_for(mutant) if t.name not in without and (only is None or t.name in only)]
        if quick:
            waiting = [t for t in waiting if t.cpu_seconds <= QUICK]
        done, running = set(), []
        try:
            while waiting or running:
                while waiting and len(running) < self.jobs:
                    test = waiting.pop(0)
                    if test.name in done:
                        continue
                    for needed in prerequisites(test, self.tests):
                        if needed.name not in done:
                            verdict = self._run_leashed(needed)
                            done.add(needed.name)
                            if not verdict.passed:
                                return self._killed(mutant.path, needed, verdict)
                    done.add(test.name)
                    running.append(self._start(test))
                for one in list(running):
                    verdict = one.poll()
                    if verdict is None:
                        continue
                    running.remove(one)
                    if not verdict.passed:
                        return self._killed(mutant.path, one.test, verdict)
                if running:
                    time.sleep(0.003)
            return None
        finally:
            for one in running:
                one.end()

    def passes(self, name):
        return self._run_leashed(next(t for t in self.tests if t.name == name)).passed

    def failing_tests(self):
        """The names of all that fail now."""
        return {t.name for t in self.tests if not self._run_leashed(t).passed}

    def remember(self, path, name):
        self.kills_of_file.setdefault(path, Counter())[name] += 1
        self.kills_of_folder.setdefault(Path(path).parent, Counter())[name] += 1

    def _killed(self, path, test, verdict):
        self.remember(path, test.name)
        return test, verdict

    def _leash(self, test):
        """By processor time, which does not depend on the load; the wall clock only ends tests that wait forever."""
        return 60 + 15 * test.seconds, int(3 + 5 * test.cpu_seconds)

    def _start(self, test):
        return Running(test, self.build, self.scratch, *self._leash(test))

    def _run_leashed(self, test, build=None, *leash):
        running = Running(test, build or self.build, self.scratch, *(leash or self._leash(test)))
        try:
            while (verdict := running.poll()) is None:
                time.sleep(0.005)
            return verdict
        except BaseException:
            running.end()
            raise
