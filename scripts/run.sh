#!/usr/bin/env bash
# Installs what is missing, builds Ombrel and opens the sample folder in it.
#   bash scripts/run.sh [STYLESHEET...]
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"

bash scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build --target ombrel --parallel "$(nproc)"

[ $# -gt 0 ] || set -- examples/sample-site/theme.css
exec build/src/ombrel "$@"
