#!/usr/bin/env bash
#
# try-recipes.sh [RECIPE...] proves the recipes of CONTRIBUTING.md, by default all that are in tests/recipes: in a copy of
# the project it carries out a recipe, builds, and runs the quick tests, which pass; then it leaves out each step in turn,
# and something has to fail that names the place.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

python3 -B scripts/recipes.py --jobs "$jobs" "$@"
