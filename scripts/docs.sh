#!/usr/bin/env bash
# Makes the reference of the library's headers, with the README and the pages in docs/, as HTML:
# build/docs/html/index.html.
#
# Fails if Doxygen warns, if a class or a namespace has no comment, or if a link of a page leads nowhere, in the
# sources or in the result. Installs missing packages first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly html=build/docs/html

fail()
{
  echo "docs.sh: $*" >&2
  exit 1
}

scripts/setup.sh docs
rm -rf "$html"
mkdir -p "$html"

python3 scripts/check_links.py ./*.md docs/*.md || fail "these links lead nowhere"
doxygen docs/Doxyfile || fail "Doxygen complains"
if grep -hoE '"el" href="[^"]*"[^<]*</a></td><td class="desc"></td>' "$html/annotated.html" "$html/namespaces.html" \
  | sed -E 's/.*>([^<]+)<\/a>.*/\1/' | sort -u | grep .; then
  fail "these have no comment"
fi
# Left in the text if Doxygen does not recognise a table
if grep -lE 'ilinebr|\|&mdash;\|' "$html"/*.html; then fail "the tables of these pages are broken"; fi
# Only in the pages: some of Doxygen's own links to things that it leaves out, such as private classes, are wrong.
python3 scripts/check_links.py "$html"/index.html "$html"/md_*.html || fail "these links lead nowhere"
echo "$html/index.html"
