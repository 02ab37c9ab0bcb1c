#include "universal/documents/embedded_pictures.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "platform/files/bytes.h"
#include "platform/files/file_system.h"
#include "platform/text/base64.h"

namespace tolvane::UniversalEngine {

namespace {

constexpr std::string_view start = "](data:image/";
constexpr char end = ')';

/// Characters. Shorter ones cost pandoc little; and a program text that shows such an address,
/// which must stay as it is, is never as long.
constexpr std::size_t leastAddress = 16'384;

struct Type {
  std::string_view declaration;
  const char* suffix;
};
constexpr std::array<Type, 3> types = {
    {{"png;base64,", ".png"}, {"jpeg;base64,", ".jpg"}, {"gif;base64,", ".gif"}}};

struct Picture {
  const char* suffix;
  Bytes bytes;
};

/// @param address what follows "data:image/".
std::optional<Picture> pictureIn(std::string_view address) {
  if (address.size() < leastAddress) {
    return std::nullopt;
  }
  for (const Type& type : types) {
    if (address.starts_with(type.declaration)) {
      auto bytes = Base64::decode(address.substr(type.declaration.size()));
      return bytes ? std::optional(Picture{type.suffix, *std::move(bytes)}) : std::nullopt;
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> movePicturesOut(std::string_view markdown,
                                           const std::filesystem::path& folder,
                                           const std::string& prefix) {
  std::string lighter;
  int count = 0;
  std::size_t copied = 0;
  std::size_t found = markdown.find(start);
  while (found != std::string_view::npos) {
    const std::size_t address = found + start.size();
    const std::size_t after = std::min(markdown.find(end, address), markdown.size());
    if (const auto picture = pictureIn(markdown.substr(address, after - address))) {
      const std::string name = prefix + std::to_string(++count) + picture->suffix;
      FileSystem::writeAtomically(folder / name, picture->bytes);
      lighter += markdown.substr(copied, found + 2 - copied);
      lighter += name;
      copied = after;
    }
    found = markdown.find(start, after);
  }
  if (count == 0) {
    return std::nullopt;
  }
  lighter += markdown.substr(copied);
  return lighter;
}

}  // namespace tolvane::UniversalEngine
