#!/usr/bin/env bash
# The scan against ExifTool and against the floor (open every file, read 64 KiB), on a
# generated folder of mixed documents. Usage: bench/scan_bench.sh [file count]
# Installs Debian's libimage-exiftool-perl when missing. Run after scripts/setup.
set -euo pipefail
cd "$(dirname "$0")/.."
count="${1:-10000}"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

if ! command -v exiftool >/dev/null; then
  sudo=(); [ "$(id -u)" -ne 0 ] && sudo=(sudo)
  "${sudo[@]}" apt-get install -y -q libimage-exiftool-perl >/dev/null
fi

# The folder: the six sample documents copied round-robin, each copy its own file.
python3 bench/mixed_folder.py "$work/documents" "$count"

# Settings: the sample configuration, cache off, then on.
mkdir -p "$work/settings"
cp samples/settings/* "$work/settings/"
export BRINDAR_HOME="$work/settings" XDG_CACHE_HOME="$work/cache"
ini="$work/settings/Brindar.ini"

seconds() { local start end; start=$(date +%s.%N); "$@" >/dev/null 2>&1; end=$(date +%s.%N); awk "BEGIN{print $end - $start}"; }
ratio() { awk "BEGIN{print $1 / $2}"; }

sync
floor=$(seconds build/bin/readfloor "$work/documents")
sed -i 's/^UseNTFSCache=.*/UseNTFSCache=0/' "$ini"
scan=$(seconds build/bin/brindar --scan "$work/documents")
sed -i 's/^UseNTFSCache=.*/UseNTFSCache=1/' "$ini"
build/bin/brindar --scan "$work/documents" >/dev/null 2>&1
cached=$(seconds build/bin/brindar --scan "$work/documents")
exiftool=$(seconds exiftool -q -q -m -T -FileName -Title -Author -Subject -Keywords -Creator -Producer \
  -CreateDate -PageCount -Headline -By-line -City -CopyrightNotice -Caption-Abstract -Company -Language \
  -Publisher -Client "$work/documents")

printf '%-44s %8s %8s\n' "$count mixed files" "seconds" "files/s"
for row in "floor (open and read 64 KiB of each file)=$floor" "brindar --scan, cache off=$scan" \
           "brindar --scan, cache on (second run)=$cached" "exiftool, the same fields=$exiftool"; do
  label=${row%%=*}; value=${row##*=}
  printf '%-44s %8.3f %8.0f\n' "$label" "$value" "$(ratio "$count" "$value")"
done
printf 'brindar against exiftool: %.1f times faster; against the floor: %.2f times the floor\n' \
  "$(ratio "$exiftool" "$scan")" "$(ratio "$scan" "$floor")"
