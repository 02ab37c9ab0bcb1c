#include "engine/primitives/file_info.h"

#include <array>

namespace tolvane {

std::string_view name(FileKind kind) {
  constexpr std::array<std::string_view, 10> names = {"pdf",
                                                      "image",
                                                      "document",
                                                      "presentation",
                                                      "spreadsheet",
                                                      "video",
                                                      "audio",
                                                      "ebook",
                                                      "subtitle",
                                                      "archive"};
  return names.at(static_cast<std::size_t>(kind));
}

const std::filesystem::path& FileInfo::named() const {
  const std::filesystem::path last = given.filename();
  return last.empty() || last == "." || last == ".." ? url : given;
}

Value FileInfo::json() const {
  return Value::Map{{"path", url.string()},
                    {"name", url.filename().string()},
                    {"kind", name(kind)},
                    {"detail", detail}};
}

}  // namespace tolvane
