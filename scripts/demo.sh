#!/usr/bin/env bash
#
# demo.sh builds the libraries, the tool and the example programs, and takes examples/receiver.xml through all encodings
# and back.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build=build/demo
out=$build/out
document=examples/receiver.xml

# Shows a command the way one would type it, and runs it.
run() {
    note "\$ $*"
    "$build/bin/$1" "${@:2}"
}

scripts/install-dependencies.sh build

heading "Building"
[[ -d $build ]] || note "The first time, this takes a minute or two."
quietly $build/configure.log cmake --preset release -B $build -DTUNERPROPERTIES_BUILD_TESTS=OFF
quietly $build/build.log cmake --build $build
rm -rf $out
mkdir $out
echo "The libraries, the tool and the examples are in $build."

heading "The document"
run tunerproperties show $document

heading "Its way through the encodings"
run tunerproperties validate $document
run tunerproperties convert $document $out/receiver.tpb
run tunerproperties convert $out/receiver.tpb $out/receiver.tps
run tunerproperties convert $out/receiver.tps $out/receiver.xml
echo
run tunerproperties convert $document $out/direct.xml
note "\$ cmp $out/receiver.xml $out/direct.xml"
cmp $out/receiver.xml $out/direct.xml || die "the conversions have changed the document"
echo
echo "XML to tagged binary to snapshot to XML: the same $(stat --format=%s $out/direct.xml) bytes as written directly."

heading "Sizes and times"
run roundtrip $document
