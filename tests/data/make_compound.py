#!/usr/bin/env python3
# Writes the small compound documents the tests and fuzz seeds use: a summary and a
# document summary property set (with one user-defined property) in the mini stream,
# with 512-byte sectors (version 3) and 4096-byte sectors (version 4).
# They are kept as the seeds of fuzz/corpus/ole_fuzzer/, which the tests read too.
# Usage: make_compound.py OUTPUT_DIR
import struct
import sys
import uuid

END, FREE, FATSECT = 0xFFFFFFFE, 0xFFFFFFFF, 0xFFFFFFFD


def guid(text):
    return uuid.UUID(text).bytes_le


def lpstr(text):
    data = text.encode("cp1252") + b"\0"
    value = struct.pack("<HHI", 30, 0, len(data)) + data
    return value + b"\0" * ((4 - len(value) % 4) % 4)


def section(properties):
    table, body, base = b"", b"", 8 + 8 * len(properties)
    for pid, value in properties:
        table += struct.pack("<II", pid, base + len(body))
        body += value
    return struct.pack("<II", base + len(body), len(properties)) + table + body


def property_set(sections):
    header = struct.pack("<HHI", 0xFFFE, 0, 0x00020006) + b"\0" * 16 + struct.pack("<I", len(sections))
    offset, bodies, table = len(header) + 20 * len(sections), b"", b""
    for fmtid, body in sections:
        table += guid(fmtid) + struct.pack("<I", offset + len(bodies))
        bodies += body
    return header + table + bodies


CODE_PAGE = struct.pack("<HHhH", 2, 0, 1252, 0)
SUMMARY = property_set([("f29f85e0-4ff9-1068-ab91-08002b27b3d9", section([
    (1, CODE_PAGE), (2, lpstr("Title")), (4, lpstr("Author")),
    (10, struct.pack("<HHQ", 64, 0, 600000000 * 7)), (14, struct.pack("<HHi", 3, 0, 12))]))])
DICTIONARY = struct.pack("<I", 1) + struct.pack("<II", 2, 7) + b"Client\0"
DICTIONARY += b"\0" * ((4 - len(DICTIONARY) % 4) % 4)
DOCUMENT_SUMMARY = property_set([
    ("d5cdd502-2e9c-101b-9397-08002b2cf9ae", section([(1, CODE_PAGE), (15, lpstr("ACME"))])),
    ("d5cdd505-2e9c-101b-9397-08002b2cf9ae", section([(0, DICTIONARY), (1, CODE_PAGE), (2, lpstr("Dupont"))]))])


def pad(data, size):
    return data + b"\0" * (size - len(data))


def entry(name, kind, left, right, child, start, size, colour=1):
    encoded = name.encode("utf-16-le")
    return (pad(encoded, 64) + struct.pack("<HBBIII", len(encoded) + 2 if name else 0, kind, colour, left, right, child)
            + b"\0" * 36 + struct.pack("<IQ", start, size))


def compound(sector_size):
    per_sector = sector_size // 4
    first = pad(SUMMARY, -(-len(SUMMARY) // 64) * 64)
    second = pad(DOCUMENT_SUMMARY, -(-len(DOCUMENT_SUMMARY) // 64) * 64)
    mini_stream = first + second
    mini_sectors = -(-len(mini_stream) // sector_size)
    # Sectors: 0 FAT, 1 directory, 2 mini FAT, 3... the mini stream.
    fat = [FATSECT, END, END] + [4 + i for i in range(mini_sectors - 1)] + [END]
    fat += [FREE] * (per_sector - len(fat))
    a, b = len(first) // 64, len(second) // 64
    mini_fat = [i + 1 for i in range(a - 1)] + [END] + [a + i + 1 for i in range(b - 1)] + [END]
    mini_fat += [FREE] * (per_sector - len(mini_fat))
    directory = entry("Root Entry", 5, FREE, FREE, 1, 3, len(mini_stream))
    directory += entry("\x05SummaryInformation", 2, FREE, 2, FREE, 0, len(SUMMARY))
    directory += entry("\x05DocumentSummaryInformation", 2, FREE, FREE, FREE, a, len(DOCUMENT_SUMMARY))
    while len(directory) < sector_size:
        directory += entry("", 0, FREE, FREE, FREE, 0, 0, 0)
    version, shift = (3, 9) if sector_size == 512 else (4, 12)
    header = bytes.fromhex("D0CF11E0A1B11AE1") + b"\0" * 16 + struct.pack("<HHHHH", 0x3E, version, 0xFFFE, shift, 6)
    header += b"\0" * 6 + struct.pack("<IIIIIIIII", 1 if version == 4 else 0, 1, 1, 0, 4096, 2, 1, END, 0)
    header += struct.pack("<I", 0) + struct.pack("<I", FREE) * 108
    header = pad(header, max(512, sector_size))
    tables = b"".join(struct.pack("<I", x) for x in fat) + directory + b"".join(struct.pack("<I", x) for x in mini_fat)
    return header + tables + pad(mini_stream, mini_sectors * sector_size)


out = sys.argv[1]
with open(out + "/minimal.doc", "wb") as f:
    f.write(compound(512))
with open(out + "/minimal-4096.doc", "wb") as f:
    f.write(compound(4096))
