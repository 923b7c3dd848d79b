#!/usr/bin/env bash
# Runs clang-tidy over the project's own sources with the commands of the tidy lane.
set -euo pipefail

usage() {
    cat <<'TEXT'
usage: scripts/tidy.sh [--since REV | --product | FILE...]

Checks the files given (default: every source that is compiled), headers of the project included.

  --product     all but what lies below Tests and Benchmarks, as CI does
  --since REV   only sources that changed since REV, and those that include a header that did

A file is looked at when its text, its compile command, a header that it includes or the configuration changed since
a check that found nothing. The last line counts what was checked, unchanged, and left over.

Status: 0 nothing found, 1 something found. TIDY_SECONDS limits the time (default: no limit); the status is then that of
the files that were looked at.
TEXT
}

# shellcheck source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

since=
product=0
wanted=()
while (($#)); do
    case $1 in
    -h | --help) usage && exit 0 ;;
    --product) product=1 ;;
    --since)
        (($# > 1)) || misuse
        since=$2
        shift
        ;;
    -*) misuse ;;
    *) wanted+=("$(realpath -- "$1")") ;;
    esac
    shift
done

command -v clang-tidy-14 >/dev/null || die "clang-tidy-14 is missing: scripts/setup.sh lanes"
build=$top/build/tidy
cd "$top"
cmake --preset tidy >/dev/null

# Compiled files of ours; generated ones and others' lie below build/ or outside of the tree.
mapfile -t compiled < <(python3 -c '
import json, os, sys
top, database = sys.argv[1], json.load(open(sys.argv[2]))
files = {os.path.normpath(os.path.join(entry["directory"], entry["file"])) for entry in database}
print("\n".join(sorted(f for f in files if f.startswith(top + "/") and not f.startswith(top + "/build/"))))
' "$top" "$build/compile_commands.json")

if [[ -n $since ]]; then
    while IFS= read -r file; do
        case $file in
        *.c | *.cpp) wanted+=("$top/$file") ;;
        *.h | *.hpp | *.def)
            mapfile -t -O "${#wanted[@]}" wanted < <(printf '%s\n' "${compiled[@]}" |
                xargs -r grep -lF -- "$(basename "$file")")
            ;;
        esac
    done < <(git diff --name-only --diff-filter=d "$since" -- && git ls-files --others --exclude-standard)
    ((${#wanted[@]})) || exit 0
fi

if ((product)); then
    mapfile -t compiled < <(printf '%s\n' "${compiled[@]}" | grep -Ev "^$top/(Tests|Benchmarks)/")
fi
if ((${#wanted[@]})); then
    mapfile -t selected < <(comm -12 <(printf '%s\n' "${compiled[@]}" | sort -u) <(printf '%s\n' "${wanted[@]}" | sort -u))
else
    selected=("${compiled[@]}")
fi
((${#selected[@]})) || exit 0

# What ships comes first: should the time not last, tests are left over.
{
    printf '%s\n' "${selected[@]}" | grep -v "^$top/Tests/" || :
    printf '%s\n' "${selected[@]}" | grep "^$top/Tests/" || :
} | "$top/scripts/tidy-files.py" --top "$top" --build "$build" --jobs "$jobs" --seconds "${TIDY_SECONDS:-0}"
