#!/usr/bin/env bash
#
# format.sh lays out every C++ file of the repository; format.sh --check only tells which ones it would change.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

case ${1:-} in
'') mode=(-i) ;;
--check) mode=(--dry-run -Werror) ;;
*) die "usage: format.sh [--check]" ;;
esac

scripts/install-dependencies.sh ci

mapfile -d '' files < <(git ls-files -z -- '*.h' '*.cpp')
((${#files[@]} > 0)) || die "git names no C++ file here"
clang-format "${mode[@]}" "${files[@]}"
