#!/usr/bin/env bash
# The window on a big folder of mixed documents (offscreen) beside brindar --scan on the
# same folder: time and peak memory. Usage: bench/ui_scan_bench.sh [file count]
# Run after scripts/setup.
set -euo pipefail
cd "$(dirname "$0")/.."
count="${1:-100000}"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

# The folder: the six sample documents copied round-robin, each copy its own file.
python3 bench/mixed_folder.py "$work/documents" "$count"

# Settings: the sample configuration in English, cache off.
mkdir -p "$work/settings"
cp samples/settings/* "$work/settings/"
sed -i 's/^Langue=.*/Langue=English/; s/^UseNTFSCache=.*/UseNTFSCache=0/' "$work/settings/Brindar.ini"
export BRINDAR_HOME="$work/settings" XDG_CACHE_HOME="$work/cache"

sync
# brindar --scan: wall time and peak memory of the child.
python3 - "$work/documents" <<'PY'
import resource, subprocess, sys, time
start = time.monotonic()
subprocess.run(["build/bin/brindar", "--scan", sys.argv[1]], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
seconds = time.monotonic() - start
peak = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss / 1024
print("brindar --scan (ms)       %d" % (seconds * 1000))
print("brindar --scan peak (MiB) %.1f" % peak)
PY
build/bin/ui_scan_bench "$work/documents"
