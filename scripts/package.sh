#!/usr/bin/env bash
#
# package.sh builds the Debian packages in build/package/packages, checks them with lintian, and tries them: it unpacks
# them into a folder of their own, and runs the tool and a program built there. Nothing is installed.
#
# The contents of the packages are compared with packaging/contents; package.sh --record records the present ones.
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

# The build flags of Debian's packages. There are no packages with debugging symbols, so none are generated.
set_build_flags() {
    local flags
    flags=$(DEB_CXXFLAGS_STRIP=-g DEB_BUILD_MAINT_OPTIONS=hardening=+all dpkg-buildflags --export=sh)
    eval "$flags"
    export CXXFLAGS="$CXXFLAGS ${CPPFLAGS:?}"
}

# Everything but folders: permissions, owner and path, without the name of this machine's architecture.
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
                || die "the files of $name differ from the recorded ones; if this is intended: scripts/package.sh --record"
        fi
        echo "$name: $(wc -l <"$out/$name.txt") files"
    done
}

expect_field() { # PACKAGE FIELD TEXT: the field contains the text
    local value
    value=$(dpkg-deb --field "$packages/$1"_*.deb "$2")
    [[ ", $value," == *", $3,"* ]] || die "$2 of $1 is '$value', without '$3'"
}

check_dependencies() {
    local version
    version=$(dpkg-deb --field "$packages"/libtunerproperties1_*.deb Version)
    expect_field libtunerproperties-dev Depends "libtunerproperties1 (= $version)"
    expect_field libtunerproperties-dev Depends "qtbase5-dev (>= 5.15)"
    ! dpkg-deb --field "$packages"/tunerproperties-tools_*.deb Depends | grep libtunerproperties \
        || die "tunerproperties-tools depends on the libraries, which the tool contains"
    dpkg-deb --field "$packages"/tunerproperties-tools_*.deb Depends | grep -q 'libmimalloc2\.0 (>= ' \
        || die "tunerproperties-tools does not depend on its allocator"
    ! dpkg-deb --field "$packages"/libtunerproperties1_*.deb Depends | grep mimalloc \
        || die "libtunerproperties1 depends on an allocator, which is for programs to choose"
    dpkg-deb --field "$packages"/libtunerproperties1_*.deb Depends | grep -q 'libqt5core5a (>= 5\.15' \
        || die "libtunerproperties1 does not depend on Qt"
    dpkg-deb --info "$packages"/libtunerproperties1_*.deb shlibs | sort >"$out/shlibs"
    printf "%s 1 libtunerproperties1 (>= $version)\n" libReportBase libTavikAppStartUp libTunerDocuments libTunerProperties \
        | diff - "$out/shlibs" || die "the file shlibs of libtunerproperties1 does not declare its libraries correctly"
}

# Runs a program of the unpacked packages, and checks that it uses the unpacked libraries.
run_unpacked() { # PROGRAM [ARGUMENT...]
    rm -f "$out"/loader.*
    env -i LC_ALL=C.UTF-8 LD_LIBRARY_PATH="$libraries" LD_DEBUG=libs LD_DEBUG_OUTPUT="$PWD/$out/loader" "$@" || return
    local library found
    for library in ReportBase TavikAppStartUp TunerProperties; do
        found=$(sed -n "s,.*calling init: \(.*/lib$library\.so.*\),\1,p" "$out"/loader.*)
        [[ $found == "$libraries/lib$library.so.1" ]] || die "$1 has loaded '$found', not the unpacked library"
    done
}

try_tool() {
    ! readelf --dynamic "$tool" "$libraries"/*.so.1 | grep -E 'R(UN)?PATH' \
        || die "the loader would search for a library in the build folder"
    local run=(env -i LC_ALL=C.UTF-8 "$tool") # without our libraries
    "${run[@]}" --version
    "${run[@]}" validate "$documents"/*.xml
    "${run[@]}" convert "$documents/receiver.xml" "$out/receiver.tpb"
    "${run[@]}" convert "$out/receiver.tpb" "$out/receiver.xml"
    "${run[@]}" convert "$documents/receiver.xml" "$out/direct.xml"
    cmp "$out/receiver.xml" "$out/direct.xml" || die "the conversion to records and back has changed the document"
    xmllint --noout --schema "$root/usr/share/tunerproperties/tuner-properties.xsd" "$out/receiver.xml"
    xmllint --noout --schema "$root/usr/share/tunerproperties/tuner-properties-author.xsd" "$documents"/*.xml
}

# A program built with the unpacked development package shows names in German as long as the catalogs exist.
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
        || die "the program uses other catalogs than the unpacked ones"
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
lintian --allow-root --fail-on error,warning $packages/*.deb || die "lintian has found errors or warnings"
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
