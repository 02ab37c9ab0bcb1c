#include "bridge/result_messages.h"

#include <filesystem>
#include <string>
#include <vector>

#include <fmt/format.h>

namespace tolvane {

namespace {

std::vector<std::string> pathsIn(const Value::Map& arguments) {
  return valueAt(arguments, "paths").texts().value_or(std::vector<std::string>());
}

std::vector<std::filesystem::path> absolutePathsIn(const Value::Map& arguments) {
  std::vector<std::filesystem::path> absolute;
  for (const std::string& path : pathsIn(arguments)) {
    // A NUL would end the name there and reach another file.
    if (path.starts_with('/') && path.find('\0') == std::string::npos) {
      absolute.emplace_back(path);
    }
  }
  return absolute;
}

}  // namespace

void ResultMessages::addMethods(MethodTable& table, const DesktopServices& services) {
  table.addFunction("reveal", [&services](const Value::Map& arguments) {
    services.results->reveal(absolutePathsIn(arguments));
    return Value();
  });
  table.addFunction("open", [&services](const Value::Map& arguments) {
    const auto files = absolutePathsIn(arguments);
    if (!files.empty()) {
      services.results->open(files.front());
    }
    return Value();
  });
  table.addFunction("copyPath", [&services](const Value::Map& arguments) {
    services.results->copyText(fmt::format("{}", fmt::join(pathsIn(arguments), "\n")));
    return Value();
  });
}

}  // namespace tolvane
