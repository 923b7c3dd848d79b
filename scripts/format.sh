#!/usr/bin/env bash
# Formats the project's own C and C++ files, or says which are not formatted.
set -euo pipefail

usage() {
    cat <<'TEXT'
usage: scripts/format.sh [--check] [FILE...]

Formats the files given (default: all of the project) in place.

  --check   change nothing; name each file that is not formatted, status 1 when there is one
TEXT
}

# shellcheck source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

check=0
files=()
while (($#)); do
    case $1 in
    -h | --help) usage && exit 0 ;;
    --check) check=1 ;;
    -*) misuse ;;
    *) files+=("$(realpath -- "$1")") ;;
    esac
    shift
done

command -v clang-format-14 >/dev/null || die "clang-format-14 is missing: scripts/setup.sh lanes"
cd "$top"
if ((${#files[@]} == 0)); then
    mapfile -t files < <(ownFiles '*.cpp' '*.hpp' '*.c' '*.h')
fi
((${#files[@]})) || exit 0

format() {
    printf '%s\0' "${files[@]}" | xargs -0 -P "$jobs" -n 32 clang-format-14 "$@"
}

if ((!check)); then
    format -i
    exit 0
fi
report=$(mktemp)
trap 'rm -f "$report"' EXIT
format --dry-run -Werror 2>"$report" && exit 0
# The first place of each file says enough: scripts/format.sh mends the whole file.
grep -q 'code should be clang-formatted' "$report" || cat "$report" >&2
sed -n "s|^$top/||; s/^\([^:]*:[0-9]*\):.* code should be clang-formatted.*/\1: not formatted/p" "$report" |
    sort -t: -k1,1 -u
exit 1
