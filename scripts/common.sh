# shellcheck shell=bash
# What the scripts share. Each script sources this file first.
#
# ZUML_BUILD_ROOT  where build folders go       (build/ in the repository)
# ZUML_JOBS        how many jobs run at a time  (one per processor)
# ZUML_CMAKE_ARGS  more arguments for CMake, separated by spaces

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build_root=${ZUML_BUILD_ROOT:-$PWD/build}
jobs=${ZUML_JOBS:-$(nproc)}

# The tests under the address sanitizer share this build with the fuzz programs.
# shellcheck disable=SC2034,SC2054 # used by the scripts that source this file
address_arguments=(-DZUML_SANITIZE=address,undefined -DZUML_FUZZ=ON)

die() {
  echo "$(basename "$0"): $*" >&2
  exit 1
}

# run_quietly LOG COMMAND...: shows what the command wrote only if it failed.
run_quietly() {
  local log=$1
  shift
  "$@" > "$log" 2>&1 || { cat "$log" >&2; return 1; }
}

# configure NAME CMAKE-ARGUMENT...: makes the build folder NAME ready.
configure() {
  local folder=$build_root/$1
  shift
  mkdir -p "$folder"
  # shellcheck disable=SC2086 # the extra arguments are separated by spaces on purpose
  run_quietly "$folder/configure.log" cmake -S . -B "$folder" -G Ninja "$@" ${ZUML_CMAKE_ARGS:-}
}

# build NAME [TARGET...]: builds in the build folder NAME.
build() {
  local folder=$build_root/$1 quiet=()
  shift
  [ -t 1 ] || quiet=(--quiet)
  [ $# -gt 0 ] || set -- all
  cmake --build "$folder" -j "$jobs" --target "$@" -- "${quiet[@]}"
}

# run_tests NAME CTEST-ARGUMENT...: runs the tests of a build folder, with the words of `prefix` in
# front of the command; shows the failed tests and the last lines.
prefix=()
run_tests() {
  local folder=$build_root/$1 log=$build_root/$1/tests.log failed=0
  shift
  (
    cd "$folder"
    "${prefix[@]}" ctest -j "$jobs" --output-on-failure --no-tests=error "$@"
  ) > "$log" 2>&1 || failed=$?
  if [ $failed -eq 0 ]; then
    sed -n '/tests passed/,$p' "$log"
  else
    grep -vE '^ *(Start +[0-9]+: |[0-9]+/[0-9]+ Test .* Passed )' "$log" || true
  fi
  return $failed
}
