#!/usr/bin/env bash
# Says which source file is not as clang-format 19 would write it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
find . -path ./build -prune -o -path ./.git -prune -o \( -name '*.h' -o -name '*.cpp' \) -print0 |
  xargs -0 -r clang-format-19 --dry-run -Werror
