"""Searches results for the secret with readers that did not write them."""
import base64
import binascii
import cmath
import difflib
import gzip
import io
import re
import struct
import subprocess
import tarfile
import tempfile
import wave
import zipfile
import zlib

import bait

PICTURES = {b"\x89PNG": ["pngtopnm"], b"\xFF\xD8\xFF": ["jpegtopnm", "-quiet"], b"GIF8": ["giftopnm", "-image=all", "-quiet"],
            b"BM": ["bmptopnm", "-quiet"], b"II*\0": ["tifftopnm", "-quiet"], b"MM\0*": ["tifftopnm", "-quiet"]}
NESTED_AT_MOST = 4
COLOURED_AT_LEAST = 30  # pixels
RECOGNISED_AT_MOST = 4  # different pages and frames
TOLERANCE = 32  # of a channel: what JPEG, GIF and the colours of films leave


def _channel(value):
    return b"[\\x%02x-\\x%02x]" % (max(0, value - TOLERANCE), min(255, value + TOLERANCE))


SECRET_PIXEL = re.compile(b"".join(_channel(value) for value in bait.COLOUR), re.DOTALL)
BASE64 = re.compile(rb"[A-Za-z0-9+/\r\n]{80,}={0,2}")
HEXADECIMAL = re.compile(rb"[0-9A-Fa-f\r\n]{80,}")


def _output(command, data=b""):
    """@return what a reader printed; nothing when it cannot read the data."""
    ran = subprocess.run(command, input=data, capture_output=True, env={"PATH": "/usr/bin:/bin", "OMP_THREAD_LIMIT": "1"})
    return ran.stdout


class Judge:
    """What was found in one result: `findings`, and all legible `text`."""

    def __init__(self, path):
        self.findings = set()
        self.text = ""
        self._recognised = set()
        if path.is_dir():
            for file in path.rglob("*"):
                if file.is_file() and not file.is_symlink():
                    self._look(file.read_bytes(), file.name, 0)
        else:
            self._look(path.read_bytes(), path.name, 0)

    def _found(self, reader, where):
        self.findings.add(f"{reader} in {where}")

    def _look(self, data, where, depth):
        if depth > NESTED_AT_MOST:
            return
        self._look_for_word(data, where)
        if data.startswith(b"PK\3\4"):
            self._look_into_zip(data, where, depth)
        elif data.startswith(b"\x1F\x8B"):
            self._look(gzip.decompress(data), where, depth + 1)
        elif data[257:262] == b"ustar":
            self._look_into_tar(data, where, depth)
        elif data.startswith(b"%PDF-"):
            self._look_at_pdf(data, where)
        elif data.startswith(b"RIFF") and data[8:12] == b"WAVE":
            self._listen(data, where)
        else:
            self._look_at_picture(data, where, depth)
            self._decode(data, where, depth)

    def _look_for_word(self, data, where):
        for encoding in ("utf-8", "utf-16-le", "utf-16-be"):
            if bait.WORD.encode(encoding) in data:
                self._found("text", where)
        plain = re.sub(rb"<[^>]*>", b"", data)
        if bait.WORD.encode() in plain:
            self._found("text", where)
        self.text += plain.decode("utf-8", "ignore")

    def _look_into_zip(self, data, where, depth):
        archive = zipfile.ZipFile(io.BytesIO(data))
        for name in archive.namelist():
            self._look(archive.read(name), f"{where}/{name}", depth + 1)

    def _look_into_tar(self, data, where, depth):
        archive = tarfile.open(fileobj=io.BytesIO(data))
        for member in archive.getmembers():
            if member.isreg():
                self._look(archive.extractfile(member).read(), f"{where}/{member.name}", depth + 1)

    def _decode(self, data, where, depth):
        """Pictures and texts that are written as base64 (HTML) or as digits (RTF, profiles in PNG)."""
        if data.startswith(b"\x89PNG"):
            for name, content in png_chunks(data):
                if name in (b"zTXt", b"iTXt", b"iCCP"):
                    compressed = content[content.find(b"\0") + 2:]
                    try:
                        self._look(zlib.decompress(compressed), f"{where}/{name.decode()}", depth + 1)
                    except zlib.error:
                        pass
            return
        for run in BASE64.findall(data):
            try:
                self._look(base64.b64decode(run + b"=" * 2), f"{where}/base64", depth + 1)
            except binascii.Error:
                pass
        for run in HEXADECIMAL.findall(data):
            digits = re.sub(rb"\s", b"", run)
            self._look(bytes.fromhex(digits[:len(digits) // 2 * 2].decode()), f"{where}/digits", depth + 1)

    def _look_at_pdf(self, data, where):
        text = _output(["pdftotext", "-", "-"], data)
        self._look_for_word(text, f"{where}/pdftotext")
        with tempfile.NamedTemporaryFile(suffix=".pdf") as file:  # which qpdf does not read from a pipe
            file.write(data)
            file.flush()
            self._look_for_word(_output(["qpdf", "--qdf", "--object-streams=disable", file.name, "-"]), f"{where}/qpdf")
            has_pictures = len(_output(["pdfimages", "-list", file.name]).splitlines()) > 2  # below a head of two lines
        # Pages without pictures have their words as text; to recognise them takes longer than all the rest.
        self._look_at_bitmaps(_output(["pdftoppm", "-r", "100", "-l", "8", "-"], data), f"{where}/pdftoppm", has_pictures)

    def _look_at_picture(self, data, where, depth):
        for start, reader in PICTURES.items():
            if data.startswith(start):
                self._look_at_bitmaps(_output(reader, data), f"{where}/{reader[0]}")

    def _look_at_bitmaps(self, data, where, may_show_words=True):
        for kind, width, height, pixels in bitmaps(data):
            if kind == b"P6":
                count = sum(1 for match in SECRET_PIXEL.finditer(pixels) if match.start() % 3 == 0)
                if count >= COLOURED_AT_LEAST:
                    self._found("colour", where)
            header = b"%s\n%d %d\n" % (kind, width, height) + (b"" if kind == b"P4" else b"255\n")
            is_flat = pixels == pixels[:3] * (len(pixels) // 3)
            if may_show_words and not is_flat and len(self._recognised) < RECOGNISED_AT_MOST and pixels not in self._recognised:
                self._recognised.add(pixels)
                self._recognise(header + pixels, where)

    def _recognise(self, bitmap, where):
        cropped = _output(["pnmcrop", "-quiet"], bitmap) or bitmap
        words = re.findall(r"[A-Z0-9|]+", _output(["tesseract", "-", "-", "--psm", "6"], cropped).decode().upper())
        if difflib.get_close_matches(bait.WORD, words, 1, 0.75):
            self._found("recognition", where)

    def _listen(self, data, where):
        with wave.open(io.BytesIO(data)) as sound:
            rate, channels = sound.getframerate(), sound.getnchannels()
            samples = struct.iter_unpack("<h", sound.readframes(rate)) if sound.getsampwidth() == 2 else ()
        if share_of_tone([sample for (sample,) in samples][::channels], rate) > 0.2:
            self._found("sound", where)


def share_of_tone(samples, rate):
    """How much of a sound's energy is the secret's tone, 0...1."""
    energy = sum(sample * sample for sample in samples)
    step = -2j * cmath.pi * bait.TONE / rate
    amplitude = abs(sum(sample * cmath.exp(step * at) for at, sample in enumerate(samples)))
    return 2 * amplitude * amplitude / (energy * len(samples)) if energy else 0


def png_chunks(data):
    at = 8
    while at + 8 <= len(data):
        (size,) = struct.unpack_from(">I", data, at)
        yield data[at + 4:at + 8], data[at + 8:at + 8 + size]
        at += size + 12


def bitmaps(data):
    """The pictures that follow each other in the Netpbm formats: (kind, width, height, pixels)."""
    at = 0
    while head := re.compile(rb"(P[456])\s+(\d+)\s+(\d+)\s").match(data, at):
        kind, width, height = head[1], int(head[2]), int(head[3])
        at = head.end()
        if kind != b"P4":
            depth = re.compile(rb"(\d+)\s").match(data, at)
            if int(depth[1]) != 255:
                raise ValueError("a picture of more than 8 bits a channel")
            at = depth.end()
        row = {b"P4": (width + 7) // 8, b"P5": width, b"P6": 3 * width}[kind]
        yield kind, width, height, data[at:at + row * height]
        at += row * height
