#!/usr/bin/env bash
#
# install-dependencies.sh [SET...] installs the missing Debian packages of the sets, each for
#
#   build   building and testing with Qt 5 (the default)
#   qt6     what takes the place of Qt 5 to build and test with Qt 6
#   ci      the other legs of the continuous integration and the scripts for developers
#   bench   the benchmark, with all peers that the library is compared with
#   abi     comparing the binary interface with its record, with both Qts
#   package building and trying the Debian packages in clean roots
#   docs    writing the manual
#   browser testing the pages for a browser
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build_packages=(
    g++ cmake ninja-build
    qtbase5-dev        # Qt Core, and Qt Test for the tests
    qttools5-dev-tools # lrelease, the compiler of the translation catalogs
    zlib1g-dev         # the compressed form
    nlohmann-json3-dev # JSON, for the library for documents and the tool
    libmimalloc-dev    # the allocator of the tool
    libxml2-utils      # xmllint, for the tests: checks documents against the schema
    python3            # for the tests: an independent reader and writer of the formats
    util-linux         # setpriv, for the tests: runs programs as a user without privileges
    pkgconf            # pkg-config, for the tests: builds a program against the installed libraries
)
qt6_packages=(
    qt6-base-dev
    qt6-l10n-tools # lrelease
)
ci_packages=(
    clang clang-tidy clang-format
    libclang-rt-dev # libFuzzer and the sanitizers of clang
    gcovr
    shellcheck
    git # for the tests: merges documents by the tool
    groff man-db zsh fish # for the tests: the manual page, and the completions in their shells
    python3-jsonschema # for the tests: checks documents as JSON, and SARIF, against their schemas
)
bench_packages=(
    libbenchmark-dev valgrind
    libxml2-utils # xmllint, with which the tool is compared
    protobuf-compiler libprotobuf-dev
    libpugixml-dev
    xsdcxx libxerces-c-dev # CodeSynthesis XSD and the library that its code needs
    libjemalloc2           # an allocator to compare with
)

abi_packages=(
    "${qt6_packages[@]}"
    abigail-tools # abidw and abidiff
)

package_packages=(
    git dpkg-dev
    mmdebstrap         # a clean Debian in a folder
    lintian
    diffoscope-minimal # shows how two packages differ
    binutils           # readelf
    python3
)

mutate_packages=(
    lld # links a library again, with the objects that have changed
)

docs_packages=(
    doxygen
    nodejs # runs the tests of the manual's search
)

browser_packages=(
    chromium chromium-driver python3-selenium
    fonts-liberation fonts-dejavu-core # so that the pictures look alike everywhere
)

packages=()
for set in "${@:-build}"; do
    case $set in
    build) packages+=("${build_packages[@]}") ;;
    qt6) packages+=("${qt6_packages[@]}") ;;
    ci) packages+=("${ci_packages[@]}") ;;
    bench) packages+=("${bench_packages[@]}") ;;
    abi) packages+=("${abi_packages[@]}") ;;
    package) packages+=("${package_packages[@]}") ;;
    mutate) packages+=("${mutate_packages[@]}") ;;
    docs) packages+=("${docs_packages[@]}") ;;
    browser) packages+=("${browser_packages[@]}") ;;
    *) die "unknown set of packages '$set'; there are: build qt6 ci bench abi package mutate docs browser" ;;
    esac
done

if ! command -v dpkg-query >/dev/null; then
    note "This is not a Debian system, so nothing is installed. Install the equivalents of: ${packages[*]}"
    exit 0
fi

missing=()
for package in "${packages[@]}"; do
    [[ $(dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null || true) == installed ]] \
        || missing+=("$package")
done
((${#missing[@]} > 0)) || exit 0

if ((EUID != 0)); then
    die "not root, and these packages are missing; install them first:
    apt-get install --no-install-recommends ${missing[*]}"
fi

heading "Installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
quietly build/install-dependencies.log apt-get update
quietly build/install-dependencies.log apt-get install --yes --no-install-recommends "${missing[@]}"
note "done"
