#!/usr/bin/env bash
# Installs what is missing, builds Ombrel and runs every test: the test suite,
# the same suite built with AddressSanitizer and UndefinedBehaviorSanitizer,
# and each fuzz target for a bounded time.
#   OMBREL_FUZZ_SECONDS  seconds for each fuzz target (default 20)
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"
jobs="$(nproc)"

bash scripts/install-deps.sh
OMBREL_CORPUS_DIR="$(bash bench/install-peers.sh)"
export OMBREL_CORPUS_DIR

step() { printf '\n== %s\n' "$*"; }

# Runs a build's CTest suite and adds its counts to the closing summary.
passed=0
failed=0
run_suite() {
    local log
    log="$(mktemp)"
    local status=0
    (cd "$1" && ctest --output-on-failure -j "$jobs") 2>&1 | tee "$log" ||
        status=$?
    local counts
    counts="$(sed -n 's/.*tests passed, \([0-9]*\) tests failed out of \([0-9]*\).*/\1 \2/p' "$log")"
    rm -f "$log"
    if [ -n "$counts" ]; then
        set -- $counts
        failed=$((failed + $1))
        passed=$((passed + $2 - $1))
    fi
    return $status
}

step "Build"
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DOMBREL_WERROR=ON >/dev/null
cmake --build build -j "$jobs"

step "Tests"
run_suite build

step "Tests with AddressSanitizer and UndefinedBehaviorSanitizer"
cmake -S . -B build-sanitize -G Ninja -DCMAKE_BUILD_TYPE=Debug -DOMBREL_SANITIZE=ON \
    -DOMBREL_WERROR=ON >/dev/null
cmake --build build-sanitize -j "$jobs"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    run_suite build-sanitize

step "Fuzzing"
CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DOMBREL_FUZZ=ON -DOMBREL_WERROR=ON >/dev/null
cmake --build build-fuzz -j "$jobs"
bash fuzz/run.sh build-fuzz "${OMBREL_FUZZ_SECONDS:-20}"

echo
echo "Summary: $passed passed, $failed failed"
