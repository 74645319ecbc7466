#!/usr/bin/env bash
# Fails when a shared library exports anything else than a list names.
# Usage: compare_exports.sh LIBRARY LIST [NM]
set -euo pipefail
export LC_ALL=C
library=$1 list=$2 nm=${3:-nm}

# Constructors and destructors come in several variants that are written alike. Lines are "address kind name".
exported=$("$nm" --dynamic --defined-only --demangle "$library" | sed -E 's/^[0-9a-f]* +[A-Za-z] //' | sort -u)
missing=$(comm -23 <(sort -u "$list") <(printf '%s\n' "$exported"))
surplus=$(comm -13 <(sort -u "$list") <(printf '%s\n' "$exported"))

if [[ -z $missing && -z $surplus ]]; then
  echo "$(basename "$library") exports the $(wc -l <"$list") names of $(basename "$list")"
  exit 0
fi
echo "$(basename "$library") differs from $(basename "$list"):"
[[ -z $missing ]] || printf '  not exported, but published: %s\n' "${missing//$'\n'/$'\n  not exported, but published: '}"
[[ -z $surplus ]] || printf '  exported, but not published: %s\n' "${surplus//$'\n'/$'\n  exported, but not published: '}"
exit 1
