#include "platform/desktop/file_user_defaults.h"

#include <exception>
#include <utility>

#include <nlohmann/json.hpp>

#include "platform/files/file_system.h"

namespace tolvane {

namespace {

constexpr std::size_t maxSize = std::size_t{1} << 20;  // bytes; ours have some hundred

nlohmann::json objectIn(const std::filesystem::path& file) {
  try {
    const Bytes bytes = FileSystem::readPrefix(file, maxSize + 1);
    if (bytes.size() > maxSize) {
      return nlohmann::json::object();
    }
    return nlohmann::json::parse(asText(bytes)).get<nlohmann::json::object_t>();
  } catch (const std::exception&) {  // missing or damaged, as is what is too large
    return nlohmann::json::object();
  }
}

std::map<std::string, std::string> textsIn(const nlohmann::json& object) {
  std::map<std::string, std::string> texts;
  for (const auto& [key, value] : object.items()) {
    if (value.is_string()) {
      texts[key] = value.get<std::string>();
    }
  }
  return texts;
}

void store(const std::filesystem::path& file, const std::string& key, const std::string& text) {
  nlohmann::json object = objectIn(file);
  object[key] = text;
  std::filesystem::create_directories(file.parent_path());
  FileSystem::writeAtomically(file, asBytes(object.dump(2) + "\n"));
}

}  // namespace

FileUserDefaults::FileUserDefaults(std::filesystem::path file)
    : file_(std::move(file)), texts_(textsIn(objectIn(file_))) {}

std::optional<std::string> FileUserDefaults::text(const std::string& key) const {
  const auto found = texts_.find(key);
  return found != texts_.end() ? std::optional(found->second) : std::nullopt;
}

void FileUserDefaults::setText(const std::string& key, const std::string& text) {
  texts_[key] = text;
  try {
    store(file_, key, text);
  } catch (const std::exception&) {
    // A full or read-only disk must not take the setting away from the running process.
    return;
  }
}

}  // namespace tolvane
