#!/usr/bin/env bash
# Runs one behaviour script of the mail program against a real SMTP server
# on loopback (tests/output/smtp_server.py), on a fresh application home.
# Usage: run-mail-script.sh TESSALY_SCRIPT SCRIPT
# In the script, @SMTP@ stands for the server's smtp:// address; a line
# "# server: MODE" chooses accept (the default), refuse, drop or silent.
# When SCRIPT.out exists, the driver's output must equal it line for line,
# with the home's path written as $HOME and the server's port as @PORT@.
# When SCRIPT.check.py exists, it is run with the server's folder of
# received messages and the home, and must succeed.
set -euo pipefail
driver=$1
script=$2
here=$(cd "$(dirname "$0")/.." && pwd)
python=/usr/bin/python3
home=$(mktemp -d)
mails="$home.mails"
fifo="$home.fifo"
server_pid=
cleanup() {
  if [ -n "$server_pid" ]; then kill "$server_pid" 2>/dev/null || true; wait "$server_pid" 2>/dev/null || true; fi
  rm -rf "$home" "$mails" "$fifo" "$home.tss" "$home.stdout" "$home.out"
}
trap cleanup EXIT
export XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-$home}
unset TESSALY_SMTP_PASSWORD
mode=$(sed -n 's/^# server: *//p' "$script" | head -1)
mkfifo "$fifo"
"$python" "$here/smtp_server.py" --dir "$mails" --mode "${mode:-accept}" < /dev/null > "$fifo" &
server_pid=$!
# The server's first line names its port; reading it waits until it listens.
read -r line < "$fifo"
port=${line#PORT }
sed "s|@SMTP@|smtp://127.0.0.1:$port|g" "$script" > "$home.tss"
set +e
"$driver" --home "$home" "$home.tss" > "$home.stdout"
status=$?
set -e
sed -e "s|$home|\$HOME|g" -e "s|127.0.0.1:$port|127.0.0.1:@PORT@|g" "$home.stdout" > "$home.out"
expected="${script%.tss}.out"
if [ -f "$expected" ]; then
  if ! diff -u "$expected" "$home.out"; then
    echo "output differs from $expected" >&2
    exit 1
  fi
else
  cat "$home.out"
fi
[ "$status" -eq 0 ] || exit "$status"
check="${script%.tss}.check.py"
if [ -f "$check" ]; then
  "$python" "$check" "$mails" "$home"
fi
