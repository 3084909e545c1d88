#!/usr/bin/env bash
# The GUI libraries stay in the modules: the executable links none (nor Qt
# DBus), and the drawing module neither the sound nor the print support, which
# have modules of their own. An install finds its modules: the installed executable draws.
#
#   check_modules.sh EXECUTABLE DRAWING_MODULE BUILD_DIR
set -u
exe=${1:?} drawing=${2:?} build=${3:?}
faults=0

needed() { readelf -d "$1" | sed -n 's/.*Shared library: \[\(.*\)\]/\1/p'; }
refuse() {  # refuse BINARY LIBRARY-PATTERN...
    local binary=$1 lib pattern
    shift
    for lib in $(needed "$binary"); do
        for pattern in "$@"; do
            # shellcheck disable=SC2053
            if [[ $lib == $pattern ]]; then
                echo "$binary: links $lib"
                faults=$((faults + 1))
            fi
        done
    done
}
refuse "$exe" 'libQt6Gui*' 'libQt6Widgets*' 'libQt6Multimedia*' 'libQt6PrintSupport*' 'libQt6DBus*'
refuse "$drawing" 'libQt6Multimedia*' 'libQt6PrintSupport*'

prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
if ! cmake --install "$build" --prefix "$prefix" > "$prefix/install.txt" 2>&1; then
    cat "$prefix/install.txt"
    exit 1
fi
if ! "$prefix/bin/ormivane" --headless --ticks 1 --config "$prefix/o.ini" --data-dir "$prefix/data" \
        --snapshot "$prefix/pictures" > "$prefix/run.txt" 2>&1 ||
   [[ ! -s $prefix/pictures/Graph1.png ]]; then
    echo "the installed ormivane drew no picture:"
    cat "$prefix/run.txt"
    faults=$((faults + 1))
fi
exit $((faults > 0))
