#!/usr/bin/env bash
# The build's Debian packages as a device gets them: cpack makes the .debs,
# dpkg -x unpacks them into a fresh folder, and the host starts from there
# with the command line of its systemd unit, expanded as systemd does with the
# unit's defaults and /etc/default/vexa-host (its address changed to a port
# of the system's choosing); absolute paths are taken below the folder. The
# host must answer over HTTP with its modules, keep its data in its state
# folder and stop cleanly on SIGTERM.
# Usage: install.sh BUILD_DIR; VEXA_EMULATOR runs the host in a cross build.
set -euo pipefail
build="$1"
read -ra emulator <<<"${VEXA_EMULATOR:-}"
work="$(mktemp -d)"
root="$work/root"
host=
trap '[ -n "$host" ] && kill -9 "$host" 2>/dev/null; rm -rf "$work"' EXIT
fail() {
  echo "FAIL: $*" >&2
  [ -f "$work/host.log" ] && tail -n 30 "$work/host.log" >&2
  exit 1
}

cpack --config "$build/CPackConfig.cmake" -B "$work/debs" >"$work/cpack.log" 2>&1 || { cat "$work/cpack.log" >&2; fail "cpack"; }
for deb in "$work"/debs/*.deb; do
  dpkg -x "$deb" "$root"
done
depends() { dpkg-deb -f "$work"/debs/"$1"_*.deb Depends; }
[[ "$(depends vexa-host)" == *libqt5core5a* ]] || fail "vexa-host declares no dependency on Qt: $(depends vexa-host)"
for module in playlists library; do
  [[ "$(depends vexa-module-$module)" == *"vexa-host (= "* ]] || fail "vexa-module-$module does not depend on vexa-host"
done

declare -A vars
unit="$root/usr/lib/systemd/system/vexa-host.service"
for assignment in $(sed -n 's/^Environment=//p' "$unit"); do
  vars[${assignment%%=*}]="${assignment#*=}"
done
while IFS='=' read -r name value; do
  [[ "$name" =~ ^[A-Z_]+$ ]] && vars[$name]="$value"
done <"$root/etc/default/vexa-host"
vars[VEXA_LISTEN]=127.0.0.1:0
command=()
for word in $(sed -n 's/^ExecStart=//p' "$unit"); do
  if [[ "$word" =~ ^\$([A-Z_]+)$ ]]; then
    read -ra split <<<"${vars[${BASH_REMATCH[1]}]:-}"
    command+=(${split[@]+"${split[@]}"})
    continue
  fi
  while [[ "$word" =~ \$\{([A-Z_]+)\} ]]; do
    word="${word/"${BASH_REMATCH[0]}"/${vars[${BASH_REMATCH[1]}]:-}}"
  done
  [[ "$word" == /* ]] && word="$root$word"
  command+=("$word")
done
# systemd makes the state folder (StateDirectory=).
mkdir -p "$root/var/lib/vexa"

${emulator[@]+"${emulator[@]}"} "${command[@]}" >"$work/host.log" 2>&1 &
host=$!
port=
for _ in $(seq 600); do
  port="$(sed -n 's/.*Serving on 127\.0\.0\.1:\([0-9]*\) .*/\1/p' "$work/host.log")"
  [ -n "$port" ] && break
  kill -0 "$host" 2>/dev/null || fail "the installed host exited: ${command[*]}"
  sleep 0.2
done
[ -n "$port" ] || fail "the installed host did not start serving"
api="http://127.0.0.1:$port/api/v1"

# Read whole before it is looked at: grep -q stopping early would make curl
# fail on a closed pipe, and pipefail the check.
page="$(curl -sf "http://127.0.0.1:$port/")" || fail "no answer at /"
[[ "$page" == *'<html'* ]] || fail "no web app at /"
created="$(curl -sf -X POST "$api/data" -d '{"path": "playlists:/create-playlist", "value": {"name": "Installed"}}')"
[[ "$created" == *'"i32_":1'* ]] || fail "create-playlist answered: $created"
lists="$(curl -sf -G "$api/rows" --data-urlencode 'path=playlists:/lists' -d roles=title)"
[[ "$lists" == *'"Installed"'* ]] || fail "playlists:/lists answered: $lists"
library="$(curl -sf -G "$api/rows" --data-urlencode 'path=library:/root' -d roles=title)"
[[ "$library" == *'"Artists"'* ]] || fail "library:/root answered: $library"
[ -f "$root/var/lib/vexa/data-rw/playlists/playlists.sqlite" ] || fail "no store in the state folder"

kill -TERM "$host"
status=0
wait "$host" || status=$?
host=
[ "$status" -eq 0 ] || fail "the host exited with $status on SIGTERM"
echo "Installed from $(cd "$work/debs" && echo *.deb), served on port $port"
