#include "platform/text/text_file.h"

#include <string_view>

#include "platform/files/bytes.h"
#include "platform/files/file_system.h"
#include "platform/files/platform_error.h"
#include "platform/text/text_encoding.h"

namespace tolvane::TextFile {

std::string read(const std::filesystem::path& file) {
  const Bytes bytes = FileSystem::readAll(file);
  if (!TextEncoding::isUtf8(bytes)) {
    throw PlatformError("Could not read " + file.string() + ": It is no UTF-8 text.");
  }
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  std::string_view text = asText(bytes);
  if (text.starts_with(byteOrderMark)) {
    text.remove_prefix(byteOrderMark.size());
  }
  return std::string(text);
}

}  // namespace tolvane::TextFile
