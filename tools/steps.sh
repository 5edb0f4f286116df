# Sourced by ./dev: steps that keep their output to themselves unless they fail.

logs=build/log

# step NAME COMMAND...: runs the command with its output in a log, which is shown when the command fails. Of a long step
# a line says now and then how far its log has come.
step() {
  local name=$1 log=$logs/${1//[ \/]/-}.log started=$SECONDS status=0 running
  shift
  mkdir -p "$logs"
  : >"$log"
  exec {running}> >(tell_progress "$name" "$log")
  "$@" >"$log" 2>&1 {running}>&- || status=$?
  exec {running}>&-
  if [ "$status" -eq 0 ]; then
    echo "$name: done ($((SECONDS - started)) s)"
  else
    cat "$log" >&2
    echo "$name: failed (status $status; the log above is $log)" >&2
    exit "$status"
  fi
}

# tell_progress NAME LOG: a line every minute, until its input is closed.
tell_progress() {
  local every=60 started=$SECONDS status
  while true; do
    status=0
    read -rt "$every" || status=$?
    [ "$status" -gt 128 ] || return 0
    echo "$1: $((SECONDS - started)) s, $(tail -n 1 "$2" | tr -d '\r' | cut -c 1-80)"
  done
}

# test_summary PRESET: why tests were skipped and which, then the lines with which ctest closed its last full run.
test_summary() {
  grep -h '^skipped: ' "build/$1/Testing/Temporary/LastTest.log" || true
  grep -E '\(Skipped\)$' "$logs/test-$1.log" | grep -v ' Test *#' || true
  grep -E '^[0-9]+% tests passed|^Total Test time' "$logs/test-$1.log"
}
