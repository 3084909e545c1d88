#!/usr/bin/env bash
# The layers hold: every include in src/ and app/ points down, no library below
# shell/ sees a Qt Widgets header, and the link graph points down the same way.
#
#   check_layers.sh ROOT [LINKS_FILE] [QTWIDGETS_INCLUDE_DIR]
#
# LINKS_FILE lists the direct links of the libraries of src/ and app/, as
# tests/layering/CMakeLists.txt writes it. QTWIDGETS_INCLUDE_DIR is Qt's QtWidgets header folder.
# Each fault is printed as "file:line: ..."; the status is 1 when there is one.
set -u

root=${1:?usage: check_layers.sh ROOT [LINKS_FILE] [QTWIDGETS_INCLUDE_DIR]}
links=${2:-}
widgets=${3:-}

# What each layer may include, itself always among them. Lowest first; the
# order of ARCHITECTURE.md.
declare -A may=(
    [model]="model"
    [sources]="model sources"
    [logging]="model logging"
    [display]="model display"
    [alerts]="model alerts"
    [endpoint]="model sources endpoint"
    [monitor]="model sources logging display alerts monitor"
    [shell]="model sources logging display alerts monitor shell"
    [app]="model sources logging display alerts monitor shell endpoint app"
)
# Only these see Qt Widgets.
widget_layers=" shell app "

include_re='^[[:space:]]*#[[:space:]]*include[[:space:]]*(["<])([^">]+)[">]'
faults=0
fault() {
    echo "$1"
    faults=$((faults + 1))
}

allowed() {  # allowed FROM TO
    [[ " ${may[$1]} " == *" $2 "* ]]
}

# The layer of a path below ROOT ("src/display/x.h" -> display, "app/main.cpp" -> app).
layer_of() {
    case $1 in
        app/*) echo app ;;
        src/*/*) local rest=${1#src/}; echo "${rest%%/*}" ;;
        *) echo "" ;;
    esac
}

# <QtWidgets/...>, or a header that only Qt's QtWidgets folder has (a few
# old names there also stand in QtGui or QtCore, where they belong).
is_widgets_header() {
    [[ $1 == QtWidgets || $1 == QtWidgets/* ]] && return 0
    [[ -n $widgets && $1 != */* && -f $widgets/$1 ]] || return 1
    [[ ! -f $widgets/../QtGui/$1 && ! -f $widgets/../QtCore/$1 ]]
}

cd "$root" || exit 2

files=()
while IFS= read -r -d '' f; do
    files+=("${f#./}")
done < <(find ./src ./app -type f \( -name '*.h' -o -name '*.hpp' -o -name '*.cpp' -o -name '*.cc' \) -print0 | sort -z)

for dir in src/*/; do
    dir=${dir%/}
    name=${dir#src/}
    [[ -n ${may[$name]+x} || -z $(find "$dir" -type f -print -quit) ]] ||
        fault "$dir: no known layer; give it its place in ARCHITECTURE.md and in tests/layering/check_layers.sh"
done

for f in "${files[@]}"; do
    from=$(layer_of "$f")
    if [[ -z $from ]]; then
        fault "$f: lies in no layer folder"
        continue
    fi
    [[ -n ${may[$from]+x} ]] || continue  # reported above
    lineno=0
    while IFS= read -r line || [[ -n $line ]]; do
        lineno=$((lineno + 1))
        [[ $line =~ $include_re ]] || continue
        quote=${BASH_REMATCH[1]}
        inc=${BASH_REMATCH[2]}
        to=""
        if [[ $quote == '"' ]]; then
            # Beside the including file first, then from src/, as the compiler looks.
            here=$(dirname "$f")
            if [[ -f $here/$inc ]]; then
                to=$(layer_of "$(realpath -m --relative-to=. "$here/$inc")")
            elif [[ $inc == */* ]]; then
                to=${inc%%/*}
            fi
            if [[ -z $to || -z ${may[$to]+x} ]]; then
                fault "$f:$lineno: #include \"$inc\" names no file of a layer in src/ or app/"
                continue
            fi
        else
            first=${inc%%/*}
            if [[ $inc == */* && -n ${may[$first]+x} ]]; then
                to=$first  # one of ours in angle brackets: the same rules
            else
                if [[ $widget_layers != *" $from "* ]] && is_widgets_header "$inc"; then
                    fault "$f:$lineno: #include <$inc> is a Qt Widgets header; only shell/ and app/ see widgets"
                fi
                continue
            fi
        fi
        allowed "$from" "$to" ||
            fault "$f:$lineno: $from/ may not include $to/ (#include \"$inc\"); $from/ includes only: ${may[$from]}"
    done < "$f"
done

# The link graph: one line per direct link, "FROM TARGET LIB TO", TO being the
# layer of LIB when it is one of ours and "-" otherwise.
if [[ -n $links ]]; then
    if [[ ! -f $links ]]; then
        fault "$links: no such file"
    else
        while read -r from target lib to; do
            [[ -n $from && -n ${may[$from]+x} ]] || continue  # a folder reported above
            if [[ $to != - ]]; then
                allowed "$from" "$to" ||
                    fault "$target ($from/) links $lib ($to/); $from/ uses only: ${may[$from]}"
            elif [[ $lib == *Widgets* && $widget_layers != *" $from "* ]]; then
                fault "$target ($from/) links $lib; only shell/ and app/ link Qt Widgets"
            fi
        done < "$links"
    fi
fi

echo "layering: ${#files[@]} files checked, $faults faults"
[[ $faults -eq 0 ]]
