# Shared by the scripts: where the project is, and how they build.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
jobs=$(nproc)
if [ -z "${QVLINKDB_COMPILER_LAUNCHER+set}" ] && command -v ccache >/dev/null; then
  export QVLINKDB_COMPILER_LAUNCHER=ccache
fi

# The comment at the head of the script is its help.
help() {
  sed -n '2,/^[^#]/{/^#/!d;s/^# \?//p}' "$0"
  exit 0
}

fail() {
  echo "$(basename "$0"): $*" >&2
  exit 2
}

# quietly LOG COMMAND...: what the command says goes to a file, and is shown if it fails.
quietly() {
  local log=$1
  shift
  mkdir -p "$(dirname "$log")"
  if ! "$@" >"$log" 2>&1 </dev/null; then
    tail -n 200 "$log" >&2
    echo "$(basename "$0"): failed: $* (all of it: $log)" >&2
    return 1
  fi
}

# configure PRESET [OPTION...]
configure() {
  local preset=$1
  shift
  quietly "$root/build/$preset/configure.log" cmake -S "$root" --preset "$preset" "$@"
}

# build PRESET [TARGET...]: builds the targets, or everything, of a configured preset.
build() {
  local folder=$root/build/$1
  shift
  quietly "$folder/build.log" cmake --build "$folder" -j "$jobs" "${@/#/--target=}"
}

# check COMMAND...: one test of a script; its output is shown if it fails. report tells the
# counts, as the last line, and fails if a check did.
checks_passed=0 checks_failed=0 checks_skipped=0
check() {
  local output
  if output=$("$@" 2>&1 </dev/null); then
    checks_passed=$((checks_passed + 1))
    echo "passed: $*"
  else
    checks_failed=$((checks_failed + 1))
    printf '%s\nFAILED: %s\n' "$output" "$*"
    return 1
  fi
}
report() {
  echo "$checks_passed passed, $checks_failed failed, $checks_skipped skipped"
  [ "$checks_failed" = 0 ]
}
