#include "universal/documents/pandoc.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/files/bytes.h"
#include "platform/files/file_system.h"
#include "universal/documents/embedded_pictures.h"
#include "universal/documents/picture_filter.h"
#include "universal/job/arguments.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

constexpr double timeout = 120;  // seconds
constexpr const char* sandbox = "--sandbox";
constexpr unsigned ownerOnly = 0700;

/// The formats whose files are put together from parts that are installed with pandoc.
constexpr std::array<std::string_view, 4> packagedWriters = {"docx", "odt", "epub3", "pptx"};

bool isPackaged(std::string_view writer) {
  return std::find(packagedWriters.begin(), packagedWriters.end(), writer) != packagedWriters.end();
}

struct Conversion {
  std::string_view reader;
  std::string_view writer;
  const fs::path& input;
  const fs::path& output;
};

/// @param options what stands in front of the others.
Arguments argumentsFor(Arguments options, const Conversion& conversion) {
  options.insert(options.end(),
                 {"--from=" + std::string(conversion.reader),
                  "--to=" + std::string(conversion.writer),
                  conversion.input.string(),
                  "-o",
                  conversion.output.string()});
  if (conversion.writer == "rtf") {
    // Otherwise it is a fragment without the header, which no word processor opens.
    options.emplace_back("--standalone");
  }
  return options;
}

void run(const JobContext& context, Arguments options, const Conversion& conversion) {
  context.run("pandoc", argumentsFor(std::move(options), conversion), timeout);
}

/// Some builds of pandoc cannot reach their own parts from inside of their sandbox. That shows only
/// after the document was read, which may take a minute: so an empty one is tried.
bool canWriteInSandbox(const JobContext& context, std::string_view writer) {
  constexpr std::int32_t partNotFound = 97;
  const fs::path empty = context.freshFile("empty-", ".md");
  const fs::path result = context.freshFile("empty-", ".out");
  FileSystem::writeAtomically(empty, {});
  context.toolchain.run({.name = "pandoc",
                         .arguments = argumentsFor({sandbox}, {"markdown", writer, empty, result}),
                         .in = context.workspace,
                         .timeout = timeout,
                         .accepted = {0, partNotFound}},
                        context.token);
  std::error_code ignored;
  const bool isWritten = fs::exists(result, ignored);
  FileSystem::removeQuietly(empty);
  FileSystem::removeQuietly(result);
  return isWritten;
}

fs::path writeFilter(const JobContext& context,
                     RelativePictures relative,
                     std::string_view ownPrefix) {
  fs::path filter = context.freshFile("filter-", ".lua");
  FileSystem::writeAtomically(filter, asBytes(pictureFilter(relative, ownPrefix)));
  return filter;
}

/// For documents that hold their pictures. Their text and pictures cannot be read apart.
void convertContainer(const JobContext& context, const Conversion& conversion) {
  const fs::path filter = writeFilter(context, RelativePictures::kept, "");
  run(context, {"--lua-filter=" + filter.string()}, conversion);
}

/// For Markdown and HTML. They are read, and rid of what they do not hold, in the sandbox: the docx
/// writer opens every file that is named before a filter of its own run sees it, and gives up when
/// one is missing.
void convertText(const JobContext& context, const Conversion& conversion) {
  const fs::path folder = context.freshFile("pandoc-", "");
  FileSystem::createDirectory(folder, ownerOnly);
  // Named like the input, which gives a document without a title its name.
  const fs::path parsed = folder / conversion.input.filename();
  const std::string ownPrefix = folder.filename().string() + "/picture-";
  const fs::path filter = writeFilter(context, RelativePictures::dropped, ownPrefix);
  fs::path text = conversion.input;
  if (conversion.reader == "markdown") {
    const Bytes bytes = FileSystem::readAll(text);
    if (const auto lighter = movePicturesOut(asText(bytes), context.workspace, ownPrefix)) {
      text = context.freshFile("lighter-", ".md");
      FileSystem::writeAtomically(text, asBytes(*lighter));
    }
  }
  run(context,
      {sandbox, "--lua-filter=" + filter.string()},
      {conversion.reader, "json", text, parsed});
  run(context, {}, {"json", conversion.writer, parsed, conversion.output});
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
  const Conversion conversion = {reader, writer, input, output};
  if (!isPackaged(writer) || canWriteInSandbox(context, writer)) {
    run(context, {sandbox}, conversion);
  } else if (reader == "markdown" || reader == "html") {
    convertText(context, conversion);
  } else {
    convertContainer(context, conversion);
  }
}

}  // namespace tolvane::UniversalEngine
