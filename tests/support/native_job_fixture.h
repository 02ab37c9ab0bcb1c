#pragma once

#include <string>

#include "tests/support/job_fixture.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/pictures.h"

namespace tolvane {

/// Runs native jobs.
class NativeJobFixture : public support::JobFixture {
 protected:
  NativeJobFixture() : JobFixture(ConversionEngine()) {}

  /// A PDF whose pages say "<name> 1", "<name> 2", ...
  void makePdf(const std::string& name, int pages, int rotation = 0) {
    support::PdfBuilder builder;
    for (int page = 1; page <= pages; ++page) {
      builder.page({.rotation = rotation, .text = name + " " + std::to_string(page)});
    }
    builder.write(sources_ / name);
  }

  /// What the pages of a placed PDF say and how they are turned: "a.pdf 1 @90, a.pdf 2 @0".
  std::string pagesOf(const std::string& name) {
    const auto document = pdfLibrary().open(results_ / name);
    std::string pages;
    for (int page = 0; page < document->pageCount(); ++page) {
      std::string text = document->text(page);
      text.erase(text.find_last_not_of(" \n\f") + 1);
      pages += (page == 0 ? "" : ", ") + text;
      pages += " @" + std::to_string(document->geometry(page).rotation);
    }
    return pages;
  }
};

}  // namespace tolvane
