#!/usr/bin/env bash
# The layering check on two small trees: one whose includes and links point
# down passes; a copy with an upward include, a widget header below shell/ and
# an upward link fails, naming each by file and line.
#
#   check_layers_test.sh PATH/TO/check_layers.sh
set -u
check=${1:?usage: check_layers_test.sh CHECK_SCRIPT}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

put() {  # put FILE LINE...
    mkdir -p "$(dirname "$1")"
    local f=$1
    shift
    printf '%s\n' "$@" > "$f"
}

# Qt's header folders in miniature: QWidget is Widgets only.
put "$work/qt/QtWidgets/QWidget" ''
clean=$work/clean
put "$clean/src/model/model.h" '#include <QString>'
put "$clean/src/display/picture.cpp" '#include "model/model.h"' '#include <QImage>'
put "$clean/src/monitor/tick.cpp" '#include "display/picture.cpp"'
put "$clean/src/shell/window.cpp" '#include "monitor/tick.cpp"' '#include <QWidget>'
put "$clean/app/main.cpp" '#include "shell/window.cpp"'
put "$clean/links.txt" 'monitor ormivane_monitor ormivane_display display' 'shell ormivane_shell Qt6::Widgets -'

out=$(bash "$check" "$clean" "$clean/links.txt" "$work/qt/QtWidgets" 2>&1) ||
    { echo "FAILED: a clean tree fails"; failed=1; }
grep -q '^layering: 5 files checked, 0 faults$' <<< "$out" || { echo "FAILED: clean count"; failed=1; }

bad=$work/bad
cp -r "$clean" "$bad"
put "$bad/src/model/settings.h" '#pragma once' '#include "monitor/tick.cpp"'
put "$bad/src/display/frame.cpp" '#include <QImage>' '#  include <QWidget>'
echo 'display ormivane_display ormivane_monitor monitor' >> "$bad/links.txt"

out=$(bash "$check" "$bad" "$bad/links.txt" "$work/qt/QtWidgets" 2>&1) && { echo "FAILED: a faulty tree passes"; failed=1; }
for want in 'src/model/settings.h:2: model/ may not include monitor/' \
    'src/display/frame.cpp:2: #include <QWidget> is a Qt Widgets header' \
    'ormivane_display (display/) links ormivane_monitor (monitor/)' \
    'layering: 7 files checked, 3 faults'; do
    grep -qF "$want" <<< "$out" || { echo "FAILED: not named: $want"; failed=1; }
done
[[ $failed -eq 0 ]] || printf '%s\n' "$out"
exit $failed
