#include "platform/process/activation.h"

#include <cstdlib>

namespace tolvane {

namespace {

std::string environmentText(const char* name) {
  const char* const text = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): nobody sets it
  return text == nullptr ? "" : text;
}

}  // namespace

Activation Activation::ofThisProcess() {
  return {environmentText("DESKTOP_STARTUP_ID"), environmentText("XDG_ACTIVATION_TOKEN")};
}

}  // namespace tolvane
