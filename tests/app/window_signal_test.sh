#!/usr/bin/env bash
# The window started with --open on a folder, then sent SIGTERM as a logout does: it must
# close the normal way, saving its placement and folder, and exit with status 0.
set -euo pipefail
program=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/settings" "$work/shown folder"
printf 'x' > "$work/shown folder/a.txt"

export BRINDAR_HOME="$work/settings" XDG_CACHE_HOME="$work/cache" XDG_DATA_HOME="$work/data"
export XDG_CONFIG_HOME="$work/config" QT_QPA_PLATFORM=offscreen
unset DISPLAY WAYLAND_DISPLAY
"$program" --open "$work/shown folder" &
pid=$!

# The folder shown is saved as soon as it is scanned: the window is up.
for _ in $(seq 1 200); do
  if grep -qs "Repertoire=$work/shown folder" "$work/settings"/*.ini; then break; fi
  if ! kill -0 "$pid" 2>/dev/null; then echo "the window exited early"; exit 1; fi
  sleep 0.1
done
grep -qs "Repertoire=$work/shown folder" "$work/settings"/*.ini || { echo "the window never showed the folder"; exit 1; }

kill -TERM "$pid"
status=0
for _ in $(seq 1 200); do
  if ! kill -0 "$pid" 2>/dev/null; then break; fi
  sleep 0.1
done
if kill -0 "$pid" 2>/dev/null; then echo "the window did not close on SIGTERM"; kill -KILL "$pid"; exit 1; fi
wait "$pid" || status=$?
[ "$status" -eq 0 ] || { echo "exit status $status after SIGTERM"; exit 1; }

chooser="$work/settings/ChoixConfiguration.ini"
for key in WindowState Left Top Width Height FullGrid PanelWidth; do
  grep -q "^$key=" "$chooser" || { echo "the chooser lacks $key:"; cat "$chooser"; exit 1; }
done
echo "closed on SIGTERM with its settings saved"
