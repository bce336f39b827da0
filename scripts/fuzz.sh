#!/usr/bin/env bash
#
# fuzz.sh [SECONDS] [TARGET...] builds the fuzz targets and runs those given, by default all of them: each on the
# regression corpus, on hostile inputs of 1 MiB, and then for that long (by default 20 seconds) on inputs of its own.
# It fails if a target has a finding, and prints which input causes it.
#
# The inputs that a target has found useful are kept in build/fuzz/corpus; the next run starts from them.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

all_targets=(xml_text xml_file xml_watch xml_sources record representation compressed snapshot differential format json patch paths command_line)
build=build/fuzz
logs=$build/logs
findings=$build/findings
limits=(-timeout=60 -rss_limit_mb=4096)

seconds=20
if [[ ${1:-} =~ ^[0-9]+$ ]]; then
    seconds=$1
    shift
fi
targets=("$@")
((${#targets[@]} > 0)) || targets=("${all_targets[@]}")
for target in "${targets[@]}"; do
    [[ " ${all_targets[*]} " == *" $target "* ]] || die "unknown target '$target'; there are: ${all_targets[*]}"
done

program() {
    printf '%s/fuzz/fuzz_%s' $build "$1"
}

found() { # LOG: a run has failed
    grep -E 'does not hold|ERROR: |SUMMARY: |runtime error|terminate|what\(\)' "$1" >&2 || tail -20 "$1" >&2
    grep -h 'Test unit written to' "$1" >&2 || true
}

# Inputs of former findings. Only their number is printed, unless one fails again.
run_regressions() { # TARGET
    local inputs=(fuzz/regressions/"$1"/*)
    [[ -e ${inputs[0]} ]] || inputs=()
    ((${#inputs[@]} > 0)) || return 0
    if ! "$(program "$1")" "${limits[@]}" "${inputs[@]}" >"$logs/$1-regressions.log" 2>&1; then
        found "$logs/$1-regressions.log"
        return 1
    fi
    echo "$1: ${#inputs[@]} former findings"
}

run_hostile() { # TARGET
    local inputs=("$build/hostile/$1"/*) log=$logs/$1-hostile.log
    [[ -e ${inputs[0]} ]] || return 0
    if ! "$(program "$1")" "${limits[@]}" "${inputs[@]}" >"$log" 2>&1; then
        found "$log"
        return 1
    fi
    local times
    times=$(sed -n 's/^Executed .*\/\([^/]*\) in \([0-9]*\) ms.*/\1 \2/p' "$log")
    (($(wc -l <<<"$times") == ${#inputs[@]})) || { echo "$1: not every hostile input was tried" >&2; return 1; }
    awk -v target="$1" '{ ms = $2 < 1 ? 1 : $2; printf "%-16s %-30s %8.1f inputs/s\n", target, $1, 1000 / ms }' \
        <<<"$times"
}

run_target() { # TARGET
    local corpus=$build/corpus/$1 log=$logs/$1.log dictionary=fuzz/dictionaries/records.dict
    case $1 in
    xml_* | differential | format) dictionary=fuzz/dictionaries/xml.dict ;;
    patch) dictionary=fuzz/dictionaries/json.dict ;;
    json | paths | command_line) dictionary=fuzz/dictionaries/$1.dict ;;
    esac
    mkdir -p "$corpus"
    if ! "$(program "$1")" "${limits[@]}" -max_total_time="$seconds" -print_final_stats=1 -dict="$dictionary" \
        -artifact_prefix="$findings/$1-" "$corpus" "fuzz/corpus/$1" >"$log" 2>&1; then
        found "$log"
        return 1
    fi
    local executions coverage
    executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    coverage=$(sed -n 's/.*DONE *cov: \([0-9]*\).*/\1/p' "$log" | tail -1)
    ((executions > 0)) || return 1
    printf '%-16s %9d inputs, %6d places of the code reached\n' "$1" "$executions" "$coverage"
}

# Runs a step for every target, as many at once as there are processors, and fails if one of them does.
for_all_targets() { # STEP
    local status=0 running=0 target
    for target in "${targets[@]}"; do
        ((running < jobs)) || { wait -n || status=1; running=$((running - 1)); }
        "$1" "$target" &
        running=$((running + 1))
    done
    while ((running > 0)); do
        wait -n || status=1
        running=$((running - 1))
    done
    return $status
}

scripts/install-dependencies.sh build ci

heading "Building the fuzz targets"
quietly $build/configure.log cmake --preset fuzz
quietly $build/build.log cmake --build --preset fuzz
mkdir -p $logs $findings

heading "Former findings"
for_all_targets run_regressions || die "the input of a former finding fails again"

heading "Hostile inputs of 1 MiB"
rm -rf $build/hostile
$build/fuzz/make_hostile 1024 $build/hostile
for_all_targets run_hostile || die "a hostile input fails"

heading "Fuzzing, $seconds seconds each"
for_all_targets run_target || die "there are findings in $findings; what to do about them: docs/RELIABILITY.md"
echo "No findings."
