#!/usr/bin/env bash
#
# model.sh [--check] generates every committed file, or part of one, that follows from the tables of the classes:
# share/model.json, the schemas for authors, the elements and types of the other schema, the tables of docs/formats.md, the
# fuzzer's tags and dictionaries, and others. With --check it writes nothing and reports which of them are not up to date.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build=${MODEL_BUILD:-build/dev}
[[ -f $build/CMakeCache.txt ]] || quietly "$build/configure.log" cmake --preset dev -B "$build"
quietly "$build/model.log" cmake --build "$build" --target tunerproperties_model
status=0
python3 -B scripts/model "$@" "$build/src/model/tunerproperties_model" || status=$?

# What the library exports follows from the model in part; the rest is recorded by hand.
if [[ ${1:-} != --check && $(sed -n 's/^CMAKE_CXX_FLAGS:STRING=//p' "$build/CMakeCache.txt") != *-fsanitize* ]]; then
    quietly "$build/model.log" cmake --build "$build" --target TunerProperties
    record=(python3 -B tests/package/exports.py --version "$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")"
        --record-model share/model.json "$build/lib/libTunerProperties.so")
    "${record[@]}" debian/libtunerproperties1.symbols
    "${record[@]}" --as-qt6 debian/libtunerproperties-qt6-1.symbols
fi
exit "$status"
