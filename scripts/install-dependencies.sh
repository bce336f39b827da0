#!/usr/bin/env bash
#
# install-dependencies.sh [SET...] installs the Debian packages of the sets that are not there yet:
#
#   build   what building and testing takes (the default)
#   ci      what the further legs of the continuous integration and the scripts for developers take
#   bench   what the benchmark takes, with all peers that the library is compared with
#   package what building and trying the Debian packages takes
#   docs    what writing the manual takes
#   browser what testing the pages for a browser takes
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build_packages=(
    g++ cmake ninja-build
    qtbase5-dev        # Qt Core, and Qt Test for the tests
    qttools5-dev-tools # lrelease, the compiler of the translation catalogues
    zlib1g-dev         # the compressed form
    nlohmann-json3-dev # JSON, for the tool
    libxml2-utils      # xmllint, for the tests: documents against the schema
    python3            # for the tests: another reader and writer of the formats
    util-linux         # setpriv, for the tests: as a user without privileges
    pkgconf            # pkg-config, for the tests: a program built against what is installed
)
ci_packages=(
    clang clang-tidy clang-format
    libclang-rt-dev # libFuzzer and the sanitizers of clang
    gcovr
    shellcheck
    groff man-db zsh fish # for the tests: the manual page, and the completions in the shells that have them
)
bench_packages=(
    libbenchmark-dev valgrind
    protobuf-compiler libprotobuf-dev
    libpugixml-dev
    xsdcxx libxerces-c-dev # CodeSynthesis XSD and what its code stands on
)

package_packages=(
    dpkg-dev lintian
    file binutils # what CPack asks about libraries
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
    ci) packages+=("${ci_packages[@]}") ;;
    bench) packages+=("${bench_packages[@]}") ;;
    package) packages+=("${package_packages[@]}") ;;
    docs) packages+=("${docs_packages[@]}") ;;
    browser) packages+=("${browser_packages[@]}") ;;
    *) die "unknown set of packages '$set'; there are: build ci bench package docs browser" ;;
    esac
done

if ! command -v dpkg-query >/dev/null; then
    note "This is no Debian system, so nothing is installed here. Needed are the equivalents of: ${packages[*]}"
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
