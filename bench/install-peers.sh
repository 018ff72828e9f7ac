#!/usr/bin/env bash
# Installs the peer parsers and the real-world stylesheets with npm into
# bench/peers (ignored by git), and gathers the stylesheets into
# bench/peers/corpus. Prints the corpus folder.
set -euo pipefail
peers="$(cd "$(dirname "$0")/peers" && pwd)"
cd "$peers"
if [ ! -d node_modules/lightningcss ] || [ ! -d node_modules/semantic-ui-css ] ||
    [ ! -d node_modules/tailwindcss ]; then
    npm install --no-audit --no-fund --ignore-scripts --loglevel=error >&2
fi
mkdir -p corpus
while read -r name source; do
    cp "node_modules/$source" "corpus/$name.css"
done <<'LIST'
bootstrap bootstrap/dist/css/bootstrap.css
bulma bulma/css/bulma.css
foundation foundation-sites/dist/css/foundation.css
semantic-ui semantic-ui-css/semantic.css
primer @primer/css/dist/primer.css
fontawesome @fortawesome/fontawesome-free/css/all.css
tailwind tailwindcss/dist/tailwind.css
LIST
echo "$peers/corpus"
