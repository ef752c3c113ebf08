#!/usr/bin/env bash
# What must hold before a push, and what CI runs: format, layers, clang-tidy, build, tests.
#
#     tools/check.sh            clang-tidy's quick checks, on the code that reads what others wrote
#     tools/check.sh --tidy     all checks of .clang-tidy on all code outside tests; takes long
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install-packages.sh
git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format --dry-run -Werror
python3 tools/check-includes.py
cmake --preset release >/dev/null
if [ "${1:-}" = --tidy ]; then
    files=('*.cpp' ':!tests' ':!host/formats')
    checks=()
else
    files=('data/state/*.cpp' data/music/MidiFile.cpp 'host/effect/*.cpp' 'platform/*.cpp')
    checks=(--checks='-*,bugprone-use-after-move,bugprone-infinite-loop,bugprone-suspicious-*,
bugprone-sizeof-*,bugprone-dangling-handle,performance-for-range-copy,performance-unnecessary-*,
modernize-use-override,modernize-use-nullptr' '--warnings-as-errors=*')
fi
git ls-files -z "${files[@]}" |
    xargs -0 -P "$(nproc)" -n 6 clang-tidy -p build --quiet "${checks[@]}"
./test
