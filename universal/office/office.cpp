#include "universal/office/office.h"

#include <string>
#include <system_error>
#include <vector>

#include "engine/primitives/conversion_failure.h"
#include "platform/files/file_names.h"
#include "platform/files/file_system.h"
#include "platform/text/text_encoding.h"
#include "universal/office/office_profile.h"
#include "universal/toolchain/temporary_ground.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

constexpr double timeout = 180;  // seconds

/// Separator, text delimiter, character set (UTF-8) and first line, in the suite's numbers.
constexpr const char* commaSeparated = "csv:Text - txt - csv (StarCalc):44,34,76,1";
constexpr const char* tabSeparated = "csv:Text - txt - csv (StarCalc):9,34,76,1";

std::string filterFor(std::string_view target) {
  if (target == "csv") {
    return commaSeparated;
  }
  return target == "tsv" ? tabSeparated : std::string(target);
}

/// The options that tell the suite how to read a file whose kind it would not take for what it is
/// here. It takes delimited text for Latin-1 and finds no tabs in it; and it lays web pages out for
/// the screen, so that the first paragraph of a short one does not get onto paper.
std::vector<std::string> readingOptions(const fs::path& input) {
  const std::string extension = FileNames::lowerExtension(input);
  if (extension == "csv") {
    return {"--infilter=CSV:44,34,76,1"};
  }
  if (extension == "tsv") {
    return {"--infilter=CSV:9,34,76,1"};
  }
  if (extension == "html" || extension == "htm") {
    return {"--infilter=HTML (StarWriter)"};
  }
  return {};
}

/// What the suite calls its result.
std::string resultName(const fs::path& input, std::string_view target) {
  return FileNames::stem(input) + "." + (target == "tsv" ? "csv" : std::string(target));
}

std::vector<std::string> argumentsFor(const fs::path& input,
                                      std::string_view target,
                                      const fs::path& folder,
                                      const fs::path& profile) {
  std::vector<std::string> arguments = {"-env:UserInstallation=" + FileNames::localAddress(profile),
                                        "--headless",
                                        "--nologo",
                                        "--nodefault",
                                        "--norestore"};
  const std::vector<std::string> reading = readingOptions(input);
  arguments.insert(arguments.end(), reading.begin(), reading.end());
  arguments.insert(
      arguments.end(),
      {"--convert-to", filterFor(target), "--outdir", folder.string(), input.string()});
  return arguments;
}

/// @return the result, in a folder of its own in the workspace.
fs::path exported(const fs::path& input, std::string_view target, const JobContext& context) {
  const fs::path folder = context.freshFile("office-", "");
  FileSystem::createDirectory(folder, FileSystem::ownerOnly);
  const fs::path profile = fs::absolute(context.workspace / "lo-profile");
  makeOfficeProfile(profile, context.toolchain.find("soffice").value_or(fs::path()));
  context.run("soffice", argumentsFor(input, target, folder, profile), timeout, {input});
  fs::path result = folder / resultName(input, target);
  std::error_code ignored;
  if (!fs::exists(result, ignored)) {
    throw ConversionFailure::message(
        "The office engine could not export this file. It may be encrypted or unsupported.");
  }
  return result;
}

/// Whether the suite understands a path: it ends the name of a folder at a semicolon and knows no
/// names but those in UTF-8.
bool isUnderstood(const fs::path& path) {
  const std::string& name = path.native();
  return name.find(';') == std::string::npos && TextEncoding::isUtf8(asBytes(name));
}

/// As office(), by way of a folder whose path the suite understands. Its input is copied, because a
/// link may lead to where the suite cannot look.
void exportElsewhere(const fs::path& input,
                     std::string_view target,
                     const fs::path& output,
                     const JobContext& context) {
  const TemporaryGround ground("tolvane-office");
  const fs::path name = input.filename();
  const fs::path copy =
      ground.path() /
      (isUnderstood(name) ? name : fs::path("document." + FileNames::extension(input)));
  FileSystem::copy(input, copy);
  FileSystem::copy(exported(copy, target, context.in(ground.path())), output);
}

}  // namespace

void office(const fs::path& input,
            std::string_view target,
            const fs::path& output,
            const JobContext& context) {
  if (isUnderstood(input) && isUnderstood(context.workspace)) {
    FileSystem::move(exported(input, target, context), output);
  } else {
    exportElsewhere(input, target, output, context);
  }
}

}  // namespace tolvane::UniversalEngine
