#!/usr/bin/env bash
#
# coverage.sh runs all tests and prints how many lines of src/ they reach, file by file. It fails under 95 %.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build=build/coverage

scripts/install-dependencies.sh build ci

heading "Configuring and building (coverage)"
cmake --preset coverage
cmake --build --preset coverage

heading "Testing (coverage)"
find $build -name '*.gcda' -delete # counts of an earlier run would add up
ctest --preset coverage

heading "Line coverage of src/"
gcovr --root . --filter src/ --sort-percentage --print-summary --fail-under-line 95 $build
