"""Pictures that name other files, under their own names and under those of other kinds."""
import struct
import zlib

from bait import BESIDE, HOME, TEMPORARY, picture
from roads import Road

SVG = ('<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" width="200" height="200">'
       '%s<text x="5" y="20">x</text></svg>')
MVG = "push graphic-context\nviewbox 0 0 200 200\nimage over 0,0 200,200 '%s'\npop graphic-context\n"
MSL = '<?xml version="1.0"?><image><read filename="%s"/><write filename="msl:x.png"/></image>'
POSTSCRIPT = ("%%!PS-Adobe-3.0 EPSF-3.0\n%%%%BoundingBox: 0 0 300 200\n/Helvetica 20 selectfont 5 100 moveto\n"
              "(%s) (r) file 100 string readline pop show showpage\n")
BEYOND_THE_SAMPLE = "<!--" + " " * 2_200_000 + "-->"  # of which the reader of heads reads 2 MiB


def profiled(path, fill):
    """A PNG whose text chunk `profile` names a file that some libraries put into the result."""
    content = b"profile\0" + fill("@TXT@").encode()
    chunk = struct.pack(">I", len(content)) + b"tEXt" + content + struct.pack(">I", zlib.crc32(b"tEXt" + content))
    white = picture((255, 255, 255))
    path.write_bytes(white[:33] + chunk + white[33:])


WHITE = picture((255, 255, 255))
ROADS = [
    Road("svg image", "*.svg", "png", SVG % '<image width="200" height="200" href="@PNG_URL@"/>'),
    Road("svg image by path", "*.svg", "png", SVG % '<image width="200" height="200" xlink:href="@PNG@"/>', TEMPORARY),
    Road("svg image beyond the sample", "*.svg", "png",
         SVG % (BEYOND_THE_SAMPLE + '<image width="200" height="200" xlink:href="@PNG_URL@"/>')),
    Road("svg image beside", "*.svg", "pdf", SVG % '<image width="200" height="200" xlink:href\n="@PNG_UP@"/>', BESIDE),
    Road("svg image after a tab", "*.svg", "png", SVG % '<image width="200" height="200" xlink:href\t="@PNG_URL@"/>'),
    Road("svg use after a tab", "*.svg", "png", SVG % '<use xlink:href\t="@SVG_URL@#a"/>', BESIDE),
    Road("svg filter", "*.svg", "png",
         SVG % '<filter id="f"><feImage xlink:href\n="@PNG_URL@"/></filter><rect width="200" height="200" filter="url(#f)"/>'),
    Road("svg style import", "*.svg", "png", SVG % '<style>@import url("@CSS_URL@");</style><p/>'),
    Road("svg style sheet", "*.svg", "png", '<?xml-stylesheet type="text/css" href\n="@CSS_URL@"?>' + SVG % ""),
    Road("svg paint server", "*.svg", "png", SVG % '<rect width="200" height="200" fill="url(@SVG_URL@#p)"/>'),
    Road("svg style background", "*.svg", "png",
         SVG % '<rect width="200" height="200" style="background-image:url(@PNG_URL@);fill:none"/>'),
    Road("svg included", "*.svg", "png",
         SVG % '<xi:include xmlns:xi="http://www.w3.org/2001/XInclude" href\n="@TXT_URL@" parse="text"/>'),
    Road("svg entity", "*.svg", "png",
         '<!DOCTYPE svg [<!ENTITY e SYSTEM "@TXT_URL@">]>' + SVG % '<text y="100">&e;</text>'),
    Road("svg entity beyond the sample", "*.svg", "png",
         "<!--<svg-->" + BEYOND_THE_SAMPLE + '<!DOCTYPE svg [<!ENTITY e SYSTEM "@TXT_URL@">]>' + SVG % '<text y="100">&e;</text>'),
    Road("svg text of a file", "*.svg", "png", SVG % '<text x="5" y="100">@@TXT@</text>'),
    Road("svg font of a file", "*.svg", "png", SVG % '<text y="100" font-family="@@TXT@">y</text>', HOME),
    Road("svg drawing command", "*.svg", "png", SVG % "<text x=\"5\" y=\"100\">' image over 0,0 200,200 '@PNG@</text>"),
    Road("mvg as png", "*.png", "jpg", MVG % "@PNG@"),
    Road("mvg as jpg", "*.jpg", "png", MVG % "text:@TXT@"),
    Road("mvg as svg", "*.svg", "png", "<!--<svg-->\n" + MVG % "@PNG@"),
    Road("mvg as tiff", "*.tiff", "png", MVG % "label:@@TXT@"),
    Road("msl as heic", "*.heic", "png", MSL % "@PNG@"),
    Road("msl as svg", "*.svg", "png", MSL.replace("<image>", "<image><svg/>") % "caption:@@TXT@"),
    Road("postscript as png", "*.png", "jpg", POSTSCRIPT % "@TXT@"),
    Road("postscript as pdf", "*.pdf", "png", POSTSCRIPT % "@TXT@"),
    Road("postscript after a pdf head", "*.pdf", "png", "%PDF-1.4\n" + POSTSCRIPT % "@TXT@"),
    Road("postscript as bmp", "*.bmp", "png", "BM\n" + POSTSCRIPT % "@TXT@"),
    Road("profile of a png", "*.png", "webp", profiled, HOME),
    Road("profile of a png kept", "*.png", "png", profiled),
    Road("name that reads a text", "caption:@secret.txt.png", "jpg", WHITE, BESIDE),
    Road("name that lists pictures", "@secret.png", "jpg", WHITE, BESIDE),
    Road("name that is a pattern", "*.png[secret].png", "jpg", WHITE, BESIDE),
    Road("name of a script", "msl:secret.svg", "png", SVG % "", BESIDE),
]
