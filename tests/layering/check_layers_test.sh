#!/usr/bin/env bash
# The layering check on small trees: a clean one passes, and each kind of fault
# planted in another is named by file and line.
#
#   check_layers_test.sh PATH/TO/check_layers.sh
set -u
check=${1:?usage: check_layers_test.sh CHECK_SCRIPT}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

passed=0
failed=0
expect() {  # expect NAME CONDITION...
    local name=$1
    shift
    if "$@"; then
        passed=$((passed + 1))
    else
        echo "FAILED: $name"
        failed=$((failed + 1))
    fi
}

put() {  # put FILE LINE... : writes the lines as the file
    mkdir -p "$(dirname "$1")"
    local f=$1
    shift
    printf '%s\n' "$@" > "$f"
}

# Stand-ins for Qt's header folders: QWidget is Widgets only, qaction.h also stands in QtGui.
qt=$work/qt
put "$qt/QtWidgets/QWidget" '#include "qwidget.h"'
put "$qt/QtWidgets/qaction.h" '#include <QtGui/qaction.h>'
put "$qt/QtGui/qaction.h" ''

# A tree whose every include points down.
clean=$work/clean
put "$clean/src/model/model.h" '#pragma once' '#include <QString>'
put "$clean/src/model/clock.cpp" '#include "model.h"' '#include "model/model.h"'
put "$clean/src/sources/cpu.h" '#include "model/model.h"'
put "$clean/src/logging/log.h" '#include "model/model.h"'
put "$clean/src/display/picture.cpp" '#include "model/model.h"' '#include <QImage>' '#include <qaction.h>'
put "$clean/src/alerts/action.h" '#include "model/model.h"'
put "$clean/src/monitor/tick.cpp" '#include "sources/cpu.h"' '#include "logging/log.h"' \
    '#include "display/picture.cpp"' '#include "alerts/action.h"'
put "$clean/src/shell/window.cpp" '#include "monitor/tick.cpp"' '#include <QWidget>' '#include <QtWidgets/QLabel>'
put "$clean/app/main.cpp" '#include "desktop.h"' '#include "shell/window.cpp"' '#include "monitor/tick.cpp"'
put "$clean/app/desktop.h" '#include "model/model.h"'
put "$clean/links.txt" 'model ormivane_model Qt6::Core -' 'monitor ormivane_monitor ormivane_sources sources' \
    'shell ormivane_shell ormivane_monitor monitor' 'shell ormivane_shell Qt6::Widgets -' 'app ormivane ormivane_shell shell'

out=$(bash "$check" "$clean" "$clean/links.txt" "$qt/QtWidgets" 2>&1)
status=$?
expect "a clean tree passes" test "$status" -eq 0
expect "a clean tree reports no fault" grep -q '^layering: 10 files checked, 0 faults$' <<< "$out"

# The same tree with one fault of each kind.
bad=$work/bad
cp -r "$clean" "$bad"
put "$bad/src/model/settings.h" '#pragma once' '#include "monitor/tick.cpp"'
put "$bad/src/logging/writer.cpp" '#include "model/model.h"' '' '#include "../display/picture.cpp"'
put "$bad/src/alerts/mail.cpp" '#include "model/model.h"' '#include "monitor/tick.cpp"'
put "$bad/src/alerts/box.cpp" '#include "shell/window.cpp"'
put "$bad/src/display/frame.cpp" '#include <QImage>' '#  include <QWidget>' '#include <QtWidgets/QMenu>'
put "$bad/src/monitor/stop.cpp" '#include <model/model.h>' '#include <shell/window.cpp>'
put "$bad/src/sources/net.cpp" '#include "missing.h"'
put "$bad/src/transfers/get.cpp" '#include "model/model.h"'
printf '%s\n' 'display ormivane_display Qt6::Widgets -' 'display ormivane_display ormivane_monitor monitor' \
    >> "$bad/links.txt"

out=$(bash "$check" "$bad" "$bad/links.txt" "$qt/QtWidgets" 2>&1)
status=$?
expect "a faulty tree fails" test "$status" -eq 1
want=(
    'src/transfers: no known layer'
    'src/model/settings.h:2: model/ may not include monitor/'
    'src/logging/writer.cpp:3: logging/ may not include display/'
    'src/alerts/mail.cpp:2: alerts/ may not include monitor/'
    'src/alerts/box.cpp:1: alerts/ may not include shell/'
    'src/display/frame.cpp:2: #include <QWidget> is a Qt Widgets header'
    'src/display/frame.cpp:3: #include <QtWidgets/QMenu> is a Qt Widgets header'
    'src/monitor/stop.cpp:2: monitor/ may not include shell/'
    'src/sources/net.cpp:1: #include "missing.h" names no file of a layer'
    'ormivane_display (display/) links Qt6::Widgets; only shell/ and app/ link Qt Widgets'
    'ormivane_display (display/) links ormivane_monitor (monitor/)'
)
for w in "${want[@]}"; do
    expect "names: $w" grep -qF "$w" <<< "$out"
done
expect "counts every fault once" grep -q ' files checked, 11 faults$' <<< "$out"
expect "the file beside the faults is not blamed" bash -c '! grep -q "^src/alerts/mail.cpp:1" <<< "$1"' _ "$out"
[[ $failed -eq 0 ]] || printf '%s\n' "$out"

echo "$passed passed, $failed failed"
[[ $failed -eq 0 ]]
