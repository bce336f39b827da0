#!/usr/bin/env bash
#
# browser.sh [FOLDER] builds the tool in the build folder FOLDER, by default that of the preset "ci", and tests the pages
# that it writes in a headless Chromium. Screenshots of the pages are kept in build/browser.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build=${1:-build/ci}
pictures=build/browser

scripts/install-dependencies.sh build browser

heading "Building"
[[ $# -gt 0 ]] || quietly build/browser-configure.log cmake --preset ci
quietly build/browser-build.log cmake --build "$build" --target tunerproperties html_documents
note "done"

heading "Testing in $(chromium --version 2>/dev/null)"
rm -rf $pictures
# The interpreter of the system, for which Debian packages its modules.
TOOL=$(realpath "$build/bin/tunerproperties") DOCUMENTS=$(realpath "$build/tests/html_documents") \
    PICTURES=$(realpath $pictures) timeout 900 \
    /usr/bin/python3 -B -m unittest discover --verbose --start-directory tests/documents/html/browser
note "The pictures are in $pictures."
