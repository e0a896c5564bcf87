# SPDX-License-Identifier: MIT
# For the scripts that build a program of others from its pinned source, which set `tool` to its name and source this.
# What they build is kept outside the tree, under the hash of everything that decides what it is, so that it is built
# once per machine and not once per clone.

cache=${XDG_CACHE_HOME:-$HOME/.cache}/talvera

fail() { echo "$tool: $*" >&2; exit 1; }

# What makes a flaw in the reading of foreign data harder to use.
hardening="-fstack-protector-strong -fstack-clash-protection -fcf-protection -fPIE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2"
hardening_flags=("-DCMAKE_C_FLAGS=$hardening" "-DCMAKE_CXX_FLAGS=$hardening -D_GLIBCXX_ASSERTIONS"
    "-DCMAKE_EXE_LINKER_FLAGS=-pie -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack")

declare -A variant_flags=(
    [avx2]="-DGGML_SSE42=ON -DGGML_AVX=ON -DGGML_AVX2=ON -DGGML_FMA=ON -DGGML_F16C=ON -DGGML_BMI2=ON"
    [sse42]="-DGGML_SSE42=ON -DGGML_AVX=OFF -DGGML_AVX2=OFF -DGGML_FMA=OFF -DGGML_F16C=OFF -DGGML_BMI2=OFF")

variant_of_this_machine() {
    local flag
    for flag in avx2 fma f16c bmi2; do
        grep -qw "$flag" /proc/cpuinfo || { echo sse42; return; }
    done
    echo avx2
}

# read_arguments ARGUMENT...: sets variant, cached_only and copy; what it doesn't know goes to own_argument.
read_arguments() {
    variant= cached_only= copy=
    while [ $# -gt 0 ]; do
        case $1 in
        --variant) variant=${2:-}; shift ;;
        --cached) cached_only=yes ;;
        --to) copy=${2:-}; shift ;;
        *) own_argument "$1" || fail "unknown argument: $1 (see the head of $0)" ;;
        esac
        shift
    done
    : "${variant:=$(variant_of_this_machine)}"
    [ -n "${variant_flags[$variant]:-}" ] || fail "unknown variant '$variant': avx2 or sse42"
}

# A program that doesn't start (a cache shared with another system, libraries gone) is no program.
works() { [ -x "$program" ] && (cd "$home" && "./${program##*/}" --version >/dev/null 2>&1); }

hand_over() {
    if [ -n "$copy" ]; then
        mkdir -p "$(dirname "$copy")"
        cp "$program" "$copy.part"
        mv "$copy.part" "$copy"
    fi
    echo "$program"
}

# Ends here if $program is there already. Else takes the lock (a second caller waits, and then finds it built) and goes
# into an empty directory that is gone at the end.
begin_build() {
    if works; then hand_over; exit 0; fi
    [ -z "$cached_only" ] || exit 1
    mkdir -p "$cache/$tool"
    exec 9>"$cache/$tool/lock"
    flock 9
    if works; then hand_over; exit 0; fi
    work=$(mktemp -d "$cache/$tool/.build.XXXXXX")
    trap 'rm -rf "$work"' EXIT
    log=$cache/$tool/build.log
    : >"$log"
    cd "$work"
    launchers=() # so that a changed patch doesn't cost the whole build again
    if command -v ccache >/dev/null; then
        launchers=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
        export CCACHE_BASEDIR=$work CCACHE_NOHASHDIR=1 CCACHE_COMPILERCHECK=content
    fi
}

step() { # step DESCRIPTION COMMAND...
    echo "$tool: $1" >&2
    shift
    "$@" >>"$log" 2>&1 || { tail -n 30 "$log" >&2; fail "failed; the whole log is $log"; }
}

# fetch PACKAGE INTEGRITY: sets tarball to the package's file, whose hash is what was pinned.
fetch() {
    command -v npm >/dev/null || fail "npm is needed to fetch $1"
    step "fetching $1" npm pack --loglevel error "$1"
    tarball=$(echo ./*.tgz)
    local pinned
    pinned=$(base64 -d <<<"${2#sha512-}" | od -An -v -tx1 | tr -d ' \n')
    [ "$(sha512sum <"$tarball" | cut -d' ' -f1)" = "$pinned" ] ||
        fail "what was fetched is not what was pinned; nothing of it has been run"
}

# keep_result: puts the directory result where $program is looked for.
keep_result() {
    rm -rf "$home"
    mv result "$home"
    works || fail "the program was built but doesn't start: $program"
    hand_over
}
