# What the scripts of this folder share; they source it.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cache=${XDG_CACHE_HOME:-$HOME/.cache}/orvex

# The Debian packages that each purpose takes. One list each; every script names the lists that it needs.
# shellcheck disable=SC2034
{
    build_packages=(g++ cmake ninja-build ccache libcli11-dev nlohmann-json3-dev libfmt-dev zlib1g-dev)
    native_test_packages=(libgtest-dev libbenchmark-dev pkg-config gcc python3)
    sanitize_packages=(clang libclang-rt-14-dev)
    coverage_packages=(llvm)
    format_packages=(clang-format)
    lint_packages=(clang clang-tidy clang-tools)
    script_packages=(shellcheck)
    windows_packages=(g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix mingw-w64-tools googletest python3)
    arm_packages=(g++-aarch64-linux-gnu qemu-user googletest)
    wine_packages=(wine64)
    python_packages=(python3-dev python3-venv)
    bare_packages=(debootstrap git ca-certificates)
    web_packages=(emscripten node-acorn python3-venv)
    debian_packages=(build-essential debhelper dpkg-dev lintian git)
    installer_packages=(nsis libz-mingw-w64-dev zip git)
    web_test_packages=(chromium fonts-dejavu-core)
}

say() {
    printf '==> %s\n' "$*"
}

# fail LINE...: what went wrong and what to do about it, then the end.
fail() {
    printf '%s: %s\n' "${0##*/}" "$1" >&2
    shift
    (($# == 0)) || printf '    %s\n' "$@" >&2
    exit 1
}

# Prints the comment at the head of the running script.
print_help() {
    sed -n '2,/^$/s/^# \{0,1\}//p' "$0"
}

as_root() {
    if ((EUID == 0)); then
        "$@"
    else
        sudo "$@"
    fi
}

# need_packages NAME...: installs those that are missing; leaves the machine alone when none is.
need_packages() {
    local name missing=() log
    for name in "$@"; do
        [[ $(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null) == installed ]] || missing+=("$name")
    done
    ((${#missing[@]} > 0)) || return 0

    local by_hand="apt-get update && apt-get install --no-install-recommends ${missing[*]}"
    if ! grep -qs '^[A-Z_]*CODENAME=bookworm$' /etc/os-release || ! command -v apt-get >/dev/null; then
        fail "this system is not Debian 12 (bookworm) or one made of it, so the packages it lacks are not installed here" \
            "Install what Debian calls: ${missing[*]}"
    fi
    if ((EUID != 0)) && ! command -v sudo >/dev/null; then
        fail "packages are missing, and installing them takes root or sudo" "Let root run: $by_hand"
    fi

    say "Installing ${#missing[@]} Debian packages: ${missing[*]}"
    log=$(mktemp)
    # An index that cannot be had may be one that is not needed: installing tells.
    as_root apt-get -q update >"$log" 2>&1 || say "apt-get update failed; trying with the indexes that are there"
    if ! as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o Dpkg::Use-Pty=0 -o DPkg::Lock::Timeout=300 \
        install --no-install-recommends "${missing[@]}" >>"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        fail "apt could not install the packages; its messages are above" \
            "Check the network and /etc/apt/sources.list, then run: $by_hand"
    fi
    rm -f "$log"
}

# Compiled objects are kept outside the checkout, for all checkouts of this project together.
use_compiler_cache() {
    export CCACHE_DIR=$cache/ccache CCACHE_MAXSIZE=${CCACHE_MAXSIZE:-2G} CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1
}

# The version, which stands in one place.
project_version() {
    sed -n 's/^project(Orvex VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt"
}

# The time that everything packed has: that of the commit, so that the same commit gives the same bytes.
use_fixed_date() {
    SOURCE_DATE_EPOCH=$(git -C "$root" log -1 --format=%ct)
    export SOURCE_DATE_EPOCH
}

# make_environment FOLDER REQUIREMENTS: an environment of Python with just these packages, from the machine's package index;
# one that is there and whole is kept.
make_environment() {
    local mark
    mark=$(sha256sum "$2")
    if [[ $(cat "$1/made-of" 2>/dev/null) != "$mark" ]]; then
        say "Installing $(grep -c '^[[:alnum:]]' "$2") Python packages into $1"
        rm -rf "$1"
        "${PYTHON:-python3}" -m venv "$1"
        "$1/bin/pip" install -q --disable-pip-version-check -r "$2" ||
            fail "pip could not install the packages; its messages are above" "Check the settings: pip config list"
        echo "$mark" >"$1/made-of"
    fi
}

# Puts a Node that is new enough, with its npm, first in the path: the system's, or else one of PyPI's.
use_node() {
    local folder=$root/build/node major
    major=$(node -p 'process.versions.node.split(".")[0]' 2>/dev/null || echo 0)
    if ((major < 20)) || ! command -v npm >/dev/null; then
        make_environment "$folder" web/node.txt
        export PATH=$folder/bin:$PATH
    fi
}

# The packages that web/package-lock.json names, in web/node_modules; those that are there already stay.
install_node_packages() {
    local mark made=web/node_modules/.made-of
    mark=$(cat web/package.json web/package-lock.json | sha256sum)
    [[ $(cat "$made" 2>/dev/null) != "$mark" ]] || return 0
    say "Installing the packages of web/package-lock.json"
    npm --prefix web ci --silent ||
        fail "npm could not install the packages" "Check the settings: npm config list; its messages: npm --prefix web ci"
    echo "$mark" >"$made"
}

# build_web TARGET...: the WebAssembly modules of these names; of orvex_web, in build/web, the npm package and the studio.
build_web() {
    use_node
    cmake --preset wasm >/dev/null
    cmake --build --preset wasm --target "$@"
    install_node_packages
    node web/build.mjs package
    node web/build.mjs studio
}

# build_for_coverage TARGET...: in build/coverage.
build_for_coverage() {
    cmake --preset coverage >/dev/null
    # The tools look for the sources where they were compiled, which in this checkout must be this checkout.
    env -u CCACHE_BASEDIR cmake --build --preset coverage --target "$@"
}

# report_coverage FOLDER PROGRAM...: how many lines of the library the programs ran, in all and in the files of which they
# ran not all, from the profiles that they left in the folder. Which lines those are: FOLDER/lines.
report_coverage() {
    local folder=$1 arguments
    shift
    llvm-profdata merge -sparse "$folder"/*.profraw -o "$folder/profile"
    arguments=("$1" "${@/#/-object=}" -instr-profile="$folder/profile" -ignore-filename-regex=/automation/ "$root/orvex")
    # It warns of inline functions of which one program has no copy and another has.
    llvm-cov show "${arguments[@]}" 2> >(grep -v "mismatched data" >&2) >"$folder/lines"
    llvm-cov report -show-region-summary=0 -show-branch-summary=0 "${arguments[@]}" 2> >(grep -v "mismatched data" >&2) |
        awk '$1 == "TOTAL" || $NF ~ /%$/ && $NF != "100.00%" { printf "    %-40s %5d of %5d lines %8s\n", $1, $5 - $6, $5, $7 }'
}
