"""Archives, books, PDFs and packages that lead out of themselves."""
import io
import os
import tarfile
import zipfile

from bait import BESIDE, HOME, OUTSIDE, TEMPORARY
from forms import DRAWING, XML
from roads import Road, container

PAGE = '<html xmlns="http://www.w3.org/1999/xhtml"><head><title>a</title>%s</head><body><p>Witness</p>%s</body></html>'


def book(label, target, page, place=OUTSIDE, parts=None, items="", chapter="c.xhtml", doctype="", root="b/content.opf", may_fail=True):
    opf = (f'{XML}{doctype}<package xmlns="http://www.idpf.org/2007/opf" version="3.0" unique-identifier="i"><metadata '
           'xmlns:dc="http://purl.org/dc/elements/1.1/"><dc:identifier id="i">a</dc:identifier><dc:title>a</dc:title><dc:language>en'
           f'</dc:language></metadata><manifest><item id="c" href="{chapter}" media-type="application/xhtml+xml"/>{items}</manifest>'
           '<spine><itemref idref="c"/></spine></package>')
    meta = (f'{XML}<container version="1.0" xmlns="urn:oasis:names:tc:opendocument:xmlns:container"><rootfiles><rootfile '
            f'full-path="{root}" media-type="application/oebps-package+xml"/></rootfiles></container>')
    return Road(label, "*.epub", target, container({
        "mimetype": "application/epub+zip", "META-INF/container.xml": meta, "b/content.opf": opf, "b/c.xhtml": page,
        **(parts or {})}), place, may_fail)


BOOKS = [
    book("epub picture", "docx", PAGE % ("", '<img src="@PNG_URL@"/><img src="@PNG@"/>')),
    book("epub picture above", "html", PAGE % ("", '<img src="../../../../../../../../..@PNG@"/>'), HOME),
    book("epub picture beside", "docx", PAGE % ("", '<img src="../@PNG_UP@"/><img src="@PNG_UP@"/>'), BESIDE),
    book("epub drawing", "docx", PAGE % ("", '<img src="a.svg"/>'), parts={"b/a.svg": DRAWING},
         items='<item id="s" href="a.svg" media-type="image/svg+xml"/>'),
    book("epub style", "html", PAGE % ('<link rel="stylesheet" href="@CSS_URL@"/><style>@import "@CSS@";</style>', "")),
    book("epub items outside", "docx", PAGE % ("", ""), HOME,
         items='<item id="o" href="../../../../../../../..@PNG@" media-type="image/png" properties="cover-image"/>'
               '<item id="p" href="@PNG_URL@" media-type="image/png"/>'),
    book("epub chapter outside", "txt", "", TEMPORARY, chapter="../../../../../../../..@HTML@"),
    book("epub entity", "md", '<!DOCTYPE html [<!ENTITY e SYSTEM "@TXT_URL@">]>' + PAGE % ("", "&e;")),
    book("epub entity of its list", "pdf", PAGE % ("", ""), doctype='<!DOCTYPE package [<!ENTITY e SYSTEM "@TXT_URL@">]>'),
    book("epub list outside", "txt", PAGE % ("", ""), root="../../../../../../../..@HTML@"),
]


def link_in_zip(path, fill):
    with zipfile.ZipFile(path, "w") as archive:
        for extension in ("TXT", "PNG_UP"):
            entry = zipfile.ZipInfo("link." + extension)
            entry.create_system, entry.external_attr = 3, 0o120777 << 16
            archive.writestr(entry, fill(f"@{extension}@"))
        archive.writestr("own.txt", "Witness")


def named_in_zip(path, fill):
    with zipfile.ZipFile(path, "w") as archive:
        archive.writestr("../secret.txt", "Witness")
        archive.writestr(fill("@TXT@"), "Witness")


def tape(*members, compression=""):
    """@param members (kind, name, target) of a TAR; the names may ask for secrets"""
    def write(path, fill):
        with tarfile.open(path, "w:" + compression, format=tarfile.PAX_FORMAT) as archive:
            for kind, name, target in members:
                entry = tarfile.TarInfo(name)
                entry.type, entry.linkname = kind, fill(target)
                if kind == tarfile.CHRTYPE:
                    entry.devmajor, entry.devminor = 1, 5
                content = b"Witness" if kind == tarfile.REGTYPE else b""
                entry.size = len(content)
                archive.addfile(entry, io.BytesIO(content))
    return write


LINK, HARD, FILE = tarfile.SYMTYPE, tarfile.LNKTYPE, tarfile.REGTYPE
ARCHIVES = [
    Road("tar link", "*.tar", "zip", tape((FILE, "own.txt", ""), (LINK, "a.txt", "@TXT@"))),
    Road("tar link beside", "*.tar", "gz", tape((LINK, "a.txt", "../../@TXT_UP@"), (FILE, "own.txt", "")), BESIDE),
    Road("tar link to a folder", "*.tar", "zip", tape((LINK, "a", "/"), (HARD, "b", "a@TXT@"))),
    Road("tar hard link", "*.tar", "zip", tape((FILE, "own.txt", ""), (HARD, "a.txt", "@TXT@")), HOME),
    Road("tar hard link above", "*.tar", "tar", tape((HARD, "a.txt", "../../../../../../../../..@TXT@"))),
    Road("tar hard link to its link", "*.tar", "gz", tape((LINK, "a", "@TXT@"), (HARD, "b", "a")), TEMPORARY),
    Road("tar device", "*.tar", "zip", tape((tarfile.CHRTYPE, "device", ""), (FILE, "own.txt", ""))),
    Road("compressed tar link", "*.tar.gz", "zip", tape((LINK, "a.txt", "@TXT@"), compression="gz"), HOME),
    Road("zip link", "*.zip", "tar", link_in_zip),
    Road("zip names outside", "*.zip", "tar", named_in_zip),
    Road("zip link compressed again", "*.zip", "gz", link_in_zip, BESIDE),
]


def pdf(*objects):
    """A PDF of one page; its objects 1 to 3 are the catalog, the pages and the page."""
    def write(path, fill):
        result, places = b"%PDF-1.7\n", []
        for number, text in enumerate(objects, 1):
            places.append(len(result))
            result += f"{number} 0 obj\n{fill(text)}\nendobj\n".encode()
        start = len(result)
        result += f"xref\n0 {len(objects) + 1}\n0000000000 65535 f \n".encode()
        result += b"".join(b"%010d 00000 n \n" % place for place in places)
        path.write_bytes(result + f"trailer\n<</Size {len(objects) + 1}/Root 1 0 R>>\nstartxref\n{start}\n%%EOF\n".encode())
    return write


def page(catalog="", extra="", resources="", contents="BT /F 20 Tf 50 300 Td (Witness) Tj ET"):
    stream = f"<</Length {len(contents)}>>\nstream\n{contents}\nendstream"
    return ("<</Type/Catalog/Pages 2 0 R%s>>" % catalog, "<</Type/Pages/Kids[3 0 R]/Count 1>>",
            "<</Type/Page/Parent 2 0 R/MediaBox[0 0 400 400]/Contents 4 0 R/Resources<</Font<</F<</Type/Font/Subtype/Type1/BaseFont"
            "/Helvetica>>>>%s>>%s>>" % (resources, extra), stream)


EXTERNAL = "/F<</Type/Filespec/FS/URL/F(@%s_URL@)>>/Length 0>>\nstream\n\nendstream"
FILES = "/F<</Type/Filespec/F(@%s@)/UF(@%s@)>>/Length 0>>\nstream\n\nendstream"
PDFS = [
    Road("pdf contents of a file", "*.pdf", "txt", pdf(*page()[:3], "<<" + FILES.replace("%s", "TXT"))),
    Road("pdf picture of a file", "*.pdf", "png",
         pdf(*page(resources="/XObject<</X 5 0 R>>", contents="q 200 0 0 200 50 50 cm /X Do Q"),
             "<</Type/XObject/Subtype/Image/Width 160/Height 120/ColorSpace/DeviceRGB/BitsPerComponent 8" + FILES.replace("%s", "PNG")), HOME),
    Road("pdf form of an address", "*.pdf", "docx",
         pdf(*page(resources="/XObject<</X 5 0 R>>", contents="q /X Do Q BT /F 20 Tf 50 300 Td (Witness) Tj ET"),
             "<</Type/XObject/Subtype/Form/BBox[0 0 400 400]/Ref<</F(@PNG@)/Page 0>>" + EXTERNAL.replace("%s", "TXT"))),
    Road("pdf attachments", "*.pdf", "md",
         pdf(*page("/Names<</EmbeddedFiles<</Names[(a)<</Type/Filespec/F(@TXT@)/EF<</F 5 0 R>>>>]>>>>"
                   "/OpenAction<</S/GoToR/F(@TXT@)/D[0/Fit]>>",
                   "/Annots[<</Type/Annot/Subtype/FileAttachment/Rect[0 0 90 90]/FS(@TXT@)>>"
                   "<</Type/Annot/Subtype/Link/Rect[0 0 90 90]/A<</S/Launch/F(@TXT@)>>>>]"),
             "<</Type/EmbeddedFile" + FILES.replace("%s", "TXT")), TEMPORARY),
    Road("pdf compressed", "*.pdf", "compress",
         pdf(*page("/Names<</EmbeddedFiles<</Names[(a)<</Type/Filespec/F(@TXT@)/EF<</F 5 0 R>>>>]>>>>"),
             "<</Type/EmbeddedFile" + FILES.replace("%s", "TXT")), tool=True),
    Road("pdf font of a file", "*.pdf", "pptx",
         pdf(*page(resources="/XObject<</X 5 0 R>>"), "<</Type/FontDescriptor/FontName/A/FontFile2 6 0 R>>",
             "<<" + FILES.replace("%s", "TXT"))),
]


def package(*links):
    """A package of rich text, some of whose parts are links to secrets."""
    def write(path, fill):
        path.mkdir()
        if "TXT.rtf" not in dict(links):
            (path / "TXT.rtf").write_text(fill(r"{\rtf1\ansi Witness {{\NeXTGraphic a.png}\'ac} "
                                               r'{\field{\*\fldinst INCLUDEPICTURE "@PNG@"}{\fldrslt }}\par}'))
        for name, target in links:
            os.symlink(fill(target), path / name)
    return write


PACKAGES = [
    Road("rtfd text is a link", "*.rtfd", "txt", package(("TXT.rtf", "@RTF@"))),
    Road("rtfd text is a link beside", "*.rtfd", "docx", package(("TXT.rtf", "../@RTF_UP@")), BESIDE),
    Road("rtfd text is a link laid out", "*.rtfd", "pdf", package(("TXT.rtf", "@RTF@")), HOME),
    Road("rtfd picture is a link", "*.rtfd", "pdf", package(("a.png", "@PNG@"))),
    Road("rtfd picture is a link kept", "*.rtfd", "docx", package(("a.png", "@PNG@"))),
    Road("clipping with an entity", "*.textClipping", "txt",
         XML + '<!DOCTYPE plist [<!ENTITY e SYSTEM "@TXT_URL@">]><plist version="1.0"><dict><key>UTI-Data</key><dict>'
               '<key>public.utf8-plain-text</key><string>Witness &e;</string></dict></dict></plist>'),
    Road("clipping of an address", "*.textClipping", "txt",
         XML + '<plist version="1.0"><dict><key>UTI-Data</key><dict><key>public.url</key><string>@TXT_URL@</string>'
               '<key>public.utf8-plain-text</key><string>Witness</string></dict></dict></plist>'),
]

ROADS = [*BOOKS, *ARCHIVES, *PDFS, *PACKAGES]
