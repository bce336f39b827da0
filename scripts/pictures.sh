#!/usr/bin/env bash
#
# pictures.sh [FOLDER] builds the tool in the build folder FOLDER, by default that of the preset "release", and renders
# the pictures of the README, docs/pictures, from its output for the example.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build=${1:-build/release}

scripts/install-dependencies.sh build browser
[[ $# -gt 0 ]] || quietly build/pictures-configure.log cmake --preset release
quietly build/pictures-build.log cmake --build "$build" --target tunerproperties html_documents
TOOL=$(realpath "$build/bin/tunerproperties") DOCUMENTS=$(realpath "$build/tests/html_documents") \
    PICTURES=$(realpath docs/pictures) PYTHONPATH=tests/documents/html/browser timeout 120 \
    /usr/bin/python3 -B docs/pictures/make.py
ls -l docs/pictures/*.png
