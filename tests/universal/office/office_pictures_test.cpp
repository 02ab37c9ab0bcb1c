#include <cstddef>
#include <filesystem>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "platform/documents/pdf_document.h"
#include "platform/images/image_encoder.h"
#include "platform/text/base64.h"
#include "tests/support/pictures.h"
#include "tests/support/universal_fixture.h"
#include "universal/office/office.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

Bitmap magenta() {
  constexpr int side = 40;
  Bitmap bitmap{side, side, PixelLayout::rgb, {}};
  for (int pixel = 0; pixel < side * side; ++pixel) {
    bitmap.pixels.insert(bitmap.pixels.end(), {255, 0, 255});
  }
  return bitmap;
}

/// How many pixels of the first page are magenta.
int magentaPixels(const fs::path& pdf) {
  Bitmap page;
  pdfLibrary().open(pdf)->render(0, 600, 800, page);
  int count = 0;
  for (std::size_t at = 0; at < page.pixels.size(); at += 4) {
    count += page.pixels[at] > 200 && page.pixels[at + 1] < 60 && page.pixels[at + 2] > 200 ? 1 : 0;
  }
  return count;
}

class OfficePicturesTest : public support::UniversalFixture {
 protected:
  OfficePicturesTest() { support::writePng(picture(), magenta()); }

  [[nodiscard]] fs::path picture() const { return folder_ / "secret.png"; }

  [[nodiscard]] int magentaPixelsOf(const fs::path& input) const {
    office(input, "pdf", workspace() / "result.pdf", withEngines());
    return magentaPixels(workspace() / "result.pdf");
  }

  /// A document of two parts beside its list, as a ZIP file without compression.
  fs::path packed(const std::string& name, const std::vector<std::string>& parts) {
    std::vector<std::string> arguments = {"-q0", name};
    arguments.insert(arguments.end(), parts.begin(), parts.end());
    withEngines().run("zip", arguments, 60);
    return workspace() / name;
  }

  fs::path wordDocument(const std::string& address) {
    fs::create_directories(workspace() / "word/_rels");
    fs::create_directory(workspace() / "_rels");
    folder_.write("work/[Content_Types].xml", R"(<?xml version="1.0"?>
<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">
<Default Extension="rels"
 ContentType="application/vnd.openxmlformats-package.relationships+xml"/>
<Override PartName="/word/document.xml" ContentType=
"application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml"/></Types>)");
    folder_.write("work/_rels/.rels", R"(<?xml version="1.0"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">
<Relationship Id="r1" Target="word/document.xml"
 Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument"/>
</Relationships>)");
    folder_.write("work/word/_rels/document.xml.rels",
                  R"(<?xml version="1.0"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">
<Relationship Id="p1" TargetMode="External"
 Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/image" Target=")" +
                      address + R"("/></Relationships>)");
    folder_.write("work/word/document.xml", R"(<?xml version="1.0"?>
<w:document xmlns:w="http://schemas.openxmlformats.org/wordprocessingml/2006/main"
 xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships"
 xmlns:wp="http://schemas.openxmlformats.org/drawingml/2006/wordprocessingDrawing"
 xmlns:a="http://schemas.openxmlformats.org/drawingml/2006/main"
 xmlns:pic="http://schemas.openxmlformats.org/drawingml/2006/picture"><w:body>
<w:p><w:r><w:drawing><wp:inline><wp:extent cx="1900000" cy="1900000"/><wp:docPr id="1" name="p"/>
<a:graphic><a:graphicData uri="http://schemas.openxmlformats.org/drawingml/2006/picture"><pic:pic>
<pic:nvPicPr><pic:cNvPr id="1" name="p"/><pic:cNvPicPr/></pic:nvPicPr>
<pic:blipFill><a:blip r:link="p1"/><a:stretch><a:fillRect/></a:stretch></pic:blipFill>
<pic:spPr><a:xfrm><a:off x="0" y="0"/><a:ext cx="1900000" cy="1900000"/></a:xfrm>
<a:prstGeom prst="rect"><a:avLst/></a:prstGeom></pic:spPr></pic:pic></a:graphicData></a:graphic>
</wp:inline></w:drawing></w:r></w:p></w:body></w:document>)");
    return packed("a.docx",
                  {"[Content_Types].xml",
                   "_rels/.rels",
                   "word/document.xml",
                   "word/_rels/document.xml.rels"});
  }

  fs::path openDocument(const std::string& address) {
    fs::create_directory(workspace() / "META-INF");
    folder_.write("work/mimetype", "application/vnd.oasis.opendocument.text");
    folder_.write("work/META-INF/manifest.xml", R"(<?xml version="1.0"?>
<m:manifest xmlns:m="urn:oasis:names:tc:opendocument:xmlns:manifest:1.0" m:version="1.2">
<m:file-entry m:full-path="/" m:media-type="application/vnd.oasis.opendocument.text"/>
<m:file-entry m:full-path="content.xml" m:media-type="text/xml"/></m:manifest>)");
    folder_.write("work/content.xml",
                  R"(<?xml version="1.0"?>
<o:document-content xmlns:o="urn:oasis:names:tc:opendocument:xmlns:office:1.0" o:version="1.2"
 xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0"
 xmlns:draw="urn:oasis:names:tc:opendocument:xmlns:drawing:1.0"
 xmlns:svg="urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0"
 xmlns:xlink="http://www.w3.org/1999/xlink"><o:body><o:text><text:p>
<draw:frame text:anchor-type="as-char" svg:width="5cm" svg:height="5cm"><draw:image
 xlink:type="simple" xlink:show="embed" xlink:actuate="onLoad" xlink:href=")" +
                      address + R"("/></draw:frame></text:p></o:text></o:body>
</o:document-content>)");
    return packed("a.odt", {"mimetype", "content.xml", "META-INF/manifest.xml"});
  }

  fs::path page(const std::string& address) {
    return folder_.write("a.html", "<p>Text</p><img width=200 height=200 src='" + address + "'>");
  }
};

TEST_F(OfficePicturesTest, PicturesOfThisMachineStayOutside) {
  const std::string address = "file://" + picture().string();
  EXPECT_EQ(magentaPixelsOf(wordDocument(address)), 0);
  EXPECT_EQ(magentaPixelsOf(openDocument(address)), 0);
  EXPECT_EQ(magentaPixelsOf(page(address)), 0);
  EXPECT_EQ(magentaPixelsOf(page(picture().string())), 0);
  EXPECT_EQ(magentaPixelsOf(page("secret.png")), 0);
  fs::create_directory(folder_ / "pages");
  const fs::path lower = folder_.write("pages/a.html", "<p>Text</p><img src='../secret.png'>");
  EXPECT_EQ(magentaPixelsOf(lower), 0);
}

TEST_F(OfficePicturesTest, PicturesInsideOfADocumentShow) {
  const std::string address =
      "data:image/png;base64," + Base64::encode(ImageEncoder::png(magenta()));
  EXPECT_GT(magentaPixelsOf(page(address)), 500);
  const fs::path markdown = folder_.write("a.md", "![](" + address + "){width=5cm}\n");
  for (const char* name : {"held.docx", "held.odt"}) {
    withEngines().run("pandoc", {markdown.string(), "-o", name}, 60, {folder_.path()});
    EXPECT_GT(magentaPixelsOf(workspace() / name), 500) << name;
  }
}

}  // namespace

}  // namespace tolvane::UniversalEngine
