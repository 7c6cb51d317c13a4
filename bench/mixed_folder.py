#!/usr/bin/env python3
"""A folder of mixed documents for the benchmarks: the six sample documents copied
round-robin, each copy its own file. Usage: mixed_folder.py FOLDER COUNT (run from the
repository's root)."""
import os
import shutil
import sys

out, count = sys.argv[1], int(sys.argv[2])
os.makedirs(out, exist_ok=True)
samples = sorted(os.listdir("samples/documents"))
for i in range(count):
    name = samples[i % len(samples)]
    base, ext = os.path.splitext(name)
    shutil.copy(os.path.join("samples/documents", name), os.path.join(out, "%s-%06d%s" % (base, i, ext)))
