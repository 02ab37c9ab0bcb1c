"""Web pages and Markdown that name other files."""
from bait import BESIDE, HOME, OUTSIDE, TEMPORARY
from roads import Road

HEAD = "<html><head>%s</head><body><p>Witness</p></body></html>"
BODY = "<html><body><p>Witness</p>%s</body></html>"
DRAWING = ("data:image/svg+xml,%%3Csvg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='160' "
           "height='120'%%3E%%3Cimage width='160' height='120' xlink:href='%s'/%%3E%%3C/svg%%3E")


def page(label, target, text, place=OUTSIDE, may_fail=False):
    return Road(label, "*.html", target, text, place, may_fail)


def note(label, target, text, place=OUTSIDE, may_fail=False):
    return Road(label, "*.md", target, text + "\nWitness\n", place, may_fail)


ROADS = [
    # by the office suite
    page("html pictures", "pdf",
         BODY % ('<img src="@PNG_URL@" width=160 height=120><object data="@PNG_URL@" type="image/png" width=160 height=120></object>'
                 '<embed src="@TXT_URL@" width=160 height=120><ul style="list-style-image:url(@PNG_URL@)"><li>a<li>b</ul>'
                 '<svg width="160" height="120"><image xlink:href="@PNG_URL@" width="160" height="120"/></svg>')),
    page("html pictures beside", "pdf", BODY % '<img src="@PNG_UP@"><img src="./@PNG_UP@">', BESIDE),
    page("html picture at a base", "pdf", '<html><head><base href="@TXT_URL@"></head>' + BODY % '<img src="secret.png">', TEMPORARY),
    page("html background", "pdf", '<html><body background="@PNG_URL@"><p>Witness</p></body></html>', HOME),
    page("html backgrounds in styles", "pdf",
         '<html><head><style>body { background: url("@PNG_URL@") }</style></head>'
         + BODY % ('<div style="background-image:url(@PNG_URL@)"><p>a</p><p>b</p></div><table background="@PNG_URL@"><tr>'
                   '<td background="@PNG_URL@">a<br>b<br>c</td></tr></table>')),
    page("html style sheets", "pdf",
         HEAD % '<link rel="stylesheet" type="text/css" href="@CSS_URL@"><style>@import url("@CSS_URL@");</style>', HOME),
    page("html form picture", "pdf", BODY % '<form><input type="image" src="@PNG_URL@" width=160 height=120></form>', TEMPORARY),
    page("html drawing in an address", "pdf", BODY % f'<img src="{DRAWING % "@PNG_URL@"}">'),
    page("html frames and sections", "pdf",
         BODY % '<iframe src="@HTML_URL@" width=400 height=300></iframe><div id="s" href="@HTML_URL@"><p>a</p></div>'),
    # by pandoc
    page("html picture to docx", "docx", BODY % '<img src="@PNG@"><img src="@PNG_URL@">'),
    page("html picture to odt", "odt", BODY % '<img src="@PNG_UP@">', BESIDE),
    page("html sources to epub", "epub",
         BODY % '<picture><source srcset="@PNG_URL@"><img srcset="@PNG_URL@ 2x"></picture><video poster="@PNG_URL@" src="@MP4_URL@"></video>'),
    page("html frame to html", "html", BODY % '<iframe src="@HTML@"></iframe><iframe src="@HTML_URL@"></iframe>'),
    page("html frame beside to md", "md", BODY % '<iframe src="@HTML_UP@"></iframe>', BESIDE),
    page("html object to epub", "epub", BODY % '<object data="@PNG_URL@"></object><embed src="@SVG_URL@"><link href="@CSS_URL@">'),
    page("html picture at a base to docx", "docx", '<base href="@TXT_URL@">' + BODY % '<img src="secret.png">', HOME),
    page("html refresh to txt", "txt", HEAD % '<meta http-equiv="refresh" content="0;url=@HTML_URL@">'),
    page("html drawing to docx", "docx", BODY % f'<img src="{DRAWING % "@PNG_URL@"}">', TEMPORARY),
    page("html sources to rtf", "rtf", BODY % '<img src="@PNG@"><img src="@PNG_UP@">', BESIDE),
    page("html entity to txt", "txt", '<!DOCTYPE html [<!ENTITY e SYSTEM "@TXT_URL@">]>' + BODY % "&e;"),
    note("md picture", "docx", "![a](@PNG@)"),
    note("md picture by address", "odt", "![a](@PNG_URL@)", HOME),
    note("md picture beside", "epub", "![a](@PNG_UP@)", BESIDE),
    note("md picture above", "docx", "![a][r]\n\n[r]: @PNG_UP@\n", TEMPORARY),
    note("md text as a picture", "epub", "![a](@TXT@)\n\n![b](@SVG@)"),
    note("md picture to html", "html", "![a](@PNG@)"),
    note("md picture to rtf", "rtf", "![a](@PNG@)"),
    note("md picture to pdf", "pdf", "![a](@PNG@)\n\n<img src='@PNG_URL@'>"),
    note("md raw html", "epub", '<img src="@PNG@"/>\n\n<video poster="@PNG_UP@" src="@MP4@"></video>\n'),
    note("md raw tex", "docx", "\\input{@TEX@}\n\n\\include{@TEX@}\n\n\\includegraphics{@PNG@}\n"),
    note("md raw tex beside", "txt", "\\input{secret}\n\n$\\input{secret.tex}$\n", BESIDE),
    note("md cover and style", "epub", "---\ncover-image: '@PNG@'\ncss: '@CSS@'\nstylesheet: '@CSS@'\n---\n"),
    note("md bibliography", "docx", "---\nbibliography: '@BIB@'\nnocite: '@*'\ncsl: '@TXT@'\n---\n"),
    note("md includes", "html", "---\ninclude-before: '@HTML@'\nheader-includes: |\n  ```{=html}\n  <link href='@CSS@'>\n  ```\n---\n"),
    note("md reference document", "docx", "---\nreference-doc: '@DOCX@'\ntemplate: '@TXT@'\nfilters: ['@TXT@']\n---\n"),
    note("md heading background", "epub", "# Heading {background-image='@PNG@' data-background-image='@PNG@'}\n"),
    note("md include of others", "html",
         ".. include:: @TXT@\n\n```{.txt include='@TXT@'}\n```\n\n!include @TXT@\n\n{{#include @TXT@}}\n\n!INCLUDE '@TXT@'\n"),
    note("md drawing in an address", "odt", f"![a](<{DRAWING % '@PNG_URL@'}>)"),
    Road("txt as markdown", "*.txt", "docx", "Witness\n\n![a](@PNG@)\n", may_fail=False),
]
