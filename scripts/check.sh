#!/usr/bin/env bash
# The quick static checks, all of them, none of which needs a build.
set -euo pipefail

usage() {
    cat <<'TEXT'
usage: scripts/check.sh

Checks format, layers, scripts, pictures, ready-made boards, that each test file is registered, and the shape of files.
Runs every check and names what it found; status 1 when there was something.
TEXT
}

# shellcheck source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

[[ ${1-} == -h || ${1-} == --help ]] && usage && exit 0
(($# == 0)) || misuse
cd "$top"

# shellcheck disable=SC2317  # called through check()
checkScripts() {
    local scripts status=0
    mapfile -t scripts < <(ownFiles '*.sh' .ci/run)
    for script in "${scripts[@]}"; do
        bash -n "$script" || status=1
    done
    command -v shellcheck >/dev/null || die "shellcheck is missing: scripts/setup.sh lanes"
    shellcheck "${scripts[@]}" || status=1
    return "$status"
}

failed=0
check() {
    local name=$1
    shift
    if "$@"; then
        echo "check: $name ok"
    else
        echo "check: $name FAILED" >&2
        failed=1
    fi
}

check format scripts/format.sh --check
check layers scripts/check-layers.py
check "layers check itself" scripts/check-layers.py --self-test
check lists scripts/check-lists.py
check "lists check itself" scripts/check-lists.py --self-test
check pictures scripts/draw-messages.py --self-test
check scripts checkScripts
check "ready-made boards" scripts/make-boards.py --check
exit $failed
