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
#   --tool           whole processes of the command-line tool, beside xmllint and each other: time, instructions, and
#                    memory at the peak
#
# and OPTION
#
#   --growth         see above; for --check and --record, too
#   --shape SHAPE    tree (the default) or flat: the documents whose times are taken
#   --repetitions N  of each time, by default 9
#   --qt VERSION     with which Qt libraries and references are built: 5 (the default) or 6, which the recorded figures are
#                    not for
#   --allocator NAME take the times without and with mimalloc or jemalloc preloaded, in alternating runs that leave
#                    the peers out, and print the ratio; with glibc or none both runs are the same, and the ratio
#                    shows how much times vary
#
# Times fail nothing. All figures are kept in build/bench/results.json.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

qt=5
form=--timed shape=tree repetitions=9 sizes=1000 allocator=

while (($# > 0)); do
    case $1 in
    --timed | --instructions | --memory | --check | --record | --tool) form=$1 ;;
    --growth) sizes=1000,10000 ;;
    --shape) shape=${2:-} && shift ;;
    --repetitions) repetitions=${2:-} && shift ;;
    --qt) qt=${2:-} && shift ;;
    --allocator) allocator=${2:-nothing} && shift ;;
    *) die "unknown argument '$1'; the first lines of the script list the accepted ones" ;;
    esac
    (($# == 0)) || shift
done
[[ $shape == tree || $shape == flat ]] || die "--shape must be tree or flat, not '$shape'"
[[ $qt == [56] ]] || die "--qt must be 5 or 6, not '$qt'"
[[ $qt == 5 || $form != --check && $form != --record ]] || die "$form cannot be combined with --qt $qt"
build=${BENCH_BUILD:-build/bench}
((qt == 5)) || build+=-qt$qt
raw=$build/raw
[[ $repetitions =~ ^[1-9][0-9]*$ ]] || die "--repetitions must be a number from 1, not '$repetitions'"

table() {
    python3 bench/table.py --results "$build/results.json" "$@"
}

# take_times NAME REPETITIONS LIBRARY [OPTION...] leaves NAME.json. The library, if not empty, is preloaded.
take_times() {
    local name=$1 repetitions=$2 library=$3
    shift 3
    quietly "$raw/$name.log" env LD_PRELOAD="$library" \
        "$build/bin/tunerproperties_bench" --sizes 1000,10000 --shape "$shape" \
        --benchmark_enable_random_interleaving=true \
        --benchmark_repetitions="$repetitions" --benchmark_min_time=0.05 \
        --benchmark_out="$raw/$name.json" --benchmark_out_format=json "$@"
}

# library_of ALLOCATOR prints the path of its library; nothing for the C library's own.
library_of() {
    local file package candidate
    case $1 in
    glibc | none) return ;;
    mimalloc) file=libmimalloc.so.2 package=libmimalloc2.0 ;;
    jemalloc) file=libjemalloc.so.2 package=libjemalloc2 ;;
    *) die "--allocator must be mimalloc, jemalloc, glibc or none, not '$1'" ;;
    esac
    # A system for several processors may have it for each of them; the loader preloads only what it can.
    for candidate in $(PATH=$PATH:/usr/sbin:/sbin ldconfig -p | sed -n "s|^\s*$file (.*) => ||p"); do
        if LD_PRELOAD=$candidate grep -q "lib$1" /proc/self/maps 2>/dev/null; then
            echo "$candidate"
            return
        fi
    done
    die "$file is missing; install $1 first (Debian: $package)"
}

# The runs alternate, so that whatever else the machine does affects both. The peers' trees of 50 MB are left out, since
# what they leave of the heap decides how fast the library's operations are, and with some allocators more than others.
take_times_with() {
    local library=$1 rounds=3 each round
    local without_peers='--benchmark_filter=-^(QDomDocument|pugixml|C\+\+/Tree|protobuf) '
    each=$(((repetitions + rounds - 1) / rounds))
    for ((round = 1; round <= rounds; ++round)); do
        heading "Taking times without and with $allocator, round $round of $rounds, $each repetitions"
        take_times "without-$round" "$each" "" "$without_peers"
        take_times "with-$round" "$each" "$library" "$without_peers"
    done
    table --allocator "$allocator" --shape "$shape" --without "$raw"/without-[123].json --with "$raw"/with-[123].json
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

measure_tool() {
    heading "Measuring whole processes"
    python3 -B bench/processes.py --tool "$build/bin/tunerproperties" --bench "$build/bin/tunerproperties_bench" \
        --schema share/tuner-properties.xsd --example examples/receiver.xml --output "$raw/processes.json"
}

[[ -z $allocator || $form == --timed ]] || die "--allocator cannot be combined with $form, only with --timed"
library=
[[ -z $allocator ]] || library=$(library_of "$allocator")

scripts/install-dependencies.sh build bench
((qt == 5)) || scripts/install-dependencies.sh "qt$qt"

heading "Building the benchmark"
mkdir -p "$raw"
quietly "$raw/configure.log" cmake --preset bench -B "$build" -DQT_MAJOR_VERSION="$qt"
targets=(tunerproperties_bench tunerproperties_bench_memory)
[[ $form != --tool ]] || targets+=(tunerproperties)
quietly "$raw/build.log" cmake --build "$build" --target "${targets[@]}"
sed -n 's/^-- Benchmark: //p' "$raw/configure.log"

case $form in
--timed)
    if [[ -n $allocator ]]; then
        take_times_with "$library"
        exit
    fi
    heading "Taking times, $repetitions repetitions"
    take_times timed "$repetitions" ""
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
--tool)
    measure_tool
    table --processes "$raw/processes.json"
    ;;
--check | --record)
    count_instructions
    count_memory
    table --instructions "$raw/callgrind" --memory "$raw/memory.jsonl" "$form"
    ;;
esac
