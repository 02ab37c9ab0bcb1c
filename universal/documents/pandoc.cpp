#include "universal/documents/pandoc.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "platform/files/bytes.h"
#include "platform/files/file_names.h"
#include "platform/files/file_system.h"
#include "universal/documents/embedded_pictures.h"
#include "universal/documents/pandoc_sandbox.h"
#include "universal/documents/picture_filter.h"
#include "universal/job/arguments.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

constexpr double timeout = 120;  // seconds
constexpr const char* sandbox = "--sandbox";
/// The formats whose files are put together from parts that are installed with pandoc.
constexpr std::array<std::string_view, 4> packagedWriters = {"docx", "odt", "epub3", "pptx"};

bool isPackaged(std::string_view writer) {
  return std::find(packagedWriters.begin(), packagedWriters.end(), writer) != packagedWriters.end();
}

bool isText(std::string_view reader) {
  return reader == "markdown" || reader == "html";
}

/// Whether the writer names pictures where the document has them, or passes them over.
bool namesPictures(std::string_view writer) {
  return writer == "markdown" || writer == "html" || writer == "plain";
}

struct PandocRun {
  std::string_view reader;
  std::string_view writer;
  const fs::path& input;
  const fs::path& output;
};

/// @param options what stands in front of the others.
Arguments argumentsFor(Arguments options, const PandocRun& wanted) {
  options.insert(options.end(),
                 {"--from=" + std::string(wanted.reader),
                  "--to=" + std::string(wanted.writer),
                  wanted.input.string(),
                  "-o",
                  wanted.output.string()});
  if (wanted.writer == "rtf") {
    // Otherwise it is a fragment without the header, which no word processor opens.
    options.emplace_back("--standalone");
  }
  return options;
}

void run(const JobContext& context, Arguments options, const PandocRun& wanted) {
  context.run("pandoc", argumentsFor(std::move(options), wanted), timeout, {wanted.input});
}

/// @return the option that names the filter: relative to the current directory, because pandoc
/// finds no filter in a folder whose name is not UTF-8.
std::string writeFilter(const JobContext& context,
                        RelativePictures relative,
                        std::string_view ownPrefix) {
  const fs::path filter = context.freshFile("filter-", ".lua");
  FileSystem::writeAtomically(filter, asBytes(pictureFilter(relative, ownPrefix)));
  return "--lua-filter=" + filter.filename().string();
}

/// For documents that hold their pictures, whose text and pictures cannot be read apart, and for
/// texts without any.
void convertInOneRun(const JobContext& context,
                     const PandocRun& wanted,
                     RelativePictures relative) {
  run(context, {writeFilter(context, relative, "")}, wanted);
}

/// Whether a picture, HTML or a command of TeX, by which pandoc would open a file while it reads,
/// may begin in a Markdown text with these two characters.
bool mayName(char first, char second) {
  constexpr std::string_view punctuation = "!\"#$%&'()*+,-./:;=>?@[\\]^_`{|}~";
  switch (first) {
    case '<':
      return true;
    case '!':
      return second == '[';
    case '\\':  // before a letter, metadata have other spellings of characters
      return punctuation.find(second) == std::string_view::npos;
    case '\r':  // pandoc passes it over, even within "!["
      return second != '\n';
    default:
      return false;
  }
}

/// @return whether the document is certain to name no file at all.
bool namesNothing(std::string_view text, std::string_view reader) {
  if (reader != "markdown") {
    return false;
  }
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (mayName(text[at], at + 1 < text.size() ? text[at + 1] : '\0')) {
      return false;
    }
  }
  return true;
}

/// Takes the larger pictures out of a Markdown or HTML text.
/// @param text outlives the result.
EmbeddedPictures picturesIn(std::string_view text, std::string_view reader, std::string prefix) {
  // A page that states its own address would have the names completed with it.
  const bool hasAddress =
      reader == "html" && FileNames::lower(text).find("<base") != std::string::npos;
  return EmbeddedPictures(hasAddress ? std::string_view() : text, std::move(prefix));
}

/// @return the file for pandoc to read.
fs::path writeLighterText(const JobContext& context, const EmbeddedPictures& pictures) {
  fs::path file = context.freshFile("lighter-", "");
  FileSystem::writeAtomically(file, asBytes(pictures.lighterText()));
  return file;
}

/// Whether a text holds a picture as a data address, which the rtf writer, within the sandbox,
/// writes out letter for letter instead of the picture.
bool holdsPicture(const fs::path& text) {
  const Bytes bytes = FileSystem::readAll(text);
  return asText(bytes).find("data:image/") != std::string_view::npos;
}

/// For Markdown and HTML. They are read, and rid of what they do not hold, in the sandbox: the docx
/// writer opens every file that is named before a filter of its own run sees it, and gives up when
/// one is missing.
void convertText(const JobContext& context, const PandocRun& wanted) {
  const Bytes bytes = FileSystem::readAll(wanted.input);
  if (namesNothing(asText(bytes), wanted.reader)) {
    convertInOneRun(context, wanted, RelativePictures::dropped);
    return;
  }
  const fs::path folder = context.freshFile("pandoc-", "");
  FileSystem::createDirectory(folder, FileSystem::ownerOnly);
  // Named like the input, which gives a document without a title its name.
  const fs::path parsed = folder / wanted.input.filename();
  const std::string ownPrefix = folder.filename().string() + "/picture-";
  const std::string filter = writeFilter(context, RelativePictures::dropped, ownPrefix);
  const EmbeddedPictures pictures = picturesIn(asText(bytes), wanted.reader, ownPrefix);
  pictures.write(context.workspace);
  const fs::path text = pictures.isEmpty() ? wanted.input : writeLighterText(context, pictures);
  run(context, {sandbox, filter}, {wanted.reader, "json", text, parsed});
  run(context, {}, {"json", wanted.writer, parsed, wanted.output});
}

/// For Markdown and HTML that become a text again, which holds the same pictures.
void convertTextToText(const JobContext& context, const PandocRun& wanted) {
  const Bytes bytes = FileSystem::readAll(wanted.input);
  const EmbeddedPictures pictures =
      picturesIn(asText(bytes), wanted.reader, "picture-" + FileSystem::newUuid() + "-");
  if (pictures.isEmpty()) {
    run(context, {sandbox}, wanted);
    return;
  }
  const fs::path text = writeLighterText(context, pictures);
  run(context, {sandbox}, {wanted.reader, wanted.writer, text, wanted.output});
  const Bytes converted = FileSystem::readAll(wanted.output);
  FileSystem::writeAtomically(wanted.output, asBytes(pictures.putBack(asText(converted))));
}

}  // namespace

std::string reader(std::string_view extension) {
  if (extension == "docx" || extension == "odt" || extension == "epub") {
    return std::string(extension);
  }
  if (extension == "html" || extension == "htm") {
    return "html";
  }
  return "markdown";
}

std::string writer(std::string_view target) {
  if (target == "md") {
    return "markdown";
  }
  if (target == "txt") {
    return "plain";
  }
  if (target == "epub") {
    return "epub3";
  }
  return std::string(target);
}

void pandoc(const JobContext& context,
            std::string_view reader,
            std::string_view writer,
            const fs::path& input,
            const fs::path& output) {
  const PandocRun wanted = {reader, writer, input, output};
  const bool holdsPictures = isText(reader) && writer == "rtf" && holdsPicture(input);
  if (isText(reader) && namesPictures(writer)) {
    convertTextToText(context, wanted);
  } else if (!holdsPictures && (!isPackaged(writer) || canWriteInSandbox(context, writer))) {
    run(context, {sandbox}, wanted);
  } else if (isText(reader)) {
    convertText(context, wanted);
  } else {
    convertInOneRun(context, wanted, RelativePictures::kept);
  }
}

}  // namespace tolvane::UniversalEngine
