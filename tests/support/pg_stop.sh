#!/usr/bin/env bash
# Stops the server that pg_start.sh started and removes its folder.
# Usage: pg_stop.sh STATE_DIR
set -uo pipefail

state="$1"
[ -f "$state/datadir" ] || exit 0
data=$(cat "$state/datadir")
bin=/usr/lib/postgresql/15/bin

if [ -d "$data/db" ]; then
  if [ "$(id -u)" = 0 ]; then
    runuser -u postgres -- "$bin/pg_ctl" -D "$data/db" -m fast -w stop >/dev/null 2>&1
  else
    "$bin/pg_ctl" -D "$data/db" -m fast -w stop >/dev/null 2>&1
  fi
fi
case "$data" in
  /tmp/tessaly-pg.*) rm -rf "$data" ;;
esac
rm -f "$state/info" "$state/datadir"
exit 0
