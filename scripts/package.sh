#!/usr/bin/env bash
#
# package.sh [--record] [--again] builds the Debian packages in a clean root and checks them with lintian. In another clean root
# it installs them, tries them as debian/tests/control says, and removes them. The packages are in build/package/packages. It
# needs to be root, and to be allowed to mount.
#
# The contents of the packages are compared with packaging/contents; --record records the present ones. With --again the
# suites are run while the packages are built, with each Qt; then it builds them once more in other surroundings and without
# the suites, and compares both byte by byte.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
source scripts/clean-root.sh

build=build/package
packages=$build/packages
out=$build/out
# The clean root, and the one with what building needs, are kept for the next run.
roots=$PWD/$build/roots
record=false
again=false
for option in "$@"; do
    case $option in
    --record) record=true ;;
    --again) again=true ;;
    *) die "usage: package.sh [--record] [--again]" ;;
    esac
done
((EUID == 0)) || die "only root can make the clean root"

scripts/install-dependencies.sh package
multiarch=$(dpkg-architecture --query DEB_HOST_MULTIARCH)
version=$(dpkg-parsechangelog --show-field Version)
names=$(sed -n 's/^Package: //p' debian/control)

prepare_roots() {
    local key
    key=$(cat scripts/clean-root.sh debian/control)
    [[ ! -f $roots/key || $(<"$roots/key") != "$key" ]] || return 0
    rm -rf "$roots"
    make_root "$roots/clean"
    cp --archive "$roots/clean" "$roots/build"
    mkdir -p "$roots/build/sources/debian"
    cp debian/control "$roots/build/sources/debian"
    quietly $build/build-dep.log install_in "$roots/build" build-dep --build-profiles nocheck /sources
    quietly $build/build-dep.log install_in "$roots/build" install faketime locales
    quietly $build/build-dep.log in_root "$roots/build" localedef -i tr_TR -f UTF-8 tr_TR.UTF-8
    add_user "$roots/build" first
    add_user "$roots/build" another
    echo "$key" >"$roots/key"
}

# What the suites need besides. It stays, so that building without it is proved by a root that is new.
prepare_suites() {
    quietly $build/suites.log install_in "$roots/build" build-dep /sources
}

# The files of this checkout that git knows, or would know after "git add".
files_of_the_project() {
    git ls-files -z --cached --others --exclude-standard --deduplicate | while IFS= read -r -d '' file; do
        [[ ! -e $file ]] || printf '%s\0' "$file"
    done
}

make_sources() { # FOLDER: the archive of the sources, and the sources with debian/ beside it
    local name=tunerproperties-${version%-*}
    [[ $(sed -n 's/^project(TunerProperties VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt) == "${version%-*}" ]] \
        || die "debian/changelog begins with version $version, which is not that of the project"
    mkdir -p "$1/$name"
    files_of_the_project | tar --create --null --files-from=- | tar --extract --directory "$1/$name"
    tar --create --directory "$1" --exclude "$name/debian" --sort=name --owner=0 --group=0 --numeric-owner \
        --mode=u+rw,go=rX --mtime="@$(dpkg-parsechangelog --show-field Timestamp)" --xz \
        --file "$1/${name/-/_}.orig.tar.xz" "$name"
}

# build_as USER PROFILE PROCESSES SCRIPT VARIABLE=VALUE...: the script runs in the folder "build" in the home of the user.
build_as() {
    local user=$1 profile=$2 processes=$3 script=$4
    shift 4
    in_root "$roots/build" chown --recursive "$user:" "$users/$user/build"
    quietly "$build/$user.log" as_user "$roots/build" "$user" DEB_BUILD_PROFILES="$profile" \
        DEB_BUILD_OPTIONS="$profile parallel=$processes" "$@" sh -e -c "cd build; $script"
}

build_packages() { # PROFILE: nocheck, or none to run the suites
    local home=$roots/build$users/first
    rm -rf "$home/build"
    make_sources "$home/build"
    build_as first "$1" "$jobs" "cd tunerproperties-*; dpkg-buildpackage -us -uc"
    cp "$home"/build/tunerproperties_* "$home"/build/*.deb $packages
    ls $packages/*.deb
}

# User, permissions, folder, time, time zone, locale, name of the machine and number of processes differ.
build_again() {
    local home=$roots/build$users/another host_name=another package differing=()
    rm -rf "$home/build"
    mkdir "$home/build"
    cp $packages/tunerproperties_* "$home/build"
    build_as another nocheck $((jobs + 1)) "umask 077; dpkg-source -x *.dsc a-folder-with-a-longer-name; cd a-*; \
        faketime -f +400d dpkg-buildpackage -b -us -uc" LC_ALL=tr_TR.UTF-8 LANGUAGE=tr TZ=XST-13:45
    for package in "$packages"/*.deb; do
        cmp "$package" "$home/build/${package##*/}" || {
            diffoscope "$package" "$home/build/${package##*/}" || true
            differing+=("${package##*/}")
        }
    done
    ((${#differing[@]} == 0)) || die "if built elsewhere, these packages differ: ${differing[*]}"
    echo "Built again by another user, in another folder, time, time zone and locale, on another machine: the same packages."
}

# Everything but folders: permissions, owner and path, without the name of this machine's architecture. Doxygen chooses the
# names in the manual.
contents() { # PACKAGE
    dpkg-deb --contents "$1" | awk '$1 !~ /^d/ { $3 = $4 = $5 = ""; print }' | grep -v '/html/.*\.\(css\|html\|js\|png\|svg\)$' \
        | sed "s, *\./, /,; s,/$multiarch/,/MULTIARCH/,"
}

check_contents() {
    local name recorded
    for name in $names; do
        recorded=packaging/contents/$name.txt
        contents $packages/"$name"_*.deb >"$out/$name.txt"
        if [[ $record == true ]]; then
            cp "$out/$name.txt" "$recorded"
        else
            diff --unified=0 "$recorded" "$out/$name.txt" \
                || die "the files of $name differ from the recorded ones; if this is intended: scripts/package.sh --record"
        fi
        echo "$name: $(wc -l <"$out/$name.txt") files"
    done
}

expect_dependency() { # PACKAGE DEPENDENCY: as an extended regular expression
    local depends
    depends=$(dpkg-deb --field "$packages/$1"_*.deb Depends)
    [[ ", $depends," =~ ,\ $2, ]] || die "$1 depends on '$depends', which is not '$2'"
}

expect_no_dependency() { # PACKAGE WORD
    ! dpkg-deb --field "$packages/$1"_*.deb Depends | grep "$2" || die "$1 depends on $2"
}

check_dependencies() {
    local library suffix
    expect_dependency libtunerproperties1 'libqt5core5a \(>= 5\.15[^)]*\)'
    expect_dependency libtunerproperties-qt6-1 'libqt6core6 \(>= 6\.4[^)]*\)'
    for library in libreportbase libtavikappstartup libtunerproperties libtunerdocuments; do
        expect_dependency libtunerproperties-dev "${library}1 \(= $version\)"
        expect_dependency libtunerproperties-qt6-dev "$library-qt6-1 \(= $version\)"
        expect_no_dependency ${library}1 'qt6\|mimalloc'
        expect_no_dependency $library-qt6-1 'qt5\|mimalloc'
    done
    for suffix in '1' '-qt6-1'; do
        expect_dependency "libtunerproperties$suffix" 'libtunerproperties1-l10n \(>= [^)]*\)'
        expect_dependency "libtunerproperties$suffix" "libreportbase$suffix \(>= [^)]*\)"
        expect_dependency "libtunerproperties$suffix" "libtavikappstartup$suffix \(>= [^)]*\)"
        expect_dependency "libtunerdocuments$suffix" "libtunerproperties$suffix \(>= [^)]*\)"
    done
    expect_dependency libtunerproperties-dev 'libtunerproperties-common-dev \(= [^)]*\)'
    expect_dependency libtunerproperties-qt6-dev 'libtunerproperties-common-dev \(= [^)]*\)'
    # The tool contains the libraries.
    expect_no_dependency tunerproperties-tools 'tunerproperties\|reportbase'
    expect_dependency tunerproperties-tools 'libmimalloc2\.0 \(>= [^)]*\)'
}

check_libraries() {
    local package
    for package in "$packages"/*.deb; do
        dpkg-deb --extract "$package" $out/unpacked
    done
    python3 -B tests/hardening/check_elf.py --hardened "$out/unpacked/usr/lib/$multiarch" $out/unpacked/usr/bin
    ! readelf --dynamic "$out/unpacked/usr/lib/$multiarch"/*.so.1 $out/unpacked/usr/bin/* | grep -E 'R(UN)?PATH' \
        || die "the loader would search for a library in a folder of its own"
}

# One of the fields of debian/tests/control, of all tests.
test_field() {
    sed -n "s/^$1: //p" debian/tests/control
}

# What the packages and their tests need of others.
needed_packages() {
    local package
    {
        test_field Depends
        for package in "$packages"/*.deb; do
            dpkg-deb --field "$package" Depends Pre-Depends | sed 's/^[A-Za-z-]*: //'
        done
    } | tr ',' '\n' | sed 's/^ *//' | grep --invert-match --extended-regexp "^(${names//$'\n'/|})( |$)" | sort --unique
}

# All files of a root but those that the package manager keeps for itself, with owner and permissions.
snapshot() { # ROOT
    (cd "$1" && find . -xdev \( -path ./proc -o -path ./tmp -o -path ./var/cache -o -path ./var/log -o -path ./var/lib/apt \
        -o -path ./var/lib/dpkg -o -path ".$users/tester/*" \) -prune -o -printf '%M %u:%g %p %l\n' | sort)
}

# Both Qts at once, so that nothing of one is found or replaced by the other.
try_packages() {
    local try=$roots/try command needed installed
    rm -rf "$try"
    cp --archive "$roots/clean" "$try"
    add_user "$try" tester
    mapfile -t needed < <(needed_packages)
    quietly $build/try.log install_in "$try" satisfy "$(printf '%s, ' "${needed[@]}")"
    snapshot "$try" >$out/before

    mkdir "$try/tmp/packages"
    cp $packages/*.deb "$try/tmp/packages"
    quietly $build/try.log in_root "$try" sh -c 'dpkg --install /tmp/packages/*.deb'
    files_of_the_project | tar --create --null --files-from=- | tar --extract --one-top-level="$try$users/tester/sources"
    in_root "$try" chown --recursive tester: "$users/tester"
    while read -r command; do
        echo "$command"
        as_user "$try" tester AUTOPKGTEST_TMP="$users/tester" sh -c "cd sources && $command"
    done < <(test_field Test-Command)

    mapfile -t installed < <(printf '%s\n' $packages/*.deb | sed 's,.*/,,; s,_.*,,')
    quietly $build/try.log in_root "$try" dpkg --purge "${installed[@]}"
    snapshot "$try" >$out/after
    diff --unified=0 $out/before $out/after || die "these files are left or missing after the packages are removed"
    echo "Both Qts installed at once, tried and removed; nothing is left."
}

note "The first time, this takes eight minutes, one of them for the clean root."
rm -rf $packages $out
mkdir -p $packages $out packaging/contents
heading "Making a clean root"
prepare_roots

if [[ $again == true ]]; then
    heading "Building the packages, and running the suites"
    prepare_suites
    build_packages ""
    sed -n '/tests passed/p' $build/first.log
else
    heading "Building the packages"
    build_packages nocheck # other legs of the continuous integration run the suites
fi

heading "Looking at the packages"
lintian --allow-root --pedantic --display-info --fail-on error,warning,info,pedantic $packages/*.changes \
    || die "lintian has found something"
echo "lintian finds nothing."
check_contents
check_dependencies
check_libraries

heading "Trying the packages"
try_packages

if [[ $again == true ]]; then
    heading "Building the packages again"
    build_again
fi
