# SPDX-License-Identifier: Apache-2.0
# What run, test and .ci/run share; sourced by them from the project's top folder.

release_folder=build/release
jobs=$(nproc 2>/dev/null || echo 2)

step() { printf '== %s\n' "$*"; }
fail() { printf 'error: %s\n' "$*" >&2; return 1; }

# The packages of the named sections of the one list.
listed_packages() {
    local section='' line wanted=" $* "
    while IFS= read -r line; do
        case $line in
            '' | '#'*) ;;
            '['*']') section=${line#[}; section=${section%]} ;;
            *) [[ $wanted == *" $section "* ]] && printf '%s\n' "$line" ;;
        esac
    done < cmake/packages.txt
    return 0
}

missing_packages() {
    local installed package
    installed=$(dpkg-query -W -f='${db:Status-Abbrev}|${Package}\n' 2>/dev/null | sed -n 's/^ii *|//p')
    for package in $(listed_packages "$@"); do
        grep -qxF -- "$package" <<< "$installed" || printf '%s\n' "$package"
    done
}

as_root() {
    if [[ $(id -u) == 0 ]]; then
        env DEBIAN_FRONTEND=noninteractive "$@"
    else
        sudo env DEBIAN_FRONTEND=noninteractive "$@"
    fi
}

# Installs what the named sections list and the system lacks; touches nothing when everything is there.
install_packages() {
    local -a missing
    mapfile -t missing < <(missing_packages "$@")
    [[ ${#missing[@]} -gt 0 ]] || return 0
    command -v apt-get > /dev/null || { fail "these Debian packages are missing: ${missing[*]}"; return; }
    if [[ $(id -u) != 0 ]] && ! command -v sudo > /dev/null; then
        fail "neither root nor sudo; install these packages first: ${missing[*]}"
        return
    fi
    step "Installing ${#missing[@]} missing packages: ${missing[*]}"
    local log
    log=$(mktemp) || return
    if as_root apt-get -q update > "$log" 2>&1 &&
        as_root apt-get -q -y -o DPkg::Lock::Timeout=300 --no-install-recommends install "${missing[@]}" \
            < /dev/null >> "$log" 2>&1; then
        rm -f "$log"
    else
        tail -n 30 "$log" >&2
        rm -f "$log"
        fail "apt-get could not install: ${missing[*]}"
    fi
}

# Shows a build's output: whole on a terminal; elsewhere every tenth per cent, and all that is no progress.
show_build() {
    if [[ -t 1 ]]; then
        cat
    else
        awk -F '[][/]' '
            /^\[[0-9]+\/[0-9]+\]/ { if ($2 / $3 >= next_share) { print; fflush(); next_share = int(10 * $2 / $3 + 1) / 10 } next }
            { print; fflush() }'
    fi
}

# configure FOLDER OPTION...
configure() {
    local folder=$1 log=$1/configure.log
    shift
    mkdir -p "$folder"
    command -v ccache > /dev/null && set -- "-DCMAKE_CXX_COMPILER_LAUNCHER=$PWD/cmake/cached.sh" "$@"
    cmake -S . -B "$folder" -G Ninja "$@" > "$log" 2>&1 || { tail -n 40 "$log" >&2; fail "configuring $folder failed"; }
}

# build FOLDER [TARGET...]; stops at nothing but the end, so that all errors are seen at once.
build() {
    local folder=$1
    shift
    if [[ -t 1 ]]; then
        ninja -C "$folder" -j "$jobs" "$@"
    else
        ninja -C "$folder" -j "$jobs" -k 20 "$@" 2>&1 | show_build
    fi
}

# build_release TESTS [TARGET...]; TESTS is ON or OFF: who only runs the programs needs no test library.
build_release() {
    local tests=$1
    shift
    step "Configuring $release_folder"
    configure "$release_folder" -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING="$tests" || return
    step "Building $release_folder with $jobs jobs"
    build "$release_folder" "$@" || fail "the build failed"
}

# Counts the tests of a JUnit file of CTest into the variables passed and failed; one that did not run has failed. A test
# group.* is a program with many tests, which wrote its own file into the folder of the second argument.
count_tests() {
    local total=0 good=0 line
    if [[ -s $1 ]]; then
        while IFS= read -r line; do
            total=$((total + 1))
            if [[ $line =~ \ name=\"(group\.[^\"]*)\" ]]; then
                count_group "$2/${BASH_REMATCH[1]}.xml" "$line"
            elif [[ $line == *' status="run"'* ]]; then
                good=$((good + 1))
            else
                failed=$((failed + 1))
            fi
        done < <(grep '^[[:space:]]*<testcase ' "$1")
    fi
    [[ $total -gt 0 ]] || { fail "no test ran"; failed=$((failed + 1)); return; }
    passed=$((passed + good))
}

# count_group FILE LINE: the tests of a program by the file that it wrote, and by what CTest says about the program. Without
# the file it died before its end, and none of its tests counts as passed.
count_group() {
    local total=0 good=0
    [[ ! -s $1 ]] || read -r total good < <(awk '
        /^ *<testcase / { total++; ran = / status="run" result="completed"/; bad = 0 }
        /^ *<(failure|error|skipped)[ >]/ { bad = 1 }
        ran && (/^ *<testcase .*\/>$/ || /^ *<\/testcase>$/) { good += !bad; ran = 0 }
        END { print total + 0, good + 0 }' "$1")
    passed=$((passed + good))
    failed=$((failed + total - good))
    [[ $total -gt 0 ]] || { fail "no test of ${1##*/} ran to the end"; failed=$((failed + 1)); return; }
    # It may fail beside its tests, for instance by what leaked.
    [[ $good -lt $total || $2 == *' status="run"'* ]] || failed=$((failed + 1))
}

# run_tests FOLDER CTEST-ARGUMENT...
run_tests() {
    local folder=$1 report=$PWD/$1/tests.xml groups=$PWD/$1/test-groups before=$failed code
    shift
    rm -rf "$report" "$groups"
    ctest --test-dir "$folder" -j "$jobs" --output-on-failure --no-tests=error --timeout 600 --output-junit "$report" "$@" \
        < /dev/null 2>&1 | show_tests
    code=${PIPESTATUS[0]}
    count_tests "$report" "$groups"
    # CTest may fail beside its tests, for instance when it cannot list the tests of a program.
    [[ $code == 0 || $failed -gt $before ]] || failed=$((failed + 1))
}

# Leaves out the lines about tests that started or passed, except for every hundredth.
show_tests() {
    if [[ -t 1 ]]; then
        cat
    else
        awk '/^ *Start +[0-9]+:/ { next } /^ *[0-9]+\/[0-9]+ Test .* Passed / { if (++count % 100 == 0) { print; fflush() } next } { print; fflush() }'
    fi
}
