#include "platform/images/vips/vips_library.h"

#include <algorithm>
#include <thread>

#include <vips/vips.h>

#include "platform/images/vips/trusted_readers.h"

namespace tolvane::VipsLibrary {

namespace {

void ignoreMessage(const char* /*domain*/,
                   GLogLevelFlags /*level*/,
                   const char* /*message*/,
                   void* /*context*/) {}

void silence(const char* domain) {
  constexpr int everyLevel = G_LOG_LEVEL_MASK | G_LOG_FLAG_FATAL | G_LOG_FLAG_RECURSION;
  g_log_set_handler(domain, static_cast<GLogLevelFlags>(everyLevel), ignoreMessage, nullptr);
}

bool startOnce() {
  silence("VIPS");
  silence("GdkPixbuf");
  if (vips_init("tolvane") != 0) {
    throw takeError();
  }
  vips_operation_block_set("VipsForeignLoad", TRUE);
  for (const TrustedReaders::Reader& reader : TrustedReaders::all) {
    vips_operation_block_set(reader.loaders, FALSE);
  }
  vips_cache_set_max(0);
  // More threads than this wait for the one that decodes.
  constexpr unsigned usefulThreads = 4;
  vips_concurrency_set(
      static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1U, usefulThreads)));
  return true;
}

}  // namespace

void start() {
  static const bool started = startOnce();
  static_cast<void>(started);
}

PlatformError takeError() {
  const std::string text = vips_error_buffer();
  vips_error_clear();
  const std::string line = text.substr(0, text.find('\n'));
  return PlatformError(line.empty() ? "The image could not be read." : line);
}

}  // namespace tolvane::VipsLibrary
