#include <algorithm>
#include <filesystem>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "catalog/capability_catalog.h"
#include "tests/support/sample_fixture.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;

/// An engine that is not installed, and the offers on whose roads it may stand, by the sample: only
/// those run, so that no engine works for nothing.
struct HiddenCase {
  const char* engine;
  std::map<std::string, std::string> roads;  // words; empty: all offers
};

void PrintTo(const HiddenCase& c, std::ostream* out) {
  *out << c.engine;
}

constexpr const char* zipStart = "PK\x03\x04";
constexpr const char* mediaStart = "ID3";

/// As much of each kind of file as it takes to be offered something.
const std::map<std::string, std::string> beginnings = {{"film.mp4", mediaStart},
                                                       {"song.mp3", mediaStart},
                                                       {"film.srt", "00:01 --> 00:02"},
                                                       {"box.zip", zipStart},
                                                       {"box.rar", "Rar!"},
                                                       {"prices.csv", "a,b"},
                                                       {"prices.ods", zipStart},
                                                       {"notes.md", "# A"},
                                                       {"notes.markdown", "# A"},
                                                       {"letter.rtf", "{\\rtf1 A}"},
                                                       {"plain.txt", "A"},
                                                       {"page.html", "<p>A"},
                                                       {"report.docx", zipStart},
                                                       {"book.epub", zipStart},
                                                       {"talk.pptx", zipStart}};

class HiddenEnginesTest : public SampleFixture, public ::testing::WithParamInterface<HiddenCase> {
 protected:
  HiddenEnginesTest() : machine_(locations()), hiding_(UniversalEngine::completeEngine(machine_)) {}

  static EngineLocations locations() {
    EngineLocations locations = EngineLocations::standard();
    locations.special[GetParam().engine] = {};
    locations.adapters.erase(GetParam().engine);
    return locations;
  }

  void make(const std::string& sample) {
    if (sample == "notes.markdown") {
      sources_.write(sample, support::contentOf(sources_ / "notes.md"));
    } else if (sample == "drawing.svg") {
      sources_.write(sample,
                     R"(<svg xmlns="http://www.w3.org/2000/svg" width="200" height="200">)"
                     R"(<rect width="150" height="150" fill="#f08"/></svg>)");
    } else if (sample != "notes.md") {
      makeSample(sample);
    }
  }

  /// Every offer that is not available says why, whatever is in the file.
  void expectRefusals(const std::string& sample) {
    for (const FileCapability& offer : offersFor(sample)) {
      if (offer.requirement) {
        EXPECT_EQ(outcomeOf(offer, sample), offer.requirement) << sample << " " << offer.id;
      }
    }
  }

  void expectResults(const std::string& sample, const std::string& road) {
    const std::vector<std::string> wanted = support::words(road);
    for (const FileCapability& offer : offersFor(sample)) {
      const bool isOnRoad =
          road.empty() || std::find(wanted.begin(), wanted.end(), offer.id) != wanted.end();
      if (isOnRoad && !offer.requirement) {
        EXPECT_EQ(outcomeOf(offer, sample), "") << sample << " " << offer.id;
      }
    }
  }

  [[nodiscard]] std::vector<FileCapability> offersFor(const std::string& sample) const {
    const std::vector<FileInfo> files = {ConversionEngine().inspect(sources_ / sample)};
    std::vector<FileCapability> offers = CapabilityCatalog::formats(files, machine_);
    const std::vector<FileCapability> tools = CapabilityCatalog::tools(files, machine_);
    offers.insert(offers.end(), tools.begin(), tools.end());
    return offers;
  }

  /// @return what the user reads; empty when there are results.
  std::string outcomeOf(const FileCapability& offer, const std::string& sample) {
    Job job = {offer.nativeAction.value_or("universal"),
               {sources_ / sample},
               results_.path(),
               {{"capabilityID", offer.id}},
               token_,
               {}};
    try {
      const auto results = hiding_.run(job);
      return results.empty() ? "no result" : "";
    } catch (const std::exception& failure) {
      return failure.what();
    }
  }

  LocalToolchain machine_;
  ConversionEngine hiding_;
};

TEST_P(HiddenEnginesTest, WhatIsAvailableRunsAndTheRestSaysWhatItLacks) {
  for (const char* sample : {"scan.png", "drawing.svg", "table.pdf"}) {
    make(sample);
    expectRefusals(sample);
  }
  const std::string notes = support::contentOf(sources_ / "notes.md");
  for (const auto& [sample, beginning] : beginnings) {
    sources_.write(sample, beginning);
    expectRefusals(sample);
    fs::remove(sources_ / sample);
  }
  sources_.write("notes.md", notes);
  for (const auto& [sample, road] : GetParam().roads) {
    make(sample);
    expectResults(sample, road);
  }
}

const HiddenCase hiddenCases[] = {
    {"magick",
     {{"table.pdf", "convert.png"},
      {"film.mp4", "convert.gif tool.snapshot"},
      {"plain.txt", "convert.jpg"},
      {"scan.png", ""}}},
    {"rsvg-convert", {{"drawing.svg", ""}}},
    {"ffmpeg", {{"film.mp4", ""}}},
    {"ffprobe", {{"film.mp4", ""}, {"song.mp3", ""}}},
    {"pandoc",
     {{"notes.md", "convert.txt convert.md convert.html convert.rtf"},
      {"notes.markdown", ""},
      {"plain.txt", ""},
      {"letter.rtf", "convert.html convert.md"},
      {"page.html", "convert.pdf"},
      {"table.pdf", "convert.txt convert.md"}}},
    {"soffice", {{"prices.csv", ""}, {"page.html", "convert.pdf"}, {"letter.rtf", "convert.pdf"}}},
    {"7zz", {{"box.zip", ""}, {"prices.csv", "convert.xlsx"}}},
    {"tar", {{"box.zip", ""}}},
    {"zip", {{"prices.csv", "convert.xlsx"}, {"table.pdf", "convert.xlsx"}}},
    {"unzip", {{"prices.csv", "convert.xlsx"}, {"notes.md", "convert.docx convert.epub"}}},
    {"qpdf", {{"table.pdf", "tool.rotate tool.compress"}}},
};

INSTANTIATE_TEST_SUITE_P(Engines,
                         HiddenEnginesTest,
                         ::testing::ValuesIn(hiddenCases),
                         [](const auto& tested) {
                           std::string name = tested.param.engine;
                           name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
                           return name;
                         });

}  // namespace
}  // namespace tolvane
