#include <string>

#include "platform/files/bytes.h"
#include "platform/files/file_names.h"
#include "platform/files/file_system.h"
#include "universal/office/office.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

constexpr double timeout = 120;  // seconds
constexpr std::string_view pdf = "pdf";

struct Export {
  const char* application;
  const char* format;
};

Export exportFor(std::string_view extension, std::string_view target) {
  if (extension == "pages") {
    return {"Pages", target == pdf ? "PDF" : "Microsoft Word"};
  }
  if (extension == "key") {
    return {"Keynote", "PDF"};
  }
  return {"Numbers", target == pdf ? "PDF" : "Microsoft Excel"};
}

/// The files are its arguments, so that no name needs an escape.
std::string scriptFor(const Export& wanted) {
  return std::string("on run argv\n tell application \"") + wanted.application +
         "\"\n"
         " set documentRef to open (POSIX file (item 1 of argv))\n"
         " export documentRef to (POSIX file (item 2 of argv)) as " +
         wanted.format +
         "\n"
         " close documentRef saving no\n"
         " end tell\n"
         "end run";
}

bool isNumbers(std::string_view extension) {
  return extension != "pages" && extension != "key";
}

}  // namespace

void appleOffice(const FileInfo& info,
                 std::string_view target,
                 const fs::path& output,
                 const JobContext& context) {
  const std::string extension = FileNames::lowerExtension(info.url);
  const bool needsSuite = isNumbers(extension) && target != pdf;
  const fs::path exported = needsSuite ? context.workspace / "numbers.xlsx" : output;
  const fs::path script = context.workspace / "export.applescript";
  FileSystem::writeAtomically(script, asBytes(scriptFor(exportFor(extension, target))));
  context.run("osascript", {script.string(), info.url.string(), exported.string()}, timeout);
  if (needsSuite) {
    office(exported, target, output, context);
  }
}

}  // namespace tolvane::UniversalEngine
