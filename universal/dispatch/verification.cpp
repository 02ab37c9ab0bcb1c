#include "universal/dispatch/verification.h"

#include <map>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "engine/primitives/conversion_failure.h"
#include "platform/files/bytes.h"
#include "platform/files/file_names.h"
#include "platform/files/file_system.h"
#include "platform/files/platform_error.h"
#include "platform/images/image_decoder.h"
#include "universal/images/engine_path.h"
#include "universal/media/media_probe.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

constexpr double timeout = 120;  // seconds

using Check = void (*)(const fs::path& url, const JobContext& context);

void checkPdf(const fs::path& url, const JobContext& context) {
  static_cast<void>(context.base.pdf(url));
}

bool isInstalled(std::string_view engine, const JobContext& context) {
  return context.toolchain.find(engine).has_value();
}

/// What made the result need not be what tests it best.
void checkPackage(const fs::path& url, const JobContext& context) {
  if (isInstalled("unzip", context)) {
    context.run("unzip", {"-tqq", url.string()}, timeout, {url});
  } else if (isInstalled("7zz", context)) {
    context.run("7zz", {"t", "-tzip", url.string()}, timeout, {url});
  } else {
    static_cast<void>(context.base.inspect(url));
  }
}

void checkMedia(const fs::path& url, const JobContext& context) {
  const Value::Map probed = probe(url, context);
  const Value::List* streams = valueAt(probed, "streams").list();
  if (streams == nullptr || streams->empty()) {
    throw ConversionFailure::message("No valid stream was found in the result.");
  }
}

void checkPicture(const fs::path& url, const JobContext& context) {
  if (isInstalled("magick", context)) {
    context.run("magick", {"identify", enginePath(url, context)}, timeout, {url});
  } else if (!imageDecoder().probe(url)) {
    throw PlatformError("The result is no valid picture.");
  }
}

void checkArchive(const fs::path& url, const JobContext& context) {
  // A folder above may have a name that 7zz would take for a pattern.
  context.run("7zz", {"t", url.lexically_relative(context.workspace)}, timeout, {url});
}

void checkJson(const fs::path& url, const JobContext& /*context*/) {
  const Bytes bytes = FileSystem::readAll(url);
  if (!nlohmann::json::accept(asText(bytes))) {
    throw PlatformError("The result is no valid JSON.");
  }
}

const std::map<std::string_view, Check>& checks() {
  static const std::map<std::string_view, Check> byExtension = {
      {"pdf", checkPdf},      {"docx", checkPackage}, {"pptx", checkPackage},
      {"xlsx", checkPackage}, {"epub", checkPackage}, {"odt", checkPackage},
      {"ods", checkPackage},  {"mp4", checkMedia},    {"mov", checkMedia},
      {"m4a", checkMedia},    {"mp3", checkMedia},    {"wav", checkMedia},
      {"aiff", checkMedia},   {"flac", checkMedia},   {"ogg", checkMedia},
      {"opus", checkMedia},   {"png", checkPicture},  {"jpg", checkPicture},
      {"webp", checkPicture}, {"heic", checkPicture}, {"tiff", checkPicture},
      {"avif", checkPicture}, {"bmp", checkPicture},  {"gif", checkPicture},
      {"json", checkJson},    {"zip", checkArchive},  {"tar", checkArchive},
      {"gz", checkArchive}};
  return byExtension;
}

}  // namespace

void verify(const fs::path& url, const JobContext& context) {
  const auto found = checks().find(FileNames::lowerExtension(url));
  if (found != checks().end()) {
    found->second(url, context);
  }
}

}  // namespace tolvane::UniversalEngine
