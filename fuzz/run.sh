#!/usr/bin/env bash
# Runs every fuzz target of a fuzz build for a bounded time, starting from the
# committed seed corpus. Findings are written to fuzz/findings and fail the run.
#   fuzz/run.sh BUILD_DIR SECONDS_PER_TARGET
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
build="$1"
seconds="${2:-20}"
mkdir -p "$here/findings"
status=0
for target in "$build"/fuzz/fuzz_*; do
    [ -f "$target" ] && [ -x "$target" ] || continue
    name="$(basename "$target")"
    seeds="$here/corpus/${name#fuzz_}"
    work="$(mktemp -d)"
    [ -d "$seeds" ] && cp -r "$seeds/." "$work/"
    echo "fuzzing $name for ${seconds}s"
    if ! "$target" "$work" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
            -max_len=65536 -print_final_stats=1 -artifact_prefix="$here/findings/$name-" \
            >"$work.log" 2>&1; then
        tail -n 40 "$work.log"
        status=1
    else
        grep -E '^(stat::number_of_executed_units|#[0-9]+ *DONE)' "$work.log" || true
    fi
    rm -rf "$work" "$work.log"
done
exit $status
