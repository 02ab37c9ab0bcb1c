"""The least that makes a document of each office format, with room for what is hostile."""
from roads import container

XML = '<?xml version="1.0" encoding="UTF-8"?>'
PACKAGE = "http://schemas.openxmlformats.org/package/2006"
OFFICE = "http://schemas.openxmlformats.org/officeDocument/2006"
DRAWINGML = "http://schemas.openxmlformats.org/drawingml/2006"
SPACES = (f'xmlns:r="{OFFICE}/relationships" xmlns:a="{DRAWINGML}/main" xmlns:pic="{DRAWINGML}/picture" '
          f'xmlns:wp="{DRAWINGML}/wordprocessingDrawing" xmlns:w="http://schemas.openxmlformats.org/wordprocessingml/2006/main" '
          'xmlns:v="urn:schemas-microsoft-com:vml" xmlns:o="urn:schemas-microsoft-com:office:office" '
          'xmlns:asvg="http://schemas.microsoft.com/office/drawing/2016/SVG/main"')
DRAWING = ('<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" width="160" height="120">'
           '<image width="160" height="120" xlink:href="@PNG_URL@"/></svg>')
TYPES = (f'{XML}<Types xmlns="{PACKAGE}/content-types"><Default Extension="rels" ContentType="application/'
         'vnd.openxmlformats-package.relationships+xml"/><Default Extension="xml" ContentType="application/xml"/>'
         '<Default Extension="png" ContentType="image/png"/><Default Extension="svg" ContentType="image/svg+xml"/>'
         '<Default Extension="html" ContentType="text/html"/>%s</Types>')


def relationships(rows):
    """@param rows (id, the last word of its type, target), the target external when it says so"""
    return f'{XML}<Relationships xmlns="{PACKAGE}/relationships">' + "".join(
        f'<Relationship Id="{name}" Type="{OFFICE}/relationships/{kind}" Target="{target[0] if isinstance(target, tuple) else target}"'
        f'{" TargetMode=" + chr(34) + "External" + chr(34) if isinstance(target, tuple) else ""}/>'
        for name, kind, target in rows) + "</Relationships>"


def outside(target):
    """A relationship's target that is not in the package."""
    return (target,)


def typed(*parts):
    return TYPES % "".join(f'<Override PartName="/{name}" ContentType="application/vnd.openxmlformats-officedocument.{kind}+xml"/>'
                           for name, kind in parts)


def docx(body, related=(), parts=None, doctype="", settings=""):
    document = (f'{XML}{doctype}<w:document {SPACES}><w:body><w:p><w:r><w:t>Witness</w:t></w:r></w:p>{body}'
                '<w:p/></w:body></w:document>')
    rows = [*related, ("settings", "settings", "settings.xml")]
    return container({
        "[Content_Types].xml": typed(("word/document.xml", "wordprocessingml.document.main"),
                                     ("word/settings.xml", "wordprocessingml.settings")),
        "_rels/.rels": relationships([("r1", "officeDocument", "word/document.xml")]),
        "word/document.xml": document,
        "word/_rels/document.xml.rels": relationships(rows),
        "word/settings.xml": f"{XML}<w:settings {SPACES}>{settings}</w:settings>",
        **(parts or {})})


def placed(blip):
    """A picture in a text; `blip` are the attributes that say where it is."""
    return ('<w:p><w:r><w:drawing><wp:inline><wp:extent cx="1905000" cy="1428750"/><wp:docPr id="1" name="a"/><a:graphic>'
            f'<a:graphicData uri="{DRAWINGML}/picture"><pic:pic><pic:nvPicPr><pic:cNvPr id="1" name="a"/><pic:cNvPicPr/></pic:nvPicPr>'
            f'<pic:blipFill>{blip}<a:stretch><a:fillRect/></a:stretch></pic:blipFill><pic:spPr><a:xfrm><a:off x="0" y="0"/>'
            '<a:ext cx="1905000" cy="1428750"/></a:xfrm><a:prstGeom prst="rect"><a:avLst/></a:prstGeom></pic:spPr></pic:pic>'
            '</a:graphicData></a:graphic></wp:inline></w:drawing></w:r></w:p>')


def field(instruction):
    """A field that is to be worked out when the document is opened."""
    return ('<w:p><w:r><w:fldChar w:fldCharType="begin" w:dirty="true"/></w:r><w:r><w:instrText xml:space="preserve">'
            f'{instruction}</w:instrText></w:r><w:r><w:fldChar w:fldCharType="separate"/></w:r><w:r><w:t>old</w:t></w:r>'
            '<w:r><w:fldChar w:fldCharType="end"/></w:r></w:p>')


ODF = "urn:oasis:names:tc:opendocument:xmlns:"
ODF_SPACES = " ".join(f'xmlns:{short}="{ODF}{name}:1.0"' for short, name in (
    ("office", "office"), ("text", "text"), ("draw", "drawing"), ("style", "style"), ("table", "table"), ("form", "form"),
    ("fo", "xsl-fo-compatible"), ("svg", "svg-compatible"), ("script", "script"), ("presentation", "presentation"))
) + (' xmlns:xlink="http://www.w3.org/1999/xlink" xmlns:of="urn:oasis:names:tc:opendocument:xmlns:of:1.2" office:version="1.2"')


def opendocument(kind, body, automatic="", styles="<office:styles/>", parts=None, doctype=""):
    """@param kind text, spreadsheet or presentation"""
    media = f"application/vnd.oasis.opendocument.{kind}"
    parts = parts or {}
    entries = "".join(f'<manifest:file-entry manifest:full-path="{name}" manifest:media-type="{kind}"/>' for name, kind in (
        ("/", media), ("content.xml", "text/xml"), ("styles.xml", "text/xml"),
        *((name, "image/svg+xml" if name.endswith(".svg") else "") for name in parts)))
    return container({
        "mimetype": media,
        "META-INF/manifest.xml":
            f'{XML}<manifest:manifest xmlns:manifest="{ODF}manifest:1.0" manifest:version="1.2">{entries}</manifest:manifest>',
        "content.xml": f'{XML}{doctype}<office:document-content {ODF_SPACES}>{automatic}<office:body><office:{kind}>{body}'
                       f'</office:{kind}></office:body></office:document-content>',
        "styles.xml": f"{XML}<office:document-styles {ODF_SPACES}>{styles}</office:document-styles>",
        **parts})


def odt(body, automatic="", styles="<office:styles/>", parts=None, doctype=""):
    return opendocument("text", f"<text:p>Witness</text:p>{body}", automatic, styles, parts, doctype)


def ods(cells, table="", parts=None):
    """@param cells a row's cells; `table` stands in the sheet before its rows"""
    return opendocument("spreadsheet",
                        f'<table:table table:name="One">{table}<table:table-row><table:table-cell office:value-type="string">'
                        f'<text:p>Witness</text:p></table:table-cell>{cells}</table:table-row></table:table>', parts=parts)


def flat(kind, body):
    """A whole document in one XML file."""
    return (f'{XML}<office:document {ODF_SPACES} office:mimetype="application/vnd.oasis.opendocument.{kind}">'
            f'<office:body><office:{kind}>{body}</office:{kind}></office:body></office:document>')


def link(address):
    return f'xlink:href="{address}" xlink:type="simple" xlink:show="embed" xlink:actuate="onLoad"'


def framed(address, element="image"):
    return (f'<draw:frame text:anchor-type="paragraph" svg:width="4cm" svg:height="3cm"><draw:{element} {link(address)}/>'
            '</draw:frame>')


def page_style(properties):
    return ('<office:styles/><office:automatic-styles><style:page-layout style:name="L"><style:page-layout-properties fo:page-width="21cm" '
            f'fo:page-height="29cm" fo:margin="2cm">{properties}</style:page-layout-properties><style:header-style/>'
            '</style:page-layout></office:automatic-styles><office:master-styles><style:master-page style:name="Standard" '
            'style:page-layout-name="L">%s</style:master-page></office:master-styles>')


SHEETS = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"


def xlsx(cells, related=(), parts=None, sheet="", sheet_related=(), book=""):
    rows = [("s1", "worksheet", "worksheets/sheet1.xml"), *related]
    return container({
        "[Content_Types].xml": typed(
            ("xl/workbook.xml", "spreadsheetml.sheet.main"), ("xl/worksheets/sheet1.xml", "spreadsheetml.worksheet"),
            ("xl/externalLinks/externalLink1.xml", "spreadsheetml.externalLink"), ("xl/connections.xml", "spreadsheetml.connections"),
            ("xl/drawings/drawing1.xml", "drawing")),
        "_rels/.rels": relationships([("r1", "officeDocument", "xl/workbook.xml")]),
        "xl/workbook.xml": f'{XML}<workbook xmlns="{SHEETS}" {SPACES}><sheets><sheet name="One" sheetId="1" r:id="s1"/></sheets>{book}'
                           '<calcPr fullCalcOnLoad="1"/></workbook>',
        "xl/_rels/workbook.xml.rels": relationships(rows),
        "xl/worksheets/sheet1.xml": f'{XML}<worksheet xmlns="{SHEETS}" {SPACES}><sheetData><row r="1"><c r="A1" t="inlineStr"><is><t>'
                                    f'Witness</t></is></c>{cells}</row></sheetData>{sheet}</worksheet>',
        "xl/worksheets/_rels/sheet1.xml.rels": relationships(sheet_related),
        **(parts or {})})


def formula(text, number=0):
    return f'<c r="{"BCDEF"[number]}1" t="str"><f>{text}</f><v>old</v></c>'


def sheet_picture(blip, related, parts=None):
    """A workbook with a picture; `related` are the relationships of the drawing."""
    space = f"{DRAWINGML}/spreadsheetDrawing"
    drawing = (f'{XML}<xdr:wsDr xmlns:xdr="{space}" {SPACES}><xdr:oneCellAnchor><xdr:from><xdr:col>1</xdr:col><xdr:colOff>0'
               '</xdr:colOff><xdr:row>2</xdr:row><xdr:rowOff>0</xdr:rowOff></xdr:from><xdr:ext cx="1905000" cy="1428750"/><xdr:pic>'
               f'<xdr:nvPicPr><xdr:cNvPr id="2" name="a"/><xdr:cNvPicPr/></xdr:nvPicPr><xdr:blipFill>{blip}<a:stretch><a:fillRect/>'
               '</a:stretch></xdr:blipFill><xdr:spPr><a:xfrm><a:off x="0" y="0"/><a:ext cx="1905000" cy="1428750"/></a:xfrm>'
               '<a:prstGeom prst="rect"><a:avLst/></a:prstGeom></xdr:spPr></xdr:pic><xdr:clientData/></xdr:oneCellAnchor></xdr:wsDr>')
    return xlsx("", sheet='<drawing r:id="d1"/>', sheet_related=[("d1", "drawing", "../drawings/drawing1.xml")],
                parts={"xl/drawings/drawing1.xml": drawing, "xl/drawings/_rels/drawing1.xml.rels": relationships(related),
                       **(parts or {})})


SLIDES = "http://schemas.openxmlformats.org/presentationml/2006/main"
TREE = ('<p:cSld>%s<p:spTree><p:nvGrpSpPr><p:cNvPr id="1" name=""/><p:cNvGrpSpPr/><p:nvPr/></p:nvGrpSpPr><p:grpSpPr/>%s'
        '</p:spTree></p:cSld>')


def pptx(shapes, related=(), parts=None, background=""):
    witness = ('<p:sp><p:nvSpPr><p:cNvPr id="9" name="w"/><p:cNvSpPr/><p:nvPr/></p:nvSpPr><p:spPr><a:xfrm><a:off x="100000" y="100000"/>'
               '<a:ext cx="4000000" cy="800000"/></a:xfrm><a:prstGeom prst="rect"><a:avLst/></a:prstGeom></p:spPr><p:txBody><a:bodyPr/>'
               '<a:p><a:r><a:t>Witness</a:t></a:r></a:p></p:txBody></p:sp>')
    def part(name, tree, after=""):
        return f'{XML}<p:{name} xmlns:p="{SLIDES}" {SPACES}>{tree}{after}</p:{name}>'
    colours = '<p:clrMap bg1="lt1" tx1="dk1" bg2="lt2" tx2="dk2" accent1="accent1" accent2="accent2" accent3="accent3" ' \
              'accent4="accent4" accent5="accent5" accent6="accent6" hlink="hlink" folHlink="folHlink"/>'
    return container({
        "[Content_Types].xml": typed(
            ("ppt/presentation.xml", "presentationml.presentation.main"), ("ppt/slides/slide1.xml", "presentationml.slide"),
            ("ppt/slideMasters/m.xml", "presentationml.slideMaster"), ("ppt/slideLayouts/l.xml", "presentationml.slideLayout")),
        "_rels/.rels": relationships([("r1", "officeDocument", "ppt/presentation.xml")]),
        "ppt/presentation.xml": part("presentation", '<p:sldMasterIdLst><p:sldMasterId id="2147483648" r:id="m"/></p:sldMasterIdLst>'
                                     '<p:sldIdLst><p:sldId id="256" r:id="s"/></p:sldIdLst><p:sldSz cx="9144000" cy="6858000"/>'
                                     '<p:notesSz cx="6858000" cy="9144000"/>'),
        "ppt/_rels/presentation.xml.rels": relationships([("m", "slideMaster", "slideMasters/m.xml"), ("s", "slide", "slides/slide1.xml")]),
        "ppt/slideMasters/m.xml": part("sldMaster", TREE % ("", ""), colours + '<p:sldLayoutIdLst><p:sldLayoutId id="2147483649" r:id="l"/>'
                                       '</p:sldLayoutIdLst>'),
        "ppt/slideMasters/_rels/m.xml.rels": relationships([("l", "slideLayout", "../slideLayouts/l.xml")]),
        "ppt/slideLayouts/l.xml": part("sldLayout", TREE % ("", "")),
        "ppt/slideLayouts/_rels/l.xml.rels": relationships([("m", "slideMaster", "../slideMasters/m.xml")]),
        "ppt/slides/slide1.xml": part("sld", TREE % (background, witness + shapes)),
        "ppt/slides/_rels/slide1.xml.rels": relationships([("l", "slideLayout", "../slideLayouts/l.xml"), *related]),
        **(parts or {})})


def slide_picture(blip, before=""):
    return (f'<p:pic><p:nvPicPr><p:cNvPr id="2" name="a"/><p:cNvPicPr/><p:nvPr>{before}</p:nvPr></p:nvPicPr><p:blipFill>{blip}'
            '<a:stretch><a:fillRect/></a:stretch></p:blipFill><p:spPr><a:xfrm><a:off x="2000000" y="2000000"/><a:ext cx="1905000" '
            'cy="1428750"/></a:xfrm><a:prstGeom prst="rect"><a:avLst/></a:prstGeom></p:spPr></p:pic>')
