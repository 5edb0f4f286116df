#!/usr/bin/env bash
# Renews package-lock.json after a version was changed in package.json. The npm package duckdb is wanted for its header
# alone, so what it needs for compiling itself is taken out of the lock again: three packages stay.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cp "$here/package.json" "$here/.npmrc" "$scratch"
(cd "$scratch" && npm install --package-lock-only --ignore-scripts)
python3 - "$scratch/package-lock.json" "$here/package-lock.json" <<'PY'
import json, sys

source, target = sys.argv[1:]
lock = json.load(open(source))
wanted = set(lock["packages"][""]["dependencies"]) | set(lock["packages"][""]["optionalDependencies"])
kept = {"": lock["packages"][""]}
for name in sorted(wanted):
    entry = lock["packages"]["node_modules/" + name]
    entry.pop("dependencies", None)
    kept["node_modules/" + name] = entry
lock["packages"] = kept
with open(target, "w") as out:
    json.dump(lock, out, indent=2)
    out.write("\n")
PY
