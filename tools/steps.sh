# Sourced by ./dev: steps that keep their output to themselves unless they fail.

logs=build/log

# step NAME COMMAND...: runs the command with its output in a log, which is shown when the command fails.
step() {
  local name=$1 log=$logs/${1//[ \/]/-}.log started=$SECONDS
  shift
  mkdir -p "$logs"
  if "$@" >"$log" 2>&1; then
    echo "$name: done ($((SECONDS - started)) s)"
  else
    local status=$?
    cat "$log" >&2
    echo "$name: failed (status $status; the log above is $log)" >&2
    exit "$status"
  fi
}

# test_summary PRESET: the lines with which ctest closed its last full run, and why tests were skipped.
test_summary() {
  grep -E 'tests? (passed|failed)|^Total Test time|\(Skipped\)$' "$logs/test-$1.log"
  grep -h '^skipped: ' "build/$1/Testing/Temporary/LastTest.log" || true
}
