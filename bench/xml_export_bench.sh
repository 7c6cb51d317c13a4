#!/usr/bin/env bash
# The XML export of a generated tree against ExifTool's recursive XML output on the same
# tree: time and peak memory of each. Usage: bench/xml_export_bench.sh [folders] [files per folder]
# Default 1,000 folders of 100 files (100,000 files). Installs Debian's
# libimage-exiftool-perl when missing. Run after scripts/setup.
set -euo pipefail
cd "$(dirname "$0")/.."
folders="${1:-1000}"
per_folder="${2:-100}"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

if ! command -v exiftool >/dev/null; then
  sudo=(); [ "$(id -u)" -ne 0 ] && sudo=(sudo)
  "${sudo[@]}" apt-get install -y -q libimage-exiftool-perl >/dev/null
fi

# The tree: ten top folders holding the others, two levels deep; every folder gets the
# six sample documents copied round-robin, each copy its own file.
python3 - "$work/tree" "$folders" "$per_folder" <<'PY'
import os, sys
out, folders, per_folder = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
samples = [(name, open(os.path.join("samples/documents", name), "rb").read())
           for name in sorted(os.listdir("samples/documents"))]
tops = max(1, min(10, folders))
paths = [os.path.join(out, "top %02d" % t) for t in range(tops)]
for i in range(folders - tops):
    paths.append(os.path.join(paths[i % tops], "folder %04d" % i))
n = 0
for path in paths:
    os.makedirs(path, exist_ok=True)
    for _ in range(per_folder):
        name, data = samples[n % len(samples)]
        base, ext = os.path.splitext(name)
        with open(os.path.join(path, "%s-%06d%s" % (base, n, ext)), "wb") as f:
            f.write(data)
        n += 1
print("%d files in %d folders" % (n, len(paths) + 1))
PY

mkdir -p "$work/settings"
export BRINDAR_HOME="$work/settings"

# Wall time and peak resident memory of a command, its output thrown away.
measure() {
  python3 - "$@" <<'PY'
import resource, subprocess, sys, time
start = time.monotonic()
with open(sys.argv[1], "wb") as out:
    code = subprocess.call(sys.argv[2:], stdout=out, stderr=subprocess.DEVNULL)
elapsed = time.monotonic() - start
peak = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss / 1024
print("%.2f %.1f %d" % (elapsed, peak, code))
PY
}

sync
read -r ours ours_mb ours_code < <(measure /dev/null build/bin/brindar -d "$work/tree" -x "$work/export.xml")
read -r theirs theirs_mb theirs_code < <(measure "$work/exiftool.xml" exiftool -X -r -q -q "$work/tree")
[ "$ours_code" = 0 ] || { echo "brindar failed with status $ours_code" >&2; exit 1; }

printf '%-36s %9s %9s %12s\n' "" "seconds" "peak MB" "output MB"
printf '%-36s %9s %9s %12.1f\n' "brindar -d TREE -x export.xml" "$ours" "$ours_mb" \
  "$(awk "BEGIN{print $(stat -c %s "$work/export.xml") / 1048576}")"
printf '%-36s %9s %9s %12.1f\n' "exiftool -X -r TREE (status $theirs_code)" "$theirs" "$theirs_mb" \
  "$(awk "BEGIN{print $(stat -c %s "$work/exiftool.xml") / 1048576}")"
printf 'brindar is %.1f times faster\n' "$(awk "BEGIN{print $theirs / $ours}")"
