#include "platform/desktop/file_user_defaults.h"

#include <exception>
#include <utility>

#include <nlohmann/json.hpp>

#include "platform/files/file_system.h"

namespace tolvane {

namespace {

std::map<std::string, std::string> textsIn(const std::filesystem::path& file) {
  try {
    const Bytes bytes = FileSystem::readAll(file);
    return nlohmann::json::parse(asText(bytes)).get<std::map<std::string, std::string>>();
  } catch (const std::exception&) {  // missing or damaged
    return {};
  }
}

void write(const std::filesystem::path& file, const std::map<std::string, std::string>& texts) {
  std::filesystem::create_directories(file.parent_path());
  FileSystem::writeAtomically(file, asBytes(nlohmann::json(texts).dump(2) + "\n"));
}

}  // namespace

FileUserDefaults::FileUserDefaults(std::filesystem::path file)
    : file_(std::move(file)), texts_(textsIn(file_)) {}

std::optional<std::string> FileUserDefaults::text(const std::string& key) const {
  const auto found = texts_.find(key);
  return found != texts_.end() ? std::optional(found->second) : std::nullopt;
}

void FileUserDefaults::setText(const std::string& key, const std::string& text) {
  texts_[key] = text;
  try {
    write(file_, texts_);
  } catch (const std::exception&) {
    // A full or read-only disk must not take the setting away from the running process.
    return;
  }
}

}  // namespace tolvane
