"""Which functions each test reaches, so that a mutant meets the tests that can notice it and no others."""

import json
import subprocess
from collections import defaultdict
from pathlib import Path


class Reach:
    """Ranges of lines by source and test, measured once with a build that counts what is executed."""

    def __init__(self):
        self._ranges = defaultdict(lambda: defaultdict(list))  # path: test: [(first line, last line)]
        self._unknown = set()

    def add(self, test, ranges):
        """`ranges` is None if the test did not pass in that build: it may reach anything."""
        if ranges is None:
            self._unknown.add(test)
        for path, found in (ranges or {}).items():
            self._ranges[path][test] += found

    def tests_of(self, path, line):
        """The tests that execute a function with this line, or None if that says nothing: the line is in no function, or
        in one that only the compiler executes."""
        reaching = {
            test
            for test, ranges in self._ranges.get(path, {}).items()
            if any(first <= line <= last for first, last in ranges)
        }
        return reaching | self._unknown if reaching else None


class Counters:
    """The counters of a build with --coverage."""

    def __init__(self, build, tree):
        self.build = build
        self.tree = tree

    def clear(self):
        for file in self.build.rglob("*.gcda"):
            file.unlink()

    def executed(self):
        """The functions that were executed since clear(): {path below the tree: [(first line, last line)]}."""
        files = [str(file) for file in self.build.rglob("*.gcda")]
        found = defaultdict(set)
        if files:
            output = subprocess.run(["gcov", "--json-format", "--stdout", *files], cwd=self.build, check=True,
                                    stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout  # fmt: skip
            for line in output.splitlines():
                for file in json.loads(line)["files"] if line else ():
                    self._collect(file, found)
        return {path: sorted(ranges) for path, ranges in found.items()}

    def _collect(self, file, found):
        path = Path(self.build, file["file"])
        if not path.is_relative_to(self.tree / "src"):
            return
        ranges = {(f["start_line"], f["end_line"]) for f in file["functions"] if f["execution_count"]}
        if ranges:
            found[path.relative_to(self.tree).as_posix()] |= ranges
