#!/usr/bin/env bash
#
# format.sh lays out every C++ file of the repository. format.sh --check changes nothing: it reports the files that it
# would change, and the phrases that scripts/words.py rejects.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

case ${1:-} in
'') mode=(-i) ;;
--check) mode=(--dry-run -Werror) ;;
*) die "usage: format.sh [--check]" ;;
esac

scripts/install-dependencies.sh ci

mapfile -d '' files < <(git ls-files -z -- '*.h' '*.cpp')
((${#files[@]} > 0)) || die "git lists no C++ files"
clang-format "${mode[@]}" "${files[@]}"
[[ ${1:-} != --check ]] || python3 -B scripts/words.py
