"""Documents that hold the secret themselves: for each reader of the judge one that has to find it."""
import base64
import subprocess
import zipfile

from bait import COLOUR, WORD, picture, write_secret
from roads import Road
from roads_containers import page, pdf

COLOURED = picture(COLOUR)
PICTURED = f'<html><body><p>a</p><img src="data:image/png;base64,{base64.b64encode(COLOURED).decode()}"></body></html>'
PRINTED = pdf(*page(contents=f"BT /F 24 Tf 50 300 Td ({WORD}) Tj ET"))
NOTED = pdf(*page(extra=f"/Annots[<</Type/Annot/Subtype/Popup/Rect[0 0 9 9]/Contents({WORD})>>]"))


def own(path, fill):
    write_secret(path)


def photographed(path, fill):
    """A picture of the printed word."""
    source = path.with_suffix(".pdf")
    PRINTED(source, fill)
    subprocess.run(["pdftoppm", "-r", "100", "-png", "-singlefile", source, path.with_suffix("")], check=True)


def zipped(path, fill):
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
        archive.writestr("folder/a.txt", WORD * 20)


def control(label, extension, target, content, holds, tool=False):
    return Road(label, f"*.{extension}", target, content, tool=tool, holds=holds)


ROADS = [
    control("plain text", "md", "txt", WORD, r"^text in [^/]*$"),
    control("text between tags", "md", "html", f"{WORD[:5]}*{WORD[5:]}*", r"^text in [^/]*$"),
    control("text in a document", "md", "docx", WORD, r"^text in .*document\.xml"),
    control("text in a book", "md", "epub", WORD, r"^text in .*\.xhtml"),
    control("text on a page", "html", "pdf", WORD, r"^text in .*pdftotext"),
    control("text of a note", "pdf", "compress", NOTED, r"^text in .*qpdf", tool=True),
    control("text in a tar", "zip", "tar", zipped, r"^text in .*\.txt"),
    control("text in a compressed tar", "zip", "gz", zipped, r"^text in .*\.txt"),
    control("picture in a document", "html", "docx", PICTURED, r"^colour in .*/pngtopnm"),
    control("picture in letters", "html", "md", PICTURED, r"^colour in .*base64/pngtopnm"),
    control("picture in digits", "html", "rtf", PICTURED, r"^colour in .*digits/pngtopnm"),
    control("picture on a page", "html", "pdf", PICTURED, r"^colour in .*pdftoppm"),
    control("picture as png", "png", "png", COLOURED, r"^colour in .*pngtopnm"),
    control("picture as jpg", "png", "jpg", COLOURED, r"^colour in .*jpegtopnm"),
    control("picture as bmp", "png", "bmp", COLOURED, r"^colour in .*bmptopnm"),
    control("picture as tiff", "png", "tiff", COLOURED, r"^colour in .*tifftopnm"),
    control("film", "mp4", "gif", own, r"^colour in .*giftopnm"),
    control("sound", "wav", "wav", own, r"^sound in "),
    control("printed word", "png", "jpg", photographed, r"^recognition in .*jpegtopnm"),
    control("printed word on a page", "png", "pdf", photographed, r"^recognition in .*pdftoppm"),
]
