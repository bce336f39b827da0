#!/usr/bin/env bash
#
# test.sh [PRESET] installs what is missing, builds the preset (by default: dev) and runs its tests.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

preset=${1:-dev}
log=build/$preset-ctest.log

scripts/install-dependencies.sh build
[[ $preset != *qt6 ]] || scripts/install-dependencies.sh qt6

heading "Configuring and building ($preset)"
cmake --preset "$preset"
cmake --build --preset "$preset"

heading "Testing ($preset)"
status=0
ctest --preset "$preset" | tee "$log" || status=$?

heading "Summary ($preset)"
grep -E 'tests (passed|failed)|^Total Test time' "$log" || true
if ((status != 0)); then
    sed -n '/^The following tests FAILED/,$p' "$log"
    die "some tests have failed"
fi
