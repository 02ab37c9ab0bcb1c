#include "platform/files/file_names.h"

#include <algorithm>

namespace tolvane::FileNames {

namespace {

/// Where the extension's dot stands in `name`; npos when there is no extension.
std::size_t extensionDot(const std::string& name) {
  const std::size_t dot = name.rfind('.');
  const bool starts = dot != std::string::npos && dot != 0 && dot + 1 != name.size();
  return starts ? dot : std::string::npos;
}

/// Independent of the locale, unlike std::tolower.
char lowered(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

char raised(char letter) {
  return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

}  // namespace

std::string extension(const std::filesystem::path& path) {
  const std::string name = path.filename().string();
  const std::size_t dot = extensionDot(name);
  return dot == std::string::npos ? "" : name.substr(dot + 1);
}

std::string lowerExtension(const std::filesystem::path& path) {
  return lower(extension(path));
}

std::string stem(const std::filesystem::path& path) {
  const std::string name = path.filename().string();
  return name.substr(0, extensionDot(name));
}

bool isAddress(std::string_view text) {
  const std::size_t colon = text.find("://");
  if (colon == std::string_view::npos || colon == 0) {
    return false;
  }
  const std::string scheme = lower(text.substr(0, colon));
  return std::all_of(
      scheme.begin(), scheme.end(), [](char letter) { return letter >= 'a' && letter <= 'z'; });
}

std::string lower(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lowered);
  return result;
}

std::string upper(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), raised);
  return result;
}

}  // namespace tolvane::FileNames
