#!/usr/bin/env bash
#
# clang.sh [--qt 6] has clang look at the sources of the tests, with warnings as errors, and makes nothing of them: that
# they can be linked and do what they should is what other builds show. The other sources are those that tidy.sh looks at,
# with all warnings of clang.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

preset=$(clang_preset "$@")
build=build/$preset

scripts/install-dependencies.sh build ci
[[ $preset != *qt6 ]] || scripts/install-dependencies.sh qt6

heading "Making what is compiled"
quietly "$build/configure.log" cmake --preset "$preset"
pch=tests/CMakeFiles/tests_pch.dir/cmake_pch.hxx.pch
quietly "$build/build.log" ninja -C "$build" -j "$jobs" test_sources $pch

heading "Looking at the sources"
python3 -B scripts/check_syntax.py "$build/compile_commands.json" "$jobs" "^$PWD/(src|tools|examples)/"
