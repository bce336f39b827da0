#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints the figures of the benchmark beside the targets, and checks or records them.

scripts/bench.sh runs the programs and passes their output:

  --timed FILE         JSON of Google Benchmark, with repetitions
  --instructions DIR   a folder of callgrind's files
  --memory FILE        the lines of tunerproperties_bench_memory
  --processes FILE     JSON of processes.py
  --allocator NAME     with --without FILE... and --with FILE..., JSON of Google Benchmark of alternating runs without
                       and with that allocator

All figures are kept in --results, so that a table also shows those of an earlier run. The targets are in targets.json
and nowhere else; a row's three numbers are for times at 1,000 and 10,000 nodes, and for instructions at 1,000. A process
without a reference has limits for the figure itself.
"""

import argparse
import json
import math
import pathlib
import statistics
import sys

HERE = pathlib.Path(__file__).resolve().parent
TARGETS = json.loads((HERE / "targets.json").read_text(encoding="utf-8"))
BASELINE = HERE / "baseline.json"
TOLERANCE = 1.05

READERS = ("XML read", "XML file read", "XML text read", "tagged read", "representation read", "snapshot read")
PEERS = ("QDomDocument", "pugixml", "C++/Tree", "protobuf")


def split(key):
    """'C++/Tree read/tree/1000' -> operation, shape, nodes."""
    operation, shape, nodes = key.rsplit("/", 2)
    return operation, shape, int(nodes)


def is_peer(operation):
    return operation.startswith(PEERS)


# Reading what the programs have left


def read_timed(*paths):
    """Medians by key, in microseconds: of the processor's time, and of the clock for what waits for files."""
    times = {}
    for path in paths:
        for run in json.loads(path.read_text(encoding="utf-8"))["benchmarks"]:
            if run["run_type"] == "iteration":
                time = "real_time" if run["run_name"].startswith("XML file/") else "cpu_time"
                times.setdefault(run["run_name"], []).append(run[time])
    if not times:
        sys.exit(f"{paths[0]} holds no times")
    return {name: statistics.median(measured) for name, measured in times.items()}


def read_instructions(folder):
    totals = {}
    for path in folder.iterdir():
        name = total = None
        with path.open(encoding="utf-8") as lines:
            for line in lines:
                if line.startswith("desc: Trigger: Client Request: "):
                    name = line.split(": ", 3)[3].strip()
                elif line.startswith("totals: "):
                    total = int(line.split()[1])
        if name and total:
            totals[name] = total
    if not totals:
        sys.exit(f"{folder} holds nothing of callgrind's")
    return totals


def read_memory(path):
    counts = {}
    for line in path.read_text(encoding="utf-8").splitlines():
        count = json.loads(line)
        counts[count.pop("name")] = count
    return counts


def read_processes(path):
    return json.loads(path.read_text(encoding="utf-8"))


# Figures


def ratio(section, operation, reference, shape, nodes):
    """None if one of them was not measured."""
    measured = section.get(f"{operation}/{shape}/{nodes}")
    base = section.get(f"{reference}/{shape}/{nodes}")
    return measured / base if measured is not None and base else None


def heap_figure(figure, count, nodes):
    return {
        "bytes": lambda: count["bytes"] / nodes,
        "blocks": lambda: count["blocks"] / nodes,
        "allocations": lambda: count["allocations"] / count["blocks"],
        "peak": lambda: count["peak"] / count["bytes"],
        "excess": lambda: (count["peak"] - count["bytes"]) / count["document"],
    }[figure]()


FIGURES = {
    "bytes": "bytes per node kept",
    "blocks": "blocks per node kept",
    "allocations": "allocations per block kept",
    "peak": "peak per byte kept",
    "excess": "peak beyond bytes kept, per byte of the document",
}


def mark(pairs):
    """'goal', 'reached' or 'missed' for the worst of (figure, reach, goal); '-' if nothing was measured."""
    pairs = [pair for pair in pairs if pair[0] is not None]
    if not pairs:
        return "-"
    if any(figure > reach for figure, reach, _ in pairs if reach is not None):
        return "missed"
    goals = [(figure, goal) for figure, _, goal in pairs if goal is not None]
    return "goal" if goals and all(figure <= goal for figure, goal in goals) else "reached"


# Printing


def number(value, digits=2):
    return "-" if value is None else f"{value:,.{digits}f}"


def limit(value):
    """With a third digit if it has one."""
    return number(value, 2 if value is None or round(value, 2) == value else 3)


def triple(values):
    text = f"{limit(values[0])} / {limit(values[1])}"
    return text if values[2] is None else f"{text} ({limit(values[2])})"


def print_table(title, head, rows):
    rows = [[str(cell) for cell in row] for row in rows]
    widths = [max(len(row[i]) for row in [head] + rows) for i in range(len(head))]
    print(f"\n{title}\n")
    for row in (head, ["-" * width for width in widths], *rows):
        cells = [cell.ljust(width) if i < 2 else cell.rjust(width) for i, (cell, width) in enumerate(zip(row, widths))]
        print("  ".join(cells).rstrip())


def times_table(results, shape):
    timed, instructions = results.get("timed", {}), results.get("instructions", {})
    rows = []
    for row in TARGETS["times"] + TARGETS["validation"]:
        names = row["operation"], row["reference"], shape
        figures = [ratio(timed, *names, 1000), ratio(timed, *names, 10000), ratio(instructions, *names, 1000)]
        worst = mark(zip(figures, row["reach"], row["goal"]))
        rows.append([*names[:2], *map(number, figures), triple(row["reach"]), triple(row["goal"]), worst])
    for row in TARGETS["peers"]:
        names = row["operation"], row["peer"], shape
        figures = [ratio(timed, *names, 1000), ratio(timed, *names, 10000)]
        limits = row["reach"], row.get("goal")
        rows.append([*names[:2], *map(number, figures), number(ratio(instructions, *names, 1000)),
                     limit(limits[0]), limit(limits[1]), mark((figure, *limits) for figure in figures)])
    head = ["operation", "reference or peer = 1", "1k", "10k", "instr.", "reach 1k / 10k (instr.)",
            "goal 1k / 10k (instr.)", ""]
    print_table(f"Ratios ({shape}; times are medians)", head, rows)


def instructions_table(results, nodes):
    instructions = results["instructions"]
    operations = sorted({split(key)[0] for key in instructions}, key=lambda name: (is_peer(name), name))
    limits = {row["operation"]: row["reach"] for row in TARGETS["instructions"]}
    rows = []
    for operation in operations:
        totals = [instructions.get(f"{operation}/{shape}/{nodes}") for shape in ("tree", "flat")]
        if operation in limits:
            rows.append([operation, f"in all; at most {limits[operation]}", *(number(total, 0) for total in totals)])
        else:
            rows.append([operation, "per node", *(number(total and total / nodes, 0) for total in totals)])
    print_table(f"Instructions at {nodes:,} nodes", ["operation", "", "tree", "flat"], rows)


def growth_rows(results):
    """(operation, exponent of tree, of flat): 1 is linear."""
    instructions = results.get("instructions", {})
    for operation in sorted({split(key)[0] for key in instructions}):
        exponents = []
        for shape in ("tree", "flat"):
            growth = ratio({f"a/{shape}/0": instructions.get(f"{operation}/{shape}/10000"),
                            f"b/{shape}/0": instructions.get(f"{operation}/{shape}/1000")}, "a", "b", shape, 0)
            exponents.append(growth and math.log10(growth))
        is_constant = any(row["operation"] == operation for row in TARGETS["instructions"])
        if None not in exponents and not is_constant and not is_peer(operation):
            yield operation, exponents


def growth_table(results):
    reach, goal = TARGETS["growth"]["reach"], TARGETS["growth"]["goal"]
    references = references_of()
    rows = [[operation, "reference" if operation in references else "", *(number(value, 3) for value in exponents),
             "" if operation in references else mark((value, reach, goal) for value in exponents)]
            for operation, exponents in growth_rows(results)]
    if rows:
        print_table(f"Growth of instructions from 1,000 to 10,000 nodes, as exponent (reach {reach}, goal {goal})",
                    ["operation", "", "tree", "flat", ""], rows)


def references_of():
    return {row["reference"] for row in TARGETS["times"]}


def heap_rows(results, nodes):
    """(text, figures by reader, reach, goal) of trees; a target of one reader leaves out the others."""
    memory = results.get("memory", {})
    for row in TARGETS["heap"]:
        figures = []
        for reader in READERS:
            count = memory.get(f"{reader}/tree/{nodes}")
            counts = count and row.get("operation", reader) == reader
            figures.append(heap_figure(row["figure"], count, nodes) if counts else None)
        yield FIGURES[row["figure"]], figures, row["reach"], row["goal"]
    for row in TARGETS["heap_of_peers"]:
        peer = memory.get(f"{row['peer']}/tree/{nodes}")
        counts = [memory.get(f"{reader}/tree/{nodes}") for reader in READERS]
        yield (f"bytes kept, {row['peer'].removesuffix(' read')} = 1",
               [count["bytes"] / peer["bytes"] if count and peer else None for count in counts], row["reach"], None)


def heap_table(results, nodes):
    rows = [[text, "", *map(number, figures), limit(reach), limit(goal),
             mark((figure, reach, goal) for figure in figures)]
            for text, figures, reach, goal in heap_rows(results, nodes)]
    print_table(f"Heap after and while reading, {nodes:,} nodes", ["figure", "", *READERS, "reach", "goal", ""], rows)
    rows = []
    for key, count in sorted(results.get("memory", {}).items()):
        operation, shape, size = split(key)
        if size == nodes and operation not in READERS and shape == "tree":
            rows.append([operation, "", *(number(heap_figure(figure, count, nodes)) for figure in FIGURES)])
    print_table("The same of others", ["reader", "", "bytes", "blocks", "allocations", "peak", "excess"], rows)


def processes_table(results):
    """Without a figure for what was not measured, or what the tool refused to do."""
    rows = []
    for row in TARGETS["processes"]:
        measured = results.get("processes", {}).get(row["process"], {})
        figure, reference = measured.get("figure"), measured.get("reference")
        limited = figure
        if "reference" in row:
            limited = figure / reference if figure is not None and reference else None
        verdict = mark([(limited, row["reach"], row["goal"])])
        rows.append([row["process"], row.get("reference", ""), row["unit"], number(figure, 1), number(reference, 1),
                     number(limited), limit(row["reach"]), limit(row["goal"]),
                     "refused" if measured.get("refused") else verdict])
    head = ["process", "reference = 1", "", "figure", "reference", "ratio, or figure", "reach", "goal", ""]
    print_table("Whole processes", head, rows)


def allocator_table(results, name, shape):
    """The library's operations first."""
    without, replaced = (results["allocators"][name][part] for part in ("without", "with"))
    operations, references = {split(key)[0] for key in without}, references_of()
    rows = []
    for operation in sorted(operations, key=lambda name: (name in references, name)):
        cells = []
        for nodes in (1000, 10000):
            key = f"{operation}/{shape}/{nodes}"
            figures = {f"with/{key}": replaced.get(key), f"without/{key}": without.get(key)}
            cells += [*(number(value, 0) for value in reversed(figures.values())),
                      number(ratio(figures, f"with/{operation}", f"without/{operation}", shape, nodes))]
        rows.append([operation, "reference" if operation in references else "", *cells])
    head = ["operation", ""] + [cell for size in ("1k", "10k") for cell in (size, f"{size}, {name}", "ratio")]
    print_table(f"Times in microseconds, and with {name} ({shape}; medians)", head, rows)


# Checking and recording


def recorded(results):
    """What a baseline holds: figures at 1,000 nodes of the library and the references, per node where they grow."""
    constant = [row["operation"] for row in TARGETS["instructions"]]
    figures = {}
    for key, total in results.get("instructions", {}).items():
        operation, shape, nodes = split(key)
        if nodes == 1000 and not is_peer(operation):
            value = total if operation in constant else round(total / nodes, 1)
            figures[f"instructions: {operation}/{shape}"] = value
    for key, count in results.get("memory", {}).items():
        operation, shape, nodes = split(key)
        if nodes == 1000 and not is_peer(operation):
            for figure in FIGURES:
                figures[f"{FIGURES[figure]}: {operation}/{shape}"] = round(heap_figure(figure, count, nodes), 3)
    return dict(sorted(figures.items()))


def above_reach(results):
    instructions = results.get("instructions", {})
    for row in TARGETS["times"] + TARGETS["validation"]:
        figure, reach = ratio(instructions, row["operation"], row["reference"], "tree", 1000), row["reach"][2]
        if reach is None:
            continue
        if figure is None:
            yield f"{row['operation']}: instructions were not measured"
        elif figure > reach:
            yield f"{row['operation']}: {figure:.3f} of the instructions of '{row['reference']}', reach is {reach}"
    for row in TARGETS["instructions"]:
        for shape in ("tree", "flat"):
            figure = instructions.get(f"{row['operation']}/{shape}/1000")
            if figure is None or figure > row["reach"]:
                yield f"{row['operation']}/{shape}: {figure} instructions, reach is {row['reach']}"
    for text, figures, reach, _ in heap_rows(results, 1000):
        for reader, figure in zip(READERS, figures):
            if figure is not None and figure > reach:
                yield f"{reader}: {text} {figure:.3f}, reach is {reach}"
    references = references_of()
    for operation, exponents in growth_rows(results):
        if operation not in references and max(exponents) > TARGETS["growth"]["reach"]:
            yield f"{operation}: grows with exponent {max(exponents):.3f}, reach is {TARGETS['growth']['reach']}"


def above_baseline(results):
    baseline = json.loads(BASELINE.read_text(encoding="utf-8"))
    now = recorded(results)
    for name in sorted(baseline.keys() - now.keys()):
        yield f"{name}: recorded, but not measured"
    for name in sorted(now.keys() - baseline.keys()):
        yield f"{name}: measured, but not recorded in {BASELINE.name}"
    for name in sorted(now.keys() & baseline.keys()):
        if now[name] > baseline[name] * TOLERANCE:
            yield f"{name}: {now[name]:,} instead of {baseline[name]:,}, which is more than 5 % above"


def check(results):
    failures = [*above_baseline(results), *above_reach(results)]
    print()
    for failure in failures:
        print(f"FAILED  {failure}")
    if failures:
        sys.exit(1)
    print("No figure is above its reach, or more than 5 % above the recorded one.")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--results", type=pathlib.Path, required=True)
    parser.add_argument("--timed", type=pathlib.Path)
    parser.add_argument("--instructions", type=pathlib.Path)
    parser.add_argument("--memory", type=pathlib.Path)
    parser.add_argument("--processes", type=pathlib.Path)
    parser.add_argument("--allocator")
    parser.add_argument("--without", type=pathlib.Path, nargs="+", default=[])
    parser.add_argument("--with", type=pathlib.Path, nargs="+", default=[], dest="replaced")
    parser.add_argument("--shape", default="tree", choices=("tree", "flat"))
    parser.add_argument("--check", action="store_true", help="fail if a figure is too high")
    parser.add_argument("--record", action="store_true", help="rewrite baseline.json")
    options = parser.parse_args()

    results = json.loads(options.results.read_text(encoding="utf-8")) if options.results.exists() else {}
    for section, read in (("timed", read_timed), ("instructions", read_instructions), ("memory", read_memory),
                          ("processes", read_processes)):
        source = getattr(options, section)
        if source:
            results[section] = read(source)
    if options.allocator:
        results.setdefault("allocators", {})[options.allocator] = {"without": read_timed(*options.without),
                                                                   "with": read_timed(*options.replaced)}
    options.results.write_text(json.dumps(results, indent=1, sort_keys=True) + "\n", encoding="utf-8")

    if options.timed or options.instructions:
        times_table(results, options.shape)
    if options.instructions:
        instructions_table(results, 1000)
        growth_table(results)
    if options.memory:
        heap_table(results, 1000)
    if options.processes:
        processes_table(results)
    if options.allocator:
        allocator_table(results, options.allocator, options.shape)
    if options.record:
        BASELINE.write_text(json.dumps(recorded(results), indent=1) + "\n", encoding="utf-8")
        print(f"\nRecorded in {BASELINE.relative_to(HERE.parent)}.")
    if options.check:
        check(results)


if __name__ == "__main__":
    main()
