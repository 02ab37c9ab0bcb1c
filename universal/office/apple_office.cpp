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
  const char* application = nullptr;
  const char* format = nullptr;
  bool isWorkbook = false;  ///< the suite makes the result out of it
};

Export exportFor(std::string_view extension, std::string_view target) {
  if (extension == "pages") {
    return {"Pages", target == pdf ? "PDF" : "Microsoft Word"};
  }
  if (extension == "key") {
    return {"Keynote", "PDF"};
  }
  return target == pdf ? Export{"Numbers", "PDF"} : Export{"Numbers", "Microsoft Excel", true};
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

}  // namespace

void appleOffice(const FileInfo& info,
                 std::string_view target,
                 const fs::path& output,
                 const JobContext& context) {
  const Export wanted = exportFor(FileNames::lowerExtension(info.url), target);
  const fs::path exported = wanted.isWorkbook ? context.workspace / "numbers.xlsx" : output;
  const fs::path script = context.workspace / "export.applescript";
  FileSystem::writeAtomically(script, asBytes(scriptFor(wanted)));
  context.run(
      "osascript", {script.string(), info.url.string(), exported.string()}, timeout, {info.url});
  if (wanted.isWorkbook) {
    office(exported, target, output, context);
  }
}

}  // namespace tolvane::UniversalEngine
