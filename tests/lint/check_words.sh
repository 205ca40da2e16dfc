#!/usr/bin/env bash
# Files speak of this program alone: not of one machine's folders, not of chapters in documents that
# a reader does not have. Files stay short, and long ones are named.
set -u
cd "$(dirname "$0")/../.." || exit 1
files() { git ls-files -co --exclude-standard 2> /dev/null || find . -type f -not -path './build/*'; }
bad=0
words='\b[P]arts? [0-9]+\.[0-9]+\b|\bthe [s]pec(ification)?\b|[s]pec\.md|(^|[^a-zA-Z0-9._-])/(work|farm)/|\.\./shared'
if files | grep -v '^DEVELO[P]ERS.md$' | xargs -r grep -nIE "$words" /dev/null | cut -c1-160 | grep .; then
    echo "these lines speak of something outside this program"
    bad=1
fi
if files | grep -E '^(source|tests|tools|benchmarks)/.*\.(cpp|h|sh|py)$' | xargs -r wc -l |
    awk '$2 != "total" && $1 > 500' | grep .; then
    echo "these files have more than 500 lines"
    bad=1
fi
exit $bad
