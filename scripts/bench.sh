#!/usr/bin/env bash
#
# bench.sh [FORM] [OPTION...] measures the library beside its references and peers, and prints the figures beside those
# that it should reach. FORM is one of
#
#   --timed          times at 1,000 and 10,000 nodes, medians of interleaved repetitions (the default)
#   --instructions   instructions at 1,000 nodes, counted by callgrind; with --growth at 10,000 as well
#   --memory         the heap at 1,000 nodes
#   --check          the last two; fails if a figure is above its reach, or more than 5 % above the recorded one
#   --record         the last two, and records them in bench/baseline.json
#
# and OPTION
#
#   --growth         see above; for --check and --record, too
#   --shape SHAPE    tree (the default) or flat: the documents whose times are taken
#   --repetitions N  of each time, by default 9
#
# Times fail nothing. All figures are kept in build/bench/results.json.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build=${BENCH_BUILD:-build/bench}
raw=$build/raw
form=--timed shape=tree repetitions=9 sizes=1000

while (($# > 0)); do
    case $1 in
    --timed | --instructions | --memory | --check | --record) form=$1 ;;
    --growth) sizes=1000,10000 ;;
    --shape) shape=${2:-} && shift ;;
    --repetitions) repetitions=${2:-} && shift ;;
    *) die "unknown argument '$1'; the first lines of the script list the accepted ones" ;;
    esac
    shift
done
[[ $shape == tree || $shape == flat ]] || die "--shape must be tree or flat, not '$shape'"
[[ $repetitions =~ ^[1-9][0-9]*$ ]] || die "--repetitions must be a number from 1, not '$repetitions'"

table() {
    python3 bench/table.py --results "$build/results.json" "$@"
}

take_times() {
    heading "Taking times, $repetitions repetitions"
    quietly "$raw/timed.log" "$build/bin/tunerproperties_bench" --sizes 1000,10000 --shape "$shape" \
        --benchmark_enable_random_interleaving=true \
        --benchmark_repetitions="$repetitions" --benchmark_min_time=0.05 \
        --benchmark_out="$raw/timed.json" --benchmark_out_format=json
}

count_instructions() {
    heading "Counting instructions at $sizes nodes"
    command -v valgrind >/dev/null || die "valgrind is missing; install it first"
    rm -rf "$raw/callgrind"
    mkdir -p "$raw/callgrind"
    quietly "$raw/callgrind.log" valgrind --tool=callgrind --instr-atstart=no \
        --callgrind-out-file="$raw/callgrind/%p" "$build/bin/tunerproperties_bench" --instructions "$sizes"
}

count_memory() {
    heading "Counting what is on the heap"
    "$build/bin/tunerproperties_bench_memory" --memory 1000 >"$raw/memory.jsonl"
}

scripts/install-dependencies.sh build bench

heading "Building the benchmark"
mkdir -p "$raw"
quietly "$raw/configure.log" cmake --preset bench -B "$build"
quietly "$raw/build.log" cmake --build "$build" --target tunerproperties_bench tunerproperties_bench_memory
sed -n 's/^-- Benchmark: //p' "$raw/configure.log"

case $form in
--timed)
    take_times
    table --timed "$raw/timed.json" --shape "$shape"
    ;;
--instructions)
    count_instructions
    table --instructions "$raw/callgrind"
    ;;
--memory)
    count_memory
    table --memory "$raw/memory.jsonl"
    ;;
--check | --record)
    count_instructions
    count_memory
    table --instructions "$raw/callgrind" --memory "$raw/memory.jsonl" "$form"
    ;;
esac
