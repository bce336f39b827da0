#!/usr/bin/env bash
#
# mutate.sh [OPTION...] [FILE...] breaks the sources of the libraries, or just those in the files and folders given, in
# one place at a time, builds each of these mutants in a copy of the tree, and runs the tests until one of them fails. It
# does not start if the list of equivalents names a mutant that does not exist. It fails if a mutant survives that is not
# known to make no difference (scripts/mutate/equivalents.txt). After an interruption, call it again to continue; --help
# lists the options.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

scripts/install-dependencies.sh build mutate
command -v python3 >/dev/null || die "python3 is missing"

engine=(python3 -B scripts/mutate "$@")

# A mutant may do what the sources avoid, such as replacing a device with a file.
# shellcheck disable=SC2016 # expanded by the inner shell
if ((EUID == 0)) && unshare --mount mount --rbind /dev /dev 2>/dev/null; then
    exec unshare --mount sh -c 'mount --rbind /dev /dev && mount -o remount,bind,ro /dev && exec "$@"' sh "${engine[@]}"
fi
exec "${engine[@]}"
