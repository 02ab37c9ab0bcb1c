#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "catalog/capability_catalog.h"
#include "tests/support/installed_engines.h"

namespace tolvane {
namespace {

using support::InstalledEngines;
using enum FileKind;

std::vector<FileCapability> offersFor(const std::vector<FileKind>& kinds,
                                      const InstalledEngines& machine = {}) {
  std::vector<FileInfo> files;
  for (const FileKind kind : kinds) {
    files.push_back({"/files/File", kind, ""});
  }
  return CapabilityCatalog::tools(files, machine.toolchain());
}

FileCapability offerFor(const std::vector<FileKind>& kinds, const std::string& tool) {
  for (const FileCapability& offer : offersFor(kinds)) {
    if (offer.id == "tool." + tool) {
      return offer;
    }
  }
  ADD_FAILURE() << tool << " is not offered";
  return {};
}

/// Title, extension and native action of every tool, in the order of the offers.
const std::string audioTools =
    "compress, Compress, m4a; metadata, Metadata, json; normalize, Normalize, m4a; "
    "visualize, Visualize, png; trim, Trim, m4a; channels, Channels, m4a; bleep, Bleep, m4a; ";

const struct {
  std::vector<FileKind> kinds;
  std::string tools;
} toolsCases[] = {
    {{}, ""},
    {{image},
     "compress, Compress, png; metadata, Metadata, json; edit, Edit, png; "
     "annotate, Annotate, png; background, Add background, png; crop, Crop, png; "
     "redact, Redact, png; "},
    {{pdf},
     "compress, Compress, pdf; metadata, Metadata, json; split, Split, pdf, split_pdf; "
     "organize, Organize pages, pdf, edit_pdf; rotate, Rotate, pdf, rotate_pdf; "},
    {{video},
     "compress, Compress, mp4; metadata, Metadata, json; mute, Mute, mp4; trim, Trim, mp4; "
     "crop, Crop, mp4; speed, Speed, mp4; snapshot, Snapshot, png; split, Split, mp4; "
     "redact, Redact, mp4; "},
    {{audio}, audioTools},
    {{audio, audio, audio}, audioTools},
    {{image, image},
     "compress, Compress, png; metadata, Metadata, json; crop, Crop, png; "
     "create_pdf, Create PDF, pdf, combined; collage, Collage, png, combined; "},
    {{pdf, pdf}, "merge, Merge PDFs, pdf, merge_pdf; "},
    {{video, video}, "join, Join videos, mp4, combined; "},
    {{pdf, pdf, image}, ""},
    {{document}, ""},
    {{presentation}, ""},
    {{spreadsheet}, ""},
    {{archive, archive}, ""},
};

TEST(ToolsTest, AreOfferedInOrder) {
  for (const auto& c : toolsCases) {
    std::string tools;
    for (const FileCapability& offer : offersFor(c.kinds)) {
      EXPECT_EQ(offer.id.substr(0, 5), "tool.");
      tools += offer.id.substr(5) + ", " + offer.title + ", " + offer.ext;
      tools += (offer.nativeAction ? ", " + *offer.nativeAction : "");
      tools += offer.combined ? ", combined; " : "; ";
    }
    EXPECT_EQ(tools, c.tools);
  }
}

struct EngineCase {
  std::vector<FileKind> kinds;
  std::string engine, requirement;
  std::vector<const char*> free;  // offers that need no engine
};

TEST(ToolOffersTest, NeedTheirEngineUntilItIsInstalled) {
  const char* magick = "Requires local ImageMagick (magick).";
  const std::vector<EngineCase> cases = {
      {{image}, "magick", magick, {"tool.metadata"}},
      {{image, image}, "magick", magick, {"tool.metadata"}},
      {{video}, "ffmpeg", "Requires local ffmpeg.", {"tool.metadata"}},
      {{video, video}, "ffmpeg", "Requires local ffmpeg.", {}},
      {{audio}, "ffmpeg", "Requires local ffmpeg.", {"tool.metadata"}},
      {{pdf},
       "qpdf",
       "Requires local qpdf.",
       {"tool.metadata", "tool.split", "tool.organize", "tool.rotate"}},
      {{pdf, pdf}, "qpdf", "", {"tool.merge"}}};
  for (const EngineCase& c : cases) {
    const InstalledEngines machine{};
    for (const FileCapability& offer : offersFor(c.kinds, machine)) {
      const bool isFree = std::count(c.free.begin(), c.free.end(), offer.id) == 1;
      EXPECT_EQ(offer.requirement.value_or(""), isFree ? "" : c.requirement) << offer.summary;
    }
    machine.install(c.engine);
    machine.install("ffprobe");  // comes with the other
    for (const FileCapability& offer : offersFor(c.kinds, machine)) {
      EXPECT_EQ(offer.requirement, std::nullopt) << offer.summary;
    }
  }
}

TEST(ToolOffersTest, HaveTypedOptionsInOrder) {
  const auto number = [](const char* key, const char* label, Value fallback) {
    return CapabilityCatalog::field(key, label, std::move(fallback), "number");
  };
  const Value::List quality = {number("quality", "Quality (0.1–1)", 0.75)};
  const Value::List rectangle = {number("x", "Left (pixels)", 0),
                                 number("y", "Top (pixels)", 0),
                                 number("width", "Width (pixels)", 100),
                                 number("height", "Height (pixels)", 100)};
  const Value::List period = {number("start", "Start (seconds)", 0),
                              number("end", "End (seconds)", 5)};
  const Value color = CapabilityCatalog::field("color", "Color (#RRGGBB)", "#FFFFFF", "text");
  const Value::List annotation = {color,
                                  CapabilityCatalog::field("text", "Annotation", "Note", "text"),
                                  number("x", "Left (pixels)", 20),
                                  number("y", "Top (pixels)", 20)};
  const Value::List shape = {number("maxDimension", "Maximum dimension (pixels)", 1600),
                             number("rotation", "Rotation (0, 90, 180, 270)", 0)};
  const std::map<std::string, Value::List> expected = {
      {"compress", quality},
      {"crop", rectangle},
      {"redact", rectangle},
      {"trim", period},
      {"bleep", period},
      {"speed", {number("speed", "Playback speed (0.25–4)", 1.5)}},
      {"snapshot", {number("start", "Time (seconds)", 0)}},
      {"split", {number("seconds", "Segment length (seconds)", 30)}},
      {"channels", {number("channels", "Channels (1 or 2)", 1)}},
      {"background", {color}},
      {"annotate", annotation},
      {"edit", shape}};
  for (const std::vector<FileKind>& kinds :
       std::vector<std::vector<FileKind>>{{image}, {video}, {audio}, {pdf}, {image, image}}) {
    for (const FileCapability& offer : offersFor(kinds)) {
      const auto found = expected.find(offer.id.substr(5));
      const bool hasFields = kinds.front() != pdf && found != expected.end();
      EXPECT_EQ(offer.fields, hasFields ? found->second : Value::List{}) << offer.summary;
    }
  }
}

TEST(ToolOffersTest, SayWhereTheyWorkAndWhatToMind) {
  EXPECT_EQ(offerFor({video}, "trim").summary, "Video · local operation");
  EXPECT_EQ(offerFor({video}, "trim").warning, "");
  EXPECT_EQ(offerFor({video, video}, "join").warning,
            "Re-encodes clips to consistent dimensions and frame rate, preserving audio. Clips "
            "without audio receive a silent track.");
  EXPECT_EQ(offerFor({image}, "redact").warning,
            "Permanently replaces pixels in the output. Review the entire result before sharing; "
            "metadata may need separate removal.");
  EXPECT_EQ(offerFor({pdf}, "compress").warning,
            "Compression can change quality. Some already optimized files may not get smaller.");
}

}  // namespace
}  // namespace tolvane
