#!/usr/bin/env bash
#
# Compares what builds with Qt 5 and with Qt 6 make of the same documents. Builds the programs that write it.
#
#   scripts/exchange.sh [--count NUMBER]
#
# Documents: each build writes NUMBER random ones (by default 10000), the examples, and some of every class in every form,
# and reads what the other one has written. The bytes must be the same.
#
# Damaged documents: each program reads NUMBER documents of every form and writes the outcome of each:
# read or refused, the failure and its place, and all that was read. The results must be the same. So must be the words in
# which QXmlStreamReader refuses malformed XML, as long as they are the same in the versions of Qt that are compared.

set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname "$0")/common.sh"

count=10000
while (($# > 0)); do
    case $1 in
        --count) count=${2:?'--count needs a number'} && shift ;;
        *) die "unknown argument '$1'" ;;
    esac
    shift
done

presets=(ci ci-qt6)
folder=build/exchange

build() {
    local preset
    for preset in "${presets[@]}"; do
        heading "Build $preset"
        quietly "$folder/configure-$preset.log" cmake --preset "$preset"
        quietly "$folder/build-$preset.log" cmake --build "build/$preset" --target "$@"
    done
}

# The results of a form, written by both builds at the same time in files that begin with its name.
write_damaged() {
    local form=$1 preset pids=()
    for preset in "${presets[@]}"; do
        "build/$preset/tests/exchange_damaged" "$form" 0 "$count" >"$folder/$form-$preset.txt" &
        pids+=($!)
    done
    wait "${pids[0]}" && wait "${pids[1]}"
}

compare_damaged() {
    local form
    for form in xml record snapshot json; do
        heading "Damaged documents: $form"
        write_damaged "$form"
        python3 -B tests/exchange/compare.py "$folder/$form-${presets[0]}.txt" "$folder/$form-${presets[1]}.txt" \
            --documents "$count"
    done
}

exchange_documents() {
    heading "Documents"
    python3 -B tests/exchange/documents.py build/{"${presets[0]}","${presets[1]}"}/tests/interop_host \
        --examples examples --count "$count"
}

scripts/install-dependencies.sh build qt6
mkdir -p "$folder"
build exchange_damaged interop_host
exchange_documents
compare_damaged
