#!/usr/bin/env bash
#
# docs.sh writes the manual to build/docs/html, and fails if doxygen warns, for example about a function without
# documentation or a broken reference.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

scripts/install-dependencies.sh build docs

heading "Writing the manual"
quietly build/docs.log cmake -S . -B build/docs -G Ninja -DTUNERPROPERTIES_BUILD_MANUAL=ON \
    -DTUNERPROPERTIES_BUILD_TESTS=OFF -DTUNERPROPERTIES_BUILD_EXAMPLES=OFF -DTUNERPROPERTIES_BUILD_TOOL=OFF \
    -DTUNERPROPERTIES_INSTALL=OFF
quietly build/docs.log cmake --build build/docs --target manual
tail -n 1 build/docs.log
note "Start at build/docs/html/index.html."
