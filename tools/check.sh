#!/usr/bin/env bash
# What must hold before a commit: format, layers, build, tests. With --tidy also clang-tidy.
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format --dry-run -Werror
python3 tools/check-includes.py
if [ "${1:-}" = --tidy ]; then
    cmake --preset release >/dev/null
    git ls-files -z '*.cpp' ':!tests' ':!host/formats' | xargs -0 -P 2 -n 4 clang-tidy -p build --quiet
fi
./test
