#!/usr/bin/env bash
# Runs the tests with counted lines and says how much of the library and the platform they run.
set -euo pipefail

usage() {
    cat <<'TEXT'
usage: scripts/coverage.sh [ctest option...]

Prints a table by file; a page for each source lies in build/coverage/report afterwards.
TEXT
}

# shellcheck source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

[[ ${1-} == -h || ${1-} == --help ]] && usage && exit 0
"$top/scripts/setup.sh" build test lanes
configureAndBuild coverage
find "$top/build/coverage" -name '*.gcda' -delete
cd "$top"
ctest --preset coverage --parallel "$jobs" "$@"
mkdir -p build/coverage/report
gcovr --root . --exclude 'Tests/' --exclude 'Benchmarks/' --exclude 'build/' --exclude-throw-branches \
    -j "$jobs" --html-details build/coverage/report/index.html --txt - build/coverage
