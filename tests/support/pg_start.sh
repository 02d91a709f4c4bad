#!/usr/bin/env bash
# Starts a throwaway PostgreSQL server on loopback for the database tests.
# Usage: pg_start.sh STATE_DIR
# Writes STATE_DIR/info (host, port, user, database) once the server answers,
# and STATE_DIR/datadir (the server's folder, for pg_stop.sh). PostgreSQL
# refuses to run as root, so under root the server runs as the postgres user.
set -euo pipefail

state="$1"
bin=/usr/lib/postgresql/15/bin
mkdir -p "$state"
rm -f "$state/info" "$state/datadir"

data=$(mktemp -d /tmp/tessaly-pg.XXXXXX)
echo "$data" > "$state/datadir"

as_server_user() {
  if [ "$(id -u)" = 0 ]; then
    runuser -u postgres -- "$@"
  else
    "$@"
  fi
}

if [ "$(id -u)" = 0 ]; then
  chown postgres "$data"
fi

as_server_user "$bin/initdb" -D "$data/db" -U tessaly --auth=trust -E UTF8 --no-sync >"$data/initdb.log" 2>&1

# A free port: try a few at random; the server fails to start on a taken one.
started=0
for attempt in 1 2 3 4 5 6 7 8; do
  port=$((20000 + RANDOM % 40000))
  if as_server_user "$bin/pg_ctl" -D "$data/db" -l "$data/server.log" -w -t 30 \
       -o "-p $port -c listen_addresses=127.0.0.1 -c unix_socket_directories=$data -c fsync=off -c max_connections=200" \
       start >/dev/null 2>&1; then
    started=1
    break
  fi
done
if [ "$started" != 1 ]; then
  echo "PostgreSQL did not start; see $data/server.log" >&2
  cat "$data/server.log" >&2 || true
  exit 1
fi

as_server_user "$bin/createdb" -h 127.0.0.1 -p "$port" -U tessaly tessaly
printf 'host=127.0.0.1\nport=%s\nuser=tessaly\ndatabase=tessaly\n' "$port" > "$state/info"
echo "PostgreSQL for the database tests listens on 127.0.0.1:$port"
