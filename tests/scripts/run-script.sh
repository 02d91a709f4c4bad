#!/usr/bin/env bash
# Runs one behaviour script on a fresh application home and removes the home
# afterwards. Usage: run-script.sh TESSALY_SCRIPT SCRIPT
# A first line "# screen: WxH" sets the screen size; a line "# locale: NAME"
# among the first three, the system's locale.
# When SCRIPT.out exists beside the script, the driver's output must equal it
# line for line, with the home's path written as $HOME.
set -euo pipefail
driver=$1
script=$2
home=$(mktemp -d)
export XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-$home}
trap 'rm -rf "$home"' EXIT
screen=$(sed -n '1s/^# screen: *//p' "$script")
locale=$(sed -n '1,3s/^# locale: *//p' "$script")
args=(--home "$home")
[ -n "$screen" ] && args+=(--screen "$screen")
[ -n "$locale" ] && args+=(--locale "$locale")
set +e
"$driver" "${args[@]}" "$script" > "$home.stdout"
status=$?
set -e
sed "s|$home|\$HOME|g" "$home.stdout" > "$home.out"
rm -f "$home.stdout"
expected="${script%.tss}.out"
if [ -f "$expected" ]; then
  if ! diff -u "$expected" "$home.out"; then
    echo "output differs from $expected" >&2
    rm -f "$home.out"
    exit 1
  fi
else
  cat "$home.out"
fi
rm -f "$home.out"
exit $status
