#!/usr/bin/env python3
"""Writes a few well-formed inputs for each fuzzer: FOLDER/<reader>/<number>.

usage: make_seeds.py FOLDER
"""
import json
import pathlib
import plistlib
import struct
import sys
import zlib

TEXTS = ["plain", "Grüße, 世界 😀", 'a "quoted", text\nof two lines']


def png(color_type=2, chunks=b""):
    """A picture of 3 x 3 pixels with one row of each of three filters."""
    def chunk(name, content):
        return struct.pack(">I", len(content)) + name + content + struct.pack(">I", zlib.crc32(name + content))
    width = {0: 1, 2: 3, 6: 4}[color_type] * 3
    rows = b"".join(bytes([row]) + bytes(range(width)) for row in (1, 2, 4))
    header = struct.pack(">IIBBBBB", 3, 3, 8, color_type, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunks + chunk(b"IDAT", zlib.compress(rows))
            + chunk(b"IEND", b""))


def tiff(order, orientation):
    return ((b"MM" if order == ">" else b"II")
            + struct.pack(order + "HIH", 42, 8, 2) + struct.pack(order + "HHIHH", 0x0100, 3, 1, 640, 0)
            + struct.pack(order + "HHIHH", 0x0112, 3, 1, orientation, 0) + struct.pack(order + "I", 0))


def profile(space=b"RGB "):
    curve = b"para" + struct.pack(">IHHiiiii", 0, 3, 0, 157286, 62119, 3417, 5072, 2651)
    colours = ((0.4361, 0.2225, 0.0139), (0.3851, 0.7169, 0.0971), (0.1431, 0.0606, 0.7141))
    contents = [b"XYZ " + struct.pack(">Iiii", 0, *(round(value * 65536) for value in colour)) for colour in colours]
    names = [b"rXYZ", b"gXYZ", b"bXYZ", b"rTRC", b"gTRC", b"bTRC"]
    contents += [curve] * 3
    table, body, start = struct.pack(">I", len(names)), b"", 128 + 4 + 12 * len(names)
    for name, content in zip(names, contents):
        table += name + struct.pack(">II", start + len(body), len(content))
        body += content
    head = bytes(8) + b"mntr" + space + b"XYZ " + bytes(12) + b"acsp" + bytes(88)
    return struct.pack(">I", 128 + len(table) + len(body)) + head[:124] + table + body


def jpeg(orientation=6, colour=b""):
    def segment(marker, content):
        return bytes([0xFF, marker]) + struct.pack(">H", len(content) + 2) + content
    frame = struct.pack(">BHHB", 8, 16, 16, 3) + bytes([1, 0x22, 0, 2, 0x11, 1, 3, 0x11, 1])
    parts = [segment(0xE0, b"JFIF\0\1\1\0\0\1\0\1\0\0"), segment(0xE1, b"Exif\0\0" + tiff(">", orientation))]
    if colour:
        parts.append(segment(0xE2, b"ICC_PROFILE\0\1\1" + colour))
    parts += [segment(0xDB, bytes(65)), segment(0xC0, frame), segment(0xC4, bytes(20)),
              segment(0xDA, bytes([3, 1, 0, 2, 17, 3, 17, 0, 63, 0])), b"\x12\xFF\x00\x34\xFF\xD0\x56\xFF\xD9"]
    return b"\xFF\xD8" + b"".join(parts)


def bitmap():
    return b"BM" + struct.pack("<IHHI", 70, 0, 0, 54) + struct.pack("<IiiHHIIiiII", 40, 2, 2, 1, 24, 0, 16, 0, 0, 0, 0) + bytes(16)


def lists(encoding):
    clipping = {"UTI-Data": {"public.utf8-plain-text": TEXTS[1], "public.rtf": b"{\\rtf1 x}"}, "many": [[1, 2.5, True]] * 3}
    return [plistlib.dumps(value, fmt=encoding) for value in (clipping, TEXTS, {"a": {"b": {"c": "d"}}})]


def codec():
    def text(value):
        return bytes([7, len(value)]) + value
    call = text(b"startJob") + b"\x0D\x02" + text(b"action") + text(b"merge_pdf") + text(b"files") + b"\x0C\x02" + text(b"/a") + text(b"/b")
    number = b"\x06" + bytes(7) + struct.pack("<d", 1.5)
    return [b"\x00", b"\x01", b"\x03\x2A\0\0\0", b"\x04" + struct.pack("<q", 1 << 40), number, call, b"\x00" + call, b"\x08\x03abc",
            b"\x0C\x03\x00\x01\x02", b"\x0B\x02" + bytes(6) + struct.pack("<dd", 1, 2), b"\x01" + text(b"code") + text(b"message") + b"\x00",
            b"\x09\x01\0\0" + struct.pack("<i", 7), b"\x07\xFE\x03\x00abc"]


def rpc():
    calls = [("ready", {}), ("hide", {}), ("host.select", {"paths": ["/", "/dev/null", "x"]}), ("setGesture", {"enabled": 1}),
             ("startJob", {"kind": "action", "action": "merge_pdf", "files": ["/a", "/b"], "options": {"range": "1-3"}}),
             ("cancelJob", {}), ("offers", {"paths": ["/a"]}), ("host.quit", {})]
    lines = [json.dumps({"jsonrpc": "2.0", "id": number, "method": method, "params": params}) for number, (method, params) in enumerate(calls)]
    return ["\n".join(lines), *lines, "[]", '{"id": "a"}']


def little_endian(*numbers):
    return struct.pack(f"<{len(numbers)}I", *numbers)


LISTING = """
Path = a/b.txt
Folder = -
Size = 12
Packed Size = 9
Mode = -rw-r--r--
Attributes = A
Symbolic Link =
Hard Link =

Path = a
Size = 0
Mode = drwxr-xr-x
Attributes = D
"""
RTF = [r"{\rtf1\ansi\ansicpg1252\deff0{\fonttbl{\f0\fcharset128 Mincho;}{\f1\fcharset0 Arial;}}\f0 \'82\'a0 \u228?\par {\v hidden}\cell\row}",
       r"{\rtf1\mac\uc2 \u-10179??\u-8704??{\*\generator x;}{\upr{ascii}{\*\ud{\u19990?}}}{\bin3 abc}\tab\line\emdash}"]
SRT = "1\r\n00:00:01,000 --> 00:00:02,500\r\n<i>One</i>\r\n\r\n2\r\n00:01:00,000 --> 01:00:00,000\r\nTwo\r\nlines\r\n"
VTT = "WEBVTT - x\n\nNOTE a\n\nSTYLE\n::cue {}\n\nname\n00:01.000 --> 00:00:02.500 align:start\nOne &amp; two\n"
ENTRY = '[Desktop Entry]\nType=Application\nName=tolvane\\s\\t\\\\\nName[de]=x\nExec="/usr/bin/a \\\\$b" open %U\nHidden=false\n[Other]\nExec=no\n'
TEXT_LIST = '{ key = value; "two words" = ( a, "b\\U00e4\\n", <68 65 6c> ); /* note */ nested = { x = (); }; // end\n}'
JSON = ['{"a":[1,2.5,-3e10,true,null,"\\u00e4\\ud83d\\ude00"],"b":{"$bytes":"AAEC"}}', "[[[[]]]]", "18446744073709551616", '"x"']
LABELS = ["2 folders selected (containing 5 items), 3 other items selected (1 kB)", "“a.txt” selected (2 bytes)", "1 Folder…5 kB)", "„a“"]
REPLIES = [little_endian(7), little_endian(1, 2, 3, 4), b"name\0\0s", b":1.2\0/org/a\0\x05", b"text\0", b"\x03\0\0\0\0u"]

SEEDS = {
    "accessibility_messages": REPLIES,
    "archive_listing": [LISTING, LISTING.replace("a/b", "../b"), LISTING.replace("Link =", "Link = x")],
    "binary_property_list": lists(plistlib.FMT_BINARY),
    "color_profile": [profile(), profile(b"GRAY")],
    "count_label": LABELS,
    "delimited_text": ["a,b,c\r\n1,\"x, \"\"y\"\"\",3\n", "a\tb\n\"c\nd\"\te\n", *TEXTS],
    "desktop_entry": [ENTRY],
    "exif_orientation": [tiff(">", 6), tiff("<", 8)],
    "image_header": [png(), jpeg(), bitmap(), b"GIF89a\1\0\1\0\0\0\0;"],
    "jpeg_segments": [jpeg(), jpeg(1, profile())],
    "json": JSON,
    "json_rpc": rpc(),
    "page_range": ["1-3, 5", "7", " 2 -4", "500,499-1", ""],
    "png_reader": [png(), png(0), png(6), png(2, struct.pack(">I", 4) + b"gAMA" + struct.pack(">II", 45455, 0x0BFC6105))],
    "property_list": lists(plistlib.FMT_BINARY) + lists(plistlib.FMT_XML) + [TEXT_LIST, ("\ufeff" + TEXT_LIST).encode("utf-16-le")],
    "rich_text": RTF,
    "standard_codec": codec(),
    "subtitles": [SRT, VTT],
    "text_encoding": [*TEXTS, TEXTS[1].encode("utf-16"), TEXTS[1].encode("utf-16-be"), "日本".encode("cp932"),
                      '<?xml version="1.0" encoding="iso-8859-1"?>'],
    "text_property_list": [TEXT_LIST, "a = b; c = d;"],
    "worksheet": ["a,b\n<&>,_x0041_\n", "\"\ufffe\",\x01\n", *TEXTS],
    "xml_property_list": lists(plistlib.FMT_XML),
}


def main():
    folder = pathlib.Path(sys.argv[1])
    for reader, seeds in SEEDS.items():
        (folder / reader).mkdir(parents=True, exist_ok=True)
        for number, seed in enumerate(seeds):
            (folder / reader / str(number)).write_bytes(seed if isinstance(seed, bytes) else seed.encode())


if __name__ == "__main__":
    main()
