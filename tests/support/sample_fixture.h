#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "platform/documents/pdf_document.h"
#include "platform/files/file_names.h"
#include "platform/images/image_decoder.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/universal_job_fixture.h"
#include "tests/support/words.h"

namespace tolvane {

/// A row of cells at fixed columns, 14 points below the last.
inline std::string ruledRow(int row) {
  const std::string number = std::to_string(row);
  return "BT /F1 10 Tf 1 0 0 1 72 " + std::to_string(720 - 14 * row) + " Tm (Item " + number +
         ") Tj 150 0 Td (" + std::to_string(row * 7) + ") Tj 120 0 Td (total " + number +
         ") Tj ET 60 " + std::to_string(717 - 14 * row) + " 400 0.5 re f\n";
}

inline const std::map<std::string, const char*>& sampleTexts() {
  static const std::map<std::string, const char*> texts = {
      {"plain.txt", "One line.\nAnother line.\n"},
      {"page.html", "<h1>Heading</h1><p>First paragraph.</p>"},
      {"letter.rtf", R"({\rtf1\ansi Dear {\b reader}\u8217?s cat\par})"},
      {"slides.md", "# First slide\n\nText one\n\n# Second slide\n\nText two\n"},
      {"prices.csv", "Item,Price\n\"Tea, green\",\"1,5\"\n<b>&,2\n"},
      {"open.csv", "Item,Price\n\"Tea, green,1\n"},
      {"film.srt", "1\r\n00:00:01,000 --> 00:00:02,500\r\nHello there\r\n"},
      {"mixed.srt",
       "\uFEFF00:00:01,000 --> 00:00:02,500\r\nHello\nthere\r\n\r\n2\n"
       "00:00:03,000 --> 00:00:04,000\rBye\n"},
      {"flash.srt", "1\n00:00:01,000 --> 00:00:01,000\nHello\n"},
      // An encrypted document stands within a compound file, whose signature this is.
      {"sealed.docx", "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1 and what is encrypted"}};
  return texts;
}

/// Files of every kind, made by the engines themselves.
class SampleFixture : public UniversalJobFixture {
 protected:
  void SetUp() override {
    sources_.write("notes.md", "# Heading\n\nFirst *paragraph*.\n\nŽluťoučký kůň.\n");
  }

  /// Makes one of the samples in the folder of inputs, and what it is made of.
  void makeSample(const std::string& name) {
    const std::string extension = FileNames::extension(name);
    if (const auto text = sampleTexts().find(name); text != sampleTexts().end()) {
      sources_.write(name, text->second);
    } else if (extension == "pdf" || extension == "png") {
      makePages(name);
    } else if (extension == "xlsx" || extension == "ods") {
      makeSample("prices.csv");
      makeWithSuite("prices.csv", extension);
    } else if (name == "suite.docx" || name == "suite.rtf") {
      make("pandoc", {"notes.md", "-o", "suite.odt"});
      makeWithSuite("suite.odt", extension);
    } else if (name == "locked.epub") {
      makeLockedBook(name);
    } else if (extension == "mp4") {
      makeClip(name, "-f lavfi -i testsrc=size=160x120:rate=10:duration=1");
    } else if (extension == "mp3") {
      makeClip(name, "");
    } else if (extension == "zip") {
      make("zip", {"-q", name, "notes.md"});
    } else if (extension == "pptx") {
      makeSample("slides.md");
      make("pandoc", {"slides.md", "-o", name});
    } else if (extension != "md") {
      make("pandoc", {"notes.md", "--standalone", "-o", name});
    }
  }

  void makeWithSuite(const std::string& input, const std::string& extension) {
    make("soffice",
         support::words("-env:UserInstallation=file://" + (sources_ / "profile").string() +
                        " --headless --convert-to " + extension + " " + input));
  }

  /// A book whose chapter is encrypted, as shops sell them.
  void makeLockedBook(const std::string& name) {
    make("pandoc", {"notes.md", "-o", name});
    std::filesystem::create_directories(sources_ / "META-INF");
    std::filesystem::create_directories(sources_ / "EPUB/text");
    sources_.write("META-INF/encryption.xml",
                   R"(<encryption xmlns="urn:oasis:names:tc:opendocument:xmlns:container">
<EncryptedData xmlns="http://www.w3.org/2001/04/xmlenc#">
<EncryptionMethod Algorithm="http://www.w3.org/2001/04/xmlenc#aes128-cbc"/>
<CipherData><CipherReference URI="EPUB/text/ch001.xhtml"/></CipherData>
</EncryptedData></encryption>)");
    sources_.write("EPUB/text/ch001.xhtml", support::repeated("\xD3\x81\xFE\x17", 200));
    make("zip", {"-q", name, "META-INF/encryption.xml", "EPUB/text/ch001.xhtml"});
  }

  /// One second with a tone.
  void makeClip(const std::string& name, const std::string& arguments) {
    make("ffmpeg",
         support::words("-loglevel error " + arguments + " -f lavfi -i sine=duration=1 " + name));
  }

  void makePages(const std::string& name) {
    if (name == "table.pdf") {
      std::string rows;
      for (int row = 0; row < 40; ++row) {
        rows += ruledRow(row);
      }
      support::PdfBuilder().page({.drawing = rows}).write(sources_ / name);
      return;
    }
    if (name == "locked.pdf") {
      support::PdfBuilder().page({.text = "Text"}).writeLocked(sources_ / name, "secret");
      return;
    }
    support::PdfBuilder()
        .page({.text = "Alpha page"})
        .page({.text = "Beta page"})
        .write(sources_ / "two.pdf");
    if (name == "scan.png") {
      // A picture of text, for recognition.
      const Job job = {"pdf_png", {sources_ / "two.pdf"}, sources_.path(), {}, token_, {}};
      std::filesystem::rename(ConversionEngine().run(job).front(), sources_ / name);
    }
  }

  /// Everything legible in a result.
  std::string textOf(const std::string& name) {
    const std::string extension = FileNames::extension(name);
    if (extension == "pdf") {
      const auto document = pdfLibrary().open(results_ / name);
      std::string text;
      for (int page = 0; page < document->pageCount(); ++page) {
        text += document->text(page);
      }
      return text;
    }
    if (extension == "png" || extension == "jpg") {
      const auto header = imageDecoder().probe(results_ / name);
      return header ? "a picture" : "no picture";
    }
    if (extension == "md" || extension == "txt" || extension == "html" || extension == "vtt" ||
        extension == "tsv" || extension == "rtf" || extension == "csv" || extension == "srt") {
      return support::contentOf(results_ / name);
    }
    const Bytes content = toolchain_.run({.name = "unzip",
                                          .arguments = {"-p", (results_ / name).string()},
                                          .in = results_.path(),
                                          .timeout = 60},
                                         token_);
    return std::string(asText(content));
  }
};

}  // namespace tolvane
