#!/usr/bin/env bash
# Measures Ombrel's parser and generator against the parsers a user would
# otherwise reach for, on the same files in the same run, and prints one table;
# then times opening folders of stylesheets (ombrel-bench-workspace), the first
# open in a fresh process included, and a whole window's answers on large
# stylesheets (ombrel-bench-fluid).
#   bash bench/run.sh
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"

bash scripts/install-deps.sh
corpus="$(bash bench/install-peers.sh)"
inputs="$root/bench/peers/generated"
node bench/make-inputs.mjs "$inputs"

# Tests stay configured: the same build directory serves the test run.
cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DOMBREL_BUILD_TESTS=ON >/dev/null
cmake --build build-bench --target ombrel-bench-parse ombrel-bench-workspace ombrel-bench-resolve \
    ombrel-bench-originals ombrel-bench-fluid --parallel 2 >/dev/null

files=("$corpus"/*.css "$inputs"/*.css)
ombrel="$(mktemp)"
peers="$(mktemp)"
trap 'rm -f "$ombrel" "$peers"' EXIT
build-bench/bench/ombrel-bench-parse "${files[@]}" >"$ombrel"
node bench/peers.mjs "${files[@]}" >"$peers"
node bench/table.mjs "$ombrel" "$peers"
echo
build-bench/bench/ombrel-bench-workspace "$corpus"

echo
echo "Readings of one canvas redraw (custom properties, then the four resolved"
echo "readings of every ruleset), beside one parse of the same file:"
build-bench/bench/ombrel-bench-resolve "$corpus"/{bootstrap,bulma,semantic-ui,primer}.css

echo
echo "Keeping originals: the parse with and without counting what it drops, and"
echo "what a first lossy save of tailwind's stylesheet adds to a plain save:"
build-bench/bench/ombrel-bench-originals "$corpus"

echo
echo "A window on large stylesheets: filter keystrokes, selection changes and"
echo "file switches from input to painted list, and the memory of the file shown:"
build-bench/bench/ombrel-bench-fluid "$corpus"
