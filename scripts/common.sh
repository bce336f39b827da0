# shellcheck shell=bash
#
# What the scripts of this folder share. Source it; it changes into the top folder of the project.

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit

# Bare machines have no locale set, but the texts of documents are always UTF-8.
export LC_ALL=C.UTF-8

jobs=${JOBS:-$(nproc)}
export CTEST_PARALLEL_LEVEL=$jobs CMAKE_BUILD_PARALLEL_LEVEL=$jobs

if [[ -t 1 ]]; then
    bold=$'\e[1m' dim=$'\e[2m' plain=$'\e[0m'
else
    bold='' dim='' plain=''
fi

heading() {
    printf '\n%s== %s ==%s\n\n' "$bold" "$*" "$plain"
}

note() {
    printf '%s%s%s\n' "$dim" "$*" "$plain"
}

die() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# minutes_and_seconds SECONDS
minutes_and_seconds() {
    printf '%d min %02d s' "$(($1 / 60))" "$(($1 % 60))"
}

# quietly LOG COMMAND... runs the command with its output going to the file LOG, and shows it only if the command fails.
quietly() {
    local log=$1 status=0
    shift
    mkdir -p "$(dirname "$log")"
    "$@" >"$log" 2>&1 || status=$?
    if ((status != 0)); then
        cat "$log" >&2
        die "failed: $*"
    fi
}

# clang_preset [--qt 6]: the preset for clang, with Qt 5 or that one.
clang_preset() {
    case $* in
    '') echo ci-clang ;;
    '--qt 6') echo ci-clang-qt6 ;;
    *) die "unknown arguments '$*'; the only one is: --qt 6" ;;
    esac
}
