#!/usr/bin/env bash
# A PostgreSQL server of the tests' own: `start DIR PORT` makes a fresh cluster
# in DIR and serves it on a socket inside DIR only (no TCP), `stop DIR` ends it
# and removes DIR. Run as root, the server runs as an unprivileged user, as the
# server itself demands. Clients connect with "host=DIR/sock port=PORT user=morvel".
set -euo pipefail

action=${1:?start or stop}
dir=${2:?data folder}
port=${3:-55432}

bindir=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -1)
[ -x "$bindir/pg_ctl" ] || { echo "PostgreSQL server programs not found (package postgresql)" >&2; exit 1; }

as_owner=()
if [ "$(id -u)" -eq 0 ]; then
  owner=postgres
  id "$owner" >/dev/null 2>&1 || owner=nobody
  as_owner=(runuser -u "$owner" --)
fi

stop() {
  if [ -f "$dir/data/postmaster.pid" ]; then
    "${as_owner[@]}" "$bindir/pg_ctl" -D "$dir/data" -m immediate -w stop >/dev/null 2>&1 || true
  fi
  rm -rf "$dir"
}

start() {
  stop
  mkdir -p "$dir/sock"
  [ ${#as_owner[@]} -gt 0 ] && chown -R "$owner" "$dir"
  chmod 700 "$dir"
  "${as_owner[@]}" "$bindir/initdb" -D "$dir/data" -U morvel --auth=trust -E UTF8 \
    --locale=C.UTF-8 >"$dir/initdb.log" 2>&1 || { cat "$dir/initdb.log" >&2; exit 1; }
  # The clients run as another user: they reach the socket through the folder.
  chmod 711 "$dir"
  chmod 777 "$dir/sock"
  "${as_owner[@]}" "$bindir/pg_ctl" -D "$dir/data" -l "$dir/server.log" -w -t 60 \
    -o "-k $dir/sock -p $port -c listen_addresses='' -c fsync=off -c max_connections=60" \
    start >/dev/null || { cat "$dir/server.log" >&2; exit 1; }
  echo "host=$dir/sock port=$port user=morvel dbname=postgres"
}

case "$action" in
  start) start ;;
  stop) stop ;;
  *) echo "usage: $0 start|stop DIR [PORT]" >&2; exit 2 ;;
esac
