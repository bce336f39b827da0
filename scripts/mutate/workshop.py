"""A copy of the tree, built, in which one file at a time is broken and only what it reaches is built again."""

import fcntl
import filecmp
import json
import os
import re
import shlex
import shutil
import subprocess
from pathlib import Path

# Neither says anything about what a program does, and the dependencies are known.
DROPPED_FLAGS = re.compile(r"-W(?!l,).*|-g\d?|-MD|-MMD")
FLAGS_WITH_FILE = ("-o", "-c", "-MT", "-MF", "-MQ")
# Sources of one library that are compiled in one go must not share these names.
REPEATED_NAMES = (
    (re.compile(r"\bnamespace row\b"), "namespace row_{stem}"),
    (re.compile(r"\busing row ="), "using row_{stem} ="),
    (re.compile(r"(?<![\w.>])row::"), "row_{stem}::"),
    (re.compile(r"\bTags(?=\n|>;)"), "Tags_{stem}"),
    (re.compile(r"(?<![\w.>:])behavior\b"), "behavior_{stem}"),
    (re.compile(r"\bpieceSize\b"), "pieceSize_{stem}"),
    (re.compile(r"\bunitStatics\b"), "unitStatics_{stem}"),
    (re.compile(r"\bTable members\b"), "Table members_{stem}"),
    (re.compile(r"\bdescribe<members\b"), "describe<members_{stem}"),
    (re.compile(r"(?<![\w.>])members\.(?=size\)|inBitOrder)"), "members_{stem}."),
)


class BuildFailure(Exception):
    pass


def run(command, cwd, log=None):
    result = subprocess.run(command, cwd=cwd, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                            shell=isinstance(command, str), text=True, errors="replace", stdin=subprocess.DEVNULL)  # fmt: skip
    if log:
        log.write_text(result.stdout, encoding="utf-8")
    return result


def without_archives(link, archives):
    """A command that links, with the objects of each static library instead of it, so that they can be replaced. As from
    the library, only those are taken that are needed; the linker has to be lld.

    `archives` are lists of objects by the names of the libraries."""
    for archive, objects in archives.items():
        word = rf"(?<=\s){re.escape(archive)}(?=\s|$)"
        library = f"-Wl,--start-lib {' '.join(objects)} -Wl,--end-lib"
        link = re.sub(word, "", re.sub(word, lambda _, text=library: text, link, count=1))
    return link


class Object:
    """An object file and how it is compiled."""

    def __init__(self, entry, target, output):
        self.source = Path(entry["file"])
        self.target = target
        self.output = output  # relative to the build folder
        words = shlex.split(entry["command"])
        self.compiler = words[0]
        self.flags = []
        skip = False
        for word in words[1:]:
            if skip or word in FLAGS_WITH_FILE:
                skip = not skip
            elif not DROPPED_FLAGS.fullmatch(word):
                self.flags.append(word)
        self.flags += ["-w", "-iquote", str(self.source.parent)]


class Binary:
    """A library or program and how it is linked."""

    def __init__(self, target, output, link):
        self.target = target
        self.output = output
        self.link = link


class Workshop:
    def __init__(self, project, folder, jobs, say):
        self.project = project
        self.folder = folder
        self.tree = folder / "tree"
        self.build = folder / "build"
        self.counting_build = folder / "counting-build"
        self.scratch = folder / "scratch"
        self.pristine = folder / "pristine"
        self.jobs = jobs
        self.say = say
        self.sources = []
        self._broken = None  # (file, what it held)
        self._linked = set()
        self._compiled = {}

    # --- The copy ---

    def copy_tree(self, as_it_is):
        self._lock = (self.folder / "lock").open("w", encoding="utf-8")
        try:
            fcntl.flock(self._lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            raise BuildFailure(f"another run works in {self.folder}") from None
        self._put_right()
        if not (as_it_is and self.tree.is_dir()):
            self._copy_project()
        self.find_sources()

    def use_project(self):
        self.tree = self.project
        self.find_sources()

    def find_sources(self):
        src = self.tree / "src"
        self.sources = sorted(str(p.relative_to(self.tree)) for p in src.rglob("*") if p.suffix in (".h", ".cpp"))

    def _put_right(self):
        """A run that was killed may have left a mutant."""
        saved = self.folder / "broken.json"
        if saved.exists():
            for name, text in json.loads(saved.read_text(encoding="utf-8")).items():
                (self.tree / name).write_text(text, encoding="utf-8")
            saved.unlink()
        for good in self.pristine.rglob("*") if self.pristine.is_dir() else ():
            if good.is_file() and not good.is_symlink():
                self._replace(good, self.build / good.relative_to(self.pristine))

    def _copy_project(self):
        listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                                cwd=self.project, check=True, stdout=subprocess.PIPE).stdout  # fmt: skip
        names = {name for name in os.fsdecode(listed).split("\0") if name and (self.project / name).is_file()}
        self.tree.mkdir(parents=True, exist_ok=True)
        for name in names:
            copy = self.tree / name
            if not copy.is_file() or not filecmp.cmp(self.project / name, copy, shallow=False):
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(self.project / name, copy)  # with a new time, so that it is built again
        for path in list(self.tree.rglob("*")):
            if path.is_file() and str(path.relative_to(self.tree)) not in names:
                path.unlink()

    # --- Building it whole ---

    def build_tree(self, as_it_is):
        if not (as_it_is and self.pristine.is_dir()):
            shutil.rmtree(self.scratch, ignore_errors=True)
            self._build_all()
        self.scratch.mkdir(parents=True, exist_ok=True)
        self._read_build()

    def _build_all(self):
        shutil.rmtree(self.pristine, ignore_errors=True)
        self._build_in(self.build, "-O0")

    def build_counting(self):
        """Builds it once more, so that it counts what is executed."""
        self._build_in(self.counting_build, "-O0 --coverage")

    def _build_in(self, build, flags):
        # Tests need not be linked again when a library changes; symbols would only slow everything down.
        command = ["cmake", "-S", str(self.tree), "-B", str(build), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                   f"-DCMAKE_CXX_FLAGS_DEBUG={flags}", "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON",
                   "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON"]  # fmt: skip
        command += [f"-DCMAKE_{kind}_LINKER_FLAGS=-fuse-ld=lld" for kind in ("SHARED", "MODULE", "EXE")]
        configured, built = (self.folder / f"{step}-{build.name}.log" for step in ("configure", "make"))
        if run(command, self.folder, configured).returncode:
            raise BuildFailure(f"cannot configure; see {configured}")
        if run(["ninja", f"-j{self.jobs}", "-k0"], build, built).returncode:
            self.say(f"Not everything is built; see {built}. What is missing cannot kill.")

    def _read_build(self):
        self.objects = []
        for entry in json.loads((self.build / "compile_commands.json").read_text(encoding="utf-8")):
            output = shlex.split(entry["command"])
            output = output[output.index("-o") + 1]
            target = re.search(r"CMakeFiles/([^/]+)\.dir/", output).group(1)
            self.objects.append(Object(entry, target, output))
        self.depends = self._dependencies()
        self.binaries = {}
        own = str(self.tree / "src") + "/"
        reached = {
            o.output
            for o in self.objects
            if str(o.source).startswith(own) or any(d.startswith(own) for d in self.depends.get(o.output, ()))
        }
        archives = {archive: objects for archive, objects in self._archives().items() if reached.intersection(objects)}
        for target, outputs in sorted(self._outputs().items()):
            for output in outputs:
                commands = run(["ninja", "-t", "commands", output], self.build).stdout.splitlines()
                links = [without_archives(line, archives) for line in commands if f" -o {output} " in f"{line} "]
                # Test programs may be linked from a library's objects.
                if links and reached.intersection(links[-1].split()) and (self.build / output).is_file():
                    self.binaries[target] = Binary(target, output, links[-1])
        if not self.binaries:
            raise BuildFailure(f"no library is built; see {self.folder}/make-{self.build.name}.log")
        for binary in self.binaries.values():
            copy = self.pristine / binary.output
            if copy.exists():
                continue
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(self.build / binary.output, copy)
        self._make_headers()
        # A mutant that cannot be linked does not count, so nothing but the mutant may be the reason.
        for target in self.binaries:
            if not self._link(target, {}):
                raise BuildFailure(f"{target} cannot be linked by: {self.binaries[target].link}")
        self.restore()

    def _outputs(self):
        """The files that ninja links for each target."""
        found = {}
        text = (self.build / "build.ninja").read_text(encoding="utf-8")
        rule = r"^build ([^:|\n]+?)(?: \|[^:\n]*)?: CXX_(?:SHARED_LIBRARY|MODULE_LIBRARY|EXECUTABLE)_LINKER__(\w+)_Debug "
        for match in re.finditer(rule, text, re.MULTILINE):
            found.setdefault(match.group(2), []).append(match.group(1).split()[0])
        return found

    def _archives(self):
        """The objects of each static library."""
        text = (self.build / "build.ninja").read_text(encoding="utf-8")
        rule = r"^build (\S+\.a): CXX_STATIC_LIBRARY_LINKER__\w+_Debug ([^|\n]+)"
        return {match[1]: match[2].split() for match in re.finditer(rule, text, re.MULTILINE)}

    def _dependencies(self):
        depends, current = {}, None
        for line in run(["ninja", "-t", "deps"], self.build).stdout.splitlines():
            if line and not line.startswith(" "):
                current = depends.setdefault(line.split(":")[0], set())
            elif line.strip() and current is not None:
                path = line.strip()
                current.add(path if path.startswith("/") else os.path.normpath(self.build / path))
        return depends

    # --- Headers compiled beforehand ---

    def _make_headers(self):
        """One per target: all that its sources include from outside src/."""
        self._headers = {}
        for target in self.binaries:
            objects = [o for o in self.objects if o.target == target]
            if not objects:
                continue
            wanted = set()
            texts = [o.source for o in objects]
            texts += [Path(d) for o in objects for d in self.depends.get(o.output, ()) if f"{self.tree}/src/" in d]
            for path in set(texts):
                if path.is_file():
                    wanted.update(re.findall(r"^#include (<[^>]+>)", path.read_text(encoding="utf-8"), re.MULTILINE))
            header = self.scratch / f"{target}.h"
            text = "".join(f"#include {name}\n" for name in sorted(wanted))
            compiled = Path(f"{header}.gch")
            if not (compiled.exists() and header.read_text(encoding="utf-8") == text):
                header.write_text(text, encoding="utf-8")
                one = objects[0]
                flags = [f for f in one.flags if f not in ("-iquote", str(one.source.parent))]
                run([one.compiler, *flags, "-x", "c++-header", str(header), "-o", str(compiled)], self.build)
            self._headers[target] = ["-include", str(header)] if compiled.exists() else []

    def _compile(self, one, source, output, optimised=False):
        flags = [flag for flag in one.flags if not (optimised and re.fullmatch(r"-O.?", flag))]
        flags += ["-O2"] if optimised else self._headers.get(one.target, [])
        return run([one.compiler, *flags, "-frandom-seed=0", "-c", str(source), "-o", str(output)], self.build)

    # --- A library from one compilation, for what is broken in its headers ---

    def _united(self, target):
        """A source that holds all of the target's, in the order in which they are linked."""
        source = self.scratch / f"{target}.united.cpp"
        if not source.exists():
            parts = []
            for one in self._in_link_order(target):
                text = one.source.read_text(encoding="utf-8")
                for pattern, replacement in REPEATED_NAMES:
                    text = pattern.sub(replacement.format(stem=one.source.stem), text)
                parts.append(text)
            source.write_text("\n".join(parts), encoding="utf-8")
        return source

    def _in_link_order(self, target):
        words = self.binaries[target].link.split()
        return sorted((o for o in self.objects if o.output in words), key=lambda o: words.index(o.output))

    def _units(self, path, apart=False):
        """What to compile again for a changed file: (object, source, the objects that it replaces, the target that is
        linked with it). An object that several targets are linked with is listed for each."""
        changed = str(self.tree / path)
        units = []
        for target in self.binaries:
            objects = self._in_link_order(target)
            reached = [o for o in objects if str(o.source) == changed or changed in self.depends.get(o.output, ())]
            if len(reached) > 2 and target in self._united_targets and not apart:
                units.append((objects[0], self._united(target), objects, target))
            else:
                units += [(one, one.source, [one], target) for one in reached]
        return units

    def is_united(self, path):
        return any(len(replaced_objects) > 1 for _, _, replaced_objects, _ in self._units(path))

    _united_targets = ()

    def unite(self, failing_tests, state):
        """Finds out which libraries can be made in one compilation, and returns the names of the tests that then fail."""
        cache = self.folder / "united-libraries.json"
        known = json.loads(cache.read_text(encoding="utf-8")) if cache.exists() else {}
        if known.get("state") != state:
            known = {"state": state, **self._try_uniting(failing_tests)}
            cache.write_text(json.dumps(known), encoding="utf-8")
        self._united_targets = set(known["united"])
        return set(known["failing"])

    def _try_uniting(self, failing_tests):
        united, failing = [], set()
        for target in self.binaries:
            objects = self._in_link_order(target)
            if len(objects) < 3 or not self.binaries[target].output.startswith("lib/"):
                continue
            output = self.scratch / "united.o"
            made = self._compile(objects[0], self._united(target), output)
            if made.returncode:
                (self.folder / f"united-{target}.log").write_text(made.stdout, encoding="utf-8")
                self.say(f"{target} is compiled source by source: see {self.folder}/united-{target}.log")
            elif self._link(target, {o.output: output for o in objects}):
                united.append(target)
                failing |= failing_tests()
            self.restore()
        return {"united": united, "failing": sorted(failing)}

    def _unbroken_code(self, unit, optimised):
        key = (unit[0].output, unit[1], optimised)
        if key not in self._compiled:
            output = self.scratch / "unbroken.o"
            made = self._compile(unit[0], unit[1], output, optimised)
            self._compiled[key] = output.read_bytes() if made.returncode == 0 else b""
        return self._compiled[key]

    # --- One mutant ---

    def source(self, path):
        return (self.tree / path).read_text(encoding="utf-8")

    def build_mutant(self, mutant, apart=False):
        """Builds it in place: "not compiled", "same code" or "built"; restore() undoes it."""
        units = self._units(mutant.path, apart)
        before = [None if apart else self._unbroken_code(unit, False) for unit in units]
        self._break(mutant)
        made, replaced, same = {}, {}, True
        for number, (one, source, replaced_objects, target) in enumerate(units):
            output = made.get((one.output, source))
            if not output:
                output = made[one.output, source] = self.scratch / f"mutant-{number}.o"
                if self._compile(one, source, output).returncode:
                    return "not compiled"
            same = same and output.read_bytes() == before[number]
            for other in replaced_objects:
                replaced.setdefault(target, {})[other.output] = output
        if same:
            return "same code"
        if not all(self._link(target, objects) for target, objects in replaced.items()):
            return "not compiled"
        return "built"

    def _break(self, mutant):
        file = self.tree / mutant.path
        original = file.read_text(encoding="utf-8")
        self._broken = (file, original)
        (self.folder / "broken.json").write_text(json.dumps({mutant.path: original}), encoding="utf-8")
        self._write(file, mutant.applied_to(original))

    def same_when_optimised(self, mutant):
        """Whether the optimizer generates the same code for it."""
        units = self._units(mutant.path)
        before = [self._unbroken_code(unit, True) for unit in units]
        self._break(mutant)
        try:
            for number, (one, source, *_) in enumerate(units):
                output = self.scratch / "optimised.o"
                if self._compile(one, source, output, True).returncode or output.read_bytes() != before[number]:
                    return False
            return bool(units)
        finally:
            self.restore()

    def restore(self):
        if self._broken:
            self._write(*self._broken)
            self._broken = None
            (self.folder / "broken.json").unlink(missing_ok=True)
        for target in self._linked:
            binary = self.binaries[target]
            self._replace(self.pristine / binary.output, self.build / binary.output)
        self._linked = set()

    def _write(self, file, text):
        """With the old time, so that ninja has nothing to do if a test calls it."""
        status = file.stat()
        file.write_text(text, encoding="utf-8")
        os.utime(file, ns=(status.st_atime_ns, status.st_mtime_ns))

    def _replace(self, source, target):
        temporary = target.with_name(target.name + ".new")
        shutil.copy2(source, temporary)
        temporary.replace(target)

    def _link(self, target, objects):
        binary = self.binaries[target]
        output = self.scratch / "linked"
        command, used = binary.link, set()
        for old, new in objects.items():
            word = str(new) if new not in used else ""
            used.add(new)
            command = re.sub(rf"(?<=\s){re.escape(old)}(?=\s)", lambda _, w=word: shlex.quote(w) if w else "", command)
        command = command.replace(f" -o {binary.output} ", f" -o {shlex.quote(str(output))} ")
        if run(command, self.build).returncode:
            return False
        self._linked.add(target)
        self._replace(output, self.build / binary.output)
        return True
