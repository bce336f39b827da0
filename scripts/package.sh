#!/usr/bin/env bash
#
# package.sh builds the Debian packages in build/package/packages, has them looked at by lintian, and tries them: they
# are unpacked into a folder of their own, and the tool and a program built there are run. Nothing is installed.
#
# What is in the packages is compared with packaging/contents; package.sh --record writes down what is in them now.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build=build/package
packages=$build/packages
out=$build/out
root=$PWD/$build/root
record=false
case ${1:-} in
'') ;;
--record) record=true ;;
*) die "usage: package.sh [--record]" ;;
esac

scripts/install-dependencies.sh build package
multiarch=$(dpkg-architecture --query DEB_HOST_MULTIARCH)
libraries=$root/usr/lib/$multiarch
tool=$root/usr/bin/tunerproperties
documents=$root/usr/share/doc/libtunerproperties-dev/examples

# What Debian builds its packages with. There are no packages with debugging symbols, so none are made.
set_build_flags() {
    local flags
    flags=$(DEB_CXXFLAGS_STRIP=-g DEB_BUILD_MAINT_OPTIONS=hardening=+all dpkg-buildflags --export=sh)
    eval "$flags"
    export CXXFLAGS="$CXXFLAGS ${CPPFLAGS:?}"
}

# Everything but folders: rights, owner and path, without the name of this machine's architecture.
contents() { # PACKAGE
    dpkg-deb --contents "$1" | awk '$1 !~ /^d/ { $3 = $4 = $5 = ""; print }' | sed "s, *\./, /,; s,/$multiarch/,/MULTIARCH/,"
}

check_contents() {
    local package name recorded
    for package in "$packages"/*.deb; do
        name=$(dpkg-deb --field "$package" Package)
        recorded=packaging/contents/$name.txt
        contents "$package" >"$out/$name.txt"
        if [[ $record == true ]]; then
            cp "$out/$name.txt" "$recorded"
        else
            diff --unified=0 "$recorded" "$out/$name.txt" \
                || die "$name holds other files than recorded; if that is meant: scripts/package.sh --record"
        fi
        echo "$name: $(wc -l <"$out/$name.txt") files"
    done
}

expect_field() { # PACKAGE FIELD TEXT: the field holds the text
    local value
    value=$(dpkg-deb --field "$packages/$1"_*.deb "$2")
    [[ ", $value," == *", $3,"* ]] || die "$2 of $1 is '$value', without '$3'"
}

check_dependencies() {
    local version
    version=$(dpkg-deb --field "$packages"/libtunerproperties1_*.deb Version)
    expect_field libtunerproperties-dev Depends "libtunerproperties1 (= $version)"
    expect_field libtunerproperties-dev Depends "qtbase5-dev (>= 5.15)"
    expect_field tunerproperties-tools Depends "libtunerproperties1 (= $version)"
    dpkg-deb --field "$packages"/libtunerproperties1_*.deb Depends | grep -q 'libqt5core5a (>= 5\.15' \
        || die "libtunerproperties1 does not depend on Qt"
    dpkg-deb --info "$packages"/libtunerproperties1_*.deb shlibs | sort >"$out/shlibs"
    printf "%s 1 libtunerproperties1 (>= $version)\n" libReportBase libTavikAppStartUp libTunerProperties \
        | diff - "$out/shlibs" || die "other packages would not know what they need of libtunerproperties1"
}

# Runs a program of the unpacked packages with the libraries that are there, and makes sure that it was those.
run_unpacked() { # PROGRAM [ARGUMENT...]
    rm -f "$out"/loader.*
    env -i LC_ALL=C.UTF-8 LD_LIBRARY_PATH="$libraries" LD_DEBUG=libs LD_DEBUG_OUTPUT="$PWD/$out/loader" "$@" || return
    local library found
    for library in ReportBase TavikAppStartUp TunerProperties; do
        found=$(sed -n "s,.*calling init: \(.*/lib$library\.so.*\),\1,p" "$out"/loader.*)
        [[ $found == "$libraries/lib$library.so.1" ]] || die "$1 ran with '$found', not with what was unpacked"
    done
}

try_tool() {
    ! readelf --dynamic "$tool" "$libraries"/*.so.1 | grep -E 'R(UN)?PATH' \
        || die "a library would be looked for where it was built"
    run_unpacked "$tool" --version
    run_unpacked "$tool" validate "$documents"/*.xml
    run_unpacked "$tool" convert "$documents/receiver.xml" "$out/receiver.tpb"
    run_unpacked "$tool" convert "$out/receiver.tpb" "$out/receiver.xml"
    run_unpacked "$tool" convert "$documents/receiver.xml" "$out/direct.xml"
    cmp "$out/receiver.xml" "$out/direct.xml" || die "the document has changed on its way through records"
    xmllint --noout --schema "$root/usr/share/tunerproperties/tuner-properties.xsd" "$out/receiver.xml"
}

# A program is built with the unpacked development package, and shows names in German while the catalogues are there.
try_building() {
    local program=$out/program/shown_names translations=$root/usr/share/tunerproperties-1/translations
    quietly $out/program.log cmake -S tests/package/shown_names -B $out/program -G Ninja --fresh \
        -DCMAKE_PREFIX_PATH="$root/usr" -DCMAKE_SKIP_RPATH=ON
    quietly $out/program.log cmake --build $out/program --clean-first
    run_unpacked "$program" >"$out/names.txt"
    printf '%s\n' MCP SCP FFP Empfänger Peiler | diff - "$out/names.txt" || die "the names are not shown in German"
    mv "$translations" "$translations.away"
    run_unpacked "$program" >"$out/names.txt"
    printf '%s\n' MCP SCP FFP Receiver DirectionFinder | diff - "$out/names.txt" \
        || die "the catalogues are not those that were unpacked"
    mv "$translations.away" "$translations"
}

heading "Building the packages"
[[ -d $build ]] || note "The first time, this takes a minute or two."
mkdir -p $build
rm -rf $packages $out "$root"
mkdir $out
(
    set_build_flags
    quietly $build/configure.log cmake --preset package
    quietly $build/build.log cmake --build --preset package
    quietly $build/cpack.log cpack --config $build/CPackConfig.cmake -B $packages
)
ls $packages/*.deb
python3 -B tests/hardening/check_elf.py $build/lib $build/bin $build/tools/tunerproperties/tunerproperties_page_maker

heading "Looking at the packages"
lintian --allow-root --fail-on error,warning $packages/*.deb || die "lintian has found something"
echo "lintian finds neither errors nor warnings."
check_contents
check_dependencies

heading "Trying the packages"
for package in "$packages"/*.deb; do
    dpkg-deb --extract "$package" "$root"
done
try_tool
try_building
echo "A program built with them shows names in German."
