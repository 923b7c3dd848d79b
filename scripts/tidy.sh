#!/usr/bin/env bash
# Runs clang-tidy over the project's own sources with the commands of the tidy lane. Silent when nothing is found.
set -euo pipefail

usage() {
    cat <<'TEXT'
usage: scripts/tidy.sh [--since REV | FILE...]

Checks the files given (default: every source that is compiled), headers of the project included.

  --since REV   only sources that changed since REV, and those that include a header that did

Status: 0 nothing found, 1 something found. TIDY_SECONDS limits the time (default: no limit); files that are left
over are then counted, and the status is that of the others.
TEXT
}

# shellcheck source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

since=
wanted=()
while (($#)); do
    case $1 in
    -h | --help) usage && exit 0 ;;
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

if ((${#wanted[@]})); then
    mapfile -t selected < <(comm -12 <(printf '%s\n' "${compiled[@]}" | sort -u) <(printf '%s\n' "${wanted[@]}" | sort -u))
else
    selected=("${compiled[@]}")
fi
((${#selected[@]})) || exit 0

results=$(mktemp -d)
trap 'rm -rf "$results"' EXIT
end=$(($(date +%s) + ${TIDY_SECONDS:-86400}))
export results build end

# shellcheck disable=SC2317  # run through xargs
checkOne() {
    local result
    result=$results/${1//\//_}
    if (($(date +%s) >= end)); then
        touch "$result.left"
    elif ! clang-tidy-14 --quiet -p "$build" "$1" >"$result.out" 2>"$result.err"; then
        touch "$result.failed"
    fi
}
export -f checkOne
# shellcheck disable=SC2016  # expanded by the shell that xargs starts
printf '%s\0' "${selected[@]}" | xargs -0 -P "$jobs" -n 1 bash -c 'checkOne "$1"' -

shopt -s nullglob
failed=("$results"/*.failed)
left=("$results"/*.left)
((${#left[@]} == 0)) || echo "tidy: no time left for ${#left[@]} of ${#selected[@]} files"
((${#failed[@]})) || exit 0
# A finding in a header shows once for each source that includes it: print each block once.
for mark in "${failed[@]}"; do
    cat "${mark%.failed}.out"
    grep -E ': (fatal )?error: ' "${mark%.failed}.err" || :
done | sed "s|$top/||g" | awk '/: (error|warning): /{show = !seen[$0]++} show || !NF'
echo "tidy: ${#failed[@]} of ${#selected[@]} files have findings" >&2
exit 1
