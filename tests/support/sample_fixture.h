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

/// Files of every kind, made by the engines themselves.
class SampleFixture : public UniversalJobFixture {
 protected:
  void SetUp() override {
    sources_.write("notes.md", "# Heading\n\nFirst *paragraph*.\n\nŽluťoučký kůň.\n");
  }

  /// Makes one of the samples in the folder of inputs, and what it is made of.
  void makeSample(const std::string& name) {
    static const std::map<std::string, const char*> texts = {
        {"plain.txt", "One line.\nAnother line.\n"},
        {"page.html", "<h1>Heading</h1><p>First paragraph.</p>"},
        {"letter.rtf", R"({\rtf1\ansi Dear {\b reader}\u8217?s cat\par})"},
        {"slides.md", "# First slide\n\nText one\n\n# Second slide\n\nText two\n"},
        {"prices.csv", "Item,Price\n\"Tea, green\",\"1,5\"\n<b>&,2\n"},
        {"film.srt", "1\r\n00:00:01,000 --> 00:00:02,500\r\nHello there\r\n"}};
    const std::string extension = FileNames::extension(name);
    if (const auto text = texts.find(name); text != texts.end()) {
      sources_.write(name, text->second);
    } else if (extension == "pdf" || extension == "png") {
      makePages(name);
    } else if (extension == "xlsx") {
      makeSample("prices.csv");
      make("soffice",
           support::words("-env:UserInstallation=file://" + (sources_ / "profile").string() +
                          " --headless --convert-to xlsx prices.csv"));
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
      make("pandoc", {"notes.md", "-o", name});
    }
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
