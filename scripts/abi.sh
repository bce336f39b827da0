#!/usr/bin/env bash
#
# abi.sh builds the libraries with each Qt, and compares their binary interface with what abi/ has recorded: it fails if
# programs that were built before would no longer run, and reports additions. abi.sh --record records the present
# interface, unless it is incompatible under the same SONAME.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

record=()
case ${1:-} in
'') ;;
--record) record=(--record) ;;
*) die "usage: abi.sh [--record]" ;;
esac

scripts/install-dependencies.sh build qt6 abi

libraries=(ReportBase TavikAppStartUp TunerProperties TunerDocuments)
changed=()
for qt in 5 6; do
    build=build/abi-qt$qt
    suffix=
    ((qt == 5)) || suffix=-qt$qt
    heading "Building with Qt $qt"
    quietly "$build-configure.log" cmake --preset abi-qt$qt
    cmake --build --preset abi-qt$qt --target "${libraries[@]}"

    heading "Comparing with abi/qt$qt"
    # One folder for all public headers, as programs find them.
    rm -rf "$build/headers"
    mkdir "$build/headers"
    cp -R include/. "$build/include/." "$build/headers"
    for library in "${libraries[@]}"; do
        python3 -B scripts/compare_abi.py "${record[@]}" --headers "$build/headers" "$build/lib/lib$library$suffix.so" \
            "abi/qt$qt/lib$library.abi" || changed+=("$library of Qt $qt")
    done
done
((${#changed[@]} == 0)) || die "failed for: $(printf '%s, ' "${changed[@]}" | sed 's/, $//')"
