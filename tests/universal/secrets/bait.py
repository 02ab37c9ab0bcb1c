"""The secrets that hostile documents ask for, and the places where they lie."""
import io
import math
import os
import re
import struct
import subprocess
import wave
import zipfile
import zlib

WORD = "KUMQUATZEBRA"
COLOUR = (240, 0, 180)  # of pictures and films; nothing else in these documents is coloured so
TONE = 3000  # hertz, of sounds

OUTSIDE, BESIDE, HOME, TEMPORARY = "outside", "beside", "home", "temporary"


def picture(colour, note="", width=160, height=120):
    """A PNG of one colour; the note stands in a text chunk."""
    def chunk(name, content):
        return struct.pack(">I", len(content)) + name + content + struct.pack(">I", zlib.crc32(name + content))
    rows = (b"\0" + bytes(colour) * width) * height
    text = chunk(b"tEXt", b"Comment\0" + note.encode()) if note else b""
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)) + text
            + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


def write_sound(path, tone):
    """One second; silence when the tone is 0."""
    with wave.open(str(path), "wb") as sound:
        sound.setparams((1, 2, 16000, 0, "NONE", ""))
        sound.writeframes(b"".join(struct.pack("<h", int(12000 * math.sin(2 * math.pi * tone * at / 16000)))
                                   for at in range(16000)))


def write_film(path, colour):
    spelled = "0x%02x%02x%02x" % colour
    subprocess.run(["ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i", f"color={spelled}:size=160x120:rate=5:duration=1",
                    "-pix_fmt", "yuv420p", str(path)], check=True)


def packed(parts):
    """A ZIP of the parts, in their order; the first is stored, as the containers of documents ask for."""
    buffer = io.BytesIO()
    with zipfile.ZipFile(buffer, "w") as archive:
        for number, (name, content) in enumerate(parts.items()):
            archive.writestr(name, content, zipfile.ZIP_DEFLATED if number else zipfile.ZIP_STORED)
    return buffer.getvalue()


TEXTS = {
    "txt": f"{WORD}\n" * 400,  # long enough for ffmpeg to make a film of it
    "csv": f"{WORD},{WORD}\n{WORD},{WORD}\n",
    "html": f"<html><body><p>{WORD}</p></body></html>",
    "rtf": r"{\rtf1\ansi %s\par}" % WORD,
    "css": "body, p { background: #%02x%02x%02x; color: #%02x%02x%02x }\n" % (COLOUR * 2),
    "svg": '<svg xmlns="http://www.w3.org/2000/svg" width="160" height="120"><rect width="160" height="120" fill="#%02x%02x%02x"/>'
           f'<text y="60">{WORD}</text></svg>' % COLOUR,
    "bib": f"@book{{a, title={{{WORD}}}}}\n",
    "tex": f"{WORD}\n"}


def write_secret(path):
    """Writes a file of the kind that the name says, which holds nothing but a secret."""
    extension = path.suffix[1:]
    if extension in TEXTS:
        path.write_text(TEXTS[extension])
    elif extension == "png":
        path.write_bytes(picture(COLOUR, WORD))
    elif extension == "wav":
        write_sound(path, TONE)
    elif extension == "mp3":
        sound = path.with_suffix(".wav")
        write_secret(sound)
        subprocess.run(["ffmpeg", "-v", "error", "-i", sound, "-metadata", f"title={WORD}", path], check=True)
    elif extension == "mp4":
        write_film(path, COLOUR)
    else:
        subprocess.run(["pandoc", "--from=html", "-o", path], input=TEXTS["html"], text=True, check=True)


class Bait:
    """Secret files, which come into being when a document asks for them, in four places."""

    def __init__(self, laboratory, temporary):
        self.inputs = laboratory / "inputs"
        self.places = {OUTSIDE: laboratory / "outside", BESIDE: self.inputs, HOME: laboratory / "home", TEMPORARY: temporary}
        for place in self.places.values():
            place.mkdir(exist_ok=True)

    def fill(self, text, place):
        """Puts the secret's addresses into a document.

        @PNG@ becomes the absolute path of the secret picture, @PNG_URL@ its address and @PNG_UP@ the
        path that leads there from the folder of the inputs; the same for the other kinds.
        """
        def address(match):
            file = self.places[place] / f"secret.{match[1].lower()}"
            if not file.exists():
                write_secret(file)
            return {"": str(file), "_URL": file.as_uri(), "_UP": os.path.relpath(file, self.inputs)}[match[2]]
        return re.sub("@(TXT|CSV|HTML|RTF|CSS|SVG|BIB|TEX|PNG|WAV|MP3|MP4|ODT|DOCX)(_URL|_UP|)@", address, text)
