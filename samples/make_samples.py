#!/usr/bin/env python3
# Writes the sample documents of samples/documents: one small file of every family the
# program reads, made here from scratch (no file of another project).
# Usage: samples/make_samples.py   (from the repository's root)
import os
import shutil
import struct
import subprocess
import sys
import zipfile

out = os.path.join(os.path.dirname(os.path.abspath(__file__)), "documents")
os.makedirs(out, exist_ok=True)


def write(name, data):
    with open(os.path.join(out, name), "wb") as f:
        f.write(data)


def pdf():
    objects = [b"<< /Type /Catalog /Pages 3 0 R >>",
               b"<< /Title (Annual report 2026)\n/Author (Anne Martin)\n/Creator (Microsoft Word)\n"
               b"/Producer (Brindar samples)\n/CreationDate (D:20260315093000+01'00')>>",
               b"<< /Type /Pages /Kids [4 0 R] /Count 1 >>",
               b"<< /Type /Page /Parent 3 0 R /MediaBox [0 0 595 842] >>"]
    data, offsets = b"%PDF-1.4\n", []
    for i, body in enumerate(objects):
        offsets.append(len(data))
        data += b"%d 0 obj\n" % (i + 1) + body + b"\nendobj\n"
    xref = len(data)
    data += b"xref\n0 5\n0000000000 65535 f \n" + b"".join(b"%010d 00000 n \n" % o for o in offsets)
    data += b"trailer\n<< /Size 5 /Root 1 0 R /Info 2 0 R >>\nstartxref\n%d\n%%%%EOF\n" % xref
    return data


def html():
    return (b"<html>\n<head>\n<title>Price list &eacute;t&eacute; 2026</title>\n"
            b"<meta name=\"author\" content=\"Paul Durand\">\n"
            b"<meta name=\"DC.subject\" content=\"prices; summer\">\n"
            b"<meta name=\"DC.publisher\" content=\"Brindar &amp; Co\">\n"
            b"<meta name=\"Client\" content=\"Dupont\">\n"
            b"</head>\n<body><p>Prices.</p></body>\n</html>\n")


def jpeg():
    iptc = b""
    for number, value in ((105, b"Harbour at dawn"), (80, b"Jeanne Petit"), (25, b"sea"), (25, b"boats"),
                          (90, b"Honfleur"), (116, b"(c) Jeanne Petit"), (120, b"Boats in the harbour")):
        iptc += b"\x1c\x02" + bytes([number]) + struct.pack(">H", len(value)) + value
    block = b"8BIM\x04\x04\0\0" + struct.pack(">I", len(iptc)) + iptc
    segment = b"Photoshop 3.0\0" + block
    return (b"\xff\xd8\xff\xed" + struct.pack(">H", len(segment) + 2) + segment
            + b"\xff\xda\0\x08\x01\x01\0\0\x3f\0" + b"\0" * 64 + b"\xff\xd9")


def sxw():
    meta = ("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<office:document-meta><office:meta>"
            "<meta:generator>OpenOffice.org 1.1.5 (Linux)</meta:generator>"
            "<dc:title>Meeting notes</dc:title><meta:initial-creator>Marie Curie</meta:initial-creator>"
            "<meta:creation-date>2026-02-01T10:15:00</meta:creation-date><dc:language>fr-FR</dc:language>"
            "<meta:editing-duration>PT1H5M</meta:editing-duration>"
            "<meta:user-defined meta:name=\"Client\">Dupont</meta:user-defined>"
            "<meta:document-statistic meta:page-count=\"2\" meta:word-count=\"345\"/>"
            "</office:meta></office:document-meta>\n").encode("utf-8")
    path = os.path.join(out, "notes.sxw")
    stamp = (2026, 1, 1, 0, 0, 0)  # fixed, so that the sample is the same at every run
    with zipfile.ZipFile(path, "w", zipfile.ZIP_STORED) as z:
        z.writestr(zipfile.ZipInfo("mimetype", stamp), "application/vnd.sun.xml.writer")
        z.writestr(zipfile.ZipInfo("meta.xml", stamp), meta)


write("report.pdf", pdf())
write("prices.html", html())
write("harbour.jpg", jpeg())
sxw()
write("readme.txt", b"Sample documents of Brindar Pro.\n")
# The small compound document the tests use, with summary and user-defined properties.
subprocess.run([sys.executable, os.path.join(os.path.dirname(out), "..", "tests", "data", "make_compound.py"), "/tmp"],
               check=True)
shutil.copy("/tmp/minimal.doc", os.path.join(out, "budget.doc"))
