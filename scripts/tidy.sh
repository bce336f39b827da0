#!/usr/bin/env bash
#
# tidy.sh [--qt 6] runs clang-tidy over the sources of the libraries, the tool and the examples, as .clang-tidy says. All
# warnings of clang are errors there.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

preset=$(clang_preset "$@")
build=build/$preset
log=$build/tidy.log

scripts/install-dependencies.sh build ci
[[ $preset != *qt6 ]] || scripts/install-dependencies.sh qt6

quietly "$build/configure.log" cmake --preset "$preset"

status=0
run-clang-tidy -quiet -p "$build" -j "$jobs" "^$PWD/(src|tools|examples)/" 2>&1 \
    | sed 's/\x1b\[[0-9;]*m//g' >"$log" || status=$? # it colors its output even in files
# The rest of the output only lists the files.
grep -E -A 3 '(warning|error): .*\[' "$log" || true
((status == 0)) || die "clang-tidy has findings; the whole output is in $log"
echo "clang-tidy has no findings."
