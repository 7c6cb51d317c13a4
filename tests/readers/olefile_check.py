#!/usr/bin/python3
# Independent check of a compound file written by Brindar Pro: opens it with olefile,
# compares every stream with the original's (property streams aside) and prints the
# document's summary values as JSON.
import hashlib
import json
import sys

import olefile

PROPERTY_STREAMS = {"\x05SummaryInformation", "\x05DocumentSummaryInformation"}


def streams(path):
    with olefile.OleFileIO(path) as ole:
        result = {}
        for entry in ole.listdir(streams=True, storages=False):
            name = "/".join(entry)
            result[name] = hashlib.sha1(ole.openstream(entry).read()).hexdigest()
        return result


def main():
    original, written = sys.argv[1], sys.argv[2]
    before, after = streams(original), streams(written)
    changed = sorted(name for name in set(before) | set(after)
                     if name not in PROPERTY_STREAMS and before.get(name) != after.get(name))
    with olefile.OleFileIO(written) as ole:
        meta = ole.get_metadata()
        values = {}
        for field in ("title", "author", "comments", "company", "category", "manager", "last_saved_by"):
            value = getattr(meta, field)
            if isinstance(value, bytes):
                value = value.decode("cp1252", "replace")
            # olefile keeps the terminating NUL of wide strings.
            values[field] = value.rstrip("\x00") if isinstance(value, str) else value
        summary = ole.openstream("\x05SummaryInformation").read() if ole.exists("\x05SummaryInformation") else b""
        # The section count, right after the 24-byte header of a property set.
        sections = int.from_bytes(summary[24:28], "little")
        print(json.dumps({"changed": changed, "streams": sorted(after), "values": values,
                          "summary_sections": sections}))


main()
