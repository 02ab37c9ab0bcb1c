#include "universal/documents/embedded_pictures.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>

#include "platform/files/file_system.h"
#include "platform/text/base64.h"

namespace tolvane::UniversalEngine {

namespace {

constexpr std::string_view start = "data:image/";

/// Characters. Shorter ones cost pandoc little; and a program text that shows such an address,
/// which must stay as it is, is never as long.
constexpr std::size_t leastAddress = 16'384;

/// What stands around an address.
struct Frame {
  std::string_view before;
  char after;
};
constexpr std::array<Frame, 3> frames = {{{"](", ')'}, {"src=\"", '"'}, {"src='", '\''}}};

struct Type {
  std::string_view declaration;
  const char* suffix;
};
constexpr std::array<Type, 3> types = {{{"data:image/png;base64,", ".png"},
                                        {"data:image/jpeg;base64,", ".jpg"},
                                        {"data:image/gif;base64,", ".gif"}}};

/// @param text of which an address begins at `at`.
/// @return the address; empty when it is not framed.
std::string_view addressAt(std::string_view text, std::size_t at) {
  for (const Frame& frame : frames) {
    if (text.substr(0, at).ends_with(frame.before)) {
      return text.substr(at, std::min(text.find(frame.after, at), text.size()) - at);
    }
  }
  return {};
}

struct Content {
  const char* suffix;
  Bytes bytes;
};

std::optional<Content> contentOf(std::string_view address) {
  if (address.size() < leastAddress) {
    return std::nullopt;
  }
  for (const Type& type : types) {
    if (address.starts_with(type.declaration)) {
      auto bytes = Base64::decode(address.substr(type.declaration.size()));
      return bytes ? std::optional(Content{type.suffix, *std::move(bytes)}) : std::nullopt;
    }
  }
  return std::nullopt;
}

}  // namespace

EmbeddedPictures::EmbeddedPictures(std::string_view text, std::string prefix)
    : prefix_(std::move(prefix)) {
  std::size_t copied = 0;
  std::size_t found = text.find(start);
  while (found != std::string_view::npos) {
    const std::string_view address = addressAt(text, found);
    if (auto content = contentOf(address)) {
      const std::string name = prefix_ + std::to_string(pictures_.size()) + content->suffix;
      lighterText_ += text.substr(copied, found - copied);
      lighterText_ += name;
      copied = found + address.size();
      pictures_.push_back({name, address, std::move(content->bytes)});
    }
    found = text.find(start, found + std::max(address.size(), start.size()));
  }
  lighterText_ += text.substr(copied);
}

void EmbeddedPictures::write(const std::filesystem::path& folder) const {
  for (const Picture& picture : pictures_) {
    FileSystem::writeAtomically(folder / picture.name, picture.bytes);
  }
}

std::string EmbeddedPictures::putBack(std::string_view converted) const {
  std::string text;
  std::size_t copied = 0;
  std::size_t found = converted.find(prefix_);
  while (found != std::string_view::npos) {
    const auto picture = std::find_if(pictures_.begin(), pictures_.end(), [&](const Picture& one) {
      return converted.substr(found).starts_with(one.name);
    });
    if (picture != pictures_.end()) {
      text += converted.substr(copied, found - copied);
      text += picture->address;
      copied = found + picture->name.size();
    }
    found = converted.find(prefix_, found + prefix_.size());
  }
  text += converted.substr(copied);
  return text;
}

}  // namespace tolvane::UniversalEngine
