#include "catalog/engine_lookup.h"

#include <system_error>
#include <utility>

namespace tolvane {

EngineLookup::EngineLookup(const LocalToolchain& toolchain, ExistenceTest applicationExists)
    : toolchain_(toolchain), applicationExists_(std::move(applicationExists)) {}

bool EngineLookup::hasEngine(std::string_view engine) {
  return remembered(engine, [&] { return toolchain_.find(engine).has_value(); });
}

bool EngineLookup::hasApplication(std::string_view bundle) {
  return remembered(bundle, [&] { return applicationExists_(bundle); });
}

template <typename Question>
bool EngineLookup::remembered(std::string_view program, const Question& ask) {
  if (const auto known = answers_.find(program); known != answers_.end()) {
    return known->second;
  }
  return answers_.emplace(program, ask()).first->second;
}

bool EngineLookup::standsOnDisk(const std::filesystem::path& path) {
  std::error_code unreadable;  // a place that cannot be looked at counts as empty
  return std::filesystem::exists(path, unreadable);
}

}  // namespace tolvane
