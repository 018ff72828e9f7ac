#!/usr/bin/env bash
# Cold start of ombrel with the sample folder to its first painted window,
# beside a bare Qt window built in the same tree, on an X server of its own;
# prints the median of each, their ratio, and the resident memory once shown.
#   bash bench/startup.sh [RUNS]
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"
runs="${1:-15}"

bash scripts/install-deps.sh
cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DOMBREL_BUILD_TESTS=OFF >/dev/null
cmake --build build-bench --target ombrel-bench-startup ombrel-bench-bare-window --parallel 2 >/dev/null

scratch="$(mktemp -d)"
display=":$((90 + RANDOM % 100))"
Xvfb "$display" -screen 0 1600x1000x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
trap 'kill $xvfb 2>/dev/null; rm -rf "$scratch"' EXIT
for _ in $(seq 50); do
    [ -e "/tmp/.X11-unix/X${display#:}" ] && break
    sleep 0.1
done

# A home and runtime folder of the benchmark's own: no settings of the user's
# are read, no session is restored, no running instance is met.
mkdir -p "$scratch/home" "$scratch/runtime"
chmod 700 "$scratch/runtime"
export DISPLAY="$display" HOME="$scratch/home" XDG_RUNTIME_DIR="$scratch/runtime" \
    XDG_CONFIG_HOME="$scratch/home/.config" QT_QPA_PLATFORM=xcb
unset DBUS_SESSION_BUS_ADDRESS

# Prints "milliseconds rss-kb" for one launch.
measure() {
    local start output painted rss
    start="$(date +%s%N)"
    output="$("$@")"
    painted="$(sed -n 's/^painted-ns //p' <<<"$output")"
    rss="$(sed -n 's/^rss-kb //p' <<<"$output")"
    echo "$(( (painted - start) / 1000 )) $rss"
}

# Median of the first column (microseconds) and of the second.
median() { sort -n | awk '{ a[NR] = $0 } END { print a[int((NR + 1) / 2)] }'; }

sample="$root/examples/sample-site/theme.css"
bare=()
ombrel=()
# Warm the file cache once, then alternate so that both see the same machine.
measure build-bench/bench/ombrel-bench-bare-window >/dev/null
measure build-bench/bench/ombrel-bench-startup "$sample" >/dev/null
for _ in $(seq "$runs"); do
    bare+=("$(measure build-bench/bench/ombrel-bench-bare-window)")
    ombrel+=("$(measure build-bench/bench/ombrel-bench-startup "$sample")")
done

bare_us="$(printf '%s\n' "${bare[@]}" | awk '{print $1}' | median)"
ombrel_us="$(printf '%s\n' "${ombrel[@]}" | awk '{print $1}' | median)"
bare_rss="$(printf '%s\n' "${bare[@]}" | awk '{print $2}' | median)"
ombrel_rss="$(printf '%s\n' "${ombrel[@]}" | awk '{print $2}' | median)"

awk -v runs="$runs" -v bu="$bare_us" -v ou="$ombrel_us" -v br="$bare_rss" -v orss="$ombrel_rss" 'BEGIN {
    printf "Cold start to the first painted window, median of %d runs\n", runs
    printf "  %-38s %8.1f ms   %6.1f MB resident\n", "bare Qt window (floor)", bu / 1000, br / 1024
    printf "  %-38s %8.1f ms   %6.1f MB resident\n", "ombrel examples/sample-site/theme.css", ou / 1000, orss / 1024
    printf "  ratio ombrel / floor: %.2f (target: at most 1.5; memory target: under 80 MB)\n", ou / bu
}'
