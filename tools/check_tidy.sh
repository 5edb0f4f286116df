#!/usr/bin/env bash
# check_tidy.sh BUILD: clang-tidy 19 over the plug-in and the declarations of the host that it calls, as .clang-tidy says.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# The compile commands are g++'s, which has warnings that clang does not know.
run-clang-tidy-19 -p "$1" -quiet -j "$(nproc)" -extra-arg=-Wno-unknown-warning-option "^$PWD/(driver|syntax|engine|tables)/.*\.cpp$"
