"""Playlists and films that name other files."""
import struct
import subprocess

from bait import BESIDE, HOME, OUTSIDE, TEMPORARY, write_film
from roads import Road

TAG = "ID3\3\0\0\0\0\0\0"  # an empty tag: what follows passes as a sound
HLS = TAG + "#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:1,\n%s\n#EXT-X-ENDLIST\n"
DASH = (TAG + '<?xml version="1.0"?><MPD xmlns="urn:mpeg:dash:schema:mpd:2011" type="static" mediaPresentationDuration="PT1S" '
        'profiles="urn:mpeg:dash:profile:isoff-on-demand:2011"><Period duration="PT1S"><AdaptationSet contentType="%s">'
        '<Representation id="1" bandwidth="9" mimeType="%s"><BaseURL>%s</BaseURL></Representation></AdaptationSet></Period></MPD>')
CONCAT = TAG + "ffconcat version 1.0\nfile '%s'\n"


def atom(name, content):
    return struct.pack(">I", 8 + len(content)) + name + content


def with_reference(data, reference):
    """The same film, its samples taken from another file."""
    def rewrite(block):
        at, result = 0, b""
        while at + 8 <= len(block):
            size, name = struct.unpack_from(">I4s", block, at)
            content = block[at + 8:at + size]
            if name in (b"moov", b"trak", b"mdia", b"minf", b"dinf"):
                content = rewrite(content)
            elif name == b"dref":
                content = struct.pack(">II", 0, 1) + reference
            result += atom(name, content)
            at += size
        return result
    return rewrite(data)


def referring(kind):
    """A film or sound whose samples stand in the secret: `url ` or the alias of another system."""
    def write(path, fill):
        extension = "mov" if path.suffix == ".mov" else "mp4"
        own = path.with_suffix(f".own.{extension}")
        write_film(own, (255, 255, 255))
        target = fill("@MP4_URL@" if kind == b"url " else "@MP4@").encode()
        body = struct.pack(">I", 0)
        if kind == b"url ":
            body += target + b"\0"
        else:
            body += bytes(150) + struct.pack(">HH", 2, len(target)) + target + bytes(len(target) % 2) + struct.pack(">HH", 0xFFFF, 0)
        path.write_bytes(with_reference(own.read_bytes(), atom(kind, body)))
        own.unlink()
    return write


def subtitled(path, fill):
    """A film with subtitles that would embed a picture."""
    write_film(path, (255, 255, 255))
    titles = path.with_suffix(".srt")
    titles.write_text(fill('1\n00:00:00,000 --> 00:00:01,000\n<img src="@PNG_URL@"><font face="@PNG@">x</font>\n'))
    plain = path.with_suffix(".plain.mp4")
    path.rename(plain)
    subprocess.run(["ffmpeg", "-v", "error", "-i", plain, "-i", titles, "-c:v", "copy", "-c:s", "mov_text", path], check=True)
    plain.unlink()
    titles.unlink()


ROADS = [
    Road("hls sound", "*.mp3", "wav", HLS % "@MP3@"),
    Road("hls sound by address", "*.flac", "wav", HLS % "@MP3_URL@", HOME),
    Road("hls sound beside", "*.ogg", "wav", HLS % "@MP3_UP@", BESIDE),
    Road("hls sound above", "*.m4a", "wav", HLS % "@MP3_UP@", OUTSIDE),
    Road("hls film", "*.mp4", "gif", HLS % "@MP4@", TEMPORARY),
    Road("hls film above", "*.mov", "gif", HLS % "@MP4_UP@"),
    Road("hls part of a file", "*.mp3", "wav", HLS % "subfile,,start,0,end,0,,:@MP3@"),
    Road("hls joined files", "*.opus", "wav", HLS % "concat:@MP3@|@MP3@"),
    Road("hls map", "*.m4v", "gif", HLS.replace("#EXTINF", '#EXT-X-MAP:URI="@MP4@"\n#EXTINF') % "@MP4@"),
    Road("hls in hls", "*.mp4", "gif", TAG + "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=1\n@MP4@\n"),
    Road("dash film", "*.mp4", "gif", DASH % ("video", "video/mp4", "@MP4@")),
    Road("dash sound", "*.mp3", "wav", DASH % ("audio", "audio/mpeg", "@MP3@"), HOME),
    Road("concat sound", "*.mp3", "wav", CONCAT % "@WAV@"),
    Road("concat sound beside", "*.aiff", "wav", CONCAT % "@WAV_UP@", BESIDE),
    Road("concat film beside", "*.mp4", "gif", CONCAT % "@MP4_UP@", BESIDE),
    Road("concat text beside", "*.mov", "gif", CONCAT % "@TXT_UP@", BESIDE),
    Road("concat text", "*.mp4", "gif", CONCAT % "@TXT@"),
    Road("concat picture beside", "*.mp4", "snapshot", CONCAT % "@PNG_UP@", BESIDE, tool=True),
    Road("hls report", "*.mp3", "metadata", HLS % "@MP3@", tool=True),
    Road("hls snapshot", "*.mp4", "snapshot", HLS % "@MP4@", tool=True),
    Road("mov url", "*.mov", "gif", referring(b"url ")),
    Road("mov alias", "*.mov", "mp4", referring(b"alis")),
    Road("mp4 url", "*.mp4", "gif", referring(b"url "), HOME),
    Road("subtitles of a film", "*.mp4", "gif", subtitled, may_fail=True),
    Road("srt tags", "*.srt", "vtt", "1\n00:00:01,000 --> 00:00:02,000\nWitness <img src=\"@PNG_URL@\">{\\fn@TXT@}\n", may_fail=False),
    Road("vtt style", "*.vtt", "txt", "WEBVTT\n\nSTYLE\n@import '@CSS_URL@';\n\n00:01.000 --> 00:02.000\nWitness\n"),
]
