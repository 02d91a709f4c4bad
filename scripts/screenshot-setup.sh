# Set-up shared by the screenshot scripts. Source it first with the script's
# own arguments, [build-dir] [output-dir]: it moves to the project root, sets
# `build` (default build) and `out` (default docs/screenshots, made, as an
# absolute path) and gives the steps below.
# shellcheck shell=bash
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck disable=SC2034 # read by the scripts that source this file
build=${1:-build}
out=${2:-docs/screenshots}
mkdir -p "$out"
out=$(cd "$out" && pwd)

# Stops the script with MESSAGE unless every PROGRAM named is built.
# Usage: need_programs MESSAGE PROGRAM...
need_programs() {
  local message=$1
  shift
  for program; do
    [ -x "$program" ] || { echo "$message" >&2; exit 1; }
  done
}

# Runs a command on a virtual screen of 1280 by 1024 pixels.
in_display() {
  xvfb-run -a -s "-screen 0 1280x1024x24" "$@"
}

# Runs the view tests that FILTER picks from the test program TESTS on the
# virtual screen, as windows of its X server. Usage: view_tests TESTS FILTER
view_tests() {
  QT_QPA_PLATFORM=xcb in_display "$1" --gtest_filter="$2"
}

# Makes a temporary application home in `home`, removed when the script ends.
temp_home() {
  home=$(mktemp -d)
  trap 'rm -rf "$home"' EXIT
}

# Runs the steps of the shell file STEPS on the virtual screen with the
# arguments "$exe" "$home" "$out" (the calling script's) and the file of
# shared desktop steps, which STEPS sources. Usage: run_steps STEPS
run_steps() {
  # shellcheck disable=SC2154 # `exe` is set by the calling script
  in_display bash "$1" "$exe" "$home" "$out" "$PWD/scripts/desktop-steps.sh"
}
