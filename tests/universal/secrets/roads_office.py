"""Office documents that name other files."""
from bait import BESIDE, HOME, OUTSIDE, TEMPORARY, picture
from forms import (DRAWING, SHEETS, SPACES, XML, docx, field, flat, formula, framed, link, ods, odt, outside, page_style, placed,
                   pptx, relationships, sheet_picture, slide_picture, xlsx)
from roads import Road

WHITE = picture((255, 255, 255))
SVG_BLIP = ('<a:blip r:embed="p"><a:extLst><a:ext uri="{96DAC541-7B7A-43D3-8B79-37D633B846F1}"><asvg:svgBlip r:embed="s"/>'
            '</a:ext></a:extLst></a:blip>')


def office(label, extension, target, content, place=OUTSIDE, may_fail=False):
    return Road(label, f"*.{extension}", target, content, place, may_fail)


def imaged(style):
    """A background picture of a paragraph, a cell or a page."""
    return f'<style:background-image {link("@PNG_URL@")} style:repeat="repeat"/>'


FILLED = f'<office:styles><draw:fill-image draw:name="F" {link("@PNG_URL@")}/></office:styles>'
AUTOMATIC = ('<office:automatic-styles>' + "".join(
    f'<style:style style:name="{name}" style:family="{family}"><style:{family}-properties {attributes}>{inside}</style:{family}-properties>'
    '</style:style>' for name, family, attributes, inside in (
        ("P", "paragraph", "", imaged("paragraph")), ("C", "table-cell", "", imaged("table-cell")),
        ("G", "graphic", 'draw:fill="bitmap" draw:fill-image-name="F"', "")))
    + f'<text:list-style style:name="L"><text:list-level-style-image text:level="1" {link("@PNG_URL@")}><style:list-level-properties '
      'fo:width="2cm" fo:height="2cm"/></text:list-level-style-image></text:list-style></office:automatic-styles>')
MACRO = ('<office:scripts><office:event-listeners><script:event-listener script:language="ooo:script" script:event-name="dom:load" '
         'xlink:href="vnd.sun.star.script:secret.py$x?language=Python&amp;location=user" xlink:type="simple"/></office:event-listeners>'
         '</office:scripts>')

DOCX = [
    office("docx linked pictures", "docx", "pdf",
           docx(placed('<a:blip r:link="p"/>') + placed('<a:blip r:embed="q"/>')
                + '<w:p><w:r><w:pict><v:rect style="width:120pt;height:90pt"><v:imagedata r:href="p" src="@PNG_URL@" o:href="@PNG_URL@"/>'
                  '<v:fill r:href="p" src="@PNG_URL@" o:href="@PNG_URL@" type="frame"/></v:rect></w:pict></w:r></w:p>',
                [("p", "image", outside("@PNG_URL@")), ("q", "image", outside("@PNG@"))])),
    office("docx drawings", "docx", "pdf",
           docx(placed(SVG_BLIP) + placed(SVG_BLIP.replace('"p"', '"q"')),
                [("p", "image", "media/a.svg"), ("q", "image", "media/a.png"), ("s", "image", "media/a.svg")],
                {"word/media/a.png": WHITE, "word/media/a.svg": DRAWING}), HOME),
    office("docx fields", "docx", "pdf",
           docx(field('INCLUDEPICTURE "@PNG_URL@" \\d') + field('INCLUDEPICTURE "@PNG@"') + field('INCLUDETEXT "@DOCX@"')
                + field("INCLUDETEXT @TXT_URL@") + field('DDEAUTO soffice "@ODT@" a') + field('LINK Word.Document.12 "@DOCX@" "" \\a \\t')
                + field("DATABASE \\d @CSV@"), [("t", "attachedTemplate", outside("@DOCX_URL@"))],
                settings='<w:attachedTemplate r:id="t"/>'), TEMPORARY),
    office("docx other parts", "docx", "pdf",
           docx('<w:altChunk r:id="c"/><w:subDoc r:id="d"/><w:altChunk r:id="e"/>'
                '<w:p><w:r><w:object><o:OLEObject Type="Link" ProgID="Word.Document.12" ShapeID="s" DrawAspect="Content" r:id="o" '
                'UpdateMode="Always"/></w:object></w:r></w:p>',
                [("c", "aFChunk", outside("@HTML_UP@")), ("d", "subDocument", outside("@DOCX_UP@")),
                 ("o", "oleObject", outside("@ODT_UP@")), ("e", "aFChunk", "a.html")],
                {"word/a.html": '<html><body background="@PNG_URL@"><img src="@PNG_URL@"><iframe src="@HTML_URL@"></iframe></body></html>'}),
           BESIDE),
    office("docx entity laid out", "docx", "pdf",
           docx("<w:p><w:r><w:t>&e;</w:t></w:r></w:p>", doctype='<!DOCTYPE x [<!ENTITY e SYSTEM "@TXT_URL@">]>'), may_fail=True),
    # by pandoc
    office("docx picture to html", "docx", "html", docx(placed('<a:blip r:embed="p"/>'), [("p", "image", outside("@PNG_URL@"))])),
    office("docx picture above its parts", "docx", "odt",
           docx(placed('<a:blip r:embed="p"/>'), [("p", "image", "../../../../../../../..@PNG@")]), HOME),
    office("docx picture of a path", "docx", "epub", docx(placed('<a:blip r:embed="p"/>'), [("p", "image", "@PNG@")]), TEMPORARY),
    office("docx entity", "docx", "md", docx("<w:p><w:r><w:t>&e;</w:t></w:r></w:p>", doctype='<!DOCTYPE x [<!ENTITY e SYSTEM "@TXT_URL@">]>'),
           may_fail=True),
]

TEXTS = [
    office("odt pictures and background of a page", "odt", "pdf",
           odt(f'<text:p>{framed("@PNG_URL@")}</text:p>', styles=page_style(imaged("page"))
               % f'<style:header><text:p>{framed("@PNG@")}</text:p></style:header>')),
    office("odt picture and drawing", "odt", "pdf",
           odt(f'<text:p>{framed("../@PNG_UP@")}{framed("Pictures/a.svg")}</text:p>', parts={"Pictures/a.svg": DRAWING}), BESIDE),
    office("odt backgrounds and bullets", "odt", "pdf",
           odt('<text:p text:style-name="P">a</text:p>' * 5
               + '<table:table table:name="T"><table:table-column/><table:table-row><table:table-cell table:style-name="C"><text:p>a</text:p>'
                 '<text:p>b</text:p></table:table-cell></table:table-row></table:table>'
                 '<text:list text:style-name="L"><text:list-item><text:p>a</text:p></text:list-item></text:list>'
                 '<text:p><draw:rect text:anchor-type="paragraph" svg:width="4cm" svg:height="3cm" draw:style-name="G"/></text:p>',
               AUTOMATIC, FILLED), TEMPORARY),
    office("odt sections and objects", "odt", "pdf",
           odt(f'<text:section text:name="S"><text:section-source {link("@ODT_URL@")}/><text:p>old</text:p></text:section>'
               f'<text:section text:name="T"><text:section-source {link("@TXT_URL@")} text:filter-name="Text"/></text:section>'
               '<text:section text:name="D"><office:dde-source office:dde-application="soffice" office:dde-topic="@ODT@" '
               'office:dde-item="a" office:automatic-update="true"/></text:section>'
               f'<text:p>{framed("@ODT_URL@", "object")}{framed("@ODT_URL@", "object-ole")}{framed("@HTML_URL@", "floating-frame")}'
               f'{framed("@MP4_URL@", "plugin")}</text:p>', MACRO), HOME),
    # by pandoc
    office("odt picture to docx", "odt", "docx", odt(f'<text:p>{framed("@PNG@")}{framed("@PNG_URL@")}</text:p>'), may_fail=True),
    office("odt picture above to epub", "odt", "epub", odt(f'<text:p>{framed("../@PNG_UP@")}</text:p>'), BESIDE),
    office("odt entity", "odt", "txt", odt("<text:p>&e;</text:p>", doctype='<!DOCTYPE x [<!ENTITY e SYSTEM "@TXT_URL@">]>'), may_fail=True),
]


def cell(formula_text):
    return (f'<table:table-cell table:formula="of:={formula_text}" office:value-type="string" office:string-value="old">'
            '<text:p>old</text:p></table:table-cell>')


CSV_LINK = "'@CSV_URL@'#$secret.A1"
BOOK_LINK = (f'{XML}<externalLink xmlns="{SHEETS}" {SPACES}><externalBook r:id="e"><sheetNames><sheetName val="secret"/></sheetNames>'
             '</externalBook></externalLink>')
SHEETS_ROADS = [
    office("ods formulas and pictures", "ods", "pdf",
           ods(cell(f"[{CSV_LINK.replace('#$', '#')}]") + cell("WEBSERVICE(&quot;@TXT_URL@&quot;)")
               + cell("DDE(&quot;soffice&quot;;&quot;@CSV@&quot;;&quot;secret.A1&quot;)"),
               table=f'<table:shapes>{framed("@PNG_URL@")}{framed("Pictures/a.svg")}</table:shapes>', parts={"Pictures/a.svg": DRAWING}), HOME),
    office("ods linked sheet and range", "ods", "csv",
           ods('<table:table-cell><table:cell-range-source xlink:type="simple" xlink:href="@CSV_URL@" table:name="secret.A1:B2" '
               'table:last-column-spanned="2" table:last-row-spanned="2" table:filter-name="Text - txt - csv (StarCalc)"/></table:table-cell>',
               table='<table:table-source xlink:type="simple" xlink:href="@CSV_URL@" table:table-name="secret" '
                     'table:filter-name="Text - txt - csv (StarCalc)" table:refresh-delay="PT1S"/>')),
    office("xlsx formulas and connections", "xlsx", "csv",
           xlsx(formula("[1]secret!A1") + formula('WEBSERVICE("@TXT_URL@")', 1) + formula("'@CSV_URL@'#$secret.A1", 2),
                [("x", "externalLink", "externalLinks/externalLink1.xml"), ("c", "connections", "connections.xml")],
                {"xl/externalLinks/externalLink1.xml": BOOK_LINK,
                 "xl/externalLinks/_rels/externalLink1.xml.rels": relationships([("e", "externalLinkPath", outside("@CSV_URL@"))]),
                 "xl/connections.xml": f'{XML}<connections xmlns="{SHEETS}"><connection id="1" name="c" type="6" refreshOnLoad="1">'
                                       '<textPr sourceFile="@CSV@" comma="1"/></connection></connections>'},
                book='<externalReferences><externalReference r:id="x"/></externalReferences>'), TEMPORARY),
    office("xlsx linked picture", "xlsx", "pdf", sheet_picture('<a:blip r:link="p"/>', [("p", "image", outside("@PNG_URL@"))])),
    office("xlsx drawing", "xlsx", "pdf",
           sheet_picture(SVG_BLIP, [("p", "image", "../media/a.svg"), ("s", "image", "../media/a.svg")], {"xl/media/a.svg": DRAWING})),
    office("csv formulas", "csv", "pdf",
           "Witness,=WEBSERVICE(\"@TXT_URL@\"),='@CSV_URL@'#$secret.A1,\"=DDE(\"\"soffice\"\";\"\"@CSV@\"\";\"\"secret.A1\"\")\"\n", BESIDE),
]

SLIDES = [
    office("pptx pictures and background", "pptx", "pdf",
           pptx(slide_picture('<a:blip r:link="p"/>') + slide_picture('<a:blip r:embed="p"/>'), [("p", "image", outside("@PNG_URL@"))],
                background='<p:bg><p:bgPr><a:blipFill><a:blip r:link="p"/><a:stretch><a:fillRect/></a:stretch></a:blipFill>'
                           '<a:effectLst/></p:bgPr></p:bg>'), HOME),
    office("pptx drawing", "pptx", "pdf",
           pptx(slide_picture(SVG_BLIP), [("p", "image", "../media/a.svg"), ("s", "image", "../media/a.svg")],
                {"ppt/media/a.svg": DRAWING}), TEMPORARY),
    office("pptx film and object", "pptx", "pdf",
           pptx(slide_picture('<a:blip r:embed="p"/>', '<a:videoFile r:link="v"/>')
                + '<p:graphicFrame><p:nvGraphicFramePr><p:cNvPr id="5" name="o"/><p:cNvGraphicFramePr/><p:nvPr/></p:nvGraphicFramePr><p:xfrm>'
                  '<a:off x="500000" y="4000000"/><a:ext cx="1905000" cy="1428750"/></p:xfrm><a:graphic><a:graphicData '
                  'uri="http://schemas.openxmlformats.org/presentationml/2006/ole"><p:oleObj r:id="o" progId="Word.Document.12" imgW="1905000" '
                  'imgH="1428750"><p:link updateAutomatic="1"/></p:oleObj></a:graphicData></a:graphic></p:graphicFrame>',
                [("p", "image", "../media/a.png"), ("v", "video", outside("@MP4_URL@")), ("o", "oleObject", outside("@ODT_URL@"))],
                {"ppt/media/a.png": WHITE})),
]

PICTURED = f'<text:p>Witness</text:p><text:p>{framed("@PNG_URL@")}</text:p>'
SHEET = f'<table:table table:name="One"><table:shapes>{framed("@PNG_URL@")}</table:shapes><table:table-row><table:table-cell ' \
        'office:value-type="string"><text:p>Witness</text:p></table:table-cell></table:table-row></table:table>'
DISGUISED = [
    office("flat text as rtf", "rtf", "pdf", flat("text", PICTURED), may_fail=True),
    office("web page as rtf", "rtf", "pdf", '<html><body background="@PNG_URL@"><p>Witness</p></body></html>', may_fail=True),
    office("flat sheet as xls", "xls", "pdf", flat("spreadsheet", SHEET), HOME, may_fail=True),
    office("drawing as ppt", "ppt", "pdf", DRAWING, may_fail=True),
    office("links as xls", "xls", "csv", 'ID;P\nC;Y1;X1;K"Witness"\nC;Y1;X2;K"old";E\'@CSV_URL@\'#$secret.A1\nE\n', may_fail=True),
    office("text as docx", "docx", "pdf", odt(f'<text:p>{framed("Pictures/a.svg")}</text:p>', parts={"Pictures/a.svg": DRAWING}), may_fail=True),
]

RICH = r"{\rtf1\ansi Witness\par %s\par}"
RTF = [
    office("rtf picture", "rtf", "pdf", RICH % (r'{\field{\*\fldinst INCLUDEPICTURE "@PNG@" \\d}{\fldrslt old}}'
                                               r'{\field{\*\fldinst INCLUDEPICTURE "@PNG_URL@" \\* MERGEFORMAT \\d}{\fldrslt }}'), HOME),
    office("rtf picture beside", "rtf", "pdf", RICH % r'{\field{\*\fldinst INCLUDEPICTURE "@PNG_UP@"}{\fldrslt old}}', BESIDE),
    office("rtf text and objects", "rtf", "pdf",
           RICH % (r'{\*\template @RTF@}{\field{\*\fldinst INCLUDETEXT "@RTF@"}{\fldrslt old}}{\field{\*\fldinst INCLUDETEXT @TXT_URL@}{\fldrslt }}'
                   r'{\object\objautlink\objupdate{\*\objclass Word.Document.8}{\*\objalias @ODT@}{\*\objdata 01050000}{\result old}}'
                   r'{\field{\*\fldinst DDEAUTO soffice "@ODT@" a}{\fldrslt old}}{\subdocument @RTF@}')),
    office("rtf picture of a shape", "rtf", "pdf",
           RICH % r'{\shp{\*\shpinst\shpleft0\shptop0\shpright3000\shpbottom2000{\sp{\sn shapeType}{\sv 75}}'
                  r'{\sp{\sn pibName}{\sv @PNG@}}{\sp{\sn pibFlags}{\sv 10}}{\sp{\sn fillType}{\sv 3}}{\sp{\sn fillBlipName}{\sv @PNG@}}'
                  r'{\sp{\sn fillBlipFlags}{\sv 10}}}}'),
    office("rtf picture to docx", "rtf", "docx", RICH % r'{\field{\*\fldinst INCLUDEPICTURE "@PNG@"}}{\field{\*\fldinst INCLUDETEXT "@RTF@"}}'),
]

ROADS = [*DOCX, *TEXTS, *SHEETS_ROADS, *SLIDES, *DISGUISED, *RTF]
