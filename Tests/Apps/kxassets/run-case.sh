#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# run-case.sh [--update] CASE...
#
# Runs cases of the command line and compares what they print, whole. A case is a folder with
#
#   command    one command line for bash, after comments that say what it shows; run in an empty folder
#   setup      commands that make what it needs; their output is dropped, a failure fails the case (may be missing)
#   stdout     what it has to print on standard output
#   stderr     what it has to print on standard error; without this file that is not looked at
#   exit-code  what it has to end with
#
# $KXASSETS is the program to test, and "kxassets" runs it. $MODELS is the folder of small models beside this script.
# "import" imports with tiny previews into the library "lib". The library may be left out: it is in KXASSETS_LIBRARY.
#
# What differs from run to run is replaced before the comparison, and nothing else:
#   UUIDs        by <uuid 1>, <uuid 2> ... in the order in which they appear first, over both streams
#   times        in ISO format, by <time>
#   checksums    by <checksum>
#   the case's temporary folder and the models' folder, by <tmp> and <models>
#
# With --update the output becomes the expectation, for review.
set -u -o pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
MODELS=$here/models
export MODELS KXASSETS=${KXASSETS:?is to be the program to test} KXASSETS_LIBRARY=lib LC_ALL=C.UTF-8

kxassets() { "$KXASSETS" "$@"; }
import() { kxassets import --preview-size 16 --preview-samples 1 "$@"; }
export -f kxassets import

normalise() { # the files of both streams
    TMP=$work perl -i -pe '
        BEGIN { $tmp = quotemeta $ENV{TMP}; $models = quotemeta $ENV{MODELS}; }
        s/$tmp\/run/<tmp>/g;
        s/$models/<models>/g;
        s/\b[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}\b/"<uuid " . ($number{$&} ||= ++$count) . ">"/ge;
        s/\b\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ/<time>/g;
        s/("checksum": |^checksum: +)\d+/$1<checksum>/g;
    ' "$@"
}

fail() {
    printf '%s: %s\n' "$name" "$*"
    failed=yes
}

compare() { # what
    diff -u --label "expected $1" --label "actual $1" "$case/$1" "$work/$1" || fail "$1 differs"
}

run_case() {
    mkdir "$work/run"
    if [[ -e $case/setup ]] && ! (cd "$work/run" && bash -e -o pipefail "$case/setup") > "$work/setup" 2>&1 < /dev/null; then
        cat "$work/setup"
        fail "the set-up failed"
        return
    fi
    (cd "$work/run" && bash -o pipefail "$case/command") > "$work/stdout" 2> "$work/stderr" < /dev/null
    printf '%s\n' $? > "$work/exit-code"
    normalise "$work/stdout" "$work/stderr"
    if [[ $update == yes ]]; then
        cp "$work/stdout" "$work/exit-code" "$case/"
        [[ ! -s $work/stderr ]] || cp "$work/stderr" "$case/"
        [[ -s $work/stderr ]] || rm -f "$case/stderr"
        return
    fi
    compare stdout
    compare exit-code
    [[ ! -e $case/stderr ]] || compare stderr
    [[ $failed == no ]] || { printf 'Standard error was:\n'; cat "$work/stderr"; }
}

update=no
if [[ ${1-} == --update ]]; then
    update=yes
    shift
fi
[[ $# -gt 0 ]] || { sed -n '3,26s/^# \{0,1\}//p' "${BASH_SOURCE[0]}"; exit 2; }
failed=no
for case in "$@"; do
    case=$(cd "$case" && pwd) || exit 2
    name=${case##*/}
    work=$(mktemp -d) || exit 2
    trap 'rm -rf -- "$work"' EXIT
    run_case
    rm -rf -- "$work"
done
[[ $failed == no ]]
